// -WBLOCK - saves a block, some objects or the whole drawing as a drawing of its own.
#include "host/commands/block_definition.h"
#include "host/commands/drawing.h"
#include "host/commands/erased.h"
#include "host/commands/families.h"
#include "host/commands/output_file.h"
#include "host/db/clone.h"
#include "host/db/database.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;
using Block = VcDbBlockTableRecord;

// What says how numbers and sizes are meant; the new drawing speaks the same way.
constexpr const char* kKept[] = {"$INSUNITS", "$MEASUREMENT", "$LUNITS",   "$LUPREC",   "$AUNITS",
                                 "$AUPREC",   "$ANGBASE",     "$ANGDIR",   "$LTSCALE",  "$PDMODE",
                                 "$PDSIZE",   "$DIMSCALE",    "$TEXTSIZE", "$FILLMODE", "$MIRRTEXT"};

std::unique_ptr<VcDbDatabase> drawingWith(Editor& ed, const VcDbObjectIdArray& objects, const VcGeMatrix3d& m)
{
    auto made = std::make_unique<VcDbDatabase>(true);
    DatabaseCore& to = made->core();
    for (const char* name : kKept)
        if (const TagList* tags = ed.db().header().find(name))
            to.header().set(name, *tags);
    to.origin.version = ed.db().origin.version;
    to.origin.codePage = ed.db().origin.codePage;
    VcDbIdMapping mapping;
    if (!objects.empty() && cloneObjects(objects, to.modelSpace(), mapping))
        throw CommandError{"The objects cannot be copied."};
    for (const std::uint32_t slot : to.objectAs<Block>(to.modelSpace())->memberSlots())
        if (auto* entity = VcDbEntity::cast(to.objectAt(slot)); entity && !entity->isErased())
            entity->transformBy(m);
    return made;
}

void write(Editor& ed, VcDbDatabase& drawing, const std::string& path)
{
    if (const auto result = writeTo(ed, drawing, path))
        ed.printLine(fmt::format("Saved {} ({}).", result->path, releaseName(result->version)));
}

void writeBlock(Editor& ed, const Block& block, const std::string& path)
{
    VcDbObjectIdArray members;
    for (const std::uint32_t slot : block.memberSlots())
        if (const VcDbObject* member = ed.db().objectAt(slot); member && !member->isErased())
            members.push_back(member->objectId());
    const auto drawing = drawingWith(ed, members, VcGeMatrix3d());
    const VcGePoint3d base = block.origin();
    drawing->core().header().setPoint("$INSBASE", base.x, base.y, base.z);
    write(ed, *drawing, path);
}

// The objects leave the drawing when the file is safe.
void writeSelection(Editor& ed, const std::string& path)
{
    const VcGePoint3d base = ed.point("Specify insertion base point");
    const auto objects = ed.select();
    if (objects->empty())
        return ed.printLine("Nothing was selected; no file is written.");
    const auto drawing =
        drawingWith(ed, objects->ids(), (ucsToWorld(ed) * VcGeMatrix3d::translation(base.asVector())).inverse());
    write(ed, *drawing, path);
    eraseForOops(ed, objects->ids());
}

void wblock(Editor& ed)
{
    const std::string path = askOutputPath(ed, "Enter name of output file");
    if (!mayReplaceFile(ed, path))
        return;
    for (;;) {
        std::string name =
            ed.word("Enter name of existing block or\n[= (block=output file)/* (whole drawing)] <define new drawing>");
        if (name.empty())
            return writeSelection(ed, path);
        if (name == "*")
            return write(ed, ed.drawing(), path);
        if (name == "=")
            name = blockNameOf(path);
        const Block* block = blockNamed(ed, name);
        if (!block)
            ed.printLine(fmt::format("Cannot find block \"{}\".", name));
        else if (block->isFromExternalReference() || block->isDependent())
            ed.printLine(fmt::format("\"{}\" comes from an external reference; its own file is there already.", name));
        else
            return writeBlock(ed, *block, path);
    }
}

const HostCommand kCommands[] = {
    {"-WBLOCK", "-W", kUsesPickSet, "Saves a block or objects as a drawing.", wblock},
    {"WBLOCK", "W", kUsesPickSet, "Saves a block or objects as a drawing.", wblock},
};

}

std::span<const HostCommand> wblockCommands() { return kCommands; }

}
