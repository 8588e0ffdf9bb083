#include "host/edit/snap_points.h"

#include "host/edit/snap.h"
#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve_edit.h"
#include "host/geom/tangent_circle.h"

#include <cmath>

namespace vk::edit {

using namespace geom;

namespace {

// The arc of a polyline's side; the side's chord when it is straight.
Curve sideOf(const Polyline& polyline, const Curve& whole, double first)
{
    const Point3 a = pointAt(whole, first), middle = pointAt(whole, first + 0.5), b = pointAt(whole, first + 1);
    const double bulge = polyline.vertices[std::size_t(first)].bulge;
    const auto center = bulge != 0 ? centerThrough(a, middle, b) : std::nullopt;
    if (!center)
        return Segment{a, b};
    const Vector3 normal = bulge > 0 ? polyline.normal : -polyline.normal;
    const double start = angleInPlane(a - *center, normal);
    return Arc{*center, center->distanceTo(a), start, start + 4 * std::atan(std::fabs(bulge)), normal};
}

struct Round {
    Point3 center;
    Vector3 major, minor;
};

// What is round: center + major cos t + minor sin t.
std::optional<Round> roundOf(const Curve& curve)
{
    const auto circle = [](const Point3& center, double radius, const Vector3& normal) {
        const Frame frame = arbitraryFrame(normal);
        return Round{center, frame.x * radius, frame.y * radius};
    };
    if (const auto* c = std::get_if<Circle>(&curve))
        return circle(c->center, c->radius, c->normal);
    if (const auto* a = std::get_if<Arc>(&curve))
        return circle(a->center, a->radius, a->normal);
    if (const auto* e = std::get_if<Ellipse>(&curve))
        return Round{e->center, e->major, e->normal.crossProduct(e->major) * e->ratio};
    return std::nullopt;
}

Point3 at(const Round& round, double t) { return round.center + round.major * std::cos(t) + round.minor * std::sin(t); }

bool runsThrough(const Curve& curve, const Point3& p)
{
    const auto near = closestPoint(curve, p);
    return near && near->distance <= 1e-9 * (1 + p.asVector().length());
}

// Moments of a side of a plane outline about the origin: twice the area, and the area's first moments.
struct Moments {
    double area = 0, x = 0, y = 0;
};

void addChord(Moments& m, const Point2& p, const Point2& q)
{
    const double cross = p.x * q.y - q.x * p.y;
    m.area += cross / 2;
    m.x += (p.x + q.x) * cross / 6;
    m.y += (p.y + q.y) * cross / 6;
}

// What lies between the chord and its arc.
void addSegment(Moments& m, const Point2& p, const Point2& q, double bulge)
{
    if (bulge == 0)
        return;
    const double angle = 4 * std::atan(bulge), chord = p.distanceTo(q),
                 radius = chord / 2 / std::fabs(std::sin(angle / 2));
    const double area = radius * radius * (angle - std::sin(angle)) / 2;
    const double out = 4 * radius * std::pow(std::fabs(std::sin(angle / 2)), 3) /
                       (3 * (std::fabs(angle) - std::sin(std::fabs(angle))));
    const double toCenter = chord / 2 * (1 - bulge * bulge) / (2 * bulge);  // to the left of the chord
    const double left = toCenter - (bulge > 0 ? out : -out), length = chord > 0 ? chord : 1;
    const double x = (p.x + q.x) / 2 - (q.y - p.y) / length * left, y = (p.y + q.y) / 2 + (q.x - p.x) / length * left;
    m.area += area;
    m.x += area * x;
    m.y += area * y;
}

double slopeAgainst(const Curve& curve, double t, const Point3& from)
{
    const Derivatives d = derivativesAt(curve, t);
    const Vector3 v = d.point - from;
    return std::fabs(d.first.crossProduct(v).length()) / (d.first.length() * v.length() + 1e-300);
}

// The place about the pick where the curve runs straight away from the point.
SnapPoints tangentNear(const Curve& curve, const Point3& from, const Point3& pick)
{
    const auto near = closestPoint(curve, pick);
    const Interval range = paramRange(curve);
    if (!near || !std::isfinite(range.from) || !std::isfinite(range.to))
        return {};
    double best = near->param, step = (range.to - range.from) / 32;
    for (int i = 0; i < 200 && step > 0; ++i) {
        const double here = slopeAgainst(curve, best, from);
        const double up = std::min(best + step, range.to), down = std::max(best - step, range.from);
        const double above = slopeAgainst(curve, up, from), below = slopeAgainst(curve, down, from);
        if (above < here && above <= below)
            best = up;
        else if (below < here)
            best = down;
        else
            step /= 2;
    }
    return slopeAgainst(curve, best, from) < 1e-7 ? SnapPoints{pointAt(curve, best)} : SnapPoints{};
}

}

Curve pieceAt(const Curve& curve, double param)
{
    const auto* flat = std::get_if<Polyline>(&curve);
    if (!flat && !std::get_if<Polyline3>(&curve))
        return curve;
    const Interval range = paramRange(curve);
    const double first = std::clamp(std::floor(param), range.from, std::max(range.from, range.to - 1));
    return flat ? sideOf(*flat, curve, first) : Curve(Segment{pointAt(curve, first), pointAt(curve, first + 1)});
}

SnapPoints endsOf(const Curve& piece)
{
    SnapPoints points;
    if (isClosed(piece))
        return points;
    for (const auto& p : {startPoint(piece), endPoint(piece)})
        if (p)
            points.push_back(*p);
    return points;
}

SnapPoints middleOf(const Curve& piece)
{
    if (const auto* line = std::get_if<XLine>(&piece))
        return {line->base};
    const double whole = length(piece);
    if (isClosed(piece) || !std::isfinite(whole))
        return {};
    const auto param = paramAtLength(piece, whole / 2);
    return param ? SnapPoints{pointAt(piece, *param)} : SnapPoints{};
}

SnapPoints centerOf(const Curve& piece)
{
    const auto round = roundOf(piece);
    return round ? SnapPoints{round->center} : SnapPoints{};
}

SnapPoints quadrantsOf(const Curve& piece, const VcGeVector3d& axis)
{
    const auto round = roundOf(piece);
    if (!round)
        return {};
    // An ellipse has them on its own axes, a circle in the directions of the coordinate system.
    const bool isRound = std::fabs(round->major.length() - round->minor.length()) <= 1e-12 * round->major.length();
    const double first = isRound ? std::atan2(axis.dotProduct(round->minor), axis.dotProduct(round->major)) : 0;
    SnapPoints points;
    for (int i = 0; i < 4; ++i)
        if (const Point3 p = at(*round, first + i * M_PI / 2); runsThrough(piece, p))
            points.push_back(p);
    return points;
}

SnapPoints centroidOf(const Curve& curve)
{
    const auto* polyline = std::get_if<Polyline>(&curve);
    if (!polyline || !polyline->closed)
        return isClosed(curve) ? centerOf(curve) : SnapPoints{};
    Moments m;
    const auto& v = polyline->vertices;
    for (std::size_t i = 0; i < v.size(); ++i) {
        const Point2 p = v[i].point, q = v[(i + 1) % v.size()].point;
        addChord(m, p, q);
        addSegment(m, p, q, v[i].bulge);
    }
    if (!(std::fabs(m.area) > 0))
        return {};
    return {toWorld({m.x / m.area, m.y / m.area, polyline->elevation}, polyline->normal)};
}

SnapPoints perpendicularsOf(const Curve& piece, const VcGePoint3d& from)
{
    const Curve carrier = carrierOf(piece);
    if (const auto* circle = std::get_if<Circle>(&carrier)) {
        const VcGePlane plane(circle->center, circle->normal);
        const Vector3 out = from.orthoProject(plane) - circle->center;
        if (!(out.length() > 0))
            return {};
        const Vector3 radius = out.normal() * circle->radius;
        return {circle->center + radius, circle->center - radius};
    }
    const auto near = closestPoint(carrier, from);
    return near ? SnapPoints{near->point} : SnapPoints{};
}

SnapPoints tangentsOf(const Curve& piece, const VcGePoint3d& from, const VcGePoint3d& pick)
{
    const auto round = roundOf(piece);
    if (!round)
        return std::get_if<Nurbs>(&piece) ? tangentNear(piece, from, pick) : SnapPoints{};
    // In coordinates that make the curve the unit circle.
    const Vector3 out = from - round->center;
    const double x = out.dotProduct(round->major) / round->major.lengthSqrd(),
                 y = out.dotProduct(round->minor) / round->minor.lengthSqrd();
    const double away = std::hypot(x, y);
    if (!(away > 1))
        return {};
    const double towards = std::atan2(y, x), half = std::acos(1 / away);
    return {at(*round, towards + half), at(*round, towards - half)};
}

}  // namespace vk::edit
