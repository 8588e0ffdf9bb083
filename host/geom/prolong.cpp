#include "host/geom/prolong.h"

#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve_edit.h"
#include "host/geom/tangent_circle.h"

#include <cmath>

namespace vk::geom {

namespace {

std::optional<Curve> between(const Segment& s, double from, double to)
{
    const auto at = [&](double t) { return t == 0 ? s.start : t == 1 ? s.end : s.start + (s.end - s.start) * t; };
    return Segment{at(from), at(to)};
}

// An arc that has come all the way round is whole, and no more.
template <class Round>
std::optional<Curve> aroundBetween(Round curve, double from, double to)
{
    curve.start = from;
    curve.end = std::min(to, from + kTwoPi);
    return curve;
}

std::optional<Curve> between(const Arc& a, double from, double to)
{
    if (to - from >= kTwoPi * (1 - 1e-14))
        return Circle{a.center, a.radius, a.normal};
    return aroundBetween(a, from, to);
}

std::optional<Curve> between(const Ellipse& e, double from, double to) { return aroundBetween(e, from, to); }
std::optional<Curve> between(const Ray& r, double from, double to)
{
    return std::isfinite(to) ? Curve(Segment{r.base + r.direction * from, r.base + r.direction * to})
                             : Curve(Ray{r.base + r.direction * from, r.direction});
}

Point2 inPlane(const Polyline& p, const Point3& world)
{
    const Point3 local = fromWorld(world, p.normal);
    return {local.x, local.y};
}

std::optional<Curve> between(const Polyline& p, double from, double to)
{
    const double last = double(p.vertices.size() - 1);
    auto kept = subCurve(p, std::max(from, 0.0), std::min(to, last));
    if (!kept)
        return std::nullopt;
    auto& result = std::get<Polyline>(*kept);
    const auto widened = [](double bulge, double share) { return std::tan(std::atan(bulge) * share); };
    if (from < 0) {
        PolyVertex& first = result.vertices.front();
        const double whole = std::min(std::min(to, last), 1.0);  // how much of the first segment was kept
        first.point = inPlane(p, pointAt(p, from));
        first.bulge = widened(p.vertices.front().bulge, whole - from);
    }
    if (to > last) {
        const double kept = last - std::max(std::max(from, 0.0), last - 1);
        PolyVertex& before = result.vertices[result.vertices.size() - 2];
        const double bulge = p.vertices[p.vertices.size() - 2].bulge;
        const double lead = from < 0 && result.vertices.size() == 2 ? -from : 0;
        before.bulge = widened(bulge, kept + (to - last) + lead);
        result.vertices.back().point = inPlane(p, pointAt(p, to));
    }
    return result;
}

std::optional<Curve> between(const Polyline3& p, double from, double to)
{
    const double last = double(p.vertices.size() - 1);
    auto kept = subCurve(p, std::max(from, 0.0), std::min(to, last));
    if (!kept)
        return std::nullopt;
    auto& result = std::get<Polyline3>(*kept);
    if (from < 0)
        result.vertices.front() = pointAt(p, from);
    if (to > last)
        result.vertices.back() = pointAt(p, to);
    return result;
}

template <class Other>
std::optional<Curve> between(const Other& c, double from, double to)
{
    return subCurve(c, from, to);
}

}  // namespace

std::optional<Curve> betweenEnds(const Curve& curve, double from, double to)
{
    if (!isValid(curve) || !(from < to))
        return std::nullopt;
    const Interval range = paramRange(curve);
    if (isClosed(curve) || (from >= range.from && to <= range.to))
        return subCurve(curve, from, to);
    return std::visit([&](const auto& c) { return between(c, from, to); }, curve);
}

bool canProlong(const Curve& curve, bool atStart)
{
    if (!isValid(curve) || isClosed(curve) || std::holds_alternative<Nurbs>(curve) ||
        std::holds_alternative<XLine>(curve))
        return false;
    return atStart || !std::holds_alternative<Ray>(curve);
}

std::optional<Curve> pathBeyond(const Curve& curve, bool atStart)
{
    if (!canProlong(curve, atStart))
        return std::nullopt;
    if (const auto* arc = std::get_if<Arc>(&curve))
        return Circle{arc->center, arc->radius, arc->normal};
    if (const auto* e = std::get_if<Ellipse>(&curve))
        return Ellipse{e->center, e->major, e->ratio, 0, kTwoPi, e->normal};
    const Interval range = paramRange(curve);
    const double end = atStart ? range.from : range.to, step = atStart ? 1 : -1;
    const Point3 tip = pointAt(curve, end);
    if (const auto* p = std::get_if<Polyline>(&curve);
        p && p->vertices[atStart ? 0 : p->vertices.size() - 2].bulge != 0)
        if (const auto center = centerThrough(tip, pointAt(curve, end + step / 2), pointAt(curve, end + step)))
            return Circle{*center, center->distanceTo(tip), p->normal};
    const Vector3 along = derivativesAt(curve, end + step * 1e-9).first;
    return along.lengthSqrd() > 0 ? std::optional<Curve>(Ray{tip, along * -step}) : std::nullopt;
}

bool isNearerStart(const Curve& curve, double param)
{
    const Interval range = paramRange(curve);
    if (!std::isfinite(range.to))
        return true;
    return lengthBetween(curve, range.from, std::clamp(param, range.from, range.to)) <= length(curve) / 2;
}

std::optional<double> paramAtLengthBeyond(const Curve& curve, double along)
{
    const Interval range = paramRange(curve);
    const double whole = length(curve);
    if (!std::isfinite(whole) || !(whole > 0))
        return std::nullopt;
    if (along >= 0 && along <= whole)
        return paramAtLength(curve, along);
    // Beyond the ends speeds are those of the first or last piece: constant, but for ellipses.
    const bool before = along < 0;
    const double end = before ? range.from : range.to, step = before ? -1 : 1;
    const double wanted = before ? -along : along - whole;
    if (const auto* e = std::get_if<Ellipse>(&curve)) {
        const double start = before ? end - kTwoPi + (range.to - range.from) : end;
        const Ellipse rest{e->center, e->major, e->ratio, start, start + kTwoPi - (range.to - range.from), e->normal};
        const double room = length(rest);
        if (wanted > room)
            return std::nullopt;
        return paramAtLength(rest, before ? room - wanted : wanted);
    }
    const double speed = derivativesAt(curve, end + step * -1e-9 * std::max(1.0, range.to - range.from)).first.length();
    return speed > 0 ? std::optional(end + step * wanted / speed) : std::nullopt;
}

}  // namespace vk::geom
