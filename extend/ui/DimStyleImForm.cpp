#include "ui/DimStyleImForm.h"

#include "dim/DimDialogs.h"
#include "dim/DimStyleIm.h"
#include "ui_CDimStyleIm.h"

namespace VKUI {

CDimStyleIm::CDimStyleIm(QWidget* parent, ::CDimStyleIm* logic)
    : QBaseDialog(parent, logic), m_ui(std::make_unique<Ui::CDimStyleIm>())
{
    m_ui->setupUi(this);
    connect(m_ui->pBtnBrowse, SIGNAL(clicked()), this, SLOT(OnButtonBrowse()));
    connect(m_ui->pBtnCancel, SIGNAL(clicked()), this, SLOT(reject()));
    connect(m_ui->pBtnOK, SIGNAL(clicked()), this, SLOT(OnOK()));

    logic->SetHandle(this);
    logic->SetAutoDelete(1);
    logic->SetDlgItem(IDOK, m_ui->pBtnOK);
    logic->SetDlgItem(IDCANCEL, m_ui->pBtnCancel);
    logic->SetDlgItem(kBrowseButton, m_ui->pBtnBrowse);
    logic->SetDlgItem(kFileEdit, m_ui->lEditImportFilenname);
    logic->SetDlgItem(kFirstOption, m_ui->rBtnKeepExistingStyle);
    logic->SetDlgItem(kSecondOption, m_ui->rBtnOverwriteExistingStyle);
}

CDimStyleIm::~CDimStyleIm() = default;

void CDimStyleIm::OnButtonBrowse() { forward(&::CDimStyleIm::OnButtonBrowse); }

}  // namespace VKUI
