#include "host/geom/apparent.h"

#include "host/geom/curve_edit.h"

#include <cmath>

namespace vk::geom {

namespace {

// Whether a projection leaves the parameters of the curve alone.
bool keepsParams(const Curve& curve, const Vector3& direction)
{
    const bool planar = std::holds_alternative<Circle>(curve) || std::holds_alternative<Arc>(curve) ||
                        std::holds_alternative<Ellipse>(curve) || std::holds_alternative<Polyline>(curve);
    const auto plane = planar ? planeOf(curve) : std::nullopt;
    return !plane || plane->normal().crossProduct(direction).length() <= 1e-12;
}

bool isFlatAcross(const Curve& curve, const Vector3& direction, double& level)
{
    const auto levelOf = [&](const Point3& p) { return p.asVector().dotProduct(direction); };
    const auto across = [&](const Vector3& v) { return std::fabs(v.normal().dotProduct(direction)) <= 1e-12; };
    if (const auto* segment = std::get_if<Segment>(&curve)) {
        level = levelOf(segment->start);
        return segment->start == segment->end || across(segment->end - segment->start);
    }
    if (const auto* ray = std::get_if<Ray>(&curve)) {
        level = levelOf(ray->base);
        return across(ray->direction);
    }
    if (const auto* line = std::get_if<XLine>(&curve)) {
        level = levelOf(line->base);
        return across(line->direction);
    }
    if (const auto plane = planeOf(curve)) {
        level = levelOf(plane->pointOnPlane());
        return plane->normal().crossProduct(direction).length() <= 1e-12;
    }
    return false;
}

bool shareLevel(const Curve& a, const Curve& b, const Vector3& direction)
{
    double p = 0, q = 0;
    return isFlatAcross(a, direction, p) && isFlatAcross(b, direction, q) && std::fabs(p - q) <= meetingTolerance(a, b);
}

}  // namespace

std::optional<double> paramSeenAt(const Curve& curve, const Point3& seen, const Vector3& direction)
{
    const Vector3 n = direction.normal();
    if (const auto plane = planeOf(curve); plane && std::fabs(plane->normal().dotProduct(n)) > 1e-9) {
        const auto near = closestPoint(curve, seen.project(*plane, n));
        return near ? std::optional(near->param) : std::nullopt;
    }
    // A curve through space keeps its parameters on the picture; one that is seen from its edge does not.
    const Curve flat = transformed(curve, VcGeMatrix3d::projection(VcGePlane(Point3(), n), n));
    const auto near = keepsParams(curve, n) ? closestPoint(flat, seen.orthoProject(VcGePlane(Point3(), n)))
                                            : closestPoint(curve, seen);
    return near ? std::optional(near->param) : std::nullopt;
}

std::vector<Crossing> apparentCrossings(const Curve& a, const Curve& b, const Vector3& direction, Extend extend)
{
    if (!isValid(a) || !isValid(b))
        return {};
    const Vector3 n = direction.lengthSqrd() > 0 ? direction.normal() : Vector3::zAxis();
    const auto listed = [](const Meeting& meeting) {
        std::vector<Crossing> all = meeting.points;
        for (const Overlap& o : meeting.overlaps)
            for (const auto& [p, s, t] :
                 {std::tuple(o.start, o.first.from, o.second.from), std::tuple(o.end, o.first.to, o.second.to)})
                if (std::isfinite(s))
                    all.push_back({p, s, t, true});
        return all;
    };
    if (shareLevel(a, b, n))
        return listed(intersect(a, b, extend));
    const VcGeMatrix3d onto = VcGeMatrix3d::projection(VcGePlane(Point3(), n), n);
    const Curve flatA = transformed(a, onto), flatB = transformed(b, onto);
    std::vector<Crossing> seen = listed(intersect(flatA, flatB, extend));
    for (Crossing& c : seen) {
        const Point3 at = c.point;
        if (!keepsParams(a, n)) {
            // Beyond its ends a planar curve is continued in its own plane.
            const auto plane = planeOf(a);
            const bool seenOpen = plane && std::fabs(plane->normal().dotProduct(n)) > 1e-9;
            c.point = seenOpen ? at.project(*plane, n) : pointAt(a, paramSeenAt(a, at, n).value_or(0));
            const auto near = closestPoint(a, c.point);
            c.first = near ? near->param : c.first;
        } else {
            c.point = pointAt(a, c.first);
        }
        if (!keepsParams(b, n))
            c.second = paramSeenAt(b, at, n).value_or(c.second);
    }
    return seen;
}

}  // namespace vk::geom
