#include "ui/SysVariablesForm.h"

#include "sysvar/Dlg_SysVariables.h"
#include "ui_DlgSysDialog.h"

#include <QSignalBlocker>

namespace VKUI {

CDlg_SysVariables::CDlg_SysVariables(QWidget* parent, ::CDlg_SysVariables* logic)
    : QBaseDialog(parent, logic), m_ui(std::make_unique<Ui::DlgSysDialog>())
{
    m_ui->setupUi(this);
    connectWidgets();
    logic->SetHandle(this);
    logic->SetAutoDelete(1);
    giveControls(*logic);
}

CDlg_SysVariables::~CDlg_SysVariables() = default;

void CDlg_SysVariables::connectWidgets()
{
    connect(m_ui->pBtnOK, SIGNAL(clicked()), this, SLOT(OnOk()));
    connect(m_ui->pBtnCancel, SIGNAL(clicked()), this, SLOT(OnCancel()));
    connect(m_ui->listWidget, SIGNAL(currentRowChanged(int)), this, SLOT(OnSelchangeList2(int)));
    connect(m_ui->lEditSearch, SIGNAL(textChanged(const QString&)), this, SLOT(OnChangeEdit1()));
    connect(m_ui->lEditNewValue, SIGNAL(editingFinished()), this, SLOT(OnKillFocusEdit2()));
    connect(m_ui->pBtnSaveFilter, SIGNAL(clicked()), this, SLOT(OnButtonSave()));
    connect(m_ui->pBtnRead, SIGNAL(clicked()), this, SLOT(OnButtonRead()));
}

void CDlg_SysVariables::giveControls(::CDlg_SysVariables& logic)
{
    logic.SetDlgItem(IDOK, m_ui->pBtnOK);
    logic.SetDlgItem(IDCANCEL, m_ui->pBtnCancel);
    logic.SetDlgItem(kSearchEdit, m_ui->lEditSearch);
    logic.SetDlgItem(kNameList, m_ui->listWidget);
    logic.SetDlgItem(kNewValueEdit, m_ui->lEditNewValue);
    logic.SetDlgItem(kCurrentEdit, m_ui->lEditCurrent);
    logic.SetDlgItem(kInitialEdit, m_ui->lEditInitial);
    logic.SetDlgItem(kSavedInEdit, m_ui->lEditSavedIn);
    logic.SetDlgItem(kTypeEdit, m_ui->lEditType);
    logic.SetDlgItem(kDescriptionText, m_ui->tEditDescription);
}

// A button that is pressed by its key does not take the focus, which would leave the value in hand behind.
void CDlg_SysVariables::OnOk()
{
    m_ui->pBtnOK->setFocus();
    OnOK();
}

// A press of the mouse makes a row current before it selects it.
void CDlg_SysVariables::OnSelchangeList2(int row)
{
    m_ui->listWidget->setCurrentRow(row, QItemSelectionModel::ClearAndSelect);
    forward(&::CDlg_SysVariables::OnSelchangeList2);
}

void CDlg_SysVariables::OnChangeEdit1()
{
    const QSignalBlocker quiet(m_ui->lEditSearch);
    const int cursor = m_ui->lEditSearch->cursorPosition();
    m_ui->lEditSearch->setText(m_ui->lEditSearch->text().toUpper());
    m_ui->lEditSearch->setCursorPosition(cursor);
    forward(&::CDlg_SysVariables::OnChangeEdit1);
}

void CDlg_SysVariables::OnKillFocusEdit2() { forward(&::CDlg_SysVariables::OnKillFocusEdit2); }
void CDlg_SysVariables::OnButtonSave() { forward(&::CDlg_SysVariables::OnButtonSave); }
void CDlg_SysVariables::OnButtonRead() { forward(&::CDlg_SysVariables::OnButtonRead); }

}  // namespace VKUI
