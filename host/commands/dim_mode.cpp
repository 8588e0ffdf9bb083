// DIM, DIM1: the commands for dimensions under one prompt, again and again or once.
#include "host/commands/dim_common.h"
#include "host/commands/families.h"

namespace vk::commands {

namespace {

using namespace edit;

void runCommand(Editor& ed, const char* name) { CommandTable::instance().find(name)->host->body(ed); }

struct Entry {
    const char* keyword;
    void (*run)(Editor&);
};

const Entry kEntries[] = {
    {"ALigned", [](Editor& ed) { runCommand(ed, "_.DIMALIGNED"); }},
    {"ANgular", [](Editor& ed) { runCommand(ed, "_.DIMANGULAR"); }},
    {"Baseline", [](Editor& ed) { runCommand(ed, "_.DIMBASELINE"); }},
    {"CEnter", [](Editor& ed) { runCommand(ed, "_.DIMCENTER"); }},
    {"COntinue", [](Editor& ed) { runCommand(ed, "_.DIMCONTINUE"); }},
    {"Diameter", [](Editor& ed) { runCommand(ed, "_.DIMDIAMETER"); }},
    {"HOMetext", [](Editor& ed) { editDimensions(ed, "Home"); }},
    {"HORizontal", [](Editor& ed) { dimensionAtAngle(ed, 0); }},
    {"LEAder", [](Editor& ed) { runCommand(ed, "_.LEADER"); }},
    {"Newtext", [](Editor& ed) { editDimensions(ed, "New"); }},
    {"OBlique", [](Editor& ed) { editDimensions(ed, "Oblique"); }},
    {"ORdinate", [](Editor& ed) { runCommand(ed, "_.DIMORDINATE"); }},
    {"OVerride", [](Editor& ed) { runCommand(ed, "_.DIMOVERRIDE"); }},
    {"RAdius", [](Editor& ed) { runCommand(ed, "_.DIMRADIUS"); }},
    {"REStore", [](Editor& ed) { runDimStyleOption(ed, "Restore"); }},
    {"ROtated", [](Editor& ed) { dimensionAtAngle(ed, {}); }},
    {"SAve", [](Editor& ed) { runDimStyleOption(ed, "Save"); }},
    {"STAtus", [](Editor& ed) { runDimStyleOption(ed, "STatus"); }},
    {"TEdit", [](Editor& ed) { runCommand(ed, "_.DIMTEDIT"); }},
    {"TRotate", [](Editor& ed) { editDimensions(ed, "Rotate"); }},
    {"UPdate", [](Editor& ed) { runDimStyleOption(ed, "Apply"); }},
    {"VAriables", [](Editor& ed) { runDimStyleOption(ed, "Variables"); }},
    {"VErtical", [](Editor& ed) { dimensionAtAngle(ed, M_PI / 2); }},
};

// False when nothing more is wanted.
bool runOne(Editor& ed)
{
    std::string words, list;
    for (const auto& entry : kEntries) {
        words += std::string(entry.keyword) + " ";
        list += std::string(entry.keyword) + "/";
    }
    const std::string chosen = ed.keyword(fmt::format("Dim [{}Exit] <Exit>", list), words + "Exit", "Exit");
    for (const auto& entry : kEntries)
        if (chosen == entry.keyword) {
            entry.run(ed);
            return true;
        }
    return false;
}

void dim(Editor& ed)
{
    while (runOne(ed)) {
    }
}

void dimOnce(Editor& ed) { runOne(ed); }

const HostCommand kCommands[] = {
    {"DIM", nullptr, kPlain, "Makes and changes dimensions under a prompt of its own.", dim},
    {"DIM1", nullptr, kPlain, "Makes or changes one dimension.", dimOnce},
};

}

std::span<const HostCommand> dimensionModeCommands() { return kCommands; }

}  // namespace vk::commands
