// U, UNDO, REDO, MREDO, and UNDO's marks and groups. Within a running command they act on what that command has done.
#include "host/commands/families.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"

namespace vk::commands {

namespace {

using namespace edit;

std::string joined(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : " ") + name;
    return text;
}

// UNDOCTL tells what has been chosen.
enum ControlBit : std::int32_t { kOn = 1, kOnlyLast = 2, kAuto = 4, kGroupOpen = 8 };

void tell(Editor& ed, std::int32_t bits, bool on)
{
    const auto now = std::int32_t(ed.vars().integer("UNDOCTL"));
    ed.vars().force("UNDOCTL", on ? now | bits : now & ~bits);
}

void takeBack(Editor& ed, int count)
{
    if (ed.undo().isNested()) {
        if (!ed.undo().undoInner())
            ed.printLine("Nothing to undo");
        return;
    }
    if (ed.undo().mode() == UndoControl::Mode::None)
        throw CommandError{"Undoing is switched off. Control of UNDO switches it on."};
    const auto names = ed.undo().undo(count);
    tell(ed, kGroupOpen, ed.undo().inGroup());
    ed.printLine(names.empty() ? "Everything has been undone" : joined(names));
}

void u(Editor& ed) { takeBack(ed, 1); }

void backToMark(Editor& ed)
{
    bool foundMark = false;
    std::vector<std::string> names = ed.undo().back(false, foundMark);
    if (!foundMark) {
        if (ed.keyword("This will undo everything. OK? [Yes/No] <Yes>", "Yes No", "Yes") == "No")
            return;
        names = ed.undo().back(true, foundMark);
    }
    ed.printLine(names.empty() ? "Everything has been undone" : joined(names));
    if (foundMark)
        ed.printLine("Mark encountered");
}

void control(Editor& ed)
{
    const std::string mode = ed.keyword("Enter an UNDO control option [All/None/One] <All>", "All None One", "All");
    ed.undo().setMode(mode == "All"    ? UndoControl::Mode::All
                      : mode == "None" ? UndoControl::Mode::None
                                       : UndoControl::Mode::One);
    tell(ed, kOn, mode != "None");
    tell(ed, kOnlyLast, mode == "One");
}

void beginGroup(Editor& ed)
{
    if (ed.undo().isNested())
        ed.undo().beginInner();
    else
        ed.undo().beginGroup();
    tell(ed, kGroupOpen, ed.undo().inGroup());
}

void endGroup(Editor& ed)
{
    if (ed.undo().isNested())
        ed.undo().endInner();
    else
        ed.undo().endGroup();
    tell(ed, kGroupOpen, ed.undo().inGroup());
}

void undo(Editor& ed)
{
    AskOptions options;
    options.keywords = "Auto Control BEgin End Mark Back";
    options.enterEnds = true;
    options.bits = InitGet::NoZero | InitGet::NoNegative;
    const Answer a =
        ed.askInteger("Enter the number of operations to undo or [Auto/Control/BEgin/End/Mark/Back] <1>", options);
    if (a.status != Answer::Status::Keyword)
        return takeBack(ed, a.status == Answer::Status::Enter ? 1 : int(a.integer));
    if (a.text == "Mark")
        ed.undo().mark();
    else if (a.text == "Back")
        backToMark(ed);
    else if (a.text == "BEgin")
        beginGroup(ed);
    else if (a.text == "End")
        endGroup(ed);
    else if (a.text == "Control")
        control(ed);
    else
        tell(ed, kAuto, ed.keyword("Enter UNDO Auto mode [ON/OFF] <On>", "ON OFF", "ON") == "ON");
}

void bringBack(Editor& ed, int count)
{
    const auto names = ed.undo().redo(count);
    ed.printLine(names.empty() ? "Nothing to redo" : joined(names));
}

void redo(Editor& ed) { bringBack(ed, 1); }

void mredo(Editor& ed)
{
    AskOptions options;
    options.keywords = "All Last";
    options.bits = InitGet::NoZero | InitGet::NoNegative;
    const Answer a = ed.askInteger("Enter number of actions or [All/Last]", options);
    bringBack(ed, a.status == Answer::Status::Keyword ? (a.text == "All" ? 1 << 20 : 1) : int(a.integer));
}

const HostCommand kCommands[] = {
    {"U", nullptr, kNoUndoStep, "Takes back the last command.", u},
    {"UNDO", nullptr, kNoUndoStep, "Takes back commands; marks and groups them.", undo},
    {"REDO", nullptr, kNoUndoStep, "Brings back what U or UNDO took back.", redo},
    {"MREDO", nullptr, kNoUndoStep, "Brings back several commands.", mredo},
};

}

std::span<const HostCommand> undoCommands() { return kCommands; }

}
