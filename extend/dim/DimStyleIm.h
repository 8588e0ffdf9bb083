// The dialog of DIMIM: which file, and what becomes of styles that the drawing has already.
#pragma once

#include "classlib_dialogs.h"

class CDimStyleIm : public CDialog {
public:
    explicit CDimStyleIm(CWnd* parent = nullptr);
    ~CDimStyleIm() override;

    bool OnInitDialog() override;
    void OnOK() override;
    void DoDataExchange(CDataExchange* exchange) override;

    void OnButtonBrowse();

    const CStdStrW& FileName() const { return m_fileName; }
    int Option() const { return m_importOption; }

private:
    void CheckBox();
    void FillFileName();
    void FlashData();

    CEdit m_file;
    CStdStrW m_fileName;
    std::int32_t m_importOption = 0;
};

// The folder of the application, which relative paths of DIMIM begin with. Empty here: they stand as they are.
extern CStdStrW G_cAppPath;

// Runs the dialog; RTNORM on OK, else RTERROR.
int GetINPara(CStdStrW& path, int& importOption);
