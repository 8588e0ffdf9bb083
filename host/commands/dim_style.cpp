// -DIMSTYLE: saves, restores, lists and applies dimension styles.
#include "host/base/wildcard.h"
#include "host/commands/dim_common.h"
#include "host/commands/families.h"
#include "host/db/rec_dim_variables.h"
#include "host/db/record_names.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_records.h"

namespace vk::commands {

namespace {

using namespace edit;
using Style = VcDbDimStyleTableRecord;

void list(Editor& ed)
{
    const Wildcard pattern(ed.word("Enter dimension style(s) to list", "*"));
    ed.printLine("Named dimension styles:");
    for (const VcDbObjectId id : ed.db().table(NameTable::DimStyle).records())
        if (const auto* style = ed.db().objectAs<Style>(id); style && pattern.matches(style->nameUtf8()))
            ed.printLine("  " + style->nameUtf8());
}

Style* findStyle(Editor& ed, const std::string& name)
{
    return ed.db().liveAs<Style>(ed.db().findRecord(NameTable::DimStyle, name));
}

// The style of an object that a person picks.
Style* styleOfPicked(Editor& ed)
{
    const auto* entity =
        pickOf<VcDbDimension, VcDbLeader, VcDbFcf>(ed, "Select dimension", "A dimension is wanted.", true);
    if (!entity)
        return nullptr;
    VcDbObjectId id;
    if (const auto* dimension = VcDbDimension::cast(entity))
        id = dimension->dimensionStyle();
    else if (const auto* leader = VcDbLeader::cast(entity))
        id = leader->dimensionStyle();
    else
        id = static_cast<const VcDbFcf*>(entity)->dimensionStyle();
    return ed.db().liveAs<Style>(parentDimStyle(ed.db(), id));
}

// By name, by "?" after a list, or by Enter from an object. Null when a person gives up.
Style* askStyle(Editor& ed, const char* prompt)
{
    for (;;) {
        const std::string name = ed.word(prompt, std::string());
        if (name.empty())
            return styleOfPicked(ed);
        if (name == "?") {
            list(ed);
            continue;
        }
        if (Style* style = findStyle(ed, name))
            return style;
        ed.printLine(fmt::format("There is no dimension style \"{}\".", name));
    }
}

void makeCurrent(Editor& ed, const Style& style)
{
    setHeaderDimVars(ed.db(), style.dimVars());
    ed.vars().force("DIMSTYLE", style.nameUtf8());
    ed.printLine(fmt::format("\"{}\" is now the current dimension style.", style.nameUtf8()));
}

void restore(Editor& ed)
{
    if (const Style* style = askStyle(ed, "Enter a dimension style name, [?] or <select dimension>"))
        makeCurrent(ed, *style);
}

Style& newStyle(Editor& ed, const std::string& name)
{
    if (!isLegalRecordName(name))
        throw CommandError{fmt::format("\"{}\" is no name for a dimension style.", name)};
    auto made = std::make_unique<Style>();
    made->setNameUtf8(name);
    Style* added = made.get();
    if (ed.db().table(NameTable::DimStyle).add(made.get()))
        throw CommandError{"The dimension style cannot be made."};
    made.release();
    added->close();
    return *added;
}

// The objects that have a style show it at once.
std::size_t redrawAll(Editor& ed, VcDbObjectId style)
{
    std::size_t count = 0;
    const std::uint32_t end = ed.db().slotCount();
    for (std::uint32_t slot = 1; slot < end; ++slot) {
        ed.throwIfInterrupted();
        VcDbObject* object = ed.db().objectAt(slot);
        if (!object || object->isErased())
            continue;
        if (auto* d = VcDbDimension::cast(object); d && d->dimensionStyle() == style)
            count += d->recomputeDimBlock() == Vcad::eOk;
        else if (auto* leader = VcDbLeader::cast(object); leader && leader->dimensionStyle() == style)
            leader->evaluateLeader();
    }
    return count;
}

void save(Editor& ed)
{
    std::string name;
    while ((name = ed.word("Enter name for new dimension style or [?]", std::string())) == "?")
        list(ed);
    if (name.empty())
        return;
    const VcDbDimVars vars = currentDimVars(ed);
    Style* style = findStyle(ed, name);
    if (style && ed.keyword("That name is already in use, redefine it? [Yes/No] <N>", "Yes No", "No") != "Yes")
        return;
    const bool known = style != nullptr;
    if (!style)
        style = &newStyle(ed, name);
    style->setDimVars(vars);
    makeCurrent(ed, *style);
    if (known)
        ed.report("{} dimensions were drawn anew.", redrawAll(ed, style->objectId()));
}

void listVariables(Editor& ed, const VcDbDimVars& vars, const VcDbDimVars* style)
{
    for (const DimVariable& v : dimVariables()) {
        if (!v.isIn(DxfVersion::Newest))
            continue;
        const std::string value = dimVarText(ed.db(), v, vars);
        const bool own = style && dimVarText(ed.db(), v, *style) != value;
        ed.printLine(fmt::format("{:<16}{}{}", v.name, value, own ? "  (not as in the style)" : ""));
    }
}

void status(Editor& ed)
{
    const auto* style = ed.db().liveAs<Style>(currentDimStyle(ed));
    listVariables(ed, currentDimVars(ed), style ? &style->dimVars() : nullptr);
}

void variables(Editor& ed)
{
    if (const Style* style = askStyle(ed, "Enter a dimension style name, [?] or <select dimension>"))
        listVariables(ed, style->dimVars(), nullptr);
}

bool give(Editor& ed, VcDbEntity& entity)
{
    auto* dimension = VcDbDimension::cast(&entity);
    auto* leader = VcDbLeader::cast(&entity);
    if (!dimension && !leader && !VcDbFcf::cast(&entity))
        return false;
    for (const DimVariable& v : dimVariables())
        VcDbDimOverrides(entity).remove(v.code);
    takeDimStyle(entity, dimStyleFor(ed, entity));
    if (dimension)
        dimension->recomputeDimBlock();
    else if (leader)
        leader->evaluateLeader();
    return true;
}

void apply(Editor& ed)
{
    if (!ed.db().liveAs<Style>(currentDimStyle(ed)))
        throw CommandError{"The drawing has no current dimension style."};
    std::size_t left = 0;
    const auto objects = ed.select();
    for (const VcDbObjectId object : objects->ids())
        if (auto* entity = ed.db().liveAs<VcDbEntity>(object); !entity || !give(ed, *entity))
            ++left;
    if (left > 0)
        ed.report("{} {} no dimension and stayed as it was.", left, left == 1 ? "was" : "were");
}

}

void runDimStyleOption(Editor& ed, const std::string& option)
{
    if (option == "Save")
        save(ed);
    else if (option == "STatus")
        status(ed);
    else if (option == "Variables")
        variables(ed);
    else if (option == "Apply")
        apply(ed);
    else if (option == "?")
        list(ed);
    else
        restore(ed);
}

namespace {

void dimStyle(Editor& ed)
{
    ed.printLine(fmt::format("Current dimension style: {}", ed.vars().text("DIMSTYLE")));
    runDimStyleOption(ed, ed.keyword("Enter a dimension style option [Save/Restore/STatus/Variables/Apply/?] <Restore>",
                                     "Save Restore STatus Variables Apply ?", "Restore"));
}

const HostCommand kCommands[] = {
    {"-DIMSTYLE", nullptr, kUsesPickSet, "Saves, restores and applies dimension styles.", dimStyle},
    {"DIMSTYLE", "D", kUsesPickSet, "Saves, restores and applies dimension styles.", dimStyle},
};

}

std::span<const HostCommand> dimensionStyleCommands() { return kCommands; }

}  // namespace vk::commands
