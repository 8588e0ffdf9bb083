#include "scale/ScaleListEditDlg.h"

#include "core/ExtendUtils.h"
#include "core/OpenedObject.h"
#include "core/VkMath.h"
#include "scale/ScaleText.h"
#include "ui/ScaleListEditForm.h"
#include "vcdb_viewport.h"
#include "vced.h"
#include "vcut.h"

#include <algorithm>
#include <memory>

namespace {

constexpr UINT kTemplate = 6300;

bool isUnits(double units) { return VkMath::isPositive(units, kScaleTolerance) && std::isfinite(units); }

void refuseToDelete(const CStdStrW& name) { AfxMessageBox(vkFormat(StringFromID(6718), name).c_str()); }

// The annotation scale follows where the viewport names one. The row's id may be that of a scale which the drawing has no
// more; the host then keeps to the name.
void setScale(const vds_name viewports, int index, const ScaleInfo& row)
{
    vds_name name = {};
    if (vcedSSName(viewports, index, name) != RTNORM)
        return;
    const OpenedObject<VcDbViewport> viewport(name, VcDb::kForWrite);
    if (!viewport)
        return;
    viewport->setCustomScale(row.paperUnits / row.drawingUnits);
    VcDbAnnotationScale* scale = viewport->annotationScale();
    if (!scale)
        return;
    scale->setName(row.name);
    if (VcDbAnnotationScale* inner = VcDbSystemInternals::getImpAnnotationScale(scale))
        inner->setScaleId(row.id);
}

}  // namespace

CDlg_ScaleListEdit::CDlg_ScaleListEdit(CWnd* parent) : CDialog(kTemplate, parent)
{
    new VKUI::CDlg_ScaleListEdit(nullptr, this);
}

CDlg_ScaleListEdit::~CDlg_ScaleListEdit() { deleteAllRows(); }

void CDlg_ScaleListEdit::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, kScaleList, m_list);
    DDX_Text(exchange, kNameEdit, m_name);
    DDX_Text(exchange, kPaperEdit, m_paperUnits);
    DDX_Text(exchange, kDrawingEdit, m_drawingUnits);
}

bool CDlg_ScaleListEdit::OnInitDialog()
{
    CDialog::OnInitDialog();
    initializeScales();
    load();
    return true;
}

void CDlg_ScaleListEdit::OnOK()
{
    save();
    CDialog::OnOK();
}

void CDlg_ScaleListEdit::OnClose()
{
    deleteAllRows();
    CDialog::OnClose();
}

// The list and the drawing

void CDlg_ScaleListEdit::load()
{
    const OpenScaleList dictionary(createOrGetScaleListDictionary());
    if (!dictionary)
        return;
    for (ScaleInfo& scale : scalesOf(*dictionary)) {
        scale.key.Empty();
        insertRow(m_list.GetCount(), scale);
    }
    selectAndShow(0);
}

void CDlg_ScaleListEdit::clear()
{
    if (const OpenScaleList dictionary{createOrGetScaleListDictionary()})
        removeAllScales(*dictionary);
}

void CDlg_ScaleListEdit::save()
{
    clear();
    const OpenScaleList dictionary(createOrGetScaleListDictionary());
    if (!dictionary)
        return;
    ScaleKeys keys;
    for (int i = 0; i < m_list.GetCount(); ++i) {
        ScaleInfo scale = *rowAt(i);
        scale.key = keys.next();
        putScale(*dictionary, scale);
    }
}

// Rows

ScaleInfo* CDlg_ScaleListEdit::rowAt(int index) const { return static_cast<ScaleInfo*>(m_list.GetItemDataPtr(index)); }

int CDlg_ScaleListEdit::indexOf(const CStdStrW& name) const
{
    for (int i = 0; i < m_list.GetCount(); ++i)
        if (rowAt(i)->name.Compare(name) == 0)
            return i;
    return LB_ERR;
}

void CDlg_ScaleListEdit::insertRow(int index, const ScaleInfo& row)
{
    m_list.InsertString(index, row.name);
    m_list.SetItemDataPtr(index, new ScaleInfo(row));
}

void CDlg_ScaleListEdit::deleteRow(int index)
{
    delete rowAt(index);
    m_list.DeleteString(UINT(index));
}

void CDlg_ScaleListEdit::deleteAllRows()
{
    for (int i = m_list.GetCount() - 1; i >= 0; --i)
        deleteRow(i);
}

void CDlg_ScaleListEdit::selectAndShow(int index)
{
    m_list.SetCurSel(index);
    OnLbnSelchangeListScale();
}

void CDlg_ScaleListEdit::swap(int first, int second)
{
    const int count = m_list.GetCount();
    if (first == second || std::min(first, second) < 0 || std::max(first, second) >= count)
        return;
    ScaleInfo *const a = rowAt(first), *const b = rowAt(second);
    std::swap(*a, *b);
    for (const int index : {first, second}) {
        ScaleInfo* const row = rowAt(index);
        m_list.DeleteString(UINT(index));
        m_list.InsertString(index, row->name);
        m_list.SetItemDataPtr(index, row);
    }
    m_list.SetCurSel(second);
}

// Buttons

void CDlg_ScaleListEdit::OnLbnSelchangeListScale()
{
    const ScaleInfo* row = rowAt(m_list.GetCurSel());
    if (!row)
        return;
    m_name = row->name;
    m_paperUnits = unitsText(row->paperUnits);
    m_drawingUnits = unitsText(row->drawingUnits);
    m_selectedId = row->id;
    UpdateData(false);
}

// A row of that very name takes the units; a new one goes on top.
void CDlg_ScaleListEdit::OnBnClickedAddOrEdit()
{
    UpdateData(true);
    const double paper = _wtof(m_paperUnits), drawing = _wtof(m_drawingUnits);
    if (m_name.IsEmpty() || !isUnits(paper) || !isUnits(drawing))
        return alertWithResourceId(6322);
    int index = indexOf(m_name);
    if (index == LB_ERR)
        insertRow(index = 0, {{}, m_name, paper, drawing, {}});
    rowAt(index)->paperUnits = paper;
    rowAt(index)->drawingUnits = drawing;
    m_list.SetCurSel(index);
}

void CDlg_ScaleListEdit::OnBnClickedMoveUp()
{
    const int selected = m_list.GetCurSel();
    if (selected == 0)
        return alertWithResourceId(6323);
    swap(selected, selected - 1);
}

void CDlg_ScaleListEdit::OnBnClickedMoveDown()
{
    const int selected = m_list.GetCurSel();
    if (selected == m_list.GetCount() - 1)
        return alertWithResourceId(6324);
    swap(selected, selected + 1);
}

void CDlg_ScaleListEdit::OnBnClickedDelete()
{
    const int selected = m_list.GetCurSel();
    if (const ScaleInfo* row = rowAt(selected)) {
        ScaleNames used;
        getUsedScaleList(used);
        if (isFullSize(row->name) || isUsed(used, row->name))
            return refuseToDelete(row->name);
        deleteRow(selected);
        m_list.SetCurSel(std::min(selected, m_list.GetCount() - 1));
    }
    if (m_list.GetCount() == 0)
        OnBnClickedReset();
}

// The drawing gets its defaults at once, and Cancel leaves it so.
void CDlg_ScaleListEdit::OnBnClickedReset()
{
    deleteAllRows();
    clear();
    initializeScales();
    load();
}

void CDlg_ScaleListEdit::OnBnClickedSort()
{
    std::vector<ScaleInfo> rows;
    for (int i = 0; i < m_list.GetCount(); ++i)
        rows.push_back(*rowAt(i));
    deleteAllRows();
    std::stable_sort(rows.begin(), rows.end(), [&](const ScaleInfo& a, const ScaleInfo& b) {
        const int order = a.name.Compare(b.name);
        return m_sortsUpward ? order < 0 : order > 0;
    });
    m_sortsUpward = !m_sortsUpward;
    for (const ScaleInfo& row : rows)
        insertRow(m_list.GetCount(), row);
    selectAndShow(0);
}

void CDlg_ScaleListEdit::OnBnClickedSetViewport()
{
    const ScaleInfo* row = rowAt(m_list.GetCurSel());
    if (!row)
        return;
    resbuf* filter = vcutBuildList(RTDXF0, L"VIEWPORT", RTNONE);
    vds_name viewports = {};
    const int status = vcedSSGet(nullptr, nullptr, nullptr, filter, viewports);
    vcutRelRb(filter);
    if (status != RTNORM)
        return;
    int count = 0;
    vcedSSLength(viewports, &count);
    for (int i = 0; i < count; ++i)
        setScale(viewports, i, *row);
    vcedSSFree(viewports);
}
