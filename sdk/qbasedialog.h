// QBaseDialog: the base of forms. Esc, the close button, accept() and reject() go to the logic object.
#pragma once

#include "vkdefs.h"

#include <QDialog>
#include <QPointer>

class CDialog;

class VK_SDK QBaseDialog : public QDialog {
    Q_OBJECT

public:
    explicit QBaseDialog(QWidget* parent, CDialog* logic);
    ~QBaseDialog() override;

    // Called when the logic goes before its form.
    void forgetLogic() { m_logic = nullptr; }

public slots:
    void OnOK();
    void OnCancel();
    void accept() override;
    void reject() override;

protected:
    CDialog* logic() const { return m_logic; }
    // Calls a member of the logic, unless it has gone.
    template <class Logic, class Result, class... Parameters, class... Arguments>
    void forward(Result (Logic::*member)(Parameters...), Arguments... arguments)
    {
        if (m_logic)
            (static_cast<Logic*>(m_logic)->*member)(arguments...);
    }
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    CDialog* m_logic;
};
