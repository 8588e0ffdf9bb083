#include "ui/DialogTxt2MTxtForm.h"

#include "text/DialogTxt2MTxt.h"
#include "ui_DialogTxt2MTxt.h"

namespace VKUI {

DialogTxt2MTxt::DialogTxt2MTxt(QWidget* parent, ::DialogTxt2MTxt* logic)
    : QBaseDialog(parent, logic), m_ui(std::make_unique<Ui::DialogTxt2MTxt>())
{
    m_ui->setupUi(this);
    connect(m_ui->rBtnSelection, SIGNAL(clicked()), this, SLOT(On_rBtnSelection_clicked()));
    connect(m_ui->rBtnSortTopDown, SIGNAL(clicked()), this, SLOT(On_rBtnSortTopDown_clicked()));
    connect(m_ui->checkBoxCreateWordWrapMtext, SIGNAL(clicked()), this, SLOT(On_checkBoxCreateWordWrapMtext_clicked()));
    connect(m_ui->pBtnOK, SIGNAL(clicked()), this, SLOT(On_pBtnOK_clicked()));
    connect(m_ui->pBtnCancel, SIGNAL(clicked()), this, SLOT(On_pBtnCancel_clicked()));

    logic->SetHandle(this);
    logic->SetAutoDelete(1);
    logic->SetDlgItem(IDOK, m_ui->pBtnOK);
    logic->SetDlgItem(IDCANCEL, m_ui->pBtnCancel);
    logic->SetDlgItem(2005, m_ui->rBtnSelection);
    logic->SetDlgItem(2006, m_ui->rBtnSortTopDown);
    logic->SetDlgItem(2025, m_ui->checkBoxCreateWordWrapMtext);
}

DialogTxt2MTxt::~DialogTxt2MTxt() = default;

void DialogTxt2MTxt::On_rBtnSelection_clicked() { forward(&::DialogTxt2MTxt::OnRadio1); }
void DialogTxt2MTxt::On_rBtnSortTopDown_clicked() { forward(&::DialogTxt2MTxt::OnRadio2); }
void DialogTxt2MTxt::On_checkBoxCreateWordWrapMtext_clicked() { forward(&CWnd::UpdateData, true); }
void DialogTxt2MTxt::On_pBtnOK_clicked() { OnOK(); }
void DialogTxt2MTxt::On_pBtnCancel_clicked() { OnCancel(); }

}  // namespace VKUI
