#include "host/edit/select_index.h"

#include "host/db/database.h"
#include "host/edit/select_outline.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_tables.h"

#include <unordered_set>

namespace vk::edit {

using geom::Box3d;

namespace {

constexpr std::size_t kIndexesKept = 4;

const Box3d kEverywhere{{-Box3d::kInfinite, -Box3d::kInfinite, -Box3d::kInfinite}, {Box3d::kInfinite, Box3d::kInfinite, Box3d::kInfinite}};

// Extents of polylines follow their middle, so that widths are added here.
Box3d boxOf(const VcDbEntity& entity)
{
    VcDbExtents extents;
    if (entity.getGeomExtents(extents) != Vcad::eOk || extents.isEmpty())
        return kEverywhere;
    Box3d box{extents.minPoint(), extents.maxPoint()};
    if (!box.isFinite())
        return kEverywhere;
    const auto* polyline = VcDbPolyline::cast(&entity);
    if (!polyline || !polyline->hasWidth())
        return box;
    OutlineBuilder builder(1e-3);
    buildOutline(entity, builder);
    for (const Outline& outline : builder.outlines)
        for (const VcGePoint3d& p : outline.points)
            box.add(p);
    return box;
}

VcDbExtents extentsOf(const Box3d& box) { return box.isFinite() ? VcDbExtents(box.min, box.max) : VcDbExtents(); }

// Records that nothing which is drawn depends on for its place.
bool isHarmless(const VcDbObject& record)
{
    for (VcRxClass* (*desc)() : {&VcDbLayerTableRecord::desc, &VcDbRegAppTableRecord::desc, &VcDbLinetypeTableRecord::desc,
                                 &VcDbViewTableRecord::desc, &VcDbViewportTableRecord::desc, &VcDbUCSTableRecord::desc})
        if (record.isKindOf(desc()))
            return true;
    const auto* block = VcDbBlockTableRecord::cast(&record);
    return block && block->isLayout();
}

}

SpaceIndex& SpaceIndex::of(const DatabaseCore& db, VcDbObjectId space)
{
    static std::vector<std::unique_ptr<SpaceIndex>> indexes;
    std::erase_if(indexes, [](const auto& index) { return !DatabaseCore::of(index->m_space); });
    for (const auto& index : indexes)
        if (index->m_space == space) {
            index->refresh();
            return *index;
        }
    if (indexes.size() == kIndexesKept)
        indexes.erase(indexes.begin());
    indexes.emplace_back(new SpaceIndex(db, space));
    indexes.back()->refresh();
    return *indexes.back();
}

void SpaceIndex::refresh()
{
    const std::uint64_t now = m_db.changeCount();
    if (m_changes == now)
        return;
    const auto changed = m_changes ? m_db.changedSince(*m_changes) : std::nullopt;
    if (!changed || !follow(*changed))
        rebuild();
    m_changes = now;
}

std::vector<std::uint32_t> SpaceIndex::members() const
{
    const auto* block = m_db.objectAs<VcDbBlockTableRecord>(m_space);
    return block ? block->memberSlots() : std::vector<std::uint32_t>();
}

void SpaceIndex::rebuild()
{
    std::vector<geom::SpatialIndex::Entry> entries;
    for (const std::uint32_t slot : members())
        if (const auto* entity = VcDbEntity::cast(m_db.objectAt(slot)); entity && !entity->isErased())
            entries.emplace_back(slot, boxOf(*entity));
    m_boxes = geom::SpatialIndex(entries);
}

bool SpaceIndex::follow(std::span<const std::uint32_t> changed)
{
    std::unordered_set<std::uint32_t> seen;
    for (const std::uint32_t slot : changed)
        if (const VcDbObject* object = m_db.objectAt(slot); object && seen.insert(slot).second && !follow(*object))
            return false;
    return true;
}

bool SpaceIndex::follow(const VcDbObject& changed)
{
    const auto* entity = VcDbEntity::cast(&changed);
    if (!entity)
        return !changed.isKindOf(VcDbSymbolTableRecord::desc()) || isHarmless(changed);
    while (const auto* owner = m_db.objectAs<VcDbEntity>(entity->ownerId()))
        entity = owner;
    if (entity->ownerId() == m_space)
        update(*entity);
    // References to a block lie elsewhere when its members do.
    return entity->isInLayout();
}

void SpaceIndex::update(const VcDbEntity& entity)
{
    if (entity.isErased())
        m_boxes.erase(entity.objectId().slot());
    else
        m_boxes.set(entity.objectId().slot(), boxOf(entity));
}

std::vector<SpaceIndex::Candidate> SpaceIndex::candidates(const std::optional<PlanArea>& area) const
{
    std::vector<Candidate> found;
    const auto add = [&](std::uint64_t slot) {
        const auto* entity = VcDbEntity::cast(m_db.objectAt(std::uint32_t(slot)));
        if (entity && !entity->isErased())
            found.push_back({entity, extentsOf(m_boxes.boxOf(slot).value_or(kEverywhere))});
        return true;
    };
    if (!area) {
        for (const std::uint32_t slot : members())
            add(slot);
        return found;
    }
    const Box3d box{{area->min.x, area->min.y, -Box3d::kInfinite}, {area->max.x, area->max.y, Box3d::kInfinite}};
    m_boxes.visit(box, add);
    std::sort(found.begin(), found.end(), [](const Candidate& a, const Candidate& b) { return a.entity->order() < b.entity->order(); });
    return found;
}

}  // namespace vk::edit
