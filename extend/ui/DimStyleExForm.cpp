#include "ui/DimStyleExForm.h"

#include "dim/DimDialogs.h"
#include "dim/DimStyleEx.h"
#include "ui_CDimStyleEx.h"

namespace VKUI {

CDimStyleEx::CDimStyleEx(QWidget* parent, ::CDimStyleEx* logic)
    : QBaseDialog(parent, logic), m_ui(std::make_unique<Ui::CDimStyleEx>())
{
    m_ui->setupUi(this);
    connect(m_ui->pBtnExportFileName, SIGNAL(clicked()), this, SLOT(OnButtonBrowse()));
    connect(m_ui->listWidget, SIGNAL(itemSelectionChanged()), this, SLOT(OnSelchangeListStyle()));
    connect(m_ui->pBtnCancel, SIGNAL(clicked()), this, SLOT(reject()));
    connect(m_ui->pBtnOK, SIGNAL(clicked()), this, SLOT(OnOK()));

    logic->SetHandle(this);
    logic->SetAutoDelete(1);
    logic->SetDlgItem(IDOK, m_ui->pBtnOK);
    logic->SetDlgItem(IDCANCEL, m_ui->pBtnCancel);
    logic->SetDlgItem(kBrowseButton, m_ui->pBtnExportFileName);
    logic->SetDlgItem(kFileEdit, m_ui->lEditExportFileName);
    logic->SetDlgItem(kStyleList, m_ui->listWidget);
    logic->SetDlgItem(kFirstOption, m_ui->rBtnTextStyleNameOnly);
    logic->SetDlgItem(kSecondOption, m_ui->rBtnFullTextStyleInformation);
}

CDimStyleEx::~CDimStyleEx() = default;

void CDimStyleEx::OnButtonBrowse() { forward(&::CDimStyleEx::OnButtonBrowse); }
void CDimStyleEx::OnSelchangeListStyle() { forward(&::CDimStyleEx::OnSelchangeListStyle); }

}  // namespace VKUI
