// The eye that looks over the forms sees what is wrong with a bad one.

#include "tests/ui/dialog_support.h"
#include "tests/ui/form_faults.h"
#include "tests/ui/probe_dialog.h"

#include <QCoreApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// A form without a fault, to be spoilt: a labelled edit above OK and Cancel.
struct GoodForm {
    QDialog dialog;
    QVBoxLayout* layout = new QVBoxLayout(&dialog);
    QLabel* label = add<QLabel>("label", "&Name");
    QLineEdit* edit = add<QLineEdit>("edit");
    QPushButton* ok = add<QPushButton>("ok", "&OK");
    QPushButton* cancel = add<QPushButton>("cancel", "&Cancel");

    GoodForm()
    {
        label->setBuddy(edit);
        ok->setDefault(true);
        dialog.show();
        dialog.activateWindow();
        QCoreApplication::processEvents();
    }

    template <class Widget, class... Texts>
    Widget* add(const char* name, Texts... texts)
    {
        auto* widget = new Widget(texts..., &dialog);
        widget->setObjectName(name);
        layout->addWidget(widget);
        return widget;
    }

    std::vector<std::string> faults()
    {
        QCoreApplication::processEvents();
        return faultsOf(dialog);
    }
};

struct Spoilt {
    const char* name;
    void (*spoil)(GoodForm&);
    const char* fault;
};

class FaultyForms : public UiTest, public testing::WithParamInterface<Spoilt> {
protected:
    probe::Logic first;  // a form makes Qt's application
};

TEST_P(FaultyForms, AreSeen)
{
    GoodForm form;
    EXPECT_EQ(form.faults(), std::vector<std::string>{});
    GoodForm spoilt;
    GetParam().spoil(spoilt);
    const std::vector<std::string> faults = spoilt.faults();
    EXPECT_EQ(faults.empty() ? "" : faults.front(), GetParam().fault);
}

const Spoilt kSpoilt[] = {
    {"Cut", [](GoodForm& f) { f.label->setFixedWidth(8); }, "label is cut"},
    {"Overlapping",
     [](GoodForm& f) {
         f.layout->removeWidget(f.cancel);
         f.cancel->setGeometry(f.dialog.rect());
     },
     "label lies on cancel"},
    {"SharedKey", [](GoodForm& f) { f.cancel->setText("Cl&ose"); }, "cancel and ok share Alt+O"},
    {"Nameless", [](GoodForm& f) { f.label->setBuddy(nullptr); }, "edit has no accessible name"},
    {"TabGoesBack", [](GoodForm& f) { QWidget::setTabOrder(f.cancel, f.ok); }, "Tab goes back from cancel to ok"},
    {"ButtonFirst", [](GoodForm& f) { f.ok->setFocus(); }, "the button ok has the focus first"},
    {"NothingFirst", [](GoodForm& f) { f.edit->clearFocus(); }, "nothing has the focus"},
    {"Huge", [](GoodForm& f) { f.label->setMinimumHeight(800); }, "the form does not fit on a small screen"},
    {"NoDefault",
     [](GoodForm& f) { f.ok->setDefault(false), f.ok->setAutoDefault(false), f.cancel->setAutoDefault(false); },
     "0 buttons are for Enter"},
    {"Stiff", [](GoodForm& f) { f.dialog.setFixedSize(300, 200); }, "the form does not grow"},
};

INSTANTIATE_TEST_SUITE_P(FaultyForms, FaultyForms, testing::ValuesIn(kSpoilt),
                         [](const auto& info) { return std::string(info.param.name); });

}
