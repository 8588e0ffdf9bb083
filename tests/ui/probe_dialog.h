// A dialog with a control of every kind, whose logic keeps what became of them.
#pragma once

#include "sdk/qbasedialog.h"
#include "sdk/vcui.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Ui {
class ProbeDialog;
}

namespace probe {

enum Id {
    kEdit = 101,
    kFixedEdit,
    kOne,
    kMany,
    kCheck,
    kCombo,
    kSpin,
    kLines,
    kBrowse,
    kPick,
    kOff,
};

class Logic : public CVdUiDialog {
public:
    Logic();

    void DoDataExchange(CDataExchange* exchange) override;
    bool OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;
    bool PreTranslateMessage(MSG* message) override;

    void OnBrowse();
    void OnPick();
    void heard(const std::string& what) { events.push_back(what); }

    CStdStrW text = L"first";
    int number = 0;
    bool checked = false;
    CListBox one, many;
    std::vector<std::string> chosen;
    std::vector<std::string> events;
    int mostChars = 12;
    bool takesNumber = false;  // the edit holds a number, not a text
    std::function<void()> whenPicked;
};

class Form : public QBaseDialog {
    Q_OBJECT

public:
    explicit Form(Logic* logic);
    ~Form() override;

private:
    std::unique_ptr<Ui::ProbeDialog> m_ui;
};

}  // namespace probe
