// What the forms of DIMEX and DIMIM have in common: a file with its button, two options, OK and Cancel.
#pragma once

#include "qbasedialog.h"

class QLineEdit;
class QPushButton;
class QRadioButton;

namespace VKUI {

class DimStyleForm : public QBaseDialog {
    Q_OBJECT

protected:
    struct Widgets {
        QLineEdit* file;
        QPushButton* browse;
        QRadioButton* firstOption;
        QRadioButton* secondOption;
        QPushButton* ok;
        QPushButton* cancel;
    };

    using QBaseDialog::QBaseDialog;
    // Connects the widgets and hands the form over to its logic, which owns it from then on.
    void setUp(CDialog& logic, const Widgets& widgets);

protected slots:
    virtual void OnButtonBrowse() = 0;
};

}  // namespace VKUI
