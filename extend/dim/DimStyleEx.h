// The dialog of DIMEX: which styles go to which file, and how much of their text styles.
#pragma once

#include "classlib_arrays.h"
#include "classlib_dialogs.h"

class CDimStyleEx : public CDialog {
public:
    explicit CDimStyleEx(CWnd* parent = nullptr);
    ~CDimStyleEx() override;

    bool OnInitDialog() override;
    void OnOK() override;
    void DoDataExchange(CDataExchange* exchange) override;

    void OnButtonBrowse();
    void OnSelchangeListStyle() {}

    const CStdStrW& FileName() const { return m_fileName; }
    const CStringArray& ChosenStyles() const { return m_chosen; }
    int TextStyleOption() const { return m_textStyleOption; }

private:
    void FillListBox();
    void CheckBox();
    void FillFileName();
    // Whether a style is chosen; says so on the command line when none is.
    bool CheckData();
    void FlashData();

    CStatic m_static;
    CEdit m_file;
    CListBox m_styles;
    CStdStrW m_fileName;
    CStringArray m_chosen;
    std::int32_t m_textStyleOption = 0;
};

// Runs the dialog; RTNORM on OK, else RTERROR.
int GetOutPara(CStringArray& names, CStdStrW& path, int& textStyleOption);
