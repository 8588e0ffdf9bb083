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

const Box3d kEverywhere{{-Box3d::kInfinite, -Box3d::kInfinite, -Box3d::kInfinite},
                        {Box3d::kInfinite, Box3d::kInfinite, Box3d::kInfinite}};

Box3d boxOf(const VcDbEntity& entity)
{
    VcDbExtents extents;
    if (entity.getGeomExtents(extents) != Vcad::eOk || extents.isEmpty())
        return kEverywhere;
    const Box3d box{extents.minPoint(), extents.maxPoint()};
    return box.isFinite() ? box : kEverywhere;
}

void fetch(const VcDbObject* object)
{
    constexpr std::size_t kCacheLine = 64;
    const auto* start = reinterpret_cast<const char*>(object);
    for (std::size_t line = 0; line < 3; ++line)
        __builtin_prefetch(start + line * kCacheLine);
}

VcDbExtents extentsOf(const Box3d& box) { return box.isFinite() ? VcDbExtents(box.min, box.max) : VcDbExtents(); }

}

bool isSheetItself(const VcDbEntity& entity)
{
    const auto* viewport = VcDbViewport::cast(&entity);
    return viewport && viewport->number() == 1;
}

static bool isFound(const VcDbEntity& entity) { return !entity.isErased() && !isSheetItself(entity); }

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
    const std::vector<std::uint32_t> slots = members();
    entries.reserve(slots.size());
    for (const std::uint32_t slot : slots)
        if (const auto* entity = VcDbEntity::cast(m_db.objectAt(slot)); entity && isFound(*entity))
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
    if (entity && (entity->ownerId() == m_space || m_boxes.has(entity->objectId().slot())))
        update(*entity);
    return !othersHangOn(m_db, changed);
}

void SpaceIndex::update(const VcDbEntity& entity)
{
    if (isFound(entity) && entity.ownerId() == m_space)
        m_boxes.set(entity.objectId().slot(), boxOf(entity));
    else
        m_boxes.erase(entity.objectId().slot());
}

// What is found lies all over the memory: asked for ahead, it is waited for together. What was found twice comes once.
std::vector<SpaceIndex::Candidate> SpaceIndex::inDrawingOrder(const Box3d& within) const
{
    constexpr std::size_t kAhead = 12;
    m_places.clear();
    for (std::size_t i = 0; i < m_found.size() + kAhead; ++i) {
        if (i < m_found.size())
            fetch(m_db.objectAt(m_found[i].id));
        if (i >= kAhead && m_found[i - kAhead].box->touches(within))
            m_places.push_back(std::uint64_t(m_db.objectAt(m_found[i - kAhead].id)->order()) << 32 | (i - kAhead));
    }
    std::sort(m_places.begin(), m_places.end());
    std::vector<Candidate> candidates;
    candidates.reserve(m_places.size());
    for (const std::uint64_t place : m_places) {
        const Found& one = m_found[std::uint32_t(place)];
        const auto* entity = static_cast<const VcDbEntity*>(m_db.objectAt(one.id));
        if (candidates.empty() || candidates.back().entity != entity)
            candidates.push_back({entity, extentsOf(*one.box)});
    }
    return candidates;
}

std::vector<SpaceIndex::Candidate> SpaceIndex::candidates(const std::optional<PlanArea>& area) const
{
    if (area) {
        const Box3d within{{area->min.x, area->min.y, -Box3d::kInfinite}, {area->max.x, area->max.y, Box3d::kInfinite}};
        m_found.clear();
        m_boxes.addNear(within, m_found);
        return inDrawingOrder(within);
    }
    std::vector<Candidate> found;
    for (const std::uint32_t slot : members())
        if (const auto box = m_boxes.boxOf(slot))
            found.push_back({static_cast<const VcDbEntity*>(m_db.objectAt(slot)), extentsOf(*box)});
    return found;
}

std::vector<SpaceIndex::Candidate> SpaceIndex::below(const std::vector<VcGePoint3d>& chain) const
{
    m_found.clear();
    for (std::size_t i = 0; i + 1 < chain.size(); ++i)
        m_boxes.addBelow(chain[i], chain[i + 1], m_found);
    return inDrawingOrder(kEverywhere);
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
    return slab(base.x, direction.x, e.minPoint().x, e.maxPoint().x) &&
           slab(base.y, direction.y, e.minPoint().y, e.maxPoint().y);
}

std::vector<SpaceIndex::Candidate> SpaceIndex::along(const VcGePoint3d& base, const VcGeVector3d& direction) const
{
    const auto half = [](double at, double step) {
        return std::pair(step < 0 ? -Box3d::kInfinite : at, step > 0 ? Box3d::kInfinite : at);
    };
    const auto [left, right] = half(base.x, direction.x);
    const auto [bottom, top] = half(base.y, direction.y);
    m_found.clear();
    m_boxes.addTouching({{left, bottom, -Box3d::kInfinite}, {right, top, Box3d::kInfinite}}, m_found);
    std::erase_if(m_found,
                  [&](const Found& f) { return f.box->isFinite() && !passesOver(base, direction, extentsOf(*f.box)); });
    return inDrawingOrder(kEverywhere);
}

}  // namespace vk::edit
