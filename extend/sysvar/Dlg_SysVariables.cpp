#include "sysvar/Dlg_SysVariables.h"

#include "core/ExtendUtils.h"
#include "core/PublicFunction.h"
#include "sysvar/SysvarValues.h"
#include "ui/SysVariablesForm.h"
#include "vced.h"
#include "vchost.h"
#include "vcui.h"
#include "vcut.h"

#include <iterator>

namespace {

constexpr UINT kTemplate = 2077;
constexpr int kLongestValue = 2048;
constexpr const wchar_t* kAlertTitle = L"Sysvdlg Alert";

CStdStrW programFolder()
{
    wchar_t path[4096] = {};
    GetModuleFileNameW(GetModuleHandleW(L"vekad.exe"), path, std::size(path));
    const CStdStrW program = path;
    return program.Left(program.ReverseFind(L'/'));
}

CStdStrW cataloguePath()
{
    return CStdStrW(vcdbHostApplicationServices()->getInstallFolder()) + L"Support/SYSVDLG.DAT";
}

bool beginsWith(const CStdStrW& text, const CStdStrW& front) { return text.str().starts_with(front.str()); }

CStdStrW wholeText(VcCStdioFile& file)
{
    CStdStrW text, line;
    while (file.ReadString(line))
        text += line + L"\n";
    return text;
}

CStdStrW logFileName()
{
    wchar_t drawing[1024] = {};
    get_acad_str_var(L"DWGNAME", drawing, std::size(drawing));
    CStdStrW name = drawing;
    if (const int dot = name.ReverseFind(L'.'); dot >= 0)
        name = name.Left(dot);
    return L"sysvdlg_" + name + L".err";
}

}  // namespace

CDlg_SysVariables::CDlg_SysVariables(CWnd* parent) : CDialog(kTemplate, parent), m_hostFolder(programFolder())
{
    new VKUI::CDlg_SysVariables(nullptr, this);
}

CDlg_SysVariables::~CDlg_SysVariables() = default;

void CDlg_SysVariables::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, kSearchEdit, m_search);
    DDX_Control(exchange, kNameList, m_list);
    DDX_Control(exchange, kNewValueEdit, m_newValue);
    DDX_Control(exchange, kCurrentEdit, m_current);
    DDX_Control(exchange, kInitialEdit, m_initial);
    DDX_Control(exchange, kSavedInEdit, m_savedIn);
    DDX_Control(exchange, kTypeEdit, m_type);
    DDX_Control(exchange, kDescriptionText, m_description);
}

bool CDlg_SysVariables::OnInitDialog()
{
    CDialog::OnInitDialog();
    m_newValue.LimitText(kLongestValue);
    readRecords();
    m_position = m_records.IsEmpty() ? -1 : 0;
    m_list.SetCurSel(m_position);
    OnSelchangeList2();
    return true;
}

void CDlg_SysVariables::readRecords()
{
    const std::wstring text = readCatalogue(cataloguePath());
    CatalogueReader reader(text);
    for (SysvarData record; reader.next(record);)
        if (InitSysvarCurrentAndNewValByName(&record)) {
            m_records.Add(record);
            m_list.AddString(record.name);
        }
}

bool CDlg_SysVariables::InitSysvarCurrentAndNewValByName(SysvarData* record)
{
    resbuf value = {};
    if (!record || vcedGetVar(record->name, &value) != RTNORM)
        return false;
    takeValue(*record, value);
    releaseValue(value);
    return true;
}

int CDlg_SysVariables::selectedRecord() const
{
    const int row = m_list.GetCurSel();
    if (row < 0 || m_records.IsEmpty())
        return -1;
    CStdStrW name;
    m_list.GetText(row, name);
    if (m_records.GetAt(row).name == name)
        return row;
    for (int i = 0; i < m_records.GetSize(); ++i)
        if (m_records.GetAt(i).name == name)
            return i;
    return -1;
}

void CDlg_SysVariables::OnSelchangeList2()
{
    m_entry = selectedRecord();
    if (m_entry < 0)
        showNothing();
    else
        show(m_records.GetAt(m_entry));
}

void CDlg_SysVariables::show(const SysvarData& record)
{
    CStdStrW description = record.description;
    description.Replace(L"\\n", L"\r\n");
    description.Replace(L"\\t", L"\t");
    m_newValue.SetWindowTextW(record.newValue);
    m_current.SetWindowTextW(record.current);
    m_initial.SetWindowTextW(record.initial);
    m_savedIn.SetWindowTextW(record.savedIn);
    m_type.SetWindowTextW(record.type);
    m_description.SetWindowTextW(description);
    m_newValue.EnableWindow(!record.readOnly);
}

// What the search leaves no name for must not look as if it could be changed.
void CDlg_SysVariables::showNothing()
{
    show({});
    m_newValue.EnableWindow(false);
}

void CDlg_SysVariables::OnChangeEdit1()
{
    showNames();
    m_list.SetCurSel(m_list.GetCount() > 0 ? 0 : -1);
    OnSelchangeList2();
}

void CDlg_SysVariables::showNames()
{
    const CStdStrW front = m_search.GetWindowTextW();
    m_list.ResetContent();
    for (int i = 0; i < m_records.GetSize(); ++i)
        if (beginsWith(m_records.GetAt(i).name, front))
            m_list.AddString(m_records.GetAt(i).name);
}

void CDlg_SysVariables::OnKillFocusEdit2()
{
    const int at = selectedRecord();
    if (at >= 0)
        m_records.GetAt(at).newValue = m_newValue.GetWindowTextW();
}

CStringArray CDlg_SysVariables::shownNames() const
{
    CStringArray names;
    for (int i = 0; i < m_list.GetCount(); ++i) {
        CStdStrW name;
        m_list.GetText(i, name);
        names.Add(name);
    }
    return names;
}

void CDlg_SysVariables::OnButtonSave()
{
    CStdStrW path;
    if (vcedGetFileNavDialog(StringFromID(2092), nullptr, L"svf;scr", kFileNavSave, path) != RTNORM)
        return;
    VcCStdioFile file;
    if (!file.Open(path, CFile::modeCreate | CFile::modeWrite))
        return;
    file.WriteString(filterText(path, m_records, shownNames()));
    file.Close();
    if (file.Failed())
        vcutPrintf(StringFromID(2401), path);
}

void CDlg_SysVariables::OnButtonRead()
{
    CStdStrW path;
    const int status = vcedGetFileNavDialog(StringFromID(2089), nullptr, L"svf", 0, path);
    m_readErrors.Empty();
    m_readErrorCount = 0;
    VcCStdioFile file;
    if (status != RTNORM || !file.Open(path, CFile::modeRead))
        return;
    if (file.readBOM())
        file.setUseCIF(false);
    applyFilter(wholeText(file));
    file.Close();
    OnSelchangeList2();
    reportReading();
}

void CDlg_SysVariables::applyFilter(const CStdStrW& text)
{
    const SysvarIndex writable(m_records, SysvarIndex::Underscore::Optional,
                               [](const SysvarData& record) { return !record.readOnly; });
    for (int from = 0, end; (end = text.Find(L'\n', from)) >= 0; from = end + 1) {
        const auto line = parseFilterLine(text.Mid(from, end - from));
        const int at = line ? writable.find(line->name) : -1;
        if (at < 0)
            continue;
        SysvarData record = m_records.GetAt(at);
        record.newValue = line->value;
        m_records.SetAt(at, record);
        if (!set_acad_int_var(record, line->value))
            ++m_readErrorCount;
    }
}

bool CDlg_SysVariables::set_acad_int_var(const SysvarData& record, const wchar_t* value)
{
    resbuf node = {};
    const bool isSet = makeValue(record, value, node) && vcedSetVar(record.name, &node) == RTNORM;
    releaseValue(node);
    if (!isSet)
        m_readErrors += record.name + L" - Read error: Could not set value in VEKAD.\r\n\r\n";
    return isSet;
}

void CDlg_SysVariables::reportReading()
{
    if (m_readErrors.IsEmpty()) {
        MessageBoxW(StringFromID(2090), kAlertTitle);
        return;
    }
    const CStdStrW fileName = logFileName();
    wchar_t text[256];
    vcutSPrintf(text, std::size(text), StringFromID(2091), m_readErrorCount, fileName);
    if (writeLog(fileName))
        MessageBoxW(text, kAlertTitle);
}

bool CDlg_SysVariables::writeLog(const CStdStrW& fileName) const
{
    VcCStdioFile file;
    if (!file.Open(m_hostFolder + L"\\" + fileName, CFile::modeCreate | CFile::modeWrite))
        return false;
    file.setUseCIF(false);
    file.setCharFormat(CStdioFile::kUtf8);
    file.writeBOM();
    file.WriteString(m_readErrors);
    file.Close();
    return true;
}

void CDlg_SysVariables::OnCancel()
{
    if (VkMainAppService* service = vekadMainAppService())
        service->dialogCancelled();
    CDialog::OnCancel();
}
