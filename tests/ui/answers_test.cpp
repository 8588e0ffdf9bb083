// What scripts can do in dialogs, and what they are told when they cannot.

#include "host/edit/sysvars.h"
#include "sdk/vccm.h"
#include "sdk/vced.h"
#include "tests/ui/probe_dialog.h"
#include "tests/ui/dialog_support.h"

#include <QMessageBox>
#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

using testing::TempDir;

// File dialogs are shown for as long as it lives.
class FileDialogs {
public:
    FileDialogs() { set(1); }
    FileDialogs(const FileDialogs&) = delete;
    FileDialogs& operator=(const FileDialogs&) = delete;
    ~FileDialogs() { set(0); }

private:
    static void set(int value) { vk::edit::Editor::instance().vars().set("FILEDIA", vk::edit::SysVarValue(value)); }
};

class Answers : public UiTest {
protected:
    int play(std::vector<std::string> steps)
    {
        answer("ProbeDialog", std::move(steps));
        return logic.DoModal();
    }

    probe::Logic logic;
};

TEST_F(Answers, TypeOverTextsAndEndWithOK)
{
    EXPECT_EQ(play({"edit=second", "check=on", "ok"}), IDOK);
    EXPECT_EQ(logic.text, L"second");
    EXPECT_TRUE(logic.checked);
    EXPECT_EQ(said, "");
}

TEST_F(Answers, TakeControlsByNumber)
{
    EXPECT_EQ(play({"101=second", "105=on", "1"}), IDOK);
    EXPECT_EQ(logic.text, L"second");
    EXPECT_TRUE(logic.checked);
}

TEST_F(Answers, MoveTheFocusAsAPersonDoes)
{
    play({"edit=x", "check=on", "ok"});
    EXPECT_EQ(logic.events, std::vector<std::string>{"edit finished"});
}

TEST_F(Answers, ClickItemsOfLists)
{
    play({"one=Standard", "many=ISO-25|Annotative", "ok"});
    EXPECT_EQ(logic.events, (std::vector<std::string>{"edit finished", "row 1", "item clicked"}));
    EXPECT_EQ(logic.chosen, (std::vector<std::string>{"ISO-25", "Annotative"}));
}

TEST_F(Answers, SelectAnewEachTime)
{
    play({"many=ISO-25|Standard", "many=a|b", "ok"});
    EXPECT_EQ(logic.chosen, std::vector<std::string>{"a|b"});
}

TEST_F(Answers, SayWhatWidgetsHold)
{
    play({"edit?", "105?", "many=ISO-25|Standard", "many?", "one=a|b", "one?", "spin=7", "spin?", "combo=Annotative",
          "combo?", "lines=two\nlines", "lines?", "fixedEdit?", "off?", "cancel"});
    EXPECT_EQ(said, "edit: first\n105: off\nmany: ISO-25|Standard\none: a|b\nspin: 7\ncombo: Annotative\n"
                    "lines: two\nlines\nfixedEdit: fixed\noff: &Disabled (disabled)\n");
}

TEST_F(Answers, CancelWithoutAWord)
{
    EXPECT_EQ(play({"edit=x", "cancel"}), IDCANCEL);
    EXPECT_EQ(logic.text, L"first");
    EXPECT_EQ(said, "");
}

TEST_F(Answers, AskForFilesAtTheCommandLine)
{
    type("\"/tmp/a b.dim\"\n");
    EXPECT_EQ(play({"browse", "ok"}), IDOK);
    EXPECT_EQ(logic.text, L"/tmp/a b.dim");
    EXPECT_TRUE(hasSaid("Save file as <plan.dim>:"));
}

TEST_F(Answers, GoThroughFileDialogs)
{
    const FileDialogs shown;
    const std::string path = TempDir() + "b.dim";
    std::filesystem::remove(path);
    logic.mostChars = 1000;
    answer("FileDialog", {"fileNameEdit=" + path, "pBtnOK"});
    EXPECT_EQ(play({"browse", "ok"}), IDOK);
    EXPECT_EQ(logic.text, CStdStrW(std::wstring(path.begin(), path.end())));
}

TEST_F(Answers, AreAskedBeforeAFileIsReplaced)
{
    const FileDialogs shown;
    const std::string path = TempDir() + "there.dim";
    std::ofstream(path) << "x";
    answer("FileDialog", {"fileNameEdit=" + path, "pBtnOK", "pBtnCancel"});
    answer("MessageBox", {"No"});
    EXPECT_EQ(play({"browse", "ok"}), IDOK);
    EXPECT_EQ(logic.text, L"first");
    EXPECT_TRUE(hasSaid("This file exists. Replace it?"));
}

TEST_F(Answers, PickInTheDrawingWhileTheDialogIsHidden)
{
    type("42,7\n");
    EXPECT_EQ(play({"pick", "ok"}), IDOK);
    EXPECT_EQ(logic.text, L"42");
    EXPECT_EQ(logic.events.back(), "picked while hidden");
}

TEST_F(Answers, ABoxThatNoAnswerReachesIsCancelled)
{
    logic.whenPicked = [] { QMessageBox::warning(nullptr, "Trouble", "Go on?"); };
    EXPECT_EQ(play({"pick", "ok"}), IDOK);
    EXPECT_TRUE(hasSaid("No answer can reach the box \"Trouble\"; it is cancelled."));
}

TEST_F(Answers, KeysReachTheLogicFirst)
{
    play({"edit=axb", "ok"});
    EXPECT_EQ(logic.text, L"ab");
}

TEST_F(Answers, ATextThatIsTooLongIsRefused)
{
    EXPECT_EQ(play({"edit=longer than twelve", "ok"}), IDCANCEL);
    EXPECT_TRUE(hasSaid("it takes no more than 12 characters"));
}

TEST_F(Answers, ANumberThatIsNoneKeepsTheDialogOpen)
{
    logic.takesNumber = true;
    answer("MessageBox", {"OK"});
    EXPECT_EQ(play({"edit=1y", "ok", "edit=12", "ok"}), IDOK);
    EXPECT_EQ(logic.number, 12);
    EXPECT_TRUE(hasSaid("Enter a whole number."));
}

struct Mistake {
    const char* name;
    std::vector<std::string> steps;
    const char* said;
};

class Mistakes : public Answers, public testing::WithParamInterface<Mistake> {};

TEST_P(Mistakes, FailTheRunAndCancelTheDialog)
{
    EXPECT_EQ(play(GetParam().steps), IDCANCEL);
    EXPECT_TRUE(hasSaid(GetParam().said)) << said;
    EXPECT_TRUE(std::ranges::count(logic.events, "cancel"));
    EXPECT_TRUE(editor().hasFailed());
}

const Mistake kMistakes[] = {
    {"NoSuchWidget", {"okBtn"}, "The step \"okBtn\" in the dialog ProbeDialog cannot be played: there is no widget okBtn; "},
    {"NamesTheOthers", {"okBtn"}, "edit, fixedEdit, one, many, check"},
    {"NoSuchId", {"4711"}, "there is no widget 4711"},
    {"Disabled", {"off"}, "off is disabled"},
    {"ReadOnly", {"fixedEdit=x"}, "it is read-only"},
    {"NoSuchItem", {"one=ISO-26"}, "it has no item \"ISO-26\"; it has ISO-25, Standard, a|b, Annotative"},
    {"NoSuchComboItem", {"combo=x"}, "it has no item \"x\""},
    {"ManyInAListOfOne", {"one=ISO-25|Standard"}, "it takes one item"},
    {"NeitherOnNorOff", {"check=maybe"}, "\"maybe\" is neither on nor off"},
    {"OutOfRange", {"spin=10"}, "it takes whole numbers from 0 to 9"},
    {"LabelClicked", {"labelEdit"}, "it is no button"},
    {"EditClicked", {"edit"}, "it needs a value, as in edit=..."},
    {"ButtonSet", {"browse=x"}, "it takes no value"},
    {"LeftOpen", {"edit=x"}, "The answer for the dialog ProbeDialog leaves it open"},
    {"NoSteps", {}, "leaves it open"},
    {"BadPicture", {"@picture=/nowhere/at/all.png"}, "the picture cannot be written"},
};

INSTANTIATE_TEST_SUITE_P(Answers, Mistakes, testing::ValuesIn(kMistakes),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Answers, StepsBehindTheEndFail)
{
    EXPECT_EQ(play({"ok", "edit=x"}), IDOK);
    EXPECT_TRUE(hasSaid("The dialog ProbeDialog had ended before the step \"edit=x\" of its answer."));
    EXPECT_TRUE(editor().hasFailed());
}

TEST_F(Answers, ADialogWithoutAnAnswerIsCancelled)
{
    EXPECT_EQ(logic.DoModal(), IDCANCEL);
    EXPECT_TRUE(hasSaid("The dialog ProbeDialog has no answer waiting and is cancelled."));
    EXPECT_TRUE(editor().hasFailed());
}

TEST_F(Answers, AreUsedOnceEachInOrder)
{
    answer("probedialog", {"edit=one", "ok"});
    answer("ProbeDialog", {"edit=two", "ok"});
    logic.DoModal();
    EXPECT_EQ(logic.text, L"one");
    probe::Logic second;
    second.DoModal();
    EXPECT_EQ(second.text, L"two");
    EXPECT_TRUE(editor().dialogs()->unusedAnswers().empty());
}

struct ColourCase {
    const char* name;
    std::vector<std::string> steps;
    bool allowByLayer;
    bool accepted;
    int colour;
};

class Colours : public UiTest, public testing::WithParamInterface<ColourCase> {};

TEST_P(Colours, AreChosen)
{
    const ColourCase& c = GetParam();
    answer("ColorDialog", c.steps);
    int colour = 3;
    EXPECT_EQ(vcedSetColorDialog(colour, c.allowByLayer, 7), c.accepted) << said;
    EXPECT_EQ(colour, c.colour);
}

const ColourCase kColours[] = {
    {"ByNumber", {"index=5", "pBtnOK"}, true, true, 5},
    {"ByName", {"index=magenta", "pBtnOK"}, true, true, 6},
    {"ByLayer", {"byLayerBtn", "pBtnOK"}, true, true, 256},
    {"ByBlockTyped", {"index=byblock", "pBtnOK"}, true, true, 0},
    {"Kept", {"pBtnOK"}, true, true, 3},
    {"Cancelled", {"index=5", "pBtnCancel"}, true, false, 3},
    {"NoSuchColour", {"index=256", "pBtnOK"}, false, false, 3},
    {"ByLayerNotAllowed", {"byLayerBtn", "pBtnOK"}, false, false, 3},
    {"ZeroNotAllowed", {"index=0", "pBtnOK"}, false, false, 3},
    {"TrueColourNotAllowed", {"index=1,2,3", "pBtnOK"}, true, false, 3},
};

INSTANTIATE_TEST_SUITE_P(Colours, Colours, testing::ValuesIn(kColours),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Answers, TrueColoursAreTypedOrMixed)
{
    VcCmColor colour = VcCmColor::fromIndex(1);
    answer("ColorDialog", {"index=10,20,30", "pBtnOK"});
    EXPECT_TRUE(vcedSetColorDialog(colour, true, 7)) << said;
    EXPECT_TRUE(colour.isByColor());
    EXPECT_EQ(colour.rgb(), 0x0A141Eu);
    answer("ColorDialog", {"tabWidget=True Color", "red=255", "pBtnOK"});
    EXPECT_TRUE(vcedSetColorDialog(colour, true, 7)) << said;
    EXPECT_EQ(colour.rgb(), 0xFF141Eu);
}

}
