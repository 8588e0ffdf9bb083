// The options of TXT2MTXT: the order of the texts, and what joins them.
#pragma once

#include "classlib_dialogs.h"

class DialogTxt2MTxt : public CDialog {
public:
    explicit DialogTxt2MTxt(CWnd* parent);
    ~DialogTxt2MTxt() override;

    void DoDataExchange(CDataExchange* exchange) override;
    bool OnInitDialog() override;
    // Remembers the choice.
    void OnOK() override;

    void OnRadio1();
    void OnRadio2();

private:
    void show(int flag);
    int flag() const;

    bool m_wordWrap = false;
    bool m_selectionOrder = false;
    bool m_sortTopDown = true;
    CButton* m_selectionButton = nullptr;
    CButton* m_wordWrapBox = nullptr;
    CButton* m_sortButton = nullptr;
};
