// Pieces of any kind: halved until each pair of parts either stands apart, or crosses once at most because no tangent
// of the one is parallel to one of the other, or is too small to matter and then touches or not.
#include "host/geom/meet.h"

#include "host/geom/nurbs.h"

#include <cmath>
#include <deque>

namespace vk::geom {

namespace {

constexpr size_t kMostPairs = 40000;  // near-coincident splines must not take for ever
constexpr double kSmallest = 1e-6;    // of the smaller piece's size

struct Part {
    const PieceShape* whole;
    Interval range;
    Bezier bezier;  // poles of the part where the piece is a Bezier one
    std::vector<Point3> hull;
    double size = 0;

    Part(const PieceShape& shape, Interval r, Bezier poles) : whole(&shape), range(r), bezier(std::move(poles))
    {
        if (!bezier.empty()) {
            for (const Pole& pole : bezier)
                hull.push_back(pole.point());
        } else {
            addPlainHull();
        }
        Box3d box;
        for (const Point3& p : hull)
            box.add(p);
        size = box.diagonal();
    }

    Vector3 chord() const { return hull.back() - hull.front(); }
    double middle() const { return (range.from + range.to) / 2; }

    std::pair<Part, Part> halves() const
    {
        const double mid = middle();
        if (bezier.empty())
            return {Part(*whole, {range.from, mid}, {}), Part(*whole, {mid, range.to}, {})};
        auto [left, right] = splitAt(bezier, 0.5);
        return {Part(*whole, {range.from, mid}, std::move(left)), Part(*whole, {mid, range.to}, std::move(right))};
    }

private:
    void addPlainHull()
    {
        hull.push_back(place(*whole, range.from));
        if (const auto* c = std::get_if<ConicPiece>(whole)) {
            const double stretch = 1 / std::cos((range.to - range.from) / 2);
            hull.push_back(c->center + (c->u * std::cos(middle()) + c->v * std::sin(middle())) * stretch);
        }
        hull.push_back(place(*whole, range.to));
    }
};

std::vector<Part> startParts(const PieceShape& shape)
{
    const Interval r = rangeOf(shape);
    if (const auto* b = std::get_if<BezierPiece>(&shape))
        return {Part(shape, r, between(b->poles, r.from, r.to))};
    const bool conic = std::holds_alternative<ConicPiece>(shape);
    const int count = conic ? std::max(1, int(std::ceil((r.to - r.from) / (kTwoPi / 4) - 1e-9))) : 1;
    std::vector<Part> parts;
    for (int i = 0; i < count; ++i) {
        const double step = (r.to - r.from) / count;
        parts.emplace_back(shape, Interval{r.from + step * i, i + 1 == count ? r.to : r.from + step * (i + 1)},
                           Bezier{});
    }
    return parts;
}

bool apartAlong(const Vector3& axis, const Part& a, const Part& b, double tolerance)
{
    const double length = axis.length();
    if (!(length > 0))
        return false;
    double lowA = Box3d::kInfinite, highA = -lowA, lowB = lowA, highB = -lowA;
    const Point3 origin = a.hull.front();
    for (const Point3& p : a.hull) {
        const double d = (p - origin).dotProduct(axis);
        lowA = std::min(lowA, d);
        highA = std::max(highA, d);
    }
    for (const Point3& p : b.hull) {
        const double d = (p - origin).dotProduct(axis);
        lowB = std::min(lowB, d);
        highB = std::max(highB, d);
    }
    return std::max(lowB - highA, lowA - highB) > tolerance * length;
}

// World axes, then the directions across the chords: parts that run side by side are thin across their chords.
bool apart(const Part& a, const Part& b, double tolerance)
{
    for (const Vector3& axis : {Vector3(1, 0, 0), Vector3(0, 1, 0), Vector3(0, 0, 1)})
        if (apartAlong(axis, a, b, tolerance))
            return true;
    const Vector3 ca = a.chord().normal(), cb = b.chord().normal();
    Vector3 normal = ca.crossProduct(cb);
    if (normal.length() < 0.1)
        normal = ca.crossProduct((b.hull.front() - a.hull.front()).normal() + (b.hull.back() - a.hull.back()).normal());
    normal.normalize();
    return apartAlong(normal, a, b, tolerance) || apartAlong(normal.crossProduct(ca), a, b, tolerance) ||
           apartAlong(normal.crossProduct(cb), a, b, tolerance);
}

// The widest angle between the chord and a leg of the poles, which bounds how far the tangents stray.
double coneAngle(const Part& part)
{
    const Vector3 chord = part.chord();
    double widest = 0;
    for (size_t i = 0; i + 1 < part.hull.size(); ++i) {
        const Vector3 leg = part.hull[i + 1] - part.hull[i];
        if (leg.lengthSqrd() > 0)
            widest = std::max(widest, chord.angleTo(leg));
    }
    return chord.lengthSqrd() > 0 ? widest : kTwoPi;
}

bool crossOnceAtMost(const Part& a, const Part& b)
{
    const double angle = a.chord().angleTo(b.chord());
    return coneAngle(a) + coneAngle(b) < 0.9 * std::min(angle, kTwoPi / 2 - angle);
}

struct Solve {
    const PieceShape &a, &b;
    double s = 0, t = 0;

    double distance() const { return place(a, s).distanceTo(place(b, t)); }

    bool step(double s1, double s2, double r1, double t1, double t2, double r2)
    {
        const double det = s1 * t2 - t1 * s2;
        if (!(std::fabs(det) > 1e-14 * (std::fabs(s1 * t2) + std::fabs(t1 * s2))))
            return false;
        s -= (r1 * t2 - s2 * r2) / det;
        t -= (s1 * r2 - t1 * r1) / det;
        return std::isfinite(s) && std::isfinite(t);
    }

    // Gauss-Newton towards the smallest distance.
    bool crossing()
    {
        for (int i = 0; i < 25; ++i) {
            const Derivatives p = derivatives(a, s), q = derivatives(b, t);
            const Vector3 gap = p.point - q.point;
            const double mixed = -p.first.dotProduct(q.first), s0 = s, t0 = t;
            if (!step(p.first.lengthSqrd(), mixed, gap.dotProduct(p.first), mixed, q.first.lengthSqrd(),
                      -gap.dotProduct(q.first)))
                return false;
            if (std::fabs(s - s0) <= 1e-15 * (1 + std::fabs(s)) && std::fabs(t - t0) <= 1e-15 * (1 + std::fabs(t)))
                break;
        }
        return true;
    }

    // Newton on parallel tangents and a gap across them, which stays sound where the curves touch.
    bool tangency()
    {
        const Derivatives p0 = derivatives(a, s), q0 = derivatives(b, t);
        const Vector3 bendA = p0.first.crossProduct(p0.second), bendB = q0.first.crossProduct(q0.second);
        const Vector3 normal = (bendA.length() > bendB.length() ? bendA : bendB).normal();
        for (int i = 0; i < 25; ++i) {
            const Derivatives p = derivatives(a, s), q = derivatives(b, t);
            const Vector3 gap = p.point - q.point;
            const double s0 = s, t0 = t;
            if (!step(p.first.lengthSqrd() + gap.dotProduct(p.second), -q.first.dotProduct(p.first),
                      gap.dotProduct(p.first), p.second.crossProduct(q.first).dotProduct(normal),
                      p.first.crossProduct(q.second).dotProduct(normal),
                      p.first.crossProduct(q.first).dotProduct(normal)))
                return false;
            if (std::fabs(s - s0) <= 1e-15 * (1 + std::fabs(s)) && std::fabs(t - t0) <= 1e-15 * (1 + std::fabs(t)))
                break;
        }
        return true;
    }
};

bool nearRange(double t, Interval r, double share)
{
    const double slack = share * (r.to - r.from);
    return t >= r.from - slack && t <= r.to + slack;
}

bool keep(const Solve& found, const Part& a, const Part& b, double share, double tolerance, bool tangent,
          std::vector<Touch>& touches)
{
    if (!nearRange(found.s, a.range, share) || !nearRange(found.t, b.range, share) || found.distance() > tolerance)
        return false;
    touches.push_back({found.s, found.t, tangent});
    return true;
}

void touchTinyParts(const Part& a, const Part& b, double tolerance, std::vector<Touch>& touches)
{
    const Solve start{*a.whole, *b.whole, a.middle(), b.middle()};
    // Near a tangency every point passes for a crossing, so the tangency is tried first.
    Solve crossing = start, tangency = start;
    if (tangency.tangency() && keep(tangency, a, b, 2, tolerance, true, touches))
        return;
    if (crossing.crossing() && keep(crossing, a, b, 0.01, tolerance, false, touches))
        return;
    if (keep(start, a, b, 0, tolerance, false, touches))
        touches.back().vague = true;
}

PieceShape clipped(const PieceShape& shape, const PieceShape& against)
{
    const auto* line = std::get_if<LinePiece>(&shape);
    if (!line || (std::isfinite(line->range.from) && std::isfinite(line->range.to)))
        return shape;
    const Box3d box = boxOf(against);
    const double reach = box.diagonal() / line->vector.length() + 1;
    const double mid = (box.center() - line->base).dotProduct(line->vector) / line->vector.lengthSqrd();
    LinePiece part = *line;
    part.range = {std::clamp(mid - reach, line->range.from, line->range.to),
                  std::clamp(mid + reach, line->range.from, line->range.to)};
    return part;
}

}  // namespace

std::vector<Touch> meetBySubdivision(const PieceShape& givenA, const PieceShape& givenB, double tolerance)
{
    const PieceShape a = clipped(givenA, givenB), b = clipped(givenB, givenA);
    std::deque<std::pair<Part, Part>> open;
    for (const Part& p : startParts(a))
        for (const Part& q : startParts(b))
            open.emplace_back(p, q);
    double smallest = Box3d::kInfinite;
    for (const auto& [p, q] : open)
        smallest = std::min({smallest, p.size, q.size});
    // Where curves all but coincide, parts near the tolerance would be many and tell no more.
    smallest = std::max(smallest * kSmallest, 16 * tolerance);
    std::vector<Touch> touches;
    size_t pairs = 0;
    while (!open.empty()) {
        const auto [p, q] = std::move(open.front());
        open.pop_front();
        if (apart(p, q, tolerance))
            continue;
        // Newton may run off to somewhere else; that it finds nothing here says nothing.
        if (crossOnceAtMost(p, q)) {
            Solve found{a, b, p.middle(), q.middle()};
            if (found.crossing() && keep(found, p, q, 0.01, tolerance, false, touches))
                continue;
        }
        if ((p.size <= smallest && q.size <= smallest) || ++pairs > kMostPairs) {
            touchTinyParts(p, q, tolerance, touches);
            continue;
        }
        if (p.size >= q.size) {
            auto [left, right] = p.halves();
            open.emplace_back(std::move(left), q);
            open.emplace_back(std::move(right), q);
        } else {
            auto [left, right] = q.halves();
            open.emplace_back(p, std::move(left));
            open.emplace_back(p, std::move(right));
        }
    }
    return touches;
}

}  // namespace vk::geom
