// Making objects from chains. Polylines, references with attributes and blocks are put together over several calls.
#include "host/base/unicode.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/db/host_services.h"
#include "host/db/record_names.h"
#include "host/db/standard_objects.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

namespace {

struct WithSubs {
    std::unique_ptr<VcDbEntity> parent;
    std::vector<std::unique_ptr<VcDbEntity>> subs;
    std::unique_ptr<VcDbEntity> end;
};

struct HalfBuiltBlock {
    std::string name, description, path;
    VcGePoint3d origin;
    std::int16_t flags = 0;
    std::vector<WithSubs> members;
};

struct HalfBuilt {
    std::uint32_t database = 0;
    std::unique_ptr<HalfBuiltBlock> block;
    WithSubs current;
    bool takesSubs = false;
};
HalfBuilt s_half;
std::string s_blockName;

VcDbObjectId appendTo(DatabaseCore& db, VcDbBlockTableRecord& owner, WithSubs built)
{
    VcDbEntity& entity = *built.parent;
    VcDbObjectId id;
    if (owner.appendVcDbEntity(id, built.parent.get()))
        return {};
    built.parent.release();
    for (auto& sub : built.subs) {
        VcDbEntity& added = *sub;
        const VcDbObjectId subId = db.add(std::move(sub), id);
        added.setOrder(std::uint32_t(entity.subEntities()->size()));
        entity.subEntities()->push_back(subId);
        added.fieldsChanged();
    }
    if (built.end)
        entity.setEndMark(db.add(std::move(built.end), id));
    entity.fieldsChanged();
    entity.close();
    return id;
}

VcDbObjectId appendToSpace(DatabaseCore& db, WithSubs built)
{
    auto* space = db.objectAs<VcDbBlockTableRecord>(db.currentSpace());
    return space ? appendTo(db, *space, std::move(built)) : VcDbObjectId();
}

VcDbObjectId finishEntity(DatabaseCore& db, WithSubs built)
{
    if (!s_half.block)
        return appendToSpace(db, std::move(built));
    s_half.block->members.push_back(std::move(built));
    return {};
}

VcDbBlockTableRecord* recordForBlock(DatabaseCore& db, const std::string& name)
{
    auto& table = static_cast<VcDbBlockTable&>(db.table(NameTable::Block));
    const VcDbObjectId known = name.starts_with('*') ? VcDbObjectId() : table.find(name);
    if (auto* record = db.liveAs<VcDbBlockTableRecord>(known)) {
        if (record->isLayout() || record->isDependent())
            return nullptr;
        for (const std::uint32_t slot : std::vector<std::uint32_t>(record->memberSlots()))
            if (VcDbObject* member = db.objectAt(slot); member && !member->isErased())
                member->erase();
        return record;
    }
    auto record = std::make_unique<VcDbBlockTableRecord>();
    VcDbBlockTableRecord* added = record.get();
    record->setNameUtf8(name);
    if (table.add(record.get()))
        return nullptr;
    record.release();
    added->close();
    ensureBlockEnds(db, *added);
    return added;
}

int finishBlock(DatabaseCore& db)
{
    const std::unique_ptr<HalfBuiltBlock> block = std::move(s_half.block);
    VcDbBlockTableRecord* record = recordForBlock(db, block->name);
    if (!record)
        return RTERROR;
    record->setOrigin(block->origin);
    record->setBlockFlags(
        std::int16_t((record->nameUtf8().starts_with('*') ? block->flags | 1 : block->flags & ~1) & ~64));
    if (!block->path.empty())
        record->setPathName(utf8ToWide(block->path).c_str());
    for (WithSubs& member : block->members)
        appendTo(db, *record, std::move(member));
    s_blockName = record->nameUtf8();
    return RTKWORD;
}

int beginBlock(const ChainGroups& groups)
{
    auto block = std::make_unique<HalfBuiltBlock>();
    block->name = groups.textOf(2);
    block->path = groups.textOf(1);
    block->flags = std::int16_t(groups.integerOf(70, 0));
    if (const Tag* origin = groups.find(10); origin && origin->form == Tag::Form::Point)
        block->origin = {origin->point[0], origin->point[1], origin->point[2]};
    if (!isLegalRecordName(block->name) || !groups.find(70))
        return RTERROR;
    s_half.block = std::move(block);
    return RTNORM;
}

bool takesSubEntities(const VcDbEntity& entity, const ChainGroups& groups)
{
    if (groups.type() == "POLYLINE")
        return true;
    return entity.subEntities() && groups.integerOf(66, 0) != 0;
}

// A piece of what is half built. Anything that does not belong there drops it.
int addSub(DatabaseCore& db, std::unique_ptr<VcDbEntity> entity, const std::string& type, VcDbObjectId& made)
{
    const bool polyline = !VcDbBlockReference::cast(s_half.current.parent.get());
    if (type == "SEQEND") {
        s_half.takesSubs = false;
        s_half.current.end = std::move(entity);
        made = finishEntity(db, std::move(s_half.current));
        s_half.current = {};
        return s_half.block || !made.isNull() ? RTNORM : RTERROR;
    }
    if (type != (polyline ? "VERTEX" : "ATTRIB")) {
        s_half = {};
        return RTERROR;
    }
    s_half.current.subs.push_back(std::move(entity));
    return RTNORM;
}

int makeRecord(DatabaseCore& db, std::unique_ptr<VcDbObject> object, VcDbObjectId& made)
{
    for (int t = 0; t < 9; ++t) {
        auto* table = db.objectAs<VcDbSymbolTable>(db.tableId(NameTable(t)));
        const std::unique_ptr<VcDbObject> probe(table ? table->newRecord() : nullptr);
        if (!probe || probe->isA() != object->isA())
            continue;
        auto& record = static_cast<VcDbSymbolTableRecord&>(*object);
        if (!isLegalRecordName(record.nameUtf8()) || table->add(made, &record))
            return RTERROR;
        object.release();
        record.fieldsChanged();
        record.close();
        return RTNORM;
    }
    return RTERROR;
}

// Dictionaries, xrecords and their like belong nowhere until a dictionary takes them.
int makeLoose(DatabaseCore& db, std::unique_ptr<VcDbObject> object, VcDbObjectId& made, bool mayBeLoose)
{
    if (!mayBeLoose)
        return RTERROR;
    made = db.add(std::move(object), {});
    return RTNORM;
}

int makeFromChain(const resbuf* chain, VcDbObjectId& made, bool mayBeLoose)
{
    DatabaseCore* db = workingCore();
    if (!db)
        return RTERROR;
    if (!chain) {
        s_half = {};
        return RTNORM;
    }
    if (s_half.database != db->serial())
        s_half = {};
    s_half.database = db->serial();
    ChainGroups groups(chain);
    if (groups.type() == "BLOCK")
        return beginBlock(groups);
    if (groups.type() == "ENDBLK")
        return s_half.block && !s_half.takesSubs ? finishBlock(*db) : RTERROR;
    std::unique_ptr<VcDbObject> object = objectOfChain(*db, groups);
    if (!object)
        return RTERROR;
    auto* entity = VcDbEntity::cast(object.get());
    if (!entity)
        return VcDbSymbolTableRecord::cast(object.get()) ? makeRecord(*db, std::move(object), made)
                                                         : makeLoose(*db, std::move(object), made, mayBeLoose);
    object.release();
    std::unique_ptr<VcDbEntity> owned(entity);
    if (s_half.takesSubs)
        return addSub(*db, std::move(owned), groups.type(), made);
    if (groups.type() == "VERTEX" || groups.type() == "ATTRIB" || groups.type() == "SEQEND")
        return RTERROR;
    if (takesSubEntities(*entity, groups)) {
        s_half.current.parent = std::move(owned);
        s_half.takesSubs = true;
        return RTNORM;
    }
    const bool inBlock = s_half.block != nullptr;
    made = finishEntity(*db, {std::move(owned), {}, nullptr});
    return inBlock || !made.isNull() ? RTNORM : RTERROR;
}

}

std::string takeNameOfMadeBlock() { return std::exchange(s_blockName, {}); }

int vcdbEntMake(const resbuf* chain)
{
    VcDbObjectId made;
    return makeFromChain(chain, made, false);
}

int vcdbEntMakeX(const resbuf* chain, vds_name nameOut)
{
    VcDbObjectId made;
    const int result = makeFromChain(chain, made, true);
    if (result == RTNORM && nameOut)
        idToName(made, nameOut);
    return result;
}
