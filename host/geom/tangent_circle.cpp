#include "host/geom/tangent_circle.h"

#include "host/geom/intersect.h"
#include "host/geom/offset.h"

#include <cmath>

namespace vk::geom {

namespace {

// Where the centres of circles lie that touch a curve.
std::vector<Curve> centerLines(const Curve& carrier, double radius, const Vector3& up)
{
    std::vector<Curve> lines;
    if (const auto* c = std::get_if<Circle>(&carrier)) {
        lines.push_back(Circle{c->center, c->radius + radius, c->normal});
        if (const double inner = std::fabs(c->radius - radius); inner > 1e-12 * c->radius)
            lines.push_back(Circle{c->center, inner, c->normal});
        return lines;
    }
    for (const double side : {radius, -radius})
        for (Curve& curve : offset(carrier, side, GapFill::Fillet, up).curves)
            lines.push_back(std::move(curve));
    return lines;
}

}  // namespace

Curve carrierOf(const Curve& curve)
{
    if (const auto* s = std::get_if<Segment>(&curve); s && s->start != s->end)
        return XLine{s->start, s->end - s->start};
    if (const auto* r = std::get_if<Ray>(&curve))
        return XLine{r->base, r->direction};
    if (const auto* a = std::get_if<Arc>(&curve))
        return Circle{a->center, a->radius, a->normal};
    if (const auto* e = std::get_if<Ellipse>(&curve))
        return Ellipse{e->center, e->major, e->ratio, 0, kTwoPi, e->normal};
    return curve;
}

std::vector<TangentCircle> tangentCircles(const Curve& a, const Curve& b, double radius, const Vector3& up)
{
    std::vector<TangentCircle> found;
    for (const Curve& p : centerLines(a, radius, up))
        for (const Curve& q : centerLines(b, radius, up))
            for (const Point3& center : contactPoints(intersect(p, q))) {
                const auto onA = closestPoint(a, center), onB = closestPoint(b, center);
                const double slack = 1e-6 * radius + meetingTolerance(a, b);
                if (onA && onB && std::fabs(onA->distance - radius) <= slack &&
                    std::fabs(onB->distance - radius) <= slack)
                    found.push_back({center, onA->param, onB->param});
            }
    return found;
}

std::optional<TangentCircle> tangentCircleNear(const Curve& a, const Curve& b, double radius, const Vector3& up,
                                               const Point3& nearA, const Point3& nearB)
{
    std::optional<TangentCircle> best;
    double least = Box3d::kInfinite;
    for (const TangentCircle& c : tangentCircles(a, b, radius, up)) {
        const double away = pointAt(a, c.first).distanceTo(nearA) + pointAt(b, c.second).distanceTo(nearB);
        if (away < least) {
            least = away;
            best = c;
        }
    }
    return best;
}

std::optional<Point3> centerThrough(const Point3& a, const Point3& b, const Point3& c)
{
    const Vector3 u = b - a, v = c - a, normal = u.crossProduct(v);
    const double size = std::max(u.length(), v.length());
    if (normal.length() <= 1e-12 * size * size)
        return std::nullopt;
    const Vector3 toCenter = (v * u.lengthSqrd() - u * v.lengthSqrd()).crossProduct(normal) / (2 * normal.lengthSqrd());
    return a + toCenter;
}

}  // namespace vk::geom
