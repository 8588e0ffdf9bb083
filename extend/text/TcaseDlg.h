// The dialog of TCASE: one of five conversions, which OK carries out on the selection.
#pragma once

#include "classlib_dialogs.h"

// The conversions, as the profile remembers them.
enum CaseChoice : int {
    kSentenceCase = 'S',
    kLowerCase = 'L',
    kUpperCase = 'U',
    kTitleCase = 'T',
    kToggleCase = 'G',
};

class TcaseDlg : public CDialog {
public:
    TcaseDlg(CWnd* parent, const vds_name selection);
    ~TcaseDlg() override;

    bool OnInitDialog() override;
    void OnOK() override;

    void OnRadio1() { m_choice = kSentenceCase; }
    void OnRadio2() { m_choice = kLowerCase; }
    void OnRadio3() { m_choice = kUpperCase; }
    void OnRadio4() { m_choice = kTitleCase; }
    void OnRadio5() { m_choice = kToggleCase; }

    // Whether the text holds one of the symbols that fonts draw in a way of their own.
    static bool includeSymbol(const wchar_t* text);

private:
    vds_name m_selection;
    std::int32_t m_choice = kSentenceCase;
    CWnd* m_checkedButton = nullptr;
};
