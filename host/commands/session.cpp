// REDRAW, REGEN, HELP, SCRIPT, RSCRIPT, RESUME, INVOKE, and what belongs to the session rather than to the drawing.
#include "host/base/code_page.h"
#include "host/base/files.h"
#include "host/base/unicode.h"
#include "host/commands/families.h"
#include "host/edit/display.h"
#include "host/edit/editor.h"
#include "host/edit/module_loader.h"
#include "host/edit/script_rest.h"
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
        ed.printLine(
            fmt::format("{:<17} {}", entry->name, entry->help.empty() ? "A command of a module." : entry->help));
}

struct Script {
    std::string name, text;
    int running = 0;
    bool again = false;
};
Script s_script;

// The whole script is one step of undo. The one that runs may ask to be run again.
void play(Editor& ed, const std::string& name, const std::string& text)
{
    ++s_script.running;
    do {
        s_script.again = false;
        ed.onMain([&] { ed.runScript(name, text); });
    } while (s_script.again && !ed.isInterrupted() && !ed.isQuitting());
    --s_script.running;
}

void script(Editor& ed)
{
    std::string name = ed.text("Enter script file name");
    if (name.size() >= 2 && name.front() == '"' && name.back() == '"')
        name = name.substr(1, name.size() - 2);
    auto path = findSupportFile(name);
    if (!path)
        path = findSupportFile(name + ".scr");
    std::string error;
    const auto content = path ? readWholeFile(*path, &error) : std::nullopt;
    if (!content)
        throw CommandError{path ? error : fmt::format("Cannot find the script \"{}\" along the support path.", name)};
    s_script.name = fileNameOf(*path);
    s_script.text = utf8OfTextFile(*content);
    play(ed, std::string(s_script.name), std::string(s_script.text));
}

void repeatScript(Editor& ed)
{
    if (s_script.running > 0)
        s_script.again = true;
    else if (s_script.name.empty())
        throw CommandError{"No script has been run."};
    else
        play(ed, std::string(s_script.name), std::string(s_script.text));
}

void resumeScript(Editor& ed)
{
    const auto rest = takeScriptRest();
    if (!rest)
        throw CommandError{"No script has been interrupted."};
    play(ed, rest->name, rest->text);
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
    {"RSCRIPT", nullptr, kPlain, "Runs the script again, from within it for ever.", repeatScript},
    {"RESUME", nullptr, kPlain, "Goes on with a script that was interrupted.", resumeScript},
    {"INVOKE", nullptr, kPlain, "Runs an entry point that a module exports without a command name.", invoke},
    {"DELAY", nullptr, kTransparent | kNoUndoStep, "Waits for some milliseconds.", delay},
};

}

std::span<const HostCommand> sessionCommands() { return kCommands; }

}
