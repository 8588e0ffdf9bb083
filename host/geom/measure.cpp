// Lengths, areas, boxes and planes of curves.
#include "host/geom/arbitrary_axis.h"
#include "host/geom/piece.h"

#include <cmath>

namespace vk::geom {

namespace {

double lengthWithin(const Piece& piece, double from, double to)
{
    const double low = std::max(from, piece.onCurve.from), high = std::min(to, piece.onCurve.to);
    if (!(low < high))
        return 0;
    return lengthOf(piece.shape, piece.fromCurve(low), piece.fromCurve(high));
}

// Newton on the length with the interval kept around the answer.
double atLength(const Piece& piece, double along)
{
    Interval r = piece.range();
    const double start = r.from, speed = derivatives(piece.shape, start).first.length();
    if (std::holds_alternative<LinePiece>(piece.shape))
        return piece.toCurve(speed > 0 ? start + along / speed : start);
    double t = start + (r.to - r.from) * along / lengthOf(piece.shape, r.from, r.to);
    for (int i = 0; i < 60; ++i) {
        const double miss = lengthOf(piece.shape, start, t) - along;
        (miss > 0 ? r.to : r.from) = t;
        const double next = t - miss / derivatives(piece.shape, t).first.length();
        const double held = next > r.from && next < r.to ? next : (r.from + r.to) / 2;
        if (std::fabs(held - t) <= 1e-15 * (1 + std::fabs(t)))
            break;
        t = held;
    }
    return piece.toCurve(t);
}

double widthAt(const PolyVertex& v, double fraction)
{
    return (v.startWidth + (v.endWidth - v.startWidth) * fraction) / 2;
}

// The widest point of a tapering arc in a direction lies near where the arc itself points there; a few steps of golden
// section about it find it as exactly as a box needs.
void addWideArc(Box3d& box, const ConicPiece& arc, const PolyVertex& v, double side)
{
    const double span = arc.range.to, radius = arc.u.length();
    const auto edge = [&](double t) {
        t = std::clamp(t, 0.0, span);
        const double scale = 1 + side * widthAt(v, t / span) / radius;
        return arc.center + (arc.u * std::cos(t) + arc.v * std::sin(t)) * scale;
    };
    const auto refine = [&](double around, const Vector3& along) {
        double low = around - 0.8, high = around + 0.8;
        for (int i = 0; i < 80; ++i) {
            const double third = (high - low) / 3, a = low + third, b = high - third;
            const bool left = edge(a).asVector().dotProduct(along) > edge(b).asVector().dotProduct(along);
            (left ? high : low) = left ? b : a;
        }
        box.add(edge((low + high) / 2));
    };
    box.add(edge(0));
    box.add(edge(span));
    for (const Vector3& axis : {Vector3(1, 0, 0), Vector3(0, 1, 0), Vector3(0, 0, 1)}) {
        const double top = std::atan2(arc.v.dotProduct(axis), arc.u.dotProduct(axis));
        for (int half = -2; half <= 3; ++half)
            if (const double t = top + half * kTwoPi / 2; t > -0.8 && t < span + 0.8)
                refine(t, half % 2 == 0 ? axis : -axis);
    }
}

void addWideLine(Box3d& box, const LinePiece& line, const PolyVertex& v, const Vector3& normal)
{
    const Vector3 aside = normal.crossProduct(line.vector).normal();
    for (double t : {0.0, 1.0})
        for (double side : {-1.0, 1.0})
            box.add(line.base + line.vector * t + aside * (side * widthAt(v, t)));
}

Box3d wideBox(const Polyline& polyline)
{
    Box3d box;
    const auto pieces = piecesOf(polyline);
    const Vector3 normal = arbitraryFrame(polyline.normal).z;
    for (size_t i = 0; i < pieces.size(); ++i) {
        const PolyVertex& v = polyline.vertices[i];
        box.add(boxOf(pieces[i].shape));
        if (const auto* arc = std::get_if<ConicPiece>(&pieces[i].shape)) {
            addWideArc(box, *arc, v, 1);
            addWideArc(box, *arc, v, -1);
        } else {
            const Point3 start = place(pieces[i].shape, 0);
            addWideLine(box, {start, place(pieces[i].shape, 1) - start}, v, normal);
        }
    }
    return box;
}

bool isWide(const Polyline& polyline)
{
    for (const PolyVertex& v : polyline.vertices)
        if (v.startWidth != 0 || v.endWidth != 0)
            return true;
    return false;
}

// The three poles or vertices that span the most tell the plane; the others must lie in it.
std::optional<VcGePlane> commonPlane(const std::vector<Point3>& points)
{
    if (points.empty())
        return std::nullopt;
    Box3d box;
    for (const Point3& p : points)
        box.add(p);
    const double tolerance = 1e-10 * box.diagonal() + 1e-15 * box.magnitude();
    const auto furthest = [&](auto&& measure) {
        size_t best = 0;
        for (size_t i = 1; i < points.size(); ++i)
            if (measure(points[i]) > measure(points[best]))
                best = i;
        return points[best];
    };
    const Point3 a = points[0], b = furthest([&](const Point3&p) { return a.distanceTo(p); });
    const Vector3 ab = (b - a).normal();
    const Point3 c = furthest([&](const Point3& p) { return (p - a).crossProduct(ab).length(); });
    const Vector3 normal = ab.crossProduct(c - a);
    if (normal.length() <= tolerance)
        return std::nullopt;
    const VcGePlane plane(a, normal);
    for (const Point3& p : points)
        if (plane.distanceTo(p) > tolerance)
            return std::nullopt;
    return plane;
}

}  // namespace

double length(const Curve& curve)
{
    const Interval r = paramRange(curve);
    return lengthBetween(curve, r.from, r.to);
}

double lengthBetween(const Curve& curve, double from, double to)
{
    if (to < from)
        std::swap(from, to);
    double sum = 0;
    for (const Piece& piece : piecesOf(curve))
        sum += lengthWithin(piece, from, to);
    return sum;
}

std::optional<double> paramAtLength(const Curve& curve, double along)
{
    const auto pieces = piecesOf(curve);
    if (pieces.empty() || !(along >= 0) || !std::isfinite(pieces.front().onCurve.from))
        return std::nullopt;
    for (const Piece& piece : pieces) {
        const Interval r = piece.range();
        const double whole = lengthOf(piece.shape, r.from, r.to);
        if (along < whole)
            return atLength(piece, along);
        along -= whole;
    }
    // A length that was worked out by adding up may come out a rounding error too long.
    const bool atEnd = along <= 1e-12 * length(curve);
    return atEnd ? std::optional(pieces.back().onCurve.to) : std::nullopt;
}

Vector3 vectorArea(const Curve& curve)
{
    const auto pieces = piecesOf(curve);
    const auto start = startPoint(curve);
    Vector3 sum;
    if (!start || !endPoint(curve))
        return sum;
    for (const Piece& piece : pieces)
        sum += sweptArea(piece.shape, *start);
    return sum;
}

double area(const Curve& curve) { return vectorArea(curve).length(); }

Box3d extents(const Curve& curve)
{
    const auto* polyline = std::get_if<Polyline>(&curve);
    if (polyline && isValid(curve) && isWide(*polyline))
        return wideBox(*polyline);
    Box3d box;
    for (const Piece& piece : piecesOf(curve))
        box.add(boxOf(piece.shape));
    return box;
}

std::optional<VcGePlane> planeOf(const Curve& curve)
{
    if (!isValid(curve))
        return std::nullopt;
    if (const auto* p = std::get_if<Polyline>(&curve)) {
        const Vector3 z = arbitraryFrame(p->normal).z;
        return VcGePlane(Point3() + z * p->elevation, z);
    }
    if (const auto* n = std::get_if<Nurbs>(&curve))
        return commonPlane(n->poles);
    if (const auto* p = std::get_if<Polyline3>(&curve))
        return commonPlane(p->vertices);
    const auto pieces = piecesOf(curve);
    const auto* conic = std::get_if<ConicPiece>(&pieces.front().shape);
    return conic ? std::optional(VcGePlane(conic->center, conic->normal())) : std::nullopt;
}

}  // namespace vk::geom
