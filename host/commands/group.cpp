// -GROUP - named sets of objects.
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
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
    const Wildcard pattern(ed.word("Enter group name(s) to list", "*"));
    ed.printLine(fmt::format("{:<32}{:<12}{}", "Defined groups.", "Selectable", "Objects"));
    for (const auto& [name, id] : groups(ed).liveEntries())
        if (const auto* group = ed.db().liveAs<VcDbGroup>(id); group && pattern.matches(name))
            ed.printLine(
                fmt::format("{:<32}{:<12}{}", name, group->isSelectable() ? "Yes" : "No", group->numEntities()));
}

// Null when the person leaves; asked again for a name that is not there.
VcDbGroup* askGroup(Editor& ed)
{
    for (;;) {
        const std::string name = ed.word("Enter a group name or [?]");
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

// A star alone makes an unnamed one.
constexpr std::string_view kUnnamed = "*";

std::optional<std::string> askNewName(Editor& ed, std::string_view prompt)
{
    for (;;) {
        const std::string name = ed.word(prompt);
        if (name.empty())
            return std::nullopt;
        if (name == "?")
            list(ed);
        else if (name == kUnnamed)
            return name;
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
    if (*name == kUnnamed)
        group->setAnonymous();
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
        *name == kUnnamed ? void(group->setAnonymous()) : void(group->setName(utf8ToWide(*name).c_str()));
}

void selectable(Editor& ed)
{
    if (VcDbGroup* group = askGroup(ed))
        group->setSelectable(ed.keyword(fmt::format("This group is {}selectable. Should it be? [Yes/No] <Y>",
                                                    group->isSelectable() ? "" : "not "),
                                        "Yes No", "Yes") == "Yes");
}

std::size_t askPlace(Editor& ed, std::string_view prompt, std::size_t low, std::size_t high,
                     std::optional<std::int64_t> byDefault = {})
{
    for (;;) {
        const std::int64_t place = ed.integer(fmt::format("{} ({} - {})", prompt, low, high), byDefault);
        if (place >= std::int64_t(low) && place <= std::int64_t(high))
            return std::size_t(place);
        ed.printLine(fmt::format("Requires a whole number from {} to {}.", low, high));
    }
}

// Members count from 0. A run of them goes to another place, and the others close up.
void order(Editor& ed)
{
    VcDbGroup* group = askGroup(ed);
    if (!group)
        return;
    VcDbObjectIdArray members;
    group->allEntityIds(members);
    if (members.size() < 2)
        throw CommandError{"The group has no order: it has fewer than two members."};
    const std::size_t last = members.size() - 1;
    const Answer a =
        ed.askInteger(fmt::format("Enter position number of the object to reorder (0 - {}) or [Reverse order]", last),
                      {.keywords = "Reverse"});
    if (a.status == Answer::Status::Keyword) {
        std::reverse(members.begin(), members.end());
    } else {
        if (a.integer < 0 || a.integer > std::int64_t(last))
            throw CommandError{fmt::format("The group has no object {}.", a.integer)};
        const auto from = std::size_t(a.integer);
        const std::size_t count = askPlace(ed, "Enter number of objects to reorder", 1, members.size() - from, 1);
        const std::size_t to = askPlace(ed, "Enter new position number for the object", 0, members.size() - count);
        const VcDbObjectIdArray run(members.begin() + std::ptrdiff_t(from),
                                    members.begin() + std::ptrdiff_t(from + count));
        members.erase(members.begin() + std::ptrdiff_t(from), members.begin() + std::ptrdiff_t(from + count));
        members.insert(members.begin() + std::ptrdiff_t(to), run.begin(), run.end());
    }
    group->clear();
    group->append(members);
}

void group(Editor& ed)
{
    const std::string what =
        ed.keyword("Enter a group option\n[?/Order/Add/Remove/Explode/REName/Selectable/Create] <Create>",
                   "? Order Add Remove Explode REName Selectable Create", "Create");
    what == "?"            ? list(ed)
    : what == "Order"      ? order(ed)
    : what == "Add"        ? add(ed)
    : what == "Remove"     ? remove(ed)
    : what == "Explode"    ? disband(ed)
    : what == "REName"     ? rename(ed)
    : what == "Selectable" ? selectable(ed)
                           : create(ed);
}

const HostCommand kCommands[] = {
    {"-GROUP", "-G", kUsesPickSet, "Makes and changes named sets of objects.", group},
    {"GROUP", "G", kUsesPickSet, "Makes and changes named sets of objects.", group},
};

}

std::span<const HostCommand> groupCommands() { return kCommands; }

}
