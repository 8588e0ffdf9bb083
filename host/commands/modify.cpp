// ERASE, OOPS, EXPLODE, SELECT.
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/db/entity_props.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;

std::vector<VcDbObjectId>& lastErased()
{
    static std::vector<VcDbObjectId> ids;
    return ids;
}

void erase(Editor& ed)
{
    const auto objects = ed.select();
    lastErased().clear();
    for (const VcDbObjectId id : objects->ids())
        if (VcDbObject* object = ed.db().object(id); object && object->erase() == Vcad::eOk)
            lastErased().push_back(id);
}

void oops(Editor& ed)
{
    std::size_t restored = 0;
    for (const VcDbObjectId id : std::exchange(lastErased(), {}))
        if (VcDbObject* object = ed.db().object(id); object && object->isErased() && object->erase(false) == Vcad::eOk)
            ++restored;
    ed.report("{} restored.", restored);
}

// What layer 0 and by block mean in a block's members, once they stand on their own.
void inherit(VcDbEntity& piece, const EntityProps& of, VcDbObjectId layerZero)
{
    EntityProps props = piece.props();
    if (props.layer == layerZero)
        props.layer = of.layer;
    if (props.color.isByBlock())
        props.color = of.color;
    const DatabaseCore* db = DatabaseCore::of(layerZero);
    if (props.linetype == db->findRecord(NameTable::Linetype, "ByBlock"))
        props.linetype = of.linetype;
    if (props.lineWeight == VcDb::kLnWtByBlock)
        props.lineWeight = of.lineWeight;
    piece.setProps(props);
}

bool mayExplode(const DatabaseCore& db, const VcDbEntity& entity)
{
    const auto* reference = VcDbBlockReference::cast(&entity);
    const auto* block = reference ? db.objectAs<VcDbBlockTableRecord>(reference->blockTableRecord()) : nullptr;
    return !block || (block->explodable() && !block->isFromExternalReference());
}

bool explodeOne(DatabaseCore& db, VcDbEntity& entity)
{
    auto* owner = db.objectAs<VcDbBlockTableRecord>(entity.ownerId());
    std::vector<VcDbEntity*> pieces;
    if (!owner || !mayExplode(db, entity) || entity.explode(pieces) != Vcad::eOk || pieces.empty()) {
        for (VcDbEntity* piece : pieces)
            delete piece;
        return false;
    }
    const bool inherits = entity.isKindOf(VcDbBlockReference::desc());
    const EntityProps props = entity.props();
    const VcDbObjectId layerZero = db.findRecord(NameTable::Layer, "0");
    for (VcDbEntity* piece : pieces) {
        if (inherits)
            inherit(*piece, props, layerZero);
        VcDbObjectId id;
        if (owner->appendVcDbEntity(id, piece))
            delete piece;
        else
            piece->close();
    }
    entity.erase();
    return true;
}

void explode(Editor& ed)
{
    const auto objects = ed.select();
    std::size_t left = 0, done = 0;
    for (const VcDbObjectId id : objects->ids()) {
        ed.throwIfInterrupted();
        auto* entity = ed.db().liveAs<VcDbEntity>(id);
        if (entity)
            ++(explodeOne(ed.db(), *entity) ? done : left);
    }
    if (left > 0)
        ed.report("{} could not be exploded.", left);
    if (done == 0 && left > 0)
        throw CommandError{"Nothing was exploded."};
}

void select(Editor& ed)
{
    if (const auto objects = ed.select({.allowLocked = true}); !objects->empty())
        ed.previousSelection = objects;
}

const HostCommand kCommands[] = {
    {"ERASE", "E", kUsesPickSet, "Removes objects from the drawing.", erase},
    {"OOPS", nullptr, kPlain, "Brings back what was erased last.", oops},
    {"EXPLODE", "X", kUsesPickSet | kActsOnceDriven, "Breaks objects into their parts.", explode},
    {"SELECT", nullptr, kUsesPickSet | kStaysWaiting | kNoUndoStep, "Puts objects into the previous selection set.", select},
};

}

std::span<const HostCommand> modifyCommands() { return kCommands; }

}
