#include "text/TcaseDlg.h"

#include "text/TextCase.h"
#include "ui/TcaseDlgForm.h"
#include "vcdb_chains.h"
#include "vcdb_text.h"
#include "vced.h"
#include "vcui.h"
#include "vcut.h"

#include <algorithm>

namespace {

constexpr UINT kTemplate = 2366;
constexpr const wchar_t* kSection = L"TcaseDialog";
constexpr const wchar_t* kLastChoice = L"LastChoiced";

struct Conversion {
    int choice;
    int controlId;
    void (*convert)(wchar_t*& text, bool isMText);
    bool regardsMText;
};

constexpr Conversion kConversions[] = {
    {kSentenceCase, 2005, &tcase_sentence, false}, {kLowerCase, 2006, &tcase_lower, true},
    {kUpperCase, 2021, &tcase_upper, true},        {kTitleCase, 2022, &tcase_title, false},
    {kToggleCase, 2023, &tcase_change, false},
};

// Null for a value that some other program has stored.
const Conversion* conversionOf(int choice)
{
    const auto found = std::ranges::find(kConversions, choice, &Conversion::choice);
    return found == std::end(kConversions) ? nullptr : &*found;
}

void convertString(wchar_t*& text, const Conversion* conversion, bool isMText)
{
    if (conversion)
        conversion->convert(text, isMText && conversion->regardsMText);
}

void convertEntity(VcDbEntity& entity, const Conversion* conversion)
{
    VcDbMText* many = VcDbMText::cast(&entity);
    VcDbText* one = many ? nullptr : VcDbText::cast(&entity);
    if (entity.hasFields() || !(many || one))
        return;
    wchar_t* text = many ? many->contents() : one->textString();
    convertString(text, conversion, many != nullptr);
    if (many)
        many->setContents(text);
    else
        one->setTextString(text);
    vcutDelString(text);
}

// What cannot be opened, on a locked layer for one, stays as it is.
void convertMember(const vds_name selection, int index, const Conversion* conversion)
{
    vds_name name = {};
    VcDbObjectId id;
    VcDbEntity* entity = nullptr;
    if (vcedSSName(selection, index, name) != RTNORM || vcdbGetObjectId(id, name) != Vcad::eOk ||
        vcdbOpenObject(entity, id, VcDb::kForWrite) != Vcad::eOk)
        return;
    convertEntity(*entity, conversion);
    entity->close();
}

}  // namespace

TcaseDlg::TcaseDlg(CWnd* parent, const vds_name selection) : CDialog(kTemplate, parent)
{
    std::copy_n(selection, 2, m_selection);
    new VKUI::TcaseDlg(nullptr, this);
}

TcaseDlg::~TcaseDlg() = default;

bool TcaseDlg::OnInitDialog()
{
    CDialog::OnInitDialog();
    m_choice = int(vcedGetVkadWinApp()->GetProfileInt(kSection, kLastChoice, m_choice));
    const Conversion* conversion = conversionOf(m_choice);
    m_checkedButton = GetDlgItem(conversion ? conversion->controlId : kConversions[0].controlId);
    static_cast<CButton*>(m_checkedButton)->SetCheck(1);
    return true;
}

void TcaseDlg::OnOK()
{
    int length = 0;
    vcedSSLength(m_selection, &length);
    const Conversion* conversion = conversionOf(m_choice);
    for (int i = 0; i < length; ++i)
        convertMember(m_selection, i, conversion);
    vcedGetVkadWinApp()->WriteProfileInt(kSection, kLastChoice, m_choice);
    CDialog::OnOK();
}

bool TcaseDlg::includeSymbol(const wchar_t* text)
{
    static constexpr wchar_t kSymbols[] = {8776,  8736, 57600, 8452, 916,  632,  57601, 8801, 57856,
                                           57602, 8800, 8486,  937,  8522, 8322, 178,   179,  0};
    return text && std::wcspbrk(text, kSymbols) != nullptr;
}
