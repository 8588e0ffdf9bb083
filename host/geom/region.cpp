#include "host/geom/region.h"

#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"
#include "host/geom/piece.h"

#include <cmath>

namespace vk::geom {

namespace {

Polyline3 outlineOf(const std::vector<Point2>& corners, bool closed)
{
    Polyline3 outline{{}, closed};
    for (const Point2& c : corners)
        outline.vertices.push_back({c.x, c.y, 0});
    return outline;
}

// Tight, and of the bare curve.
Box3d runOf(const Curve& curve)
{
    Box3d box;
    for (const Piece& piece : piecesOf(curve))
        box.add(boxOf(piece.shape));
    return box;
}

double distanceToSide(const Point2& p, const Point2& a, const Point2& b)
{
    const Vector2 side = b - a;
    const double squared = side.lengthSqrd();
    const double t = squared > 0 ? std::clamp((p - a).dotProduct(side) / squared, 0.0, 1.0) : 0;
    return p.distanceTo(a + side * t);
}

// A ray that runs along the line of sight is seen as a point.
bool seenAsPoint(const Curve& curve, Point3& at)
{
    if (const auto* ray = std::get_if<Ray>(&curve)) {
        at = ray->base;
        return ray->direction.lengthSqrd() == 0;
    }
    if (const auto* line = std::get_if<XLine>(&curve)) {
        at = line->base;
        return line->direction.lengthSqrd() == 0;
    }
    return false;
}

}  // namespace

Curve flattened(const Curve& curve, const VcGeMatrix3d& toView)
{
    VcGeMatrix3d flat = toView;
    for (double& entry : flat.entry[2])
        entry = 0;
    Curve seen = transformed(curve, flat);
    Point3 at;
    return seenAsPoint(seen, at) ? Curve(Segment{at, at}) : seen;
}

Region::Region(std::vector<Point2> corners, const VcGeMatrix3d& toView)
    : m_corners(std::move(corners)), m_toView(toView)
{
    for (const Point2& c : m_corners)
        m_box.add(Point3(c.x, c.y, 0));
}

Region Region::window(const Point2& corner, const Point2& opposite, const VcGeMatrix3d& toView)
{
    Region region({corner, {opposite.x, corner.y}, opposite, {corner.x, opposite.y}}, toView);
    region.m_isWindow = true;
    return region;
}

bool Region::contains(const Point3& p) const
{
    const Point3 seen = m_toView * p;
    const double rounding = 4e-15 * std::max(std::fabs(seen.x), std::fabs(seen.y));
    return holds({seen.x, seen.y}, 1e-12 * m_box.diagonal() + rounding);
}

bool Region::contains(const Curve& curve) const
{
    const Curve seen = flattened(curve, m_toView);
    const Box3d box = runOf(seen);
    if (m_corners.size() < 2 || !box.isFinite())
        return false;
    const double tolerance = meetingTolerance(seen, outlineOf(m_corners, true));
    if (!m_box.grown(tolerance).contains(box))
        return false;
    return m_isWindow || holdsBetweenCuts(seen);
}

bool Region::touches(const Curve& curve) const
{
    const Curve seen = flattened(curve, m_toView);
    const Curve outline = outlineOf(m_corners, true);
    const Box3d box = runOf(seen);
    const double tolerance = meetingTolerance(seen, outline);
    if (m_corners.size() < 2 || !m_box.grown(tolerance).touches(box))
        return false;
    const auto near = closestPoint(seen, {m_corners[0].x, m_corners[0].y, 0});
    return holds({near->point.x, near->point.y}, tolerance) || !intersect(seen, outline).empty();
}

// Even-odd, the sides included.
bool Region::holds(const Point2& p, double tolerance) const
{
    bool inside = false;
    for (size_t i = 0; i < m_corners.size(); ++i) {
        const Point2 &a = m_corners[i], &b = m_corners[(i + 1) % m_corners.size()];
        if (distanceToSide(p, a, b) <= tolerance)
            return true;
        if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (b.x - a.x) * ((p.y - a.y) / (b.y - a.y)))
            inside = !inside;
    }
    return inside;
}

// Cut by the outline, each part is wholly inside or wholly outside.
bool Region::holdsBetweenCuts(const Curve& seen) const
{
    const Curve outline = outlineOf(m_corners, true);
    const Meeting meeting = intersect(seen, outline);
    const Interval range = paramRange(seen);
    std::vector<double> cuts{range.from, range.to};
    for (const Crossing& c : meeting.points)
        cuts.push_back(c.first);
    for (const Overlap& o : meeting.overlaps)
        cuts.insert(cuts.end(), {o.first.from, o.first.to});
    std::sort(cuts.begin(), cuts.end());
    const double tolerance = 2 * meetingTolerance(seen, outline);
    for (size_t i = 0; i + 1 < cuts.size(); ++i) {
        const Point3 middle = pointAt(seen, (cuts[i] + cuts[i + 1]) / 2);
        if (!holds({middle.x, middle.y}, tolerance))
            return false;
    }
    return true;
}

bool fenceTouches(const std::vector<Point2>& fence, const Curve& curve, const VcGeMatrix3d& toView)
{
    return !fence.empty() && !intersect(flattened(curve, toView), outlineOf(fence, false)).empty();
}

}  // namespace vk::geom
