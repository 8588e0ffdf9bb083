#include "host/commands/block_definition.h"

#include "host/base/files.h"
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/commands/drawing.h"
#include "host/db/block_members.h"
#include "host/db/clone.h"
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "host/db/standard_objects.h"
#include "host/edit/support_path.h"
#include "host/edit/sysvars.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"

#include <unordered_set>

namespace vk::commands {

namespace {

using namespace edit;
using Block = VcDbBlockTableRecord;

constexpr std::int16_t kHasAttributes = 2;

VcDbObjectIdArray membersOf(const DatabaseCore& db, const Block& block)
{
    VcDbObjectIdArray ids;
    forEachMember(db, block, [&](VcDbEntity& member) { ids.push_back(member.objectId()); });
    return ids;
}

}

Block* blockNamed(Editor& ed, std::string_view name)
{
    return ed.db().liveAs<Block>(ed.db().findRecord(NameTable::Block, name));
}

void listBlocks(Editor& ed, const std::string& names)
{
    const Wildcard pattern(names.empty() ? "*" : names);
    std::size_t own = 0, references = 0, dependent = 0, anonymous = 0;
    ed.printLine("Defined blocks.");
    for (const VcDbObjectId id : ed.db().table(NameTable::Block).records()) {
        const auto* block = ed.db().objectAs<Block>(id);
        if (block->isLayout())
            continue;
        const std::string& name = block->nameUtf8();
        ++(name.starts_with('*')              ? anonymous
           : block->isFromExternalReference() ? references
           : block->isDependent()             ? dependent
                                              : own);
        if (!name.starts_with('*') && pattern.matches(name))
            ed.printLine(fmt::format("  \"{}\"{}", name, block->isFromExternalReference() ? "  Xref" : ""));
    }
    ed.printLine(fmt::format("User Blocks: {}  External References: {}  Dependent Blocks: {}  Unnamed Blocks: {}", own,
                             references, dependent, anonymous));
}

Block& emptyBlock(Editor& ed, const std::string& name)
{
    if (Block* known = blockNamed(ed, name)) {
        known->assertWriteEnabled();
        forEachMember(ed.db(), *known, [](VcDbEntity& member) { member.erase(); });
        return *known;
    }
    if (!isLegalRecordName(name) || name.starts_with('*'))
        throw CommandError{
            fmt::format("\"{}\" is no name for a block: it must not be empty nor hold any of <>/\\\":;?*|,=`.", name)};
    return addBlockRecord(ed.db(), name);
}

bool refersTo(const DatabaseCore& db, VcDbObjectId block, VcDbObjectId other)
{
    std::vector<VcDbObjectId> open{block};
    std::unordered_set<VcDbObjectId> seen{block};
    while (!open.empty()) {
        const auto* record = db.liveAs<Block>(open.back());
        if (open.back() == other)
            return true;
        open.pop_back();
        if (record)
            forEachMember(db, *record, [&](const VcDbEntity& member) {
                const auto* reference = VcDbBlockReference::cast(&member);
                if (reference && seen.insert(reference->blockTableRecord()).second)
                    open.push_back(reference->blockTableRecord());
            });
    }
    return false;
}

void fillBlock(Editor& ed, Block& block, const VcDbObjectIdArray& objects, const VcGeMatrix3d& m)
{
    VcDbIdMapping mapping;
    if (!objects.empty() && cloneObjects(objects, block.objectId(), mapping))
        throw CommandError{"The objects cannot be copied into the block."};
    if (!m.isEqualTo(VcGeMatrix3d()))
        forEachMember(ed.db(), block, [&](VcDbEntity& member) { member.transformBy(m); });
    const int attributes = block.hasAttributeDefinitions() ? kHasAttributes : 0;
    block.setBlockFlags(std::int16_t((block.blockFlags() & ~kHasAttributes) | attributes));
}

// Files

std::string findDrawing(Editor&, const std::string& typed)
{
    std::string name = typed;
    if (name.size() >= 2 && name.front() == '"' && name.back() == '"')
        name = name.substr(1, name.size() - 2);
    name = nativePath(name);
    for (const char* ending : {"", ".dwg", ".dxf"})
        if (const auto path = findSupportFile(name + ending))
            return *path;
    throw CommandError{fmt::format(
        "Cannot find the drawing \"{}\": it is neither a block of this drawing nor a file along the support path.",
        name)};
}

std::unique_ptr<VcDbDatabase> readOther(Editor& ed, const std::string& path)
{
    auto other = std::make_unique<VcDbDatabase>(false);
    ReadOptions options;
    options.progress = [&](double done) { ed.progress("Reading", done); };
    const ReadResult result = readDrawing(*other, path, options);
    if (!result.ok())
        throw CommandError{fmt::format("{} cannot be read: {}", path, result.message)};
    return other;
}

std::string blockNameOf(std::string_view path)
{
    const std::string_view file = fileNameOf(path);
    return std::string(file.substr(0, file.rfind('.')));
}

Block& blockFromFile(Editor& ed, const std::string& name, const std::string& path)
{
    const auto other = readOther(ed, path);
    DatabaseCore& from = other->core();
    const auto* model = from.objectAs<Block>(from.modelSpace());
    const VcDbObjectId inner = from.findRecord(NameTable::Block, name);
    if (!model || (!inner.isNull() && refersTo(from, from.modelSpace(), inner)))
        throw CommandError{
            fmt::format("Block \"{}\" would refer to itself: the drawing {} holds a block of that name.", name, path)};
    Block& block = emptyBlock(ed, name);
    const auto base = from.header().point("$INSBASE");
    block.setOrigin(base ? VcGePoint3d(base->x, base->y, base->z) : VcGePoint3d());
    block.setInsertUnits(std::int16_t(std::clamp<std::int64_t>(from.header().integer("$INSUNITS", 0), 0, 24)));
    fillBlock(ed, block, membersOf(from, *model), {});
    return block;
}

}
