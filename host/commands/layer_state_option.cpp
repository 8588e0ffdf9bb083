#include "host/commands/layer_state_option.h"

#include "host/base/files.h"
#include "host/commands/layer_states.h"
#include "host/commands/option_loop.h"
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "host/edit/viewports.h"

#include <fmt/format.h>

#include <algorithm>

namespace vk::commands {

namespace {

using namespace edit;

void list(Editor& ed)
{
    const auto names = layerStateNames(ed.db());
    if (names.empty())
        return ed.printLine("There are no layer states in this drawing.");
    ed.printLine("Layer states:");
    for (const std::string& name : names)
        ed.printLine("  " + name);
}

// "?" lists and asks again; Enter leaves.
std::optional<LayerState> askState(Editor& ed, std::string_view prompt)
{
    for (;;) {
        const std::string name = ed.text(prompt);
        if (name.empty())
            return std::nullopt;
        if (name == "?")
            list(ed);
        else if (auto state = layerState(ed.db(), name))
            return state;
        else
            ed.printLine(fmt::format("There is no layer state \"{}\".", name));
    }
}

bool isFree(Editor& ed, const std::string& name)
{
    if (!isLegalRecordName(name)) {
        ed.printLine(fmt::format("\"{}\" is no name for a layer state.", name));
        return false;
    }
    return !layerState(ed.db(), name) ||
           ed.keyword(fmt::format("Layer state \"{}\" already exists. Replace it? [Yes/No] <No>", name), "Yes No",
                      "No") == "Yes";
}

void save(Editor& ed)
{
    const std::string name = ed.text("Enter new layer state name");
    if (name.empty() || !isFree(ed, name))
        return;
    putLayerState(ed.db(), layerStateNow(ed.db(), activeViewport(ed), name, ed.vars().text("CLAYER")));
    ed.printLine(fmt::format("Layer state \"{}\" saved.", name));
}

// The current layer is set before any is frozen, since the current one refuses that. Where it is frozen itself, only the
// state thaws it; then the one that was current until now is still to be frozen.
void restore(Editor& ed)
{
    const auto state = askState(ed, "Enter name of layer state to restore or [?]");
    if (!state)
        return;
    if (!state->current.empty())
        ed.vars().set("CLAYER", state->current);
    const auto missing = applyLayerState(ed.db(), activeViewport(ed), *state);
    if (!state->current.empty() && ed.vars().text("CLAYER") != state->current &&
        ed.vars().set("CLAYER", state->current) == SetVarResult::Done)
        applyLayerState(ed.db(), activeViewport(ed), *state);
    for (const std::string& name : missing)
        ed.printLine(fmt::format("\"{}\" is in the layer state and not in the drawing.", name));
    ed.printLine(fmt::format("Layer state \"{}\" restored.", state->name));
}

struct PartName {
    const char* keyword;
    int part;
};
constexpr PartName kParts[] = {
    {"On", kStateOn},
    {"Frozen", kStateFrozen},
    {"Lock", kStateLocked},
    {"Plot", kStatePlot},
    {"Newvpfreeze", kStateNewViewports},
    {"Color", kStateColour},
    {"lineType", kStateLinetype},
    {"lineWeight", kStateLineweight},
    {"trAnsparency", kStateTransparency},
    {"plotStyle", kStatePlotStyle},
    {"Vpfreeze", kStateViewport},
};

std::string partsOf(const LayerState& state)
{
    std::string all;
    for (const PartName& p : kParts)
        if (state.parts & p.part)
            all += (all.empty() ? "" : " ") + std::string(p.keyword);
    return all.empty() ? "nothing" : all;
}

// Each keyword takes a property into what is restored, or out of it.
void edit(Editor& ed)
{
    auto state = askState(ed, "Enter name of layer state to edit or [?]");
    if (!state)
        return;
    Question question;
    question.kind = Question::Kind::Keyword;
    question.prompt = "Enter states to change "
                      "[On/Frozen/Lock/Plot/Newvpfreeze/Color/lineType/lineWeight/trAnsparency/plotStyle/Vpfreeze]: ";
    question.init.keywords =
        parseKeywords("On Frozen Lock Plot Newvpfreeze Color lineType lineWeight trAnsparency plotStyle Vpfreeze");
    question.hasDefault = true;
    for (;;) {
        ed.printLine("Restored: " + partsOf(*state));
        const Answer a = ed.ask(question);
        if (a.status == Answer::Status::Enter)
            break;
        for (const PartName& p : kParts)
            if (a.text == p.keyword)
                state->parts ^= p.part;
    }
    putLayerState(ed.db(), *state);
}

void rename(Editor& ed)
{
    auto state = askState(ed, "Enter name of layer state to rename or [?]");
    if (!state)
        return;
    const std::string name = ed.text("Enter new layer state name");
    if (name.empty() || !isFree(ed, name))
        return;
    removeLayerState(ed.db(), state->name);
    state->name = name;
    putLayerState(ed.db(), *state);
}

void remove(Editor& ed)
{
    const auto state = askState(ed, "Enter name of layer state to delete or [?]");
    if (!state)
        return;
    removeLayerState(ed.db(), state->name);
    ed.printLine(fmt::format("Layer state \"{}\" deleted.", state->name));
}

std::string askPath(Editor& ed, std::string_view prompt)
{
    std::string path = ed.text(prompt);
    if (path.size() >= 2 && path.front() == '"' && path.back() == '"')
        path = path.substr(1, path.size() - 2);
    path = nativePath(path);
    return path.empty() || fileNameOf(path).find('.') != std::string_view::npos ? path : path + ".las";
}

void importFile(Editor& ed)
{
    const std::string path = askPath(ed, "Enter name of layer state file to import");
    if (path.empty())
        return;
    std::string error;
    const auto content = readWholeFile(path, &error);
    const auto states = content ? parseLayerStates(*content, error) : std::vector<LayerState>();
    if (states.empty())
        throw CommandError{fmt::format("{} could not be read: {}", path, error)};
    for (const LayerState& state : states) {
        if (!isFree(ed, state.name))
            continue;
        putLayerState(ed.db(), state);
        ed.printLine(fmt::format("Layer state \"{}\" imported.", state.name));
    }
}

void exportFile(Editor& ed)
{
    const auto state = askState(ed, "Enter name of layer state to export or [?]");
    if (!state)
        return;
    const std::string path = askPath(ed, "Enter name of layer state file");
    if (path.empty())
        return;
    if (ed.writesNothing)
        return ed.printLine(fmt::format("Nothing is written in this run; {} stays as it is.", path));
    if (std::string error; !writeFileAtomically(path, layerStateFile(*state), error))
        throw CommandError{fmt::format("{} could not be written: {}", path, error)};
    ed.printLine(fmt::format("Layer state \"{}\" written to {}.", state->name, path));
}

struct Option {
    const char* keyword;
    void (*run)(Editor&);
};
constexpr Option kOptions[] = {
    {"?", list},      {"Save", save},     {"Restore", restore},   {"Edit", edit},
    {"Name", rename}, {"Delete", remove}, {"Import", importFile}, {"EXport", exportFile},
};

}

void layerStateOption(Editor& ed)
{
    runOptions(ed, "Enter an option [?/Save/Restore/Edit/Name/Delete/Import/EXport]: ", kOptions);
}

}  // namespace vk::commands
