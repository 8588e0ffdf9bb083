#include "host/edit/select_index.h"

#include "host/db/database.h"
#include "sdk/vcdb_tables.h"

namespace vk::edit {

SpaceIndex& SpaceIndex::of(const DatabaseCore& db, VcDbObjectId space)
{
    static std::unique_ptr<SpaceIndex> last;
    if (!last || last->m_space != space)
        last.reset(new SpaceIndex(db, space));
    last->refresh();
    return *last;
}

void SpaceIndex::refresh()
{
    if (m_changes == m_db->changeCount() && !m_items.empty())
        return;
    m_changes = m_db->changeCount();
    m_items.clear();
    const auto* block = m_db->objectAs<VcDbBlockTableRecord>(m_space);
    if (!block)
        return;
    for (const std::uint32_t slot : block->memberSlots()) {
        const auto* entity = VcDbEntity::cast(m_db->objectAt(slot));
        if (!entity || entity->isErased())
            continue;
        Item& item = m_items.emplace_back(Item{entity, {}});
        if (entity->getGeomExtents(item.extents) != Vcad::eOk)
            item.extents = {};
    }
}

std::vector<const VcDbEntity*> SpaceIndex::candidates(const std::optional<PlanArea>& area) const
{
    std::vector<const VcDbEntity*> found;
    for (const Item& item : m_items)
        if (!area || item.extents.isEmpty() || area->touches(item.extents))
            found.push_back(item.entity);
    return found;
}

}  // namespace vk::edit
