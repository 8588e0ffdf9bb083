// The form of the options of TXT2MTXT.
#pragma once

#include "qbasedialog.h"

#include <memory>

class DialogTxt2MTxt;

namespace Ui {
class DialogTxt2MTxt;
}

namespace VKUI {

class DialogTxt2MTxt : public QBaseDialog {
    Q_OBJECT

public:
    DialogTxt2MTxt(QWidget* parent, ::DialogTxt2MTxt* logic);
    ~DialogTxt2MTxt() override;

private slots:
    void On_rBtnSelection_clicked();
    void On_rBtnSortTopDown_clicked();
    void On_checkBoxCreateWordWrapMtext_clicked();
    void On_pBtnOK_clicked();
    void On_pBtnCancel_clicked();

private:
    std::unique_ptr<Ui::DialogTxt2MTxt> m_ui;
};

}  // namespace VKUI
