#include "host/render/block_lists.h"

#include "host/db/database.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

namespace vk::render {

geom::Box3d movedBox(const geom::Box3d& box, const VcGeMatrix3d& m)
{
    geom::Box3d moved;
    if (box.isEmpty())
        return moved;
    for (int corner = 0; corner < 8; ++corner)
        moved.add(m * VcGePoint3d(corner & 1 ? box.max.x : box.min.x, corner & 2 ? box.max.y : box.min.y,
                                  corner & 4 ? box.max.z : box.min.z));
    return moved;
}

namespace {

const VcDbSortentsTable* sortTable(const DatabaseCore& db, const VcDbBlockTableRecord& block)
{
    const auto* dictionary = db.liveAs<VcDbDictionary>(block.extensionDictionary());
    return dictionary ? db.liveAs<VcDbSortentsTable>(dictionary->find("ACAD_SORTENTS")) : nullptr;
}

}

std::vector<const VcDbEntity*> drawOrder(const DatabaseCore& db, VcDbObjectId id)
{
    std::vector<const VcDbEntity*> entities;
    const auto* block = db.liveAs<VcDbBlockTableRecord>(id);
    if (!block)
        return entities;
    VcDbObjectIdArray sorted;
    const VcDbSortentsTable* table = sortTable(db, *block);
    if (table && table->getFullDrawOrder(sorted) == Vcad::eOk) {
        for (const VcDbObjectId member : sorted)
            if (const auto* entity = db.liveAs<VcDbEntity>(member))
                entities.push_back(entity);
        return entities;
    }
    entities.reserve(block->memberSlots().size());
    for (const std::uint32_t slot : block->memberSlots())
        if (const auto* entity = VcDbEntity::cast(db.objectAt(slot)); entity && !entity->isErased())
            entities.push_back(entity);
    return entities;
}

BlockLists::BlockList* BlockLists::find(VcDbObjectId block)
{
    const auto at = m_lists.find(block);
    if (at != m_lists.end())
        return at->second.get();
    if (!m_db.liveAs<VcDbBlockTableRecord>(block))
        return nullptr;
    BlockList& list = *m_lists.emplace(block, std::make_unique<BlockList>()).first->second;
    build(list, block);
    return &list;
}

void BlockLists::build(BlockList& to, VcDbObjectId block)
{
    ListBuilder builder(to.list, m_db, m_omissions);
    builder.inBlock = true;
    for (const VcDbEntity* entity : drawOrder(m_db, block))
        builder.add(*entity);
    to.bounds = to.list.bounds;
    to.unbounded = !to.list.marks.empty() || !to.list.endless.empty();
    for (const BlockUse& use : to.list.blocks)
        addUse(to, use);
}

void BlockLists::addUse(BlockList& to, const BlockUse& use)
{
    const BlockList* used = find(use.block);
    if (!used)
        return;
    to.unbounded |= used->unbounded;
    const geom::Box3d first = movedBox(used->bounds, use.matrix);
    for (const std::uint32_t column : {0u, use.columns - 1})
        for (const std::uint32_t row : {0u, use.rows - 1})
            to.bounds.add(movedBox(first, VcGeMatrix3d::translation(use.columnStep * column + use.rowStep * row)));
}

}  // namespace vk::render
