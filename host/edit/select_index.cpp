#include "host/edit/select_index.h"

#include "host/db/database.h"
#include "host/db/kept_extents.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"

#include <unordered_set>

namespace vk::edit {

using geom::Box3d;

namespace {

constexpr std::size_t kIndexesKept = 4;

const Box3d kEverywhere{{-Box3d::kInfinite, -Box3d::kInfinite, -Box3d::kInfinite}, {Box3d::kInfinite, Box3d::kInfinite, Box3d::kInfinite}};

Box3d boxOf(const VcDbEntity& entity)
{
    VcDbExtents extents;
    if (entity.getGeomExtents(extents) != Vcad::eOk || extents.isEmpty())
        return kEverywhere;
    const Box3d box{extents.minPoint(), extents.maxPoint()};
    return box.isFinite() ? box : kEverywhere;
}

VcDbExtents extentsOf(const Box3d& box) { return box.isFinite() ? VcDbExtents(box.min, box.max) : VcDbExtents(); }

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
    while (const auto* owner = entity ? m_db.objectAs<VcDbEntity>(entity->ownerId()) : nullptr)
        entity = owner;
    if (entity && entity->ownerId() == m_space)
        update(*entity);
    return !othersHangOn(m_db, changed);
}

void SpaceIndex::update(const VcDbEntity& entity)
{
    if (entity.isErased())
        m_boxes.erase(entity.objectId().slot());
    else
        m_boxes.set(entity.objectId().slot(), boxOf(entity));
}

bool isSheetItself(const VcDbEntity& entity)
{
    const auto* viewport = VcDbViewport::cast(&entity);
    return viewport && viewport->number() == 1;
}

void SpaceIndex::addCandidate(std::vector<Candidate>& found, std::uint64_t slot, const Box3d& box) const
{
    const auto* entity = static_cast<const VcDbEntity*>(m_db.objectAt(std::uint32_t(slot)));
    if (entity && !entity->isErased() && !isSheetItself(*entity))
        found.push_back({entity, extentsOf(box)});
}

static void inDrawingOrder(std::vector<SpaceIndex::Candidate>& found)
{
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.entity->order() < b.entity->order(); });
}

std::vector<SpaceIndex::Candidate> SpaceIndex::candidates(const std::optional<PlanArea>& area) const
{
    std::vector<Candidate> found;
    if (!area) {
        for (const std::uint32_t slot : members())
            if (const auto box = m_boxes.boxOf(slot))
                addCandidate(found, slot, *box);
        return found;
    }
    m_boxes.visit({{area->min.x, area->min.y, -Box3d::kInfinite}, {area->max.x, area->max.y, Box3d::kInfinite}},
                  [&](std::uint64_t slot, const Box3d& box) {
                      addCandidate(found, slot, box);
                      return true;
                  });
    inDrawingOrder(found);
    return found;
}

std::vector<SpaceIndex::Candidate> SpaceIndex::below(const std::vector<VcGePoint3d>& chain) const
{
    std::vector<Candidate> found;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i)
        m_boxes.visitBelow(chain[i], chain[i + 1], [&](std::uint64_t slot, const Box3d& box) {
            addCandidate(found, slot, box);
            return true;
        });
    inDrawingOrder(found);
    const auto same = [](const Candidate& a, const Candidate& b) { return a.entity == b.entity; };
    found.erase(std::unique(found.begin(), found.end(), same), found.end());
    return found;
}

// Half a line against a rectangle, in the plan.
static bool passesOver(const VcGePoint3d& base, const VcGeVector3d& direction, const VcDbExtents& e)
{
    double from = 0, to = Box3d::kInfinite;
    const auto slab = [&](double at, double step, double low, double high) {
        if (step == 0)
            return low <= at && at <= high;
        const double a = (low - at) / step, b = (high - at) / step;
        from = std::max(from, std::min(a, b));
        to = std::min(to, std::max(a, b));
        return from <= to;
    };
    return slab(base.x, direction.x, e.minPoint().x, e.maxPoint().x) && slab(base.y, direction.y, e.minPoint().y, e.maxPoint().y);
}

std::vector<SpaceIndex::Candidate> SpaceIndex::along(const VcGePoint3d& base, const VcGeVector3d& direction) const
{
    const auto half = [](double at, double step) {
        return std::pair(step < 0 ? -Box3d::kInfinite : at, step > 0 ? Box3d::kInfinite : at);
    };
    const auto [left, right] = half(base.x, direction.x);
    const auto [bottom, top] = half(base.y, direction.y);
    std::vector<Candidate> found;
    m_boxes.visit({{left, bottom, -Box3d::kInfinite}, {right, top, Box3d::kInfinite}}, [&](std::uint64_t slot, const Box3d& box) {
        if (!box.isFinite() || passesOver(base, direction, extentsOf(box)))
            addCandidate(found, slot, box);
        return true;
    });
    inDrawingOrder(found);
    return found;
}

}  // namespace vk::edit
