#include "text/DialogTxt2MTxt.h"

#include "core/ExtendUtils.h"
#include "ui/DialogTxt2MTxtForm.h"

namespace {

constexpr UINT kTemplate = 2345;
constexpr int kSelection = 2005, kSortTopDown = 2006, kWordWrap = 2025;
constexpr const wchar_t* kCheckFlag = L"CheckFlag";

// Flags 0 to 3: the order in the low bit, the joining in the high one.
constexpr int kTopDownBit = 1, kLineBreaksBit = 2, kFlags = 4;

}  // namespace

DialogTxt2MTxt::DialogTxt2MTxt(CWnd* parent) : CDialog(kTemplate, parent) { new VKUI::DialogTxt2MTxt(nullptr, this); }

DialogTxt2MTxt::~DialogTxt2MTxt() = default;

void DialogTxt2MTxt::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
    DDX_Check(exchange, kWordWrap, m_wordWrap);
}

bool DialogTxt2MTxt::OnInitDialog()
{
    CDialog::OnInitDialog();
    m_selectionButton = static_cast<CButton*>(GetDlgItem(kSelection));
    m_sortButton = static_cast<CButton*>(GetDlgItem(kSortTopDown));
    m_wordWrapBox = static_cast<CButton*>(GetDlgItem(kWordWrap));
    int flag = 0;
    GetEledimCheckReg(flag, kCheckFlag);
    show(flag);
    return true;
}

// A flag of another program's leaves what the dialog starts with: line breaks, from the top down.
void DialogTxt2MTxt::show(int flag)
{
    if (flag >= 0 && flag < kFlags) {
        m_wordWrap = !(flag & kLineBreaksBit);
        m_sortTopDown = (flag & kTopDownBit) != 0;
        m_selectionOrder = !m_sortTopDown;
    }
    m_wordWrapBox->SetCheck(m_wordWrap);
    m_selectionButton->SetCheck(m_selectionOrder);
    m_sortButton->SetCheck(m_sortTopDown);
}

int DialogTxt2MTxt::flag() const { return (m_wordWrap ? 0 : kLineBreaksBit) + (m_sortTopDown ? kTopDownBit : 0); }

void DialogTxt2MTxt::OnRadio1()
{
    m_selectionOrder = true;
    m_sortTopDown = false;
}

void DialogTxt2MTxt::OnRadio2()
{
    m_selectionOrder = false;
    m_sortTopDown = true;
}

void DialogTxt2MTxt::OnOK()
{
    if (!UpdateData(true))
        return;
    SetEledimCheckReg(flag(), kCheckFlag);
    EndDialog(IDOK);
}
