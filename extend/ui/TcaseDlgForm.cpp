#include "ui/TcaseDlgForm.h"

#include "text/TcaseDlg.h"
#include "ui_TCaseDialog.h"

namespace VKUI {

TcaseDlg::TcaseDlg(QWidget* parent, ::TcaseDlg* logic)
    : QBaseDialog(parent, logic), m_ui(std::make_unique<Ui::TCaseDialog>())
{
    m_ui->setupUi(this);
    connect(m_ui->sentenceBtn, SIGNAL(clicked()), this, SLOT(OnRadio1()));
    connect(m_ui->lowerBtn, SIGNAL(clicked()), this, SLOT(OnRadio2()));
    connect(m_ui->upperBtn, SIGNAL(clicked()), this, SLOT(OnRadio3()));
    connect(m_ui->titleBtn, SIGNAL(clicked()), this, SLOT(OnRadio4()));
    connect(m_ui->toggleBtn, SIGNAL(clicked()), this, SLOT(OnRadio5()));
    connect(m_ui->cancelBtn, SIGNAL(clicked()), this, SLOT(OnCancel()));
    connect(m_ui->okBtn, SIGNAL(clicked()), this, SLOT(OnOK()));

    logic->SetHandle(this);
    logic->SetAutoDelete(1);
    logic->SetDlgItem(IDOK, m_ui->okBtn);
    logic->SetDlgItem(IDCANCEL, m_ui->cancelBtn);
    logic->SetDlgItem(2005, m_ui->sentenceBtn);
    logic->SetDlgItem(2006, m_ui->lowerBtn);
    logic->SetDlgItem(2021, m_ui->upperBtn);
    logic->SetDlgItem(2022, m_ui->titleBtn);
    logic->SetDlgItem(2023, m_ui->toggleBtn);
}

TcaseDlg::~TcaseDlg() = default;

void TcaseDlg::OnRadio1() { forward(&::TcaseDlg::OnRadio1); }
void TcaseDlg::OnRadio2() { forward(&::TcaseDlg::OnRadio2); }
void TcaseDlg::OnRadio3() { forward(&::TcaseDlg::OnRadio3); }
void TcaseDlg::OnRadio4() { forward(&::TcaseDlg::OnRadio4); }
void TcaseDlg::OnRadio5() { forward(&::TcaseDlg::OnRadio5); }

}  // namespace VKUI
