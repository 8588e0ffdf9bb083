// Every dialog that has a script among the screenshots is opened by it and looked over, in English and with words half
// as long again. Run with QT_SCALE_FACTOR=2 it is looked over on a screen that is twice as fine.

#include "sdk/vccm.h"
#include "sdk/vced.h"
#include "sdk/vcui.h"
#include "tests/ui/form_faults.h"
#include "tests/ui/dialog_support.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <QTranslator>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;

// A language in which everything is said at greater length.
class LongWinded : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* source, const char*, int) const override
    {
        const QString text(source);
        return text.isEmpty() ? text : text + " " + QString(text.size() / 2, 'n');
    }
};

// Labels that people know from elsewhere stay, though their keys go round both widgets.
const char* const kAccepted[] = {"DialogTxt2MTxt: rBtnSortTopDown and rBtnSelection share Alt+S",
                                 "ScaleListEditDialog: okBtn and moveDownBtn share Alt+O"};

// Looks over each dialog when it has been shown and laid out.
class Inspector : public QObject {
public:
    std::vector<std::string> faults;
    int seen = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* form = qobject_cast<QDialog*>(watched);
        if (form && event->type() == QEvent::Show && !event->spontaneous())
            QTimer::singleShot(0, form, [this, form] { inspect(*form); });
        return false;
    }

private:
    void inspect(QDialog& form)
    {
        ++seen;
        for (const std::string& found : faultsOf(form)) {
            const std::string fault = form.objectName().toStdString() + ": " + found;
            if (std::ranges::count(kAccepted, fault) == 0)
                faults.push_back(fault);
        }
    }
};

std::vector<fs::path> scripts()
{
    std::vector<fs::path> found;
    for (const auto& entry : fs::directory_iterator(VEKAD_SCREENSHOTS))
        if (entry.path().extension() == ".scr")
            found.push_back(entry.path());
    std::sort(found.begin(), found.end());
    return found;
}

std::string textOf(const fs::path& file)
{
    std::stringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

enum class Language { English, LongWinded };

class LookedOver : public UiTest {
protected:
    explicit LookedOver(Language language)
    {
        // A first dialog makes Qt's application; nobody has asked for one until then.
        answer("ColorDialog", {"pBtnCancel"});
        openColours();
        fs::current_path(testing::TempDir());
        if (language == Language::LongWinded)
            QCoreApplication::installTranslator(&m_translator);
        qApp->installEventFilter(&inspector);
    }
    ~LookedOver() override { QCoreApplication::removeTranslator(&m_translator); }

    static void openColours()
    {
        VcCmColor colour = VcCmColor::fromIndex(30);
        vcedSetColorDialog(colour, true, 7);
    }
    void expectNoFaults() const
    {
        EXPECT_GT(inspector.seen, 0) << said;
        EXPECT_FALSE(hasTrouble()) << said;
        EXPECT_EQ(inspector.faults, std::vector<std::string>{});
    }

    Inspector inspector;

private:
    LongWinded m_translator;
};

class Forms : public LookedOver, public testing::WithParamInterface<std::tuple<fs::path, Language>> {
protected:
    Forms() : LookedOver(std::get<Language>(GetParam())) {}
};

TEST_P(Forms, HaveNoFaults)
{
    type(textOf(std::get<fs::path>(GetParam())));
    editor().run();
    expectNoFaults();
}

std::string titleOf(const testing::TestParamInfo<Forms::ParamType>& info)
{
    std::string title = std::get<fs::path>(info.param).stem().string();
    std::replace(title.begin(), title.end(), '-', '_');
    return title + (std::get<Language>(info.param) == Language::English ? "" : "_long");
}

INSTANTIATE_TEST_SUITE_P(Forms, Forms,
                         testing::Combine(testing::ValuesIn(scripts()),
                                          testing::Values(Language::English, Language::LongWinded)),
                         titleOf);

// The host's own, which no script among the screenshots opens. Their pictures are left in the folder of the tests.
class HostForms : public LookedOver, public testing::WithParamInterface<Language> {
protected:
    HostForms() : LookedOver(GetParam()) {}
};

TEST_P(HostForms, ColoursHaveNoFaults)
{
    answer("ColorDialog", {"@picture=colours.png", "byLayerBtn", "@picture=by-layer.png", "pBtnCancel"});
    openColours();
    expectNoFaults();
}

TEST_P(HostForms, TrueColoursHaveNoFaults)
{
    answer("ColorDialog", {"index=200,80,10", "trueColorPage?", "@picture=true-colours.png", "pBtnCancel"});
    openColours();
    expectNoFaults();
}

INSTANTIATE_TEST_SUITE_P(HostForms, HostForms, testing::Values(Language::English, Language::LongWinded),
                         [](const auto& info) {
                             return std::string(info.param == Language::English ? "English" : "long");
                         });

}
