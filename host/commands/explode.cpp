#include "host/commands/explode.h"

#include "host/db/database.h"
#include "host/db/entity_props.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

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

}

bool explodeInPlace(DatabaseCore& db, VcDbEntity& entity)
{
    auto* owner = db.objectAs<VcDbBlockTableRecord>(entity.ownerId());
    std::vector<VcDbEntity*> pieces;
    if (!owner || !mayExplode(db, entity) || entity.explode(pieces) != Vcad::eOk || pieces.empty()) {
        for (VcDbEntity* piece : pieces)
            delete piece;
        return false;
    }
    const bool inherits = entity.isKindOf(VcDbBlockReference::desc()) || entity.isKindOf(VcDbDimension::desc());
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

}
