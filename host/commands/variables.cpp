// SETVAR - shows and sets system variables; the name of a variable, typed as a command, comes here too.
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/commands/families.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"

namespace vk::commands {

namespace {

using namespace edit;

void listVariables(Editor& ed)
{
    const Wildcard pattern(ed.word("Enter variable(s) to list", "*"));
    for (const SysVarDef& def : sysVarTable())
        if (pattern.matches(def.name))
            ed.printLine(fmt::format("{:<24}{}{}", def.name, printSysVar(*ed.vars().get(def.name)),
                                     def.readOnly ? "  (read only)" : ""));
}

// Enter keeps what is there; a lone point clears a text.
std::optional<SysVarValue> askValue(Editor& ed, const SysVarDef& def, const SysVarValue& now)
{
    const std::string prompt = fmt::format("Enter new value for {}", def.name);
    AskOptions orEnter;
    orEnter.enterEnds = true;
    const std::string shown = fmt::format("{} <{}>", prompt, printSysVar(now));
    if (def.type == SysVarType::Point2d || def.type == SysVarType::Point3d) {
        const Answer a = ed.askPoint(shown, orEnter);
        return a.status == Answer::Status::Enter ? std::nullopt : std::optional<SysVarValue>(a.point);
    }
    const std::string typed = def.type == SysVarType::String
                                  ? ed.text(fmt::format("{}, or . for none <\"{}\">", prompt, printSysVar(now)))
                                  : ed.word(shown);
    if (typed.empty())
        return std::nullopt;
    if (def.type == SysVarType::String)
        return SysVarValue(typed == "." ? std::string() : typed);
    const auto value = parseSysVar(def, typed);
    if (!value)
        throw CommandError{fmt::format("Requires {}.", describeRange(def))};
    return value;
}

void setVariable(Editor& ed, const SysVarDef& def, const SysVarValue& value)
{
    switch (ed.vars().set(def.name, value)) {
    case SetVarResult::Done:
        return;
    case SetVarResult::Refused:
        throw CommandError{fmt::format("{} cannot be set to {}: there is no such record, or it is frozen.", def.name,
                                       printSysVar(value))};
    default:
        throw CommandError{fmt::format("Requires {}.", describeRange(def))};
    }
}

void setvar(Editor& ed)
{
    const std::string name = ed.word("Enter variable name or [?]");
    if (name == "?") {
        listVariables(ed);
        return;
    }
    const SysVarDef* def = findSysVar(name);
    if (!def)
        throw CommandError{fmt::format("Unknown variable name \"{}\". Type SETVAR ? to list them.", name)};
    const SysVarValue now = *ed.vars().get(def->name);
    if (def->readOnly) {
        ed.printLine(fmt::format("{} = {} (read only)", def->name, printSysVar(now)));
        return;
    }
    if (const auto value = askValue(ed, *def, now))
        setVariable(ed, *def, *value);
}

const HostCommand kCommands[] = {
    {"SETVAR", "SET", kTransparent, "Lists and sets system variables.", setvar},
};

}

std::span<const HostCommand> variableCommands() { return kCommands; }

}
