#include "host/geom/join.h"

#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"

#include <cmath>
#include <deque>

namespace vk::geom {

namespace {

// Lines along one line

bool liesAlong(const Segment& line, const Segment& other, double tolerance)
{
    const Vector3 direction = (line.end - line.start).normal();
    const auto off = [&](const Point3& p) { return (p - line.start).crossProduct(direction).length(); };
    return off(other.start) <= tolerance && off(other.end) <= tolerance;
}

Segment span(const Segment& line, const Segment& other)
{
    const Vector3 v = line.end - line.start;
    Point3 first = line.start, last = line.end;
    for (const Point3& p : {other.start, other.end}) {
        const double t = (p - line.start).dotProduct(v);
        if (t < (first - line.start).dotProduct(v))
            first = p;
        if (t > (last - line.start).dotProduct(v))
            last = p;
    }
    return {first, last};
}

std::optional<Joined> joinedLines(const std::vector<Curve>& curves, double tolerance)
{
    Segment line = std::get<Segment>(curves[0]);
    Joined result{line, {0}};
    for (size_t i = 1; i < curves.size(); ++i)
        if (const auto* other = std::get_if<Segment>(&curves[i]);
            other && line.start != line.end && liesAlong(line, *other, tolerance)) {
            line = span(line, *other);
            result.used.push_back(i);
        }
    result.curve = line;
    return result.used.size() > 1 ? std::optional(result) : std::nullopt;
}

// Arcs of one circle or ellipse: each goes on anticlockwise to the next.

double ahead(double from, double to)
{
    const double turn = std::fmod(to - from, kTwoPi);
    return turn < 0 ? turn + kTwoPi : turn;
}

bool isSameRound(const Arc& a, const Arc& b, double tolerance)
{
    return a.center.distanceTo(b.center) <= tolerance && std::fabs(a.radius - b.radius) <= tolerance &&
           (a.normal.normal() - b.normal.normal()).length() <= 1e-9;
}

bool isSameRound(const Ellipse& a, const Ellipse& b, double tolerance)
{
    return a.center.distanceTo(b.center) <= tolerance && (a.major - b.major).length() <= tolerance &&
           std::fabs(a.ratio - b.ratio) <= 1e-9 && (a.normal.normal() - b.normal.normal()).length() <= 1e-9;
}

template <class Round>
std::optional<Joined> joinedRound(const std::vector<Curve>& curves, double tolerance)
{
    Round whole = std::get<Round>(curves[0]);
    Joined result{whole, {0}};
    for (size_t i = 1; i < curves.size(); ++i)
        if (const auto* other = std::get_if<Round>(&curves[i]); other && isSameRound(whole, *other, tolerance)) {
            // Up to the end that lies further on, not past the own start.
            const double reach =
                std::max(whole.end - whole.start, ahead(whole.start, other->start) + (other->end - other->start));
            whole.end = whole.start + std::min(reach, kTwoPi);
            result.used.push_back(i);
        }
    result.curve = whole;
    return result.used.size() > 1 ? std::optional(result) : std::nullopt;
}

// Chains

struct Link {
    size_t index;
    Curve curve;
};

bool isLink(const Curve& c) { return isValid(c) && !isClosed(c) && startPoint(c) && endPoint(c); }

// Puts whatever fits to either end, until nothing more does.
std::deque<Link> chainFrom(const std::vector<Curve>& curves, double tolerance)
{
    std::deque<Link> chain{{0, curves[0]}};
    std::vector<bool> used(curves.size());
    used[0] = true;
    for (bool grew = true; grew;) {
        grew = false;
        for (size_t i = 1; i < curves.size(); ++i) {
            if (used[i] || !isLink(curves[i]))
                continue;
            const Point3 head = *startPoint(chain.front().curve), tail = *endPoint(chain.back().curve);
            const Point3 start = *startPoint(curves[i]), end = *endPoint(curves[i]);
            if (tail.distanceTo(start) <= tolerance)
                chain.push_back({i, curves[i]});
            else if (tail.distanceTo(end) <= tolerance)
                chain.push_back({i, reversed(curves[i])});
            else if (head.distanceTo(end) <= tolerance)
                chain.push_front({i, curves[i]});
            else if (head.distanceTo(start) <= tolerance)
                chain.push_front({i, reversed(curves[i])});
            else
                continue;
            used[i] = grew = true;
        }
    }
    return chain;
}

std::optional<VcGePlane> commonPlane(const std::deque<Link>& chain, double tolerance)
{
    std::optional<VcGePlane> plane;
    for (const Link& link : chain)
        if (std::holds_alternative<Polyline>(link.curve) && !plane)
            plane = planeOf(link.curve);
    for (const Link& link : chain)
        if (!plane && !std::holds_alternative<Segment>(link.curve))
            plane = planeOf(link.curve);
    if (!plane) {
        const Point3 start = *startPoint(chain.front().curve);
        const bool level = std::all_of(chain.begin(), chain.end(), [&](const Link& l) {
            return std::fabs(endPoint(l.curve)->z - start.z) <= tolerance;
        });
        Vector3 normal = level ? Vector3::zAxis() : Vector3();
        for (size_t i = 0; i + 1 < chain.size() && normal.length() <= 1e-12; ++i)
            normal = (*endPoint(chain[i].curve) - *startPoint(chain[i].curve))
                         .crossProduct(*endPoint(chain[i + 1].curve) - *startPoint(chain[i + 1].curve))
                         .normal();
        plane = VcGePlane(start, normal.length() > 0 ? normal : Vector3::zAxis());
    }
    for (const Link& link : chain) {
        const auto own = planeOf(link.curve);
        if (own && own->normal().crossProduct(plane->normal()).length() > 1e-9)
            return std::nullopt;
        for (const Point3& p : {*startPoint(link.curve), *endPoint(link.curve)})
            if (plane->distanceTo(p) > tolerance)
                return std::nullopt;
    }
    return plane;
}

std::vector<PolyVertex> verticesOf(const Curve& curve, const Vector3& normal)
{
    const auto local = [&](const Point3& p) {
        const Point3 q = fromWorld(p, normal);
        return Point2(q.x, q.y);
    };
    std::vector<PolyVertex> vertices;
    if (const auto* p = std::get_if<Polyline>(&curve)) {
        const double side = p->normal.dotProduct(normal) < 0 ? -1 : 1;
        for (size_t i = 0; i < p->vertices.size(); ++i) {
            const PolyVertex& v = p->vertices[i];
            vertices.push_back({local(pointAt(curve, double(i))), v.bulge * side, v.startWidth, v.endWidth});
        }
        return vertices;
    }
    double bulge = 0;
    if (const auto* a = std::get_if<Arc>(&curve))
        bulge = std::tan((a->end - a->start) / 4) * (a->normal.dotProduct(normal) < 0 ? -1 : 1);
    return {{local(*startPoint(curve)), bulge}, {local(*endPoint(curve))}};
}

bool fitsPolyline(const Curve& c)
{
    return std::holds_alternative<Segment>(c) || std::holds_alternative<Arc>(c) || std::holds_alternative<Polyline>(c);
}

std::optional<Curve> asPolyline(const std::deque<Link>& chain, double tolerance)
{
    for (const Link& link : chain)
        if (!fitsPolyline(link.curve))
            return std::nullopt;
    const auto plane = commonPlane(chain, tolerance);
    if (!plane)
        return std::nullopt;
    Vector3 normal = plane->normal();
    if (normal.z < -1 + 1e-12)
        normal = -normal;
    Polyline whole{{}, false, fromWorld(plane->pointOnPlane(), normal).z, normal};
    for (const Link& link : chain) {
        const auto vertices = verticesOf(link.curve, normal);
        if (!whole.vertices.empty())
            whole.vertices.pop_back();
        whole.vertices.insert(whole.vertices.end(), vertices.begin(), vertices.end());
    }
    if (whole.vertices.size() > 2 &&
        whole.vertices.front().point.distanceTo(whole.vertices.back().point) <= tolerance) {
        whole.vertices.pop_back();
        whole.closed = true;
    }
    return whole;
}

std::optional<Curve> asSpacePolyline(const std::deque<Link>& chain)
{
    Polyline3 whole;
    for (const Link& link : chain) {
        std::vector<Point3> points;
        if (const auto* s = std::get_if<Segment>(&link.curve))
            points = {s->start, s->end};
        else if (const auto* p = std::get_if<Polyline3>(&link.curve))
            points = p->vertices;
        else
            return std::nullopt;
        whole.vertices.insert(whole.vertices.end(), points.begin() + (whole.vertices.empty() ? 0 : 1), points.end());
    }
    return whole;
}

std::optional<Curve> asSpline(const std::deque<Link>& chain)
{
    std::vector<Nurbs> splines;
    int degree = 1;
    for (const Link& link : chain) {
        auto next = toNurbs(link.curve);
        if (!next)
            return std::nullopt;
        degree = std::max(degree, next->degree);
        splines.push_back(std::move(*next));
    }
    Nurbs whole = withDegree(splines.front(), degree);
    for (size_t i = 1; i < splines.size(); ++i)
        whole = joined(whole, withDegree(splines[i], degree));
    return whole;
}

}  // namespace

std::optional<Joined> joinedToFirst(const std::vector<Curve>& curves, double tolerance)
{
    if (curves.size() < 2 || !isValid(curves[0]))
        return std::nullopt;
    if (std::holds_alternative<Segment>(curves[0]))
        if (auto lines = joinedLines(curves, tolerance))
            return lines;
    if (std::holds_alternative<Arc>(curves[0]))
        if (auto arcs = joinedRound<Arc>(curves, tolerance))
            return arcs;
    if (std::holds_alternative<Ellipse>(curves[0]))
        if (auto arcs = joinedRound<Ellipse>(curves, tolerance))
            return arcs;
    if (!isLink(curves[0]))
        return std::nullopt;
    const auto chain = chainFrom(curves, tolerance);
    if (chain.size() < 2)
        return std::nullopt;
    auto curve = asPolyline(chain, tolerance);
    if (!curve)
        curve = asSpacePolyline(chain);
    if (!curve)
        curve = asSpline(chain);
    if (!curve)
        return std::nullopt;
    Joined result{std::move(*curve), {0}};
    for (const Link& link : chain)
        if (link.index != 0)
            result.used.push_back(link.index);
    return result;
}

std::optional<Curve> closedRound(const Curve& curve)
{
    if (const auto* a = std::get_if<Arc>(&curve))
        return Circle{a->center, a->radius, a->normal};
    if (const auto* e = std::get_if<Ellipse>(&curve); e && !isClosed(curve))
        return Ellipse{e->center, e->major, e->ratio, 0, kTwoPi, e->normal};
    return std::nullopt;
}

}  // namespace vk::geom
