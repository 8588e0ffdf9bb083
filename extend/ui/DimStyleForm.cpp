#include "ui/DimStyleForm.h"

#include "classlib_dialogs.h"
#include "dim/DimDialogs.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace VKUI {

void DimStyleForm::setUp(CDialog& logic, const Widgets& widgets)
{
    connect(widgets.browse, SIGNAL(clicked()), this, SLOT(OnButtonBrowse()));
    connect(widgets.cancel, SIGNAL(clicked()), this, SLOT(reject()));
    connect(widgets.ok, SIGNAL(clicked()), this, SLOT(OnOK()));

    logic.SetHandle(this);
    logic.SetAutoDelete(1);
    logic.SetDlgItem(IDOK, widgets.ok);
    logic.SetDlgItem(IDCANCEL, widgets.cancel);
    logic.SetDlgItem(kBrowseButton, widgets.browse);
    logic.SetDlgItem(kFileEdit, widgets.file);
    logic.SetDlgItem(kFirstOption, widgets.firstOption);
    logic.SetDlgItem(kSecondOption, widgets.secondOption);
}

}  // namespace VKUI
