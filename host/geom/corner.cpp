#include "host/geom/corner.h"

#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"
#include "host/geom/prolong.h"
#include "host/geom/tangent_circle.h"

#include <cmath>

namespace vk::geom {

namespace {

CornerResult failed(CornerFailure why) { return {{}, why}; }

// The parameter of a place on the carrier, as one of the curve: around an arc, by whole turns nearest to it.
double onCurve(const Curve& curve, const Point3& place)
{
    const auto near = closestPoint(carrierOf(curve), place);
    double t = near ? near->param : 0;
    const Interval range = paramRange(curve);
    if (std::holds_alternative<Arc>(curve) || std::holds_alternative<Ellipse>(curve)) {
        const double middle = (range.from + range.to) / 2;
        return t + kTwoPi * std::round((middle - t) / kTwoPi);
    }
    if (std::holds_alternative<Segment>(curve) || std::holds_alternative<Ray>(curve) ||
        std::holds_alternative<XLine>(curve))
        return t;
    const auto own = closestPoint(curve, place);
    return own ? own->param : 0;
}

// Keeps the side of the pick, from the corner on.
std::optional<Curve> keptSide(const CornerSide& side, double corner)
{
    if (isClosed(side.curve))
        return std::nullopt;
    const Interval range = paramRange(side.curve);
    return side.picked >= corner ? betweenEnds(side.curve, corner, range.to)
                                 : betweenEnds(side.curve, range.from, corner);
}

bool inOnePlane(const Curve& a, const Curve& b, const Vector3& normal)
{
    const double slack = 1e-9 * (extents(a).isFinite() ? extents(a).diagonal() : 1) + 10 * meetingTolerance(a, b);
    const Point3 origin = pointAt(a, std::isfinite(paramRange(a).from) ? paramRange(a).from : 0);
    for (const Curve* c : {&a, &b}) {
        const auto plane = planeOf(*c);
        if (plane && plane->normal().crossProduct(normal).length() > 1e-9)
            return false;
        const Interval r = paramRange(*c);
        for (double t : {std::isfinite(r.from) ? r.from : -1.0, std::isfinite(r.to) ? r.to : 1.0})
            if (std::fabs((pointAt(*c, t) - origin).dotProduct(normal)) > slack)
                return false;
    }
    return true;
}

// The plane of both: of the one that has a plane, or the one that two lines span.
Vector3 normalOf(const Curve& a, const Curve& b, const Vector3& up)
{
    for (const Curve* c : {&a, &b})
        if (const auto plane = planeOf(*c))
            return plane->normal().dotProduct(up) < 0 ? -plane->normal() : plane->normal();
    const Vector3 cross = derivativesAt(a, 0).first.normal().crossProduct(derivativesAt(b, 0).first.normal());
    if (cross.length() <= 1e-9)
        return up;
    return cross.dotProduct(up) < 0 ? -cross.normal() : cross.normal();
}

// The shorter way round from one place to the other.
Curve shorterArc(const Point3& center, const Point3& from, const Point3& to, const Vector3& normal)
{
    double start = angleInPlane(from - center, normal), end = angleInPlane(to - center, normal);
    double sweep = std::fmod(end - start + kTwoPi, kTwoPi);
    if (sweep > kTwoPi / 2) {
        std::swap(start, end);
        sweep = kTwoPi - sweep;
    }
    return Arc{center, center.distanceTo(from), start, start + sweep, normal};
}

CornerResult sharp(const CornerSide& a, const CornerSide& b)
{
    const Point3 nearA = pointAt(a.curve, a.picked), nearB = pointAt(b.curve, b.picked);
    const Crossing* best = nullptr;
    const Meeting meeting = intersect(a.curve, b.curve, Extend::Both);
    double least = Box3d::kInfinite;
    for (const Crossing& c : meeting.points)
        if (const double away = c.point.distanceTo(nearA) + c.point.distanceTo(nearB); away < least) {
            least = away;
            best = &c;
        }
    if (!best)
        return failed(CornerFailure::NoCrossing);
    return {{keptSide(a, best->first), keptSide(b, best->second), std::nullopt}};
}

bool isStraight(const Curve& c)
{
    return std::holds_alternative<Segment>(c) || std::holds_alternative<Ray>(c) || std::holds_alternative<XLine>(c);
}

// The part of a straight side that leads away from the corner, from a place on it. Nothing when the side ends before.
std::optional<Curve> awayFrom(const CornerSide& side, double corner, double from)
{
    const Interval range = paramRange(side.curve);
    if (side.picked >= corner)
        return from < range.to ? betweenEnds(side.curve, from, range.to) : std::nullopt;
    return from > range.from ? betweenEnds(side.curve, range.from, from) : std::nullopt;
}

// Of the four circles between two lines the one in the corner where both were picked.
CornerResult betweenLines(const CornerSide& a, const CornerSide& b, double radius, const Vector3& normal)
{
    const Meeting meeting = intersect(a.curve, b.curve, Extend::Both);
    if (meeting.points.empty())
        return failed(CornerFailure::NoCrossing);
    const Crossing& corner = meeting.points.front();
    const auto isPicked = [](const CornerSide& side, double at, double touch) {
        return (side.picked >= at) == (touch >= at);
    };
    const Curve lineA = carrierOf(a.curve), lineB = carrierOf(b.curve);
    for (const TangentCircle& c : tangentCircles(lineA, lineB, radius, normal)) {
        if (!isPicked(a, corner.first, c.first) || !isPicked(b, corner.second, c.second))
            continue;
        auto first = awayFrom(a, corner.first, c.first), second = awayFrom(b, corner.second, c.second);
        if (!first || !second)
            return failed(CornerFailure::NoCircle);
        return {{std::move(first), std::move(second),
                 shorterArc(c.center, pointAt(lineA, c.first), pointAt(lineB, c.second), normal)}};
    }
    return failed(CornerFailure::NoCircle);
}

// Parallel lines are joined by a half circle at the end of the first that its pick is nearer to; the second is cut back or
// goes on to there.
CornerResult halfCircle(const CornerSide& a, const CornerSide& b, const Vector3& normal)
{
    const Interval range = paramRange(a.curve);
    const bool atEnd =
        std::isfinite(range.to) && (!std::isfinite(range.from) || range.to - a.picked < a.picked - range.from);
    const double end = atEnd ? range.to : range.from;
    if (!std::isfinite(end))
        return failed(CornerFailure::Parallel);
    const Point3 from = pointAt(a.curve, end);
    const auto near = closestPoint(carrierOf(b.curve), from);
    if (!near || !(near->distance > 0))
        return failed(CornerFailure::Parallel);
    const Point3 to = near->point, center = from + (to - from) * 0.5;
    const Vector3 outward = derivativesAt(a.curve, end).first * (atEnd ? 1.0 : -1.0);
    const bool leads = (from - center).crossProduct(outward).dotProduct(normal) > 0;
    const double start = angleInPlane((leads ? from : to) - center, normal);
    const double corner = onCurve(b.curve, to);
    const Interval rb = paramRange(b.curve);
    const bool keepsBefore =
        derivativesAt(b.curve, 0).first.dotProduct(outward) > 0 ? corner > rb.from : corner >= rb.to;
    auto second = keepsBefore ? betweenEnds(b.curve, rb.from, corner) : betweenEnds(b.curve, corner, rb.to);
    return {{a.curve, std::move(second), Arc{center, near->distance / 2, start, start + kTwoPi / 2, normal}}};
}

}  // namespace

CornerResult filleted(const CornerSide& a, const CornerSide& b, double radius, const Vector3& up)
{
    const Vector3 normal = normalOf(a.curve, b.curve, up);
    if (!inOnePlane(a.curve, b.curve, normal))
        return failed(CornerFailure::NotPlanar);
    if (isStraight(a.curve) && isStraight(b.curve)) {
        const Vector3 u = derivativesAt(a.curve, 0).first.normal(), v = derivativesAt(b.curve, 0).first.normal();
        if (u.crossProduct(v).length() <= 1e-10)
            return halfCircle(a, b, normal);
    }
    if (radius <= 0)
        return sharp(a, b);
    if (isStraight(a.curve) && isStraight(b.curve))
        return betweenLines(a, b, radius, normal);
    const auto circle = tangentCircleNear(carrierOf(a.curve), carrierOf(b.curve), radius, normal,
                                          pointAt(a.curve, a.picked), pointAt(b.curve, b.picked));
    if (!circle)
        return failed(CornerFailure::NoCircle);
    const Point3 from = pointAt(carrierOf(a.curve), circle->first), to = pointAt(carrierOf(b.curve), circle->second);
    Corner corner{keptSide(a, onCurve(a.curve, from)), keptSide(b, onCurve(b.curve, to)),
                  shorterArc(circle->center, from, to, normal)};
    const bool whole = (corner.first || isClosed(a.curve)) && (corner.second || isClosed(b.curve));
    return whole ? CornerResult{std::move(corner)} : failed(CornerFailure::NoCircle);
}

CornerResult chamfered(const CornerSide& a, const CornerSide& b, double first, double second)
{
    if (!isStraight(a.curve) || !isStraight(b.curve))
        return failed(CornerFailure::NotPlanar);
    const Meeting meeting = intersect(a.curve, b.curve, Extend::Both);
    if (meeting.points.empty())
        return failed(meeting.overlaps.empty() ? CornerFailure::NoCrossing : CornerFailure::Parallel);
    const Crossing& c = meeting.points.front();
    const auto moved = [](const CornerSide& side, double corner, double by) {
        const double speed = derivativesAt(side.curve, 0).first.length();
        return corner + (side.picked >= corner ? by : -by) / speed;
    };
    const double p = moved(a, c.first, first), q = moved(b, c.second, second);
    const auto keep = [](const CornerSide& side, double corner, double cut) {
        const Interval r = paramRange(side.curve);
        return side.picked >= corner ? betweenEnds(side.curve, cut, r.to) : betweenEnds(side.curve, r.from, cut);
    };
    Corner corner{keep(a, c.first, p), keep(b, c.second, q), std::nullopt};
    if (!corner.first || !corner.second)
        return failed(CornerFailure::TooLong);
    if (first > 0 || second > 0)
        corner.between = Segment{pointAt(a.curve, p), pointAt(b.curve, q)};
    return {std::move(corner)};
}

// Corners of polylines

namespace {

// How far from a corner both sides are cut, and the bulge of what comes between.
struct Cut {
    double before, after, bulge;
};

struct CornerAt {
    Point2 at;
    Vector2 back, on;  // unit vectors along the sides
    double roomBefore, roomAfter;
    double turn;  // of the direction, positive to the left
};

std::optional<CornerAt> cornerAt(const Polyline& p, size_t i)
{
    const size_t n = p.vertices.size();
    if (n < 3 || (!p.closed && (i == 0 || i + 1 >= n)))
        return std::nullopt;
    const PolyVertex &before = p.vertices[(i + n - 1) % n], &here = p.vertices[i], &after = p.vertices[(i + 1) % n];
    if (before.bulge != 0 || here.bulge != 0)
        return std::nullopt;
    const Vector2 back = before.point - here.point, on = after.point - here.point;
    const double turn = std::atan2((-back).crossProduct(on), (-back).dotProduct(on));
    if (back.length() == 0 || on.length() == 0 || std::fabs(turn) < 1e-9 || std::fabs(turn) > kTwoPi / 2 - 1e-9)
        return std::nullopt;
    return CornerAt{here.point, back.normal(), on.normal(), back.length(), on.length(), turn};
}

std::optional<Cut> filletCut(const CornerAt& c, double radius)
{
    const double reach = radius * std::tan(std::fabs(c.turn) / 2);
    return Cut{reach, reach, std::tan(c.turn / 4)};
}

template <class CutOf>
RoundedPolyline cutCorners(const Polyline& p, const std::vector<size_t>& which, CutOf&& cutOf)
{
    RoundedPolyline result{p};
    const size_t n = p.vertices.size();
    std::vector<std::optional<Cut>> cuts(n);
    std::vector<double> taken(n, 0);  // of the segment that begins at a vertex
    for (size_t i : which) {
        const auto corner = cornerAt(p, i);
        const auto cut = corner ? cutOf(*corner) : std::nullopt;
        if (!cut) {
            ++result.other;
            continue;
        }
        double &before = taken[(i + n - 1) % n], &after = taken[i];
        const double slack = 1e-9 * (corner->roomBefore + corner->roomAfter);
        if (before + cut->before > corner->roomBefore + slack || after + cut->after > corner->roomAfter + slack) {
            ++result.tooShort;
            continue;
        }
        before += cut->before;
        after += cut->after;
        cuts[i] = cut;
        ++result.done;
    }
    result.polyline.vertices.clear();
    for (size_t i = 0; i < n; ++i) {
        const PolyVertex& v = p.vertices[i];
        if (!cuts[i]) {
            result.polyline.vertices.push_back(v);
            continue;
        }
        const CornerAt corner = *cornerAt(p, i);
        const PolyVertex& before = p.vertices[(i + n - 1) % n];
        result.polyline.vertices.push_back(
            {corner.at + corner.back * cuts[i]->before, cuts[i]->bulge, before.endWidth, v.startWidth});
        result.polyline.vertices.push_back({corner.at + corner.on * cuts[i]->after, 0, v.startWidth, v.endWidth});
    }
    // Sides that are used up wholly leave two vertices in one place.
    auto& vertices = result.polyline.vertices;
    for (size_t i = 0; i + 1 < vertices.size();)
        if (vertices[i].bulge == 0 &&
            vertices[i].point.distanceTo(vertices[i + 1].point) <=
                1e-12 * (1 + vertices[i].point.asVector().length()) &&
            result.done > 0)
            vertices.erase(vertices.begin() + std::ptrdiff_t(i));
        else
            ++i;
    return result;
}

std::vector<size_t> allCorners(const Polyline& p)
{
    std::vector<size_t> all;
    const size_t n = p.vertices.size();
    for (size_t i = p.closed ? 0 : 1; i < (p.closed ? n : n ? n - 1 : 0); ++i)
        all.push_back(i);
    return all;
}

}  // namespace

RoundedPolyline filletedAll(const Polyline& p, double radius)
{
    return cutCorners(p, allCorners(p), [&](const CornerAt& c) { return filletCut(c, radius); });
}

RoundedPolyline chamferedAll(const Polyline& p, double first, double second)
{
    return cutCorners(p, allCorners(p), [&](const CornerAt&) { return std::optional(Cut{first, second, 0}); });
}

std::optional<Polyline> filletedAt(const Polyline& p, size_t vertex, double radius)
{
    const auto result = cutCorners(p, {vertex}, [&](const CornerAt& c) { return filletCut(c, radius); });
    return result.done ? std::optional(result.polyline) : std::nullopt;
}

std::optional<Polyline> chamferedAt(const Polyline& p, size_t vertex, double first, double second)
{
    const auto result = cutCorners(p, {vertex}, [&](const CornerAt&) { return std::optional(Cut{first, second, 0}); });
    return result.done ? std::optional(result.polyline) : std::nullopt;
}

}  // namespace vk::geom
