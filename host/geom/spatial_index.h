// Finds things by place: boxes with ids, kept in a tree that follows changes.
//
// Drawings are wide and flat, so the tree looks at X and Y and the found boxes are then held against Z. Boxes that are
// empty are never found; infinite ones (construction lines) are kept aside and looked at one by one.
#pragma once

#include "host/base/api.h"
#include "host/geom/box.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace vk::geom {

class VKHOST_API SpatialIndex
{
public:
    using Id = std::uint64_t;
    using Entry = std::pair<Id, Box3d>;

    SpatialIndex();
    explicit SpatialIndex(const std::vector<Entry>& entries); // much faster than one by one
    ~SpatialIndex();
    SpatialIndex(SpatialIndex&&) noexcept;
    SpatialIndex& operator=(SpatialIndex&&) noexcept;

    void set(Id id, const Box3d& box); // a new id, or a new box for a known one
    bool erase(Id id);                 // false when there was none
    void clear();

    size_t size() const;
    std::optional<Box3d> boxOf(Id id) const;
    Box3d extents() const; // of all finite boxes, as they stand in X and Y

    // In no particular order. Touching counts.
    std::vector<Id> touching(const Box3d& box) const;
    std::vector<Id> alongSegment(const VcGePoint3d& from, const VcGePoint3d& to) const;
    std::vector<Id> alongRay(const VcGePoint3d& base, const VcGeVector3d& direction) const;

    // Until the visitor returns false.
    using Visitor = std::function<bool(Id, const Box3d&)>;
    void visit(const Box3d& box, const Visitor& visitor) const;
    // What the way from one point to another passes in X and Y, at whatever height.
    void visitBelow(const VcGePoint3d& from, const VcGePoint3d& to, const Visitor& visitor) const;

    struct Neighbour
    {
        Id id = 0;
        double distance = 0; // from the box, or as the caller measures it
    };
    // The nearest first. With `measure`, by that distance, which must be no less than the one to the box.
    std::vector<Neighbour> nearest(const VcGePoint3d& to, size_t count,
                                   const std::function<double(Id)>& measure = {}) const;

private:
    struct Tree;
    std::unique_ptr<Tree> m_tree;
};

} // namespace vk::geom
