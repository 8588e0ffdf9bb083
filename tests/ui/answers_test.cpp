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

TEST_F(Answers, AFileThatIsNotThereIsNotOpened)
{
    const FileDialogs shown;
    const std::string there = TempDir() + "there.svf";
    std::ofstream(there) << "x";
    answer("FileDialog", {"fileNameEdit=" + TempDir() + "missing.svf", "pBtnOK", "fileNameEdit=" + there, "pBtnOK"});
    CStdStrW path;
    EXPECT_EQ(vcedGetFileNavDialog(L"Read filter", L"", L"svf;scr", 0, path), RTNORM) << said;
    EXPECT_EQ(path, std::wstring(there.begin(), there.end()));
    EXPECT_TRUE(hasSaid("missing.svf\nThis file does not exist."));
    EXPECT_FALSE(hasTrouble()) << said;
}

TEST_F(Answers, ANameWithoutAnEndingTakesTheFirstOneOffered)
{
    const FileDialogs shown;
    answer("FileDialog", {"fileNameEdit=" + TempDir() + "unending", "pBtnOK"});
    CStdStrW path;
    EXPECT_EQ(vcedGetFileNavDialog(L"Save filter", L"a.svf", L"svf;scr", kFileNavSave, path), RTNORM) << said;
    EXPECT_EQ(path.Right(12), L"unending.svf");
}

TEST_F(Answers, AllFilesAreAlsoThoseWithoutAnEnding)
{
    const FileDialogs shown;
    answer("FileDialog", {"fileTypeCombo=All files (*)", "fileTypeCombo=Styles (*.dim *.sty)", "pBtnCancel"});
    CFileDialog dialog(true, L"*.dim", L"", 0, L"Styles (*.dim)|*.dim;*.sty|All files (*.*)|*.*||", nullptr);
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_FALSE(hasTrouble()) << said;
}

TEST_F(Answers, ACancelledFileDialogGivesNoPath)
{
    const FileDialogs shown;
    answer("FileDialog", {"pBtnCancel"});
    CStdStrW path = L"as it was";
    EXPECT_EQ(vcedGetFileNavDialog(L"Read", L"", L"svf", 0, path), RTCAN);
    EXPECT_EQ(path, L"as it was");
    EXPECT_FALSE(hasTrouble()) << said;
}

struct TypedPath {
    const char* name;
    const char* typed;
    const wchar_t* preset;
    int status;
    const wchar_t* path;
};

class TypedPaths : public UiTest, public testing::WithParamInterface<TypedPath> {};

TEST_P(TypedPaths, StandAsTheyAre)
{
    const TypedPath& c = GetParam();
    type(c.typed);
    CStdStrW path;
    EXPECT_EQ(vcedGetFileNavDialog(L"Save filter", c.preset, L"svf;scr", kFileNavSave, path), c.status) << said;
    EXPECT_EQ(path, c.path);
    EXPECT_TRUE(hasSaid("Save filter")) << said;
}

// An existing file, a folder and a name without an ending are the caller's to judge.
const TypedPath kTypedPaths[] = {
    {"Plain", "/tmp/a b\n", L"", RTNORM, L"/tmp/a b"},
    {"Quoted", "\"/tmp/a b.svf\"\n", L"", RTNORM, L"/tmp/a b.svf"},
    {"OneQuote", "\"/tmp/a\n", L"", RTNORM, L"\"/tmp/a"},
    {"OtherEnding", "a.txt\n", L"b.svf", RTNORM, L"a.txt"},
    {"AFolder", "/tmp/\n", L"", RTNORM, L"/tmp/"},
    {"EnterTakesThePreset", "\n", L"b.svf", RTNORM, L"b.svf"},
    {"EnterWithoutPreset", "\n", L"", RTCAN, L""},
    {"OnlyQuotes", "\"\"\n", L"", RTCAN, L""},
    {"Esc", "(cancel)\n", L"b.svf", RTCAN, L""},
    {"NoLineLeft", "", L"b.svf", RTCAN, L""},
};

INSTANTIATE_TEST_SUITE_P(TypedPaths, TypedPaths, testing::ValuesIn(kTypedPaths),
                         [](const auto& info) { return std::string(info.param.name); });

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

TEST_F(Answers, ADialogOverADialogTakesTheAnswerOfItsOwnName)
{
    int colour = 3;
    logic.whenPicked = [&] { vcedSetColorDialog(colour, true, 7); };
    answer("ColorDialog", {"index=5", "pBtnOK"});
    EXPECT_EQ(play({"edit=y", "pick", "check=on", "ok"}), IDOK);
    EXPECT_EQ(colour, 5);
    EXPECT_TRUE(logic.checked);
    EXPECT_FALSE(hasTrouble()) << said;
}

TEST_F(Answers, ADialogOverADialogWithoutAnAnswerIsCancelledAloneAndFailsTheRun)
{
    int colour = 3;
    logic.whenPicked = [&] { colour = vcedSetColorDialog(colour, true, 7) ? 0 : 4; };
    EXPECT_EQ(play({"edit=y", "pick", "ok"}), IDOK);
    EXPECT_EQ(colour, 4);
    EXPECT_EQ(logic.text, L"y");
    EXPECT_TRUE(hasSaid("The dialog ColorDialog has no answer waiting and is cancelled."));
    EXPECT_TRUE(editor().hasFailed());
}

TEST_F(Answers, AMessageBoxOverADialogTakesItsOwn)
{
    int pressed = 0;
    logic.whenPicked = [&] { pressed = logic.MessageBoxW(L"Go on?", L"Trouble", MB_YESNO); };
    answer("MessageBox", {"Yes"});
    EXPECT_EQ(play({"pick", "ok"}), IDOK);
    EXPECT_EQ(pressed, IDYES);
    EXPECT_TRUE(hasSaid("Go on?\n[Yes/No] Yes")) << said;
    EXPECT_FALSE(hasTrouble()) << said;
}

struct Box {
    const char* name;
    UINT style;
    const char* answer;  // null for none
    int pressed;
    bool fails;
};

class Boxes : public UiTest, public testing::WithParamInterface<Box> {};

TEST_P(Boxes, AreAnsweredOrLeft)
{
    const Box& c = GetParam();
    if (c.answer)
        answer("MessageBox", {c.answer});
    EXPECT_EQ(MessageBoxW(nullptr, L"Go on?", L"Trouble", c.style), c.pressed);
    EXPECT_EQ(hasTrouble(), c.fails) << said;
    EXPECT_TRUE(hasSaid("Go on?"));
}

const Box kBoxes[] = {
    {"Pressed", MB_YESNOCANCEL, "No", IDNO, false},
    {"InAnyCase", MB_OKCANCEL, "ok", IDOK, false},
    {"NoSuchButton", MB_OKCANCEL, "Yes", IDCANCEL, true},
    {"OnlyOkNeedsNoAnswer", MB_OK, nullptr, IDOK, false},
    {"OkCancelLeft", MB_OKCANCEL, nullptr, IDCANCEL, true},
    {"YesNoLeft", MB_YESNO, nullptr, IDNO, true},
    {"YesNoCancelLeft", MB_YESNOCANCEL, nullptr, IDCANCEL, true},
    {"RetryCancelLeft", MB_RETRYCANCEL, nullptr, IDCANCEL, true},
    {"AbortRetryIgnoreLeft", MB_ABORTRETRYIGNORE, nullptr, IDABORT, true},
    {"TheDefaultIsNotPressed", MB_OKCANCEL | MB_ICONWARNING, nullptr, IDCANCEL, true},
};

INSTANTIATE_TEST_SUITE_P(Boxes, Boxes, testing::ValuesIn(kBoxes),
                         [](const auto& info) { return std::string(info.param.name); });

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
    {"NoSuchWidget",
     {"okBtn"},
     "The step \"okBtn\" in the dialog ProbeDialog cannot be played: there is no widget okBtn; "},
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
    answer("ColorDialog", {"tabWidget?", "red=255", "pBtnOK"});
    EXPECT_TRUE(vcedSetColorDialog(colour, true, 7)) << said;
    EXPECT_TRUE(hasSaid("tabWidget: True Color"));
    EXPECT_EQ(colour.rgb(), 0xFF141Eu);
    answer("ColorDialog", {"tabWidget=Index Color", "index=7", "pBtnOK"});
    EXPECT_TRUE(vcedSetColorDialog(colour, true, 7)) << said;
    EXPECT_EQ(colour.colorIndex(), 7);
}

}
