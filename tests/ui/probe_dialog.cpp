#include "tests/ui/probe_dialog.h"

#include "host/base/unicode.h"
#include "sdk/vced.h"
#include "ui_ProbeDialog.h"

namespace probe {

Logic::Logic() { new Form(this); }

void Logic::DoDataExchange(CDataExchange* exchange)
{
    CVdUiDialog::DoDataExchange(exchange);
    if (takesNumber) {
        DDX_Text(exchange, kEdit, number);
    } else {
        DDX_Text(exchange, kEdit, text);
        DDV_MaxChars(exchange, text, mostChars);
    }
    DDX_Check(exchange, kCheck, checked);
    DDX_Control(exchange, kOne, one);
    DDX_Control(exchange, kMany, many);
}

bool Logic::OnInitDialog()
{
    CVdUiDialog::OnInitDialog();
    for (const wchar_t* name : {L"ISO-25", L"Standard", L"a|b", L"Annotative"}) {
        one.AddString(name);
        many.AddString(name);
        static_cast<CComboBox*>(GetDlgItem(kCombo))->AddString(name);
    }
    return true;
}

void Logic::OnOK()
{
    for (int i = 0; i < many.GetCount(); ++i)
        if (many.GetSel(i) > 0) {
            CStdStrW name;
            many.GetText(i, name);
            chosen.push_back(wideToUtf8(name.str()));
        }
    CVdUiDialog::OnOK();
}

void Logic::OnCancel()
{
    heard("cancel");
    CVdUiDialog::OnCancel();
}

bool Logic::PreTranslateMessage(MSG* message)
{
    return message->wParam == 'X';  // no X comes into any control
}

void Logic::OnBrowse()
{
    CFileDialog dialog(false, L"*.dim", L"plan.dim", OFN_OVERWRITEPROMPT, L"Styles(*.dim)|*.dim||", this);
    if (dialog.DoModal() == IDOK)
        SetDlgItemText(kEdit, dialog.GetPathName());
}

void Logic::OnPick()
{
    if (whenPicked) {
        whenPicked();
        return;
    }
    BeginEditorCommand();
    heard(IsWindowVisible() ? "picked in sight" : "picked while hidden");
    vds_point point = {};
    if (vcedGetPoint(nullptr, L"\nPick: ", point) == RTNORM)
        SetDlgItemText(kEdit, std::to_wstring(int(point[0])).c_str());
    CompleteEditorCommand();
}

Form::Form(Logic* logic) : QBaseDialog(nullptr, logic), m_ui(std::make_unique<Ui::ProbeDialog>())
{
    m_ui->setupUi(this);
    connect(m_ui->ok, &QPushButton::clicked, this, &Form::OnOK);
    connect(m_ui->cancel, &QPushButton::clicked, this, &Form::OnCancel);
    connect(m_ui->browse, &QPushButton::clicked, this, [this] { forward(&Logic::OnBrowse); });
    connect(m_ui->pick, &QPushButton::clicked, this, [this] { forward(&Logic::OnPick); });
    connect(m_ui->one, &QListWidget::currentRowChanged, this,
            [this](int row) { forward(&Logic::heard, "row " + std::to_string(row)); });
    connect(m_ui->one, &QListWidget::itemClicked, this,
            [this] { forward(&Logic::heard, std::string("item clicked")); });
    connect(m_ui->edit, &QLineEdit::editingFinished, this,
            [this] { forward(&Logic::heard, std::string("edit finished")); });
    logic->SetHandle(this);
    logic->SetAutoDelete(true);
    QWidget* const controls[] = {m_ui->edit, m_ui->fixedEdit, m_ui->one,    m_ui->many, m_ui->check, m_ui->combo,
                                 m_ui->spin, m_ui->lines,     m_ui->browse, m_ui->pick, m_ui->off};
    for (int i = 0; i < int(std::size(controls)); ++i)
        logic->SetDlgItem(kEdit + i, controls[i]);
    logic->SetDlgItem(IDOK, m_ui->ok);
    logic->SetDlgItem(IDCANCEL, m_ui->cancel);
}

Form::~Form() = default;

}  // namespace probe
