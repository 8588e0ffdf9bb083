#include "host/edit/select_index.h"

#include "host/db/database.h"
#include "host/edit/select_outline.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_tables.h"

namespace vk::edit {

// Where an entity can be met. Extents of polylines follow their middle, so that widths are added here.
static VcDbExtents extentsOf(const VcDbEntity& entity)
{
    VcDbExtents extents;
    if (entity.getGeomExtents(extents) != Vcad::eOk)
        return {};
    const auto* polyline = VcDbPolyline::cast(&entity);
    if (!polyline || !polyline->hasWidth())
        return extents;
    OutlineBuilder builder(1e-3);
    buildOutline(entity, builder);
    for (const Outline& outline : builder.outlines)
        for (const VcGePoint3d& p : outline.points)
            extents.addPoint(p);
    return extents;
}

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
        m_items.push_back({entity, extentsOf(*entity)});
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
