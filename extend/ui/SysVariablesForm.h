// The form of SYSVDLG.
#pragma once

#include "qbasedialog.h"

#include <memory>

class CDlg_SysVariables;

namespace Ui {
class DlgSysDialog;
}

namespace VKUI {

class CDlg_SysVariables : public QBaseDialog {
    Q_OBJECT

public:
    CDlg_SysVariables(QWidget* parent, ::CDlg_SysVariables* logic);
    ~CDlg_SysVariables() override;

private slots:
    void OnOk();
    void OnSelchangeList2(int row);
    void OnChangeEdit1();
    void OnKillFocusEdit2();
    void OnButtonSave();
    void OnButtonRead();

private:
    std::unique_ptr<Ui::DlgSysDialog> m_ui;

    void connectWidgets();
    void giveControls(::CDlg_SysVariables& logic);
};

}  // namespace VKUI
