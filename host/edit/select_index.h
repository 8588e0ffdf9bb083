// Where the entities of one space lie, kept up to date as the drawing changes.
#pragma once

#include "host/base/api.h"
#include "host/edit/select_shape.h"
#include "host/geom/spatial_index.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace vk::edit {

// The viewport that stands for the sheet. People see no frame of it and never mean it.
bool isSheetItself(const VcDbEntity& entity);

class VKHOST_API SpaceIndex {
public:
    // The index of a space, brought up to date.
    static SpaceIndex& of(const DatabaseCore& db, VcDbObjectId space);

    struct Candidate {
        const VcDbEntity* entity;
        VcDbExtents extents;  // empty for what lies everywhere or cannot be told
    };
    // What is not erased and may touch the area, in the order of drawing; everything without one.
    std::vector<Candidate> candidates(const std::optional<PlanArea>& area) const;
    // What a chain of straight lines may pass over or under.
    std::vector<Candidate> below(const std::vector<VcGePoint3d>& chain) const;
    // What a ray may pass over or under.
    std::vector<Candidate> along(const VcGePoint3d& base, const VcGeVector3d& direction) const;

private:
    SpaceIndex(const DatabaseCore& db, VcDbObjectId space) : m_db(db), m_space(space) {}
    void refresh();
    void rebuild();
    using Found = geom::SpatialIndex::Found;
    // Of what was found, those that touch the box.
    std::vector<Candidate> inDrawingOrder(const geom::Box3d& within) const;
    bool follow(std::span<const std::uint32_t> changed);
    // False when more than the one object may lie elsewhere now.
    bool follow(const VcDbObject& changed);
    void update(const VcDbEntity& entity);
    std::vector<std::uint32_t> members() const;

    const DatabaseCore& m_db;
    VcDbObjectId m_space;
    std::optional<std::uint64_t> m_changes;  // up to which it is right
    geom::SpatialIndex m_boxes;              // by slot
    // Of the search under way, kept for their memory.
    mutable std::vector<Found> m_found;
    mutable std::vector<std::uint64_t> m_places;  // in the order of drawing, and in m_found
};

}  // namespace vk::edit
