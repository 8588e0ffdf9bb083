// Windows, crossings and fences on the picture of a view, and which entities they take.
#pragma once

#include "host/edit/select_shape.h"
#include "host/edit/select_view.h"

#include <span>

namespace vk::edit {

class VKHOST_API SelectArea {
public:
    enum class Kind {
        Window,    // what lies wholly within; touching the edge from inside counts as within
        Crossing,  // what lies within or touches
        Fence,     // what touches the open chain
    };
    // Points are in the world. A window's corners span a rectangle that is level on the picture.
    static SelectArea rectangle(const PickView& view, const VcGePoint3d& a, const VcGePoint3d& b, Kind kind);
    static SelectArea polygon(const PickView& view, std::span<const VcGePoint3d> points, Kind kind);

    // Whether the outlines that are seen of the entity are taken.
    bool takes(const DatabaseCore& db, const SeenLayers& layers, const VcDbEntity& entity) const;
    // The same without making outlines, for what has straight ones; nothing for all else. The extents are the entity's.
    std::optional<bool> takesPlain(const VcDbEntity& entity, const VcDbExtents& extents) const;
    // What extents alone say: yes, no, or that the outlines must be looked at. Tight ones are touched on every side.
    std::optional<bool> takesExtents(const VcDbExtents& extents, bool tight) const;
    // In the world, on the plane of the picture.
    std::vector<VcGePoint3d> corners() const;
    bool isFence() const { return m_kind == Kind::Fence; }
    // Around all of it, where the view looks straight down.
    std::optional<PlanArea> plan() const;

private:
    SelectArea(const PickView& view, Kind kind, std::vector<VcGePoint2d> points, bool isRectangle);
    bool contains(const VcGePoint2d& p) const;
    bool meets(const std::vector<VcGePoint2d>& chain, bool filled) const;
    bool holds(const std::vector<VcGePoint2d>& chain) const;
    bool takesChain(const std::vector<VcGePoint2d>& chain, bool filled) const;
    bool takesCurve(const geom::Curve& curve) const;
    bool takesOutline(const Outline& outline, double chordError) const;
    std::optional<bool> takesChords(const std::vector<VcGePoint2d>& chain, double chordError) const;
    std::optional<bool> meetsChords(const std::vector<VcGePoint2d>& chain, double chordError) const;
    bool crossesSurely(const VcGePoint2d& from, const VcGePoint2d& to, double slack) const;
    bool missesPart(const VcDbEntity& part, const VcGeMatrix3d& toWorld) const;
    std::optional<bool> holdsChords(const std::vector<VcGePoint2d>& chain) const;
    bool isNearEdge(const VcGePoint2d& low, const VcGePoint2d& high) const;
    std::size_t edgeCount() const { return m_kind == Kind::Fence ? m_points.size() - 1 : m_points.size(); }

    PickView m_view;
    Kind m_kind;
    std::vector<VcGePoint2d> m_points;
    bool m_isRectangle;
    VcGePoint2d m_min, m_max;
    mutable std::vector<VcGePoint2d> m_chain;  // under test, kept for its memory
};

// Distance of a point of the picture to an outline as it is seen, whose chords keep that near to its curve. What lies
// beyond the reach of the view may be told less exactly.
double distanceTo(const VcGePoint2d& p, const Outline& outline, const PickView& view, double chordError);
// Distance of a point to a chain on the picture, 0 within a filled one.
double distanceTo(const VcGePoint2d& p, const std::vector<VcGePoint2d>& chain, bool filled);
std::vector<VcGePoint2d> projected(const PickView& view, const std::vector<VcGePoint3d>& points);

}  // namespace vk::edit
