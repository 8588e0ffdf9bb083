#include "dim/DimStyleEx.h"

#include "core/ExtendUtils.h"
#include "core/PublicFunction.h"
#include "dim/DimDialogs.h"
#include "dim/OwnedChain.h"
#include "ui/DimStyleExForm.h"
#include "vcdb_chains.h"
#include "vced.h"
#include "vcui.h"

namespace {

constexpr UINT kTemplate = 2001;

// Files go beside the drawing unless the person says otherwise; one that was never saved has no place yet.
CStdStrW besideDrawing(const CStdStrW& name)
{
    constexpr std::size_t kSize = 1024;
    wchar_t buffer[kSize] = {};
    get_acad_str_var(L"DWGPREFIX", buffer, kSize);
    const CStdStrW folder = buffer;
    if (folder.IsEmpty() || folder.Right(1) == L"/")
        return folder + name;
    return folder + L"/" + name;
}

}  // namespace

CDimStyleEx::CDimStyleEx(CWnd* parent) : CDialog(kTemplate, parent) { new VKUI::CDimStyleEx(nullptr, this); }

CDimStyleEx::~CDimStyleEx() = default;

void CDimStyleEx::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, kStaticText, m_static);
    DDX_Control(exchange, kFileEdit, m_file);
    DDX_Control(exchange, kStyleList, m_styles);
    DDX_Text(exchange, kFileEdit, m_fileName);
}

bool CDimStyleEx::OnInitDialog()
{
    CDialog::OnInitDialog();
    FillListBox();
    CheckBox();
    FillFileName();
    return true;
}

void CDimStyleEx::FillListBox()
{
    m_styles.ResetContent();
    for (OwnedChain record(vcdbTblNext(L"DIMSTYLE", 1)); record; record.reset(vcdbTblNext(L"DIMSTYLE", 0)))
        if (const resbuf* name = dxf(record.get(), 2))
            m_styles.AddString(name->resval.rstring);
}

void CDimStyleEx::CheckBox() { checkOption(*this, m_textStyleOption); }

// The member keeps the bare name, which the file dialog offers.
void CDimStyleEx::FillFileName()
{
    m_fileName = dimFileName();
    m_file.SetWindowTextW(besideDrawing(m_fileName));
}

void CDimStyleEx::OnButtonBrowse()
{
    if (browseForDimFile(*this, false, m_fileName, m_fileName))
        m_file.SetWindowTextW(m_fileName);
}

void CDimStyleEx::OnOK()
{
    UpdateData(true);
    if (!CheckData())
        return;
    FlashData();
    CDialog::OnOK();
}

bool CDimStyleEx::CheckData()
{
    if (m_styles.GetSelCount() > 0)
        return true;
    vcutPrintf(L"%s", StringFromID(2012));
    return false;
}

void CDimStyleEx::FlashData()
{
    m_textStyleOption = checkedOption(*this);
    m_file.GetWindowTextW(m_fileName);
    m_chosen.RemoveAll();
    for (int i = 0; i < m_styles.GetCount(); ++i) {
        CStdStrW name;
        if (m_styles.GetSel(i) <= 0)
            continue;
        m_styles.GetText(i, name);
        m_chosen.Add(name);
    }
}

int GetOutPara(CStringArray& names, CStdStrW& path, int& textStyleOption)
{
    CDimStyleEx dialog(vcedGetVkadFrame());
    if (dialog.DoModal() != IDOK)
        return RTERROR;
    names.Append(dialog.ChosenStyles());
    path = dialog.FileName();
    textStyleOption = dialog.TextStyleOption();
    return RTNORM;
}
