#include "ui/ScaleListEditForm.h"

#include "scale/ScaleListEditDlg.h"
#include "ui_ScaleListEditDialog.h"

namespace VKUI {

CDlg_ScaleListEdit::CDlg_ScaleListEdit(QWidget* parent, ::CDlg_ScaleListEdit* logic)
    : QBaseDialog(parent, logic), m_ui(std::make_unique<Ui::ScaleListEditDialog>())
{
    m_ui->setupUi(this);
    connect(m_ui->listWidget, SIGNAL(itemClicked(QListWidgetItem*)), this, SLOT(OnLbnSelchangeListScale()));
    // The same for those who work with the keys.
    connect(m_ui->listWidget, SIGNAL(currentRowChanged(int)), this, SLOT(OnLbnSelchangeListScale()));
    connect(m_ui->addEditBtn, SIGNAL(clicked()), this, SLOT(OnBnClickedAddOrEdit()));
    connect(m_ui->moveUpBtn, SIGNAL(clicked()), this, SLOT(OnBnClickedMoveUp()));
    connect(m_ui->moveDownBtn, SIGNAL(clicked()), this, SLOT(OnBnClickedMoveDown()));
    connect(m_ui->deleteBtn, SIGNAL(clicked()), this, SLOT(OnBnClickedDelete()));
    connect(m_ui->sortBtn, SIGNAL(clicked()), this, SLOT(OnBnClickedSort()));
    connect(m_ui->setViewBtn, SIGNAL(clicked()), this, SLOT(OnBnClickedSetViewport()));
    connect(m_ui->resetBtn, SIGNAL(clicked()), this, SLOT(OnBnClickedReset()));
    connect(m_ui->cancelBtn, SIGNAL(clicked()), this, SLOT(OnBnClickedCancel()));
    connect(m_ui->okBtn, SIGNAL(clicked()), this, SLOT(OnBnClickedOk()));

    logic->SetHandle(this);
    logic->SetAutoDelete(1);
    giveControls(*logic);
}

CDlg_ScaleListEdit::~CDlg_ScaleListEdit() = default;

void CDlg_ScaleListEdit::giveControls(::CDlg_ScaleListEdit& logic)
{
    logic.SetDlgItem(IDOK, m_ui->okBtn);
    logic.SetDlgItem(IDCANCEL, m_ui->cancelBtn);
    logic.SetDlgItem(kScaleList, m_ui->listWidget);
    logic.SetDlgItem(kNameEdit, m_ui->mainEdit);
    logic.SetDlgItem(kPaperEdit, m_ui->leftEdit);
    logic.SetDlgItem(kDrawingEdit, m_ui->rightEdit);
    logic.SetDlgItem(kAddEditButton, m_ui->addEditBtn);
    logic.SetDlgItem(kMoveUpButton, m_ui->moveUpBtn);
    logic.SetDlgItem(kMoveDownButton, m_ui->moveDownBtn);
    logic.SetDlgItem(kDeleteButton, m_ui->deleteBtn);
    logic.SetDlgItem(kSortButton, m_ui->sortBtn);
    logic.SetDlgItem(kSetViewportButton, m_ui->setViewBtn);
    logic.SetDlgItem(kResetButton, m_ui->resetBtn);
}

void CDlg_ScaleListEdit::OnLbnSelchangeListScale() { forward(&::CDlg_ScaleListEdit::OnLbnSelchangeListScale); }
void CDlg_ScaleListEdit::OnBnClickedAddOrEdit() { forward(&::CDlg_ScaleListEdit::OnBnClickedAddOrEdit); }
void CDlg_ScaleListEdit::OnBnClickedMoveUp() { forward(&::CDlg_ScaleListEdit::OnBnClickedMoveUp); }
void CDlg_ScaleListEdit::OnBnClickedMoveDown() { forward(&::CDlg_ScaleListEdit::OnBnClickedMoveDown); }
void CDlg_ScaleListEdit::OnBnClickedDelete() { forward(&::CDlg_ScaleListEdit::OnBnClickedDelete); }
void CDlg_ScaleListEdit::OnBnClickedSort() { forward(&::CDlg_ScaleListEdit::OnBnClickedSort); }
void CDlg_ScaleListEdit::OnBnClickedReset() { forward(&::CDlg_ScaleListEdit::OnBnClickedReset); }
void CDlg_ScaleListEdit::OnBnClickedCancel() { forward(&::CDlg_ScaleListEdit::OnBnClickedCancel); }
void CDlg_ScaleListEdit::OnBnClickedOk() { forward(&::CDlg_ScaleListEdit::OnBnClickedOk); }

// Viewports are picked when the dialog has closed; what the list then holds is what the drawing has.
void CDlg_ScaleListEdit::OnBnClickedSetViewport()
{
    auto* const logic = static_cast<::CDlg_ScaleListEdit*>(this->logic());
    if (!logic)
        return;
    logic->save();
    if (logic->UpdateData(true))
        logic->EndDialog(kPickViewports);
}

}  // namespace VKUI
