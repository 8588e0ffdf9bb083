#include "host/commands/all_commands.h"

#include "host/edit/command.h"
#include "host/edit/editor.h"

namespace vk::commands {

using edit::Editor;

namespace {

void undoOne(Editor& ed)
{
    const std::vector<std::string> undone = ed.undo().undo(1);
    ed.printLine(undone.empty() ? "Nothing to undo." : undone.front());
}

void redoOne(Editor& ed)
{
    const std::vector<std::string> redone = ed.undo().redo(1);
    ed.printLine(redone.empty() ? "Nothing to redo." : redone.front());
}

void quit(Editor& ed) { ed.quit(); }

constexpr edit::HostCommand kCommands[] = {
    {"U", nullptr, edit::kNoUndoStep, "Takes back the last command.", undoOne},
    {"REDO", nullptr, edit::kNoUndoStep, "Brings back what U took back.", redoOne},
    {"QUIT", "EXIT", edit::kNoUndoStep, "Ends the run.", quit},
};

}

void registerHostCommands() { edit::CommandTable::instance().addHostCommands(kCommands); }

}  // namespace vk::commands
