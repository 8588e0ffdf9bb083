// The form of TCASE.
#pragma once

#include "qbasedialog.h"

#include <memory>

class TcaseDlg;

namespace Ui {
class TCaseDialog;
}

namespace VKUI {

class TcaseDlg : public QBaseDialog {
    Q_OBJECT

public:
    TcaseDlg(QWidget* parent, ::TcaseDlg* logic);
    ~TcaseDlg() override;

private slots:
    void OnRadio1();
    void OnRadio2();
    void OnRadio3();
    void OnRadio4();
    void OnRadio5();

private:
    std::unique_ptr<Ui::TCaseDialog> m_ui;
};

}  // namespace VKUI
