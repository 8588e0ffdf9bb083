// REDRAW, REGEN, HELP, SCRIPT, INVOKE, and what belongs to the session rather than to the drawing.
#include "host/base/code_page.h"
#include "host/base/files.h"
#include "host/base/unicode.h"
#include "host/commands/families.h"
#include "host/edit/display.h"
#include "host/edit/editor.h"
#include "host/edit/module_loader.h"
#include "host/edit/support_path.h"
#include "host/edit/sysvar_table.h"

#include <thread>

namespace vk::commands {

namespace {

using namespace edit;

void redraw(Editor&) { Display::instance().redraw(); }
void regen(Editor& ed) { ed.printLine("Regenerating model."); }
void nothing(Editor&) {}

void help(Editor& ed)
{
    const std::string name = ed.word("Enter the name of a command or a variable, or [?]", "?");
    const CommandTable& table = CommandTable::instance();
    if (name != "?") {
        const CommandEntry* entry = table.find(name);
        const SysVarDef* variable = entry ? nullptr : findSysVar(name);
        if (variable) {
            ed.printLine(fmt::format("{}  {}", variable->name, variable->description));
            return;
        }
        if (!entry)
            throw CommandError{fmt::format("There is no command or variable \"{}\". HELP ? lists the commands.", name)};
        ed.printLine(fmt::format("{}{}  {}", entry->name, entry->alias.empty() ? "" : " (" + entry->alias + ")",
                                 entry->help.empty() ? "A command of a module." : entry->help));
        return;
    }
    std::vector<const CommandEntry*> entries = table.all();
    std::sort(entries.begin(), entries.end(), [](const auto* a, const auto* b) { return a->name < b->name; });
    for (const CommandEntry* entry : entries)
        ed.printLine(fmt::format("{:<17} {}", entry->name, entry->help.empty() ? "A command of a module." : entry->help));
}

// The whole script is one step of undo.
void script(Editor& ed)
{
    const std::string name = ed.text("Enter script file name");
    const auto path = findSupportFile(name);
    std::string error;
    const auto content = path ? readWholeFile(*path, &error) : std::nullopt;
    if (!content)
        throw CommandError{path ? error : fmt::format("Cannot find the script \"{}\" along the support path.", name)};
    ed.onMain([&] { ed.runScript(std::string(fileNameOf(*path)), utf8OfTextFile(*content)); });
}

void invoke(Editor& ed)
{
    const std::string name = ed.word("Enter the name of an entry point");
    const auto entry = ModuleLoader::instance().findEntryPoint(name);
    if (!entry)
        throw CommandError{fmt::format("No loaded module exports an entry point named \"{}\".", name)};
    ed.onMain([&] { ed.invokeModuleCommand(name, entry, 0); });
}

void delay(Editor& ed)
{
    const auto ms = std::clamp<std::int64_t>(ed.integer("Enter delay time (in milliseconds)"), 0, 32767);
    for (std::int64_t waited = 0; waited < ms; waited += 20) {
        ed.throwIfInterrupted();
        std::this_thread::sleep_for(std::chrono::milliseconds(std::min<std::int64_t>(20, ms - waited)));
    }
}

const HostCommand kCommands[] = {
    {"REDRAW", "R", kTransparent | kNoUndoStep, "Draws the view anew without temporary marks.", redraw},
    {"REGEN", "RE", kNoUndoStep, "Works the display out anew.", regen},
    {"REGENALL", "REA", kNoUndoStep, "Works all viewports out anew.", regen},
    {"GRAPHSCR", nullptr, kTransparent | kNoUndoStep, "Shows the drawing.", nothing},
    {"TEXTSCR", nullptr, kTransparent | kNoUndoStep, "Shows the history of the command line.", nothing},
    {"HELP", "?", kTransparent | kNoUndoStep, "Lists the commands, or says what one does.", help},
    {"SCRIPT", "SCR", kPlain, "Runs the commands of a script file.", script},
    {"INVOKE", nullptr, kPlain, "Runs an entry point that a module exports without a command name.", invoke},
    {"DELAY", nullptr, kTransparent | kNoUndoStep, "Waits for some milliseconds.", delay},
};

}

std::span<const HostCommand> sessionCommands() { return kCommands; }

}
