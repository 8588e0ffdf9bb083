// -BLOCK, BASE - defines blocks from objects of the drawing.
#include "host/base/unicode.h"
#include "host/commands/block_definition.h"
#include "host/commands/drawing.h"
#include "host/commands/erased.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;

// A name that may be defined; nothing when the person leaves.
std::optional<std::string> askName(Editor& ed)
{
    for (;;) {
        const std::string name = ed.word("Enter block name or [?]");
        if (name.empty())
            return std::nullopt;
        if (name == "?") {
            listBlocks(ed, ed.word("Enter block(s) to list", "*"));
            continue;
        }
        if (!isLegalRecordName(name) || name.starts_with('*')) {
            ed.printLine(fmt::format("\"{}\" is no name for a block: it must not hold any of <>/\\\":;?*|,=`.", name));
            continue;
        }
        const VcDbBlockTableRecord* known = blockNamed(ed, name);
        if (known && known->isFromExternalReference())
            throw CommandError{fmt::format("\"{}\" is an external reference. -XREF changes it.", name)};
        if (known && ed.vars().integer("EXPERT") < 2 &&
            ed.keyword(fmt::format("Block \"{}\" already exists. Redefine it? [Yes/No] <N>", name), "Yes No", "No") ==
                "No")
            continue;
        return name;
    }
}

void refuseCircle(Editor& ed, const std::string& name, const SelectionSet& objects)
{
    const VcDbObjectId block = ed.db().findRecord(NameTable::Block, name);
    if (block.isNull())
        return;
    for (const VcDbObjectId id : objects.ids())
        if (const auto* reference = ed.db().liveAs<VcDbBlockReference>(id);
            reference && refersTo(ed.db(), reference->blockTableRecord(), block))
            throw CommandError{fmt::format("Block \"{}\" would refer to itself.", name)};
}

// The objects leave the drawing; their copies stand in the block as the UCS and its base point see them.
void define(Editor& ed, const std::string& name, const VcGePoint3d& base, const SelectionSet& objects)
{
    const bool isNew = !blockNamed(ed, name);
    VcDbBlockTableRecord& block = emptyBlock(ed, name);
    block.setOrigin({});
    if (isNew)
        block.setInsertUnits(std::int16_t(ed.vars().integer("INSUNITS")));
    fillBlock(ed, block, objects.ids(), (ucsToWorld(ed) * VcGeMatrix3d::translation(base.asVector())).inverse());
    eraseForOops(ed, objects.ids());
    if (!isNew)
        ed.printLine(fmt::format("Block \"{}\" redefined.", name));
    ed.vars().force("INSNAME", name);
}

void block(Editor& ed)
{
    const auto name = askName(ed);
    if (!name)
        return;
    const VcGePoint3d base = ed.point("Specify insertion base point");
    const auto objects = ed.select();
    refuseCircle(ed, *name, *objects);
    if (objects->empty() &&
        ed.keyword("Nothing is selected. Make an empty block? [Yes/No] <N>", "Yes No", "No") == "No")
        return;
    define(ed, *name, base, *objects);
}

void base(Editor& ed)
{
    const VcGePoint3d now = ed.vars().point("INSBASE");
    const Answer a =
        ed.askPoint(fmt::format("Enter base point <{},{},{}>", lengthText(now.x), lengthText(now.y), lengthText(now.z)),
                    {.enterEnds = true});
    if (a.status == Answer::Status::Value)
        ed.vars().set("INSBASE", toWorld(ed, a.point));
}

const HostCommand kCommands[] = {
    {"-BLOCK", "-B", kUsesPickSet, "Defines a block from objects.", block},
    {"BLOCK", "B", kUsesPickSet, "Defines a block from objects.", block},
    {"BASE", nullptr, kTransparent, "Sets the base point that the drawing has as a block.", base},
};

}

std::span<const HostCommand> blockCommands() { return kCommands; }

}
