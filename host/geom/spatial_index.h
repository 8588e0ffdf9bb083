// Finds things by place: boxes with ids, kept in a tree that follows changes.
//
// Drawings are wide and flat, so the tree looks at X and Y and the found boxes are then held against Z. Boxes that are
// empty are never found; infinite ones (construction lines) are kept aside and looked at one by one.
#pragma once

#include "host/geom/box_tree.h"

#include <functional>
#include <optional>
#include <unordered_map>

namespace vk::geom {

class VKHOST_API SpatialIndex {
public:
    using Id = BoxTree::Id;  // memory goes with the largest
    using Entry = BoxTree::Entry;

    SpatialIndex() = default;
    explicit SpatialIndex(const std::vector<Entry>& entries);  // much faster than one by one; each id once

    void set(Id id, const Box3d& box);  // a new id, or a new box for a known one
    bool erase(Id id);                  // false when there was none
    void clear() { *this = {}; }

    size_t size() const { return m_size; }
    bool has(Id id) const { return m_tree.has(id) || m_aside.contains(id); }
    std::optional<Box3d> boxOf(Id id) const;
    Box3d extents() const;  // around all finite boxes in X and Y, wider by rounding

    // In no particular order. Touching counts.
    std::vector<Id> touching(const Box3d& box) const;
    std::vector<Id> alongSegment(const VcGePoint3d& from, const VcGePoint3d& to) const;
    std::vector<Id> alongRay(const VcGePoint3d& base, const VcGeVector3d& direction) const;

    // With their boxes, which stay where they are until the next change. They are added to the list.
    struct Found {
        Id id;
        const Box3d* box;
    };
    void addTouching(const Box3d& box, std::vector<Found>& found) const;
    // As above, with some that only come near by rounding. Their boxes are on the way to the caller, who need not wait here.
    void addNear(const Box3d& box, std::vector<Found>& found) const;
    // What the way from one point to another passes in X and Y, at whatever height, or comes near by rounding.
    void addBelow(const VcGePoint3d& from, const VcGePoint3d& to, std::vector<Found>& found) const;

    struct Neighbour {
        Id id = 0;
        double distance = 0;  // from the box, or as the caller measures it
    };
    // The nearest first. With `measure`, by that distance, which must be no less than the one to the box.
    std::vector<Neighbour> nearest(const VcGePoint3d& to, size_t count,
                                   const std::function<double(Id)>& measure = {}) const;

    const char* fault() const { return m_tree.fault(); }  // of the tree; null where it is sound

private:
    std::vector<Id> along(const VcGePoint3d& base, const VcGeVector3d& direction, double to) const;
    void place(Id id, const Box3d& box);

    BoxTree m_tree;
    std::unordered_map<Id, Box3d> m_aside;  // infinite and empty ones
    size_t m_size = 0;
};

}  // namespace vk::geom
