#include "host/geom/piece.h"

#include "host/geom/arbitrary_axis.h"
#include "host/geom/trig_roots.h"

#include <array>
#include <cmath>

namespace vk::geom {

namespace {

struct Axes {
    Vector3 x, y;  // unit vectors along u and v
    double a = 0, b = 0;

    explicit Axes(const ConicPiece& c) : a(c.u.length()), b(c.v.length())
    {
        x = c.u.normal();
        y = c.v.normal();
    }
    Point2 planar(const Vector3& arm) const { return {arm.dotProduct(x), arm.dotProduct(y)}; }
};

Derivatives derivativesOf(const LinePiece& line, double t) { return {line.base + line.vector * t, line.vector, {}}; }

Derivatives derivativesOf(const ConicPiece& conic, double t)
{
    const double c = std::cos(t), s = std::sin(t);
    const Vector3 arm = conic.u * c + conic.v * s;
    return {conic.center + arm, conic.v * c - conic.u * s, -arm};
}

Derivatives derivativesOf(const BezierPiece& bezier, double t) { return derivatives(bezier.poles, t); }

constexpr std::array<double, 4> kNodes{0.1834346424956498, 0.5255324099163290, 0.7966664774136267, 0.9602898564975363};
constexpr std::array<double, 4> kWeights{0.3626837833783620, 0.3137066458778873, 0.2223810344533745,
                                         0.1012285362903763};

// Eight-point Gauss-Legendre, halved until halving changes nothing that counts.
double speedIntegral(const PieceShape& shape, double from, double to)
{
    const double mid = (from + to) / 2, half = (to - from) / 2;
    double sum = 0;
    for (int i = 0; i < 4; ++i)
        sum += kWeights[i] * (derivatives(shape, mid - half * kNodes[i]).first.length() +
                              derivatives(shape, mid + half * kNodes[i]).first.length());
    return sum * half;
}

double refinedLength(const PieceShape& shape, double from, double to, double whole, double allowed, int depth)
{
    const double mid = (from + to) / 2;
    const double left = speedIntegral(shape, from, mid), right = speedIntegral(shape, mid, to);
    if (depth == 0 || !(std::fabs(left + right - whole) > allowed))
        return left + right;
    return refinedLength(shape, from, mid, left, allowed, depth - 1) +
           refinedLength(shape, mid, to, right, allowed, depth - 1);
}

double circleLength(const ConicPiece& conic, double from, double to) { return conic.u.length() * (to - from); }

bool isRound(const ConicPiece& conic)
{
    const double a = conic.u.length();
    return a - conic.v.length() <= 1e-14 * a;
}

// How far the box of the poles stands out of the box found so far; negative when it does not.
double excess(const Box3d& hull, const Box3d& box)
{
    return std::max({box.min.x - hull.min.x, box.min.y - hull.min.y, box.min.z - hull.min.z, hull.max.x - box.max.x,
                     hull.max.y - box.max.y, hull.max.z - box.max.z});
}

// Twice the area that a piece sweeps about the origin, by eight-point Gauss-Legendre: exact for polynomials up to degree
// seven.
Vector3 sweptOnce(const Bezier& bezier)
{
    Vector3 sum;
    for (int i = 0; i < 8; ++i) {
        const double node = i < 4 ? -kNodes[i] : kNodes[i - 4];
        const Derivatives d = derivatives(bezier, (1 + node) / 2);
        sum += d.point.asVector().crossProduct(d.first) * (kWeights[i % 4] / 2);
    }
    return sum;
}

Vector3 refinedSweep(const Bezier& bezier, const Vector3& whole, double allowed, int depth)
{
    const auto [left, right] = splitAt(bezier, 0.5);
    const Vector3 first = sweptOnce(left), second = sweptOnce(right);
    if (depth == 0 || !((first + second - whole).length() > allowed))
        return first + second;
    return refinedSweep(left, first, allowed, depth - 1) + refinedSweep(right, second, allowed, depth - 1);
}

// Twice the area between a piece and its chord.
Vector3 sweptBeyondChord(const Bezier& bezier)
{
    const Vector3 start = bezier.front().point().asVector();
    Bezier home = bezier;
    for (Pole& pole : home)
        pole = Pole::of(pole.point() - start, pole.w);
    const double size = hullBox(home).diagonal();
    return refinedSweep(home, sweptOnce(home), 1e-13 * size * size, 10);
}

// t - sin t without the digits that a small angle loses.
double angleLessSine(double t)
{
    if (std::fabs(t) > 0.5)
        return t - std::sin(t);
    double term = t * t * t / 6, sum = term;
    for (int n = 5; n < 19; n += 2) {
        term *= -t * t / ((n - 1) * n);
        sum += term;
    }
    return sum;
}

Nearest nearestOnLine(const LinePiece& line, const Point3& to)
{
    const double squared = line.vector.lengthSqrd();
    double t = squared > 0 ? (to - line.base).dotProduct(line.vector) / squared : 0;
    t = std::clamp(t, line.range.from, line.range.to);
    return {t, to.distanceTo(line.base + line.vector * t)};
}

// Angles at which the ellipse's tangent is perpendicular to the arm to the point.
std::vector<double> footAngles(const Axes& axes, const Point2& p)
{
    const TrigPolynomial squaredDistance{0, -2 * axes.a * p.x, -2 * axes.b * p.y,
                                         (axes.a * axes.a - axes.b * axes.b) / 2, 0};
    return stationaryAngles(squaredDistance);
}

// Newton's steps on (P - to) . P', held in the range.
Nearest descend(const BezierPiece& bezier, const Point3& to, double t)
{
    for (int i = 0; i < 30; ++i) {
        const Derivatives d = derivatives(bezier.poles, t);
        const Vector3 arm = d.point - to;
        const double slope = arm.dotProduct(d.first);
        const double full = d.first.lengthSqrd() + arm.dotProduct(d.second);
        const double bend = full > 0 ? full : d.first.lengthSqrd();
        if (bend == 0)
            break;
        const double next = std::clamp(t - slope / bend, bezier.range.from, bezier.range.to);
        if (std::fabs(next - t) <= 1e-16)
            break;
        t = next;
    }
    return {t, to.distanceTo(derivatives(bezier.poles, t).point)};
}

// Branch and bound: a part whose poles all stand further off than the best point so far cannot hold a better one.
void searchNearest(const BezierPiece& whole, const Bezier& part, double from, double to, const Point3& target,
                   Nearest& best, int depth)
{
    if (distanceToBox(hullBox(part), target) >= best.distance * (1 - 1e-12))
        return;
    const Nearest found = descend(whole, target, (from + to) / 2);
    if (found.distance < best.distance)
        best = found;
    if (depth == 0)
        return;
    const auto [left, right] = splitAt(part, 0.5);
    const double mid = (from + to) / 2;
    searchNearest(whole, left, from, mid, target, best, depth - 1);
    searchNearest(whole, right, mid, to, target, best, depth - 1);
}

Nearest nearestOnBezier(const BezierPiece& given, const Point3& to)
{
    const PieceShape moved = translated(given, -to.asVector());
    const auto& bezier = std::get<BezierPiece>(moved);
    const double from = bezier.range.from, end = bezier.range.to;
    Nearest best{from, place(bezier, from).asVector().length()};
    const double atEnd = place(bezier, end).asVector().length();
    if (atEnd < best.distance)
        best = {end, atEnd};
    searchNearest(bezier, between(bezier.poles, from, end), from, end, {}, best, 10);
    return best;
}

template <class... Fs>
struct Overloaded : Fs... {
    using Fs::operator()...;
};
template <class... Fs>
Overloaded(Fs...) -> Overloaded<Fs...>;

}  // namespace

Interval rangeOf(const PieceShape& shape)
{
    return std::visit([](const auto& s) { return s.range; }, shape);
}

void setRange(PieceShape& shape, Interval range)
{
    std::visit([&](auto& s) { s.range = range; }, shape);
}

Interval Piece::range() const { return rangeOf(shape); }

double Piece::toCurve(double t) const
{
    const Interval r = range();
    if (r.from == onCurve.from && r.to == onCurve.to)
        return t;
    if (t == r.to)
        return onCurve.to;
    return onCurve.from + (t - r.from) * ((onCurve.to - onCurve.from) / (r.to - r.from));
}

double Piece::fromCurve(double param) const
{
    const Interval r = range();
    if (r.from == onCurve.from && r.to == onCurve.to)
        return param;
    if (param == onCurve.to)
        return r.to;
    return r.from + (param - onCurve.from) * ((r.to - r.from) / (onCurve.to - onCurve.from));
}

Derivatives derivatives(const PieceShape& shape, double t)
{
    return std::visit([t](const auto& s) { return derivativesOf(s, t); }, shape);
}

Point3 place(const PieceShape& shape, double t) { return derivatives(shape, t).point; }

Box3d boxOf(const LinePiece& line)
{
    Box3d box;
    for (double t : {line.range.from, line.range.to}) {
        const auto at = [&](double base, double step) { return step == 0 ? base : base + step * t; };
        box.add(Point3(at(line.base.x, line.vector.x), at(line.base.y, line.vector.y), at(line.base.z, line.vector.z)));
    }
    return box;
}

Box3d boxOf(const ConicPiece& conic)
{
    const double from = conic.range.from, to = conic.range.to;
    Box3d box;
    box.add(place(conic, from));
    box.add(place(conic, to));
    const double highest[3] = {std::atan2(conic.v.x, conic.u.x), std::atan2(conic.v.y, conic.u.y),
                               std::atan2(conic.v.z, conic.u.z)};
    for (double top : highest) {
        const double half = kTwoPi / 2;
        for (double t = top + std::ceil((from - top) / half) * half; t < to; t += half)
            box.add(place(conic, t));
    }
    return box;
}

Box3d boxOf(const BezierPiece& bezier)
{
    const Bezier whole = between(bezier.poles, bezier.range.from, bezier.range.to);
    Box3d box;
    box.add(whole.front().point());
    box.add(whole.back().point());
    const double slack = 1e-14 * hullBox(whole).diagonal() + 1e-15 * hullBox(whole).magnitude();
    std::vector<std::pair<Bezier, int>> open{{whole, 0}};
    while (!open.empty()) {
        const auto [part, depth] = std::move(open.back());
        open.pop_back();
        if (depth > 40 || excess(hullBox(part), box) <= slack)
            continue;
        auto [left, right] = splitAt(part, 0.5);
        box.add(right.front().point());
        open.push_back({std::move(left), depth + 1});
        open.push_back({std::move(right), depth + 1});
    }
    return box;
}

Box3d boxOf(const PieceShape& shape)
{
    return std::visit([](const auto& s) { return boxOf(s); }, shape);
}

double lengthOf(const PieceShape& shape, double from, double to)
{
    if (const auto* line = std::get_if<LinePiece>(&shape))
        return line->vector.lengthSqrd() == 0 ? 0 : line->vector.length() * (to - from);
    const auto* conic = std::get_if<ConicPiece>(&shape);
    if (conic && isRound(*conic))
        return circleLength(*conic, from, to);
    // Far from the origin the noise of the coordinates would keep the halving going.
    const auto* bezier = std::get_if<BezierPiece>(&shape);
    const Vector3 home = bezier ? -bezier->poles.front().point().asVector() : Vector3();
    const PieceShape local = translated(shape, home);
    const double whole = speedIntegral(local, from, to);
    const double noise = bezier ? 1e-15 * hullBox(std::get<BezierPiece>(local).poles).magnitude() : 0;
    return refinedLength(local, from, to, whole, std::max(1e-14 * std::fabs(whole), noise), 20);
}

Vector3 sweptArea(const PieceShape& shape, const Point3& origin)
{
    const Interval r = rangeOf(shape);
    const Point3 start = place(shape, r.from);
    const Vector3 belowChord = (start - origin).crossProduct(place(shape, r.to) - start);
    const Overloaded beyond{[&](const LinePiece&) { return Vector3(); },
                            [&](const ConicPiece& c) { return c.u.crossProduct(c.v) * angleLessSine(r.to - r.from); },
                            [&](const BezierPiece& b) { return sweptBeyondChord(between(b.poles, r.from, r.to)); }};
    return (belowChord + std::visit(beyond, shape)) * 0.5;
}

Nearest nearest(const ConicPiece& conic, const Point3& to)
{
    const Axes axes(conic);
    const Point2 p = axes.planar(to - conic.center);
    std::vector<double> candidates{conic.range.from, conic.range.to};
    if (isRound(conic))
        candidates.push_back(std::atan2(p.y, p.x));
    else
        for (double t : footAngles(axes, p))
            candidates.push_back(t);
    Nearest best{conic.range.from, to.distanceTo(place(conic, conic.range.from))};
    for (double t : candidates) {
        const auto inside = admitted(conic, t, 0);
        const double distance = inside ? to.distanceTo(place(conic, *inside)) : best.distance;
        if (inside && distance < best.distance)
            best = {*inside, distance};
    }
    return best;
}

Nearest nearest(const PieceShape& shape, const Point3& to)
{
    const Overloaded search{[&](const LinePiece& l) { return nearestOnLine(l, to); },
                            [&](const ConicPiece& c) { return nearest(c, to); },
                            [&](const BezierPiece& b) { return nearestOnBezier(b, to); }};
    return std::visit(search, shape);
}

std::optional<double> admitted(const PieceShape& shape, double t, double tolerance)
{
    const Interval r = rangeOf(shape);
    if (std::holds_alternative<ConicPiece>(shape))
        t += std::ceil((r.from - t) / kTwoPi) * kTwoPi;
    if (r.from <= t && t <= r.to)
        return t;
    const Point3 here = place(shape, t);
    for (double end : {r.from, r.to})
        if (std::isfinite(end) && here.distanceTo(place(shape, end)) <= tolerance)
            return end;
    return std::nullopt;
}

PieceShape translated(PieceShape shape, const Vector3& by)
{
    const Overloaded move{[&](LinePiece& l) { l.base += by; }, [&](ConicPiece& c) { c.center += by; },
                          [&](BezierPiece& b) {
                              for (Pole& pole : b.poles)
                                  pole = Pole::of(pole.point() + by, pole.w);
                          }};
    std::visit(move, shape);
    return shape;
}

}  // namespace vk::geom
