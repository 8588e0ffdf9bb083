// -GROUP - named sets of objects.
#include "host/base/unicode.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "sdk/vcdb_objects.h"

namespace vk::commands {

namespace {

using namespace edit;

VcDbDictionary& groups(Editor& ed)
{
    VcDbDictionary* dictionary = nullptr;
    if (ed.drawing().getGroupDictionary(dictionary) != Vcad::eOk)
        throw CommandError{"The drawing has no list of groups."};
    dictionary->close();
    return *dictionary;
}

VcDbGroup* groupNamed(Editor& ed, std::string_view name) { return ed.db().liveAs<VcDbGroup>(groups(ed).find(name)); }

void list(Editor& ed)
{
    ed.printLine(fmt::format("{:<32}{:<12}{}", "Defined groups.", "Selectable", "Objects"));
    for (const auto& [name, id] : groups(ed).liveEntries())
        if (const auto* group = ed.db().liveAs<VcDbGroup>(id); group && !group->isAnonymous())
            ed.printLine(fmt::format("{:<32}{:<12}{}", name, group->isSelectable() ? "Yes" : "No", group->numEntities()));
}

// Null when the person leaves; asked again for a name that is not there.
VcDbGroup* askGroup(Editor& ed)
{
    for (;;) {
        const std::string name = ed.text("Enter a group name or [?]");
        if (name.empty())
            return nullptr;
        if (name == "?")
            list(ed);
        else if (VcDbGroup* group = groupNamed(ed, name))
            return group;
        else
            ed.printLine(fmt::format("There is no group named \"{}\".", name));
    }
}

std::optional<std::string> askNewName(Editor& ed, std::string_view prompt)
{
    for (;;) {
        const std::string name = ed.text(prompt);
        if (name.empty())
            return std::nullopt;
        if (name == "?")
            list(ed);
        else if (!isLegalRecordName(name) || name.starts_with('*'))
            ed.printLine(fmt::format("\"{}\" is no name for a group.", name));
        else if (groupNamed(ed, name))
            ed.printLine(fmt::format("A group named \"{}\" already exists.", name));
        else
            return name;
    }
}

void create(Editor& ed)
{
    const auto name = askNewName(ed, "Enter a group name or [?]");
    if (!name)
        return;
    const std::string description = ed.text("Enter a group description");
    const auto objects = ed.select();
    if (objects->empty())
        return ed.printLine("Nothing was selected; no group is made.");
    auto made = std::make_unique<VcDbGroup>();
    made->setDescription(utf8ToWide(description).c_str());
    VcDbObjectId id;
    VcDbGroup* group = made.get();
    if (groups(ed).setAt(utf8ToWide(*name).c_str(), made.get(), id))
        throw CommandError{"The group cannot be made."};
    made.release();
    group->append(objects->ids());
    group->close();
}

void add(Editor& ed)
{
    VcDbGroup* group = askGroup(ed);
    if (!group)
        return;
    const auto objects = ed.select();
    for (const VcDbObjectId id : objects->ids())
        if (!group->has(id))
            group->append(id);
}

void remove(Editor& ed)
{
    VcDbGroup* group = askGroup(ed);
    if (!group)
        return;
    std::size_t others = 0;
    const auto objects = ed.select();
    for (const VcDbObjectId id : objects->ids())
        group->has(id) ? void(group->remove(id)) : void(++others);
    if (others > 0)
        ed.printLine(fmt::format("{} not in the group.", others));
}

void disband(Editor& ed)
{
    if (VcDbGroup* group = askGroup(ed)) {
        group->erase();
        ed.printLine("Group exploded.");
    }
}

void rename(Editor& ed)
{
    VcDbGroup* group = askGroup(ed);
    const auto name = group ? askNewName(ed, "Enter a new name") : std::nullopt;
    if (name)
        group->setName(utf8ToWide(*name).c_str());
}

void selectable(Editor& ed)
{
    if (VcDbGroup* group = askGroup(ed))
        group->setSelectable(ed.keyword(fmt::format("This group is {}selectable. Should it be? [Yes/No] <Y>", group->isSelectable() ? "" : "not "),
                                        "Yes No", "Yes") == "Yes");
}

// The chosen members go to a place in the order, the others keep theirs.
void order(Editor& ed)
{
    VcDbGroup* group = askGroup(ed);
    if (!group)
        return;
    VcDbObjectIdArray members;
    group->allEntityIds(members);
    const auto first = ed.select({.prompt = "Select objects that come first, in their order: "});
    VcDbObjectIdArray ordered;
    for (const VcDbObjectId id : first->ids())
        if (group->has(id))
            ordered.push_back(id);
    for (const VcDbObjectId id : members)
        if (std::find(ordered.begin(), ordered.end(), id) == ordered.end())
            ordered.push_back(id);
    group->clear();
    group->append(ordered);
}

void group(Editor& ed)
{
    const std::string what = ed.keyword("Enter a group option\n[?/Order/Add/Remove/Explode/REName/Selectable/Create] <Create>",
                                        "? Order Add Remove Explode REName Selectable Create", "Create");
    what == "?" ? list(ed) : what == "Order" ? order(ed) : what == "Add" ? add(ed) : what == "Remove" ? remove(ed)
        : what == "Explode" ? disband(ed) : what == "REName" ? rename(ed) : what == "Selectable" ? selectable(ed) : create(ed);
}

const HostCommand kCommands[] = {
    {"-GROUP", "-G", kUsesPickSet, "Makes and changes named sets of objects.", group},
    {"GROUP", "G", kUsesPickSet, "Makes and changes named sets of objects.", group},
};

}

std::span<const HostCommand> groupCommands() { return kCommands; }

}
