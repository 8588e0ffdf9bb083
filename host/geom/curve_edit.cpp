#include "host/geom/curve_edit.h"

#include "host/geom/arbitrary_axis.h"
#include "host/geom/conic_form.h"
#include "host/geom/nurbs.h"

#include <cmath>

namespace vk::geom {

namespace {

std::optional<Curve> straightPart(const LinePiece& line, double from, double to)
{
    const auto at = [&](double t) { return line.base + line.vector * t; };
    if (std::isfinite(from) && std::isfinite(to))
        return Segment{at(from), at(to)};
    if (std::isfinite(from))
        return Ray{at(from), line.vector};
    if (std::isfinite(to))
        return Ray{at(to), -line.vector};
    return XLine{line.base, line.vector};
}

std::optional<Curve> part(const Segment& s, double from, double to)
{
    return straightPart({s.start, s.end - s.start}, from, to);
}
std::optional<Curve> part(const Ray& r, double from, double to)
{
    return straightPart({r.base, r.direction}, from, to);
}
std::optional<Curve> part(const XLine& x, double from, double to)
{
    return straightPart({x.base, x.direction}, from, to);
}
std::optional<Curve> part(const Circle& c, double from, double to)
{
    return Arc{c.center, c.radius, from, to, c.normal};
}
std::optional<Curve> part(const Arc& a, double from, double to) { return Arc{a.center, a.radius, from, to, a.normal}; }
std::optional<Curve> part(const Ellipse& e, double from, double to)
{
    return Ellipse{e.center, e.major, e.ratio, from, to, e.normal};
}

std::optional<Curve> part(const Nurbs& n, double from, double to)
{
    const double start = n.knots[n.degree], end = n.knots[n.poles.size()];
    if (to <= end + 1e-14 * (end - start))
        return nurbsBetween(n, from, std::min(to, end));
    if (from >= end)
        return nurbsBetween(n, from - (end - start), to - (end - start));
    return joined(nurbsBetween(n, from, end), nurbsBetween(n, start, to - (end - start)));
}

double bulgeOfPart(double bulge, double fraction)
{
    return fraction == 1 ? bulge : std::tan(std::atan(bulge) * fraction);
}

// The whole numbers strictly between, and both ends: where a polyline's part has its vertices.
std::vector<double> vertexParams(double from, double to)
{
    std::vector<double> params{from};
    for (double v = std::floor(from) + 1; v < to; ++v)
        params.push_back(v);
    params.push_back(to);
    return params;
}

std::optional<Curve> part(const Polyline& p, double from, double to)
{
    const double count = double(p.vertices.size());
    const Frame frame = arbitraryFrame(p.normal);
    Polyline result{{}, false, p.elevation, p.normal};
    const auto params = vertexParams(from, to);
    for (size_t i = 0; i < params.size(); ++i) {
        const double at = params[i], vertex = std::floor(at), fraction = at - vertex;
        const PolyVertex& v = p.vertices[size_t(std::fmod(vertex, count))];
        const double onCurve = p.closed ? std::fmod(at, count) : at;
        const Point3 point = frame.fromWorld(pointAt(p, onCurve));
        const double until = i + 1 < params.size() ? params[i + 1] - vertex : fraction;
        const auto width = [&](double t) { return v.startWidth + (v.endWidth - v.startWidth) * t; };
        const Point2 planar = fraction == 0 ? v.point : Point2(point.x, point.y);
        result.vertices.push_back({planar, bulgeOfPart(v.bulge, until - fraction), width(fraction), width(until)});
    }
    result.vertices.back().bulge = 0;
    return result;
}

std::optional<Curve> part(const Polyline3& p, double from, double to)
{
    const double count = double(p.vertices.size());
    Polyline3 result;
    for (double at : vertexParams(from, to))
        result.vertices.push_back(pointAt(p, p.closed ? std::fmod(at, count) : at));
    return result;
}

Curve backwards(const Segment& s) { return Segment{s.end, s.start}; }
Curve backwards(const Ray& r) { return r; }
Curve backwards(const XLine& x) { return XLine{x.base, -x.direction}; }
Curve backwards(const Circle& c) { return Circle{c.center, c.radius, -c.normal}; }

Curve backwards(const Arc& a)
{
    const ConicPiece arc = std::get<ConicPiece>(piecesOf(a).front().shape);
    return curveOfConic(a.center, arc.u, -arc.v, {-arc.range.to, -arc.range.from}, -arc.normal());
}

Curve backwards(const Ellipse& e) { return Ellipse{e.center, e.major, e.ratio, -e.end, -e.start, -e.normal}; }
Curve backwards(const Nurbs& n) { return reversed(n); }

Curve backwards(const Polyline& p)
{
    Polyline r = p;
    const size_t count = p.vertices.size();
    for (size_t i = 0; i < count; ++i) {
        const PolyVertex& segment = p.vertices[(2 * count - 2 - i) % count];
        r.vertices[i] = {p.vertices[count - 1 - i].point, -segment.bulge, segment.endWidth, segment.startWidth};
    }
    return r;
}

Curve backwards(const Polyline3& p)
{
    Polyline3 r = p;
    std::reverse(r.vertices.begin(), r.vertices.end());
    return r;
}

Curve image(const Segment& s, const VcGeMatrix3d& m) { return Segment{m * s.start, m * s.end}; }
Curve image(const Ray& r, const VcGeMatrix3d& m) { return Ray{m * r.base, m * r.direction}; }
Curve image(const XLine& x, const VcGeMatrix3d& m) { return XLine{m * x.base, m * x.direction}; }

template <class AnyConic>
Curve imageOfConic(const AnyConic& curve, const VcGeMatrix3d& m)
{
    const auto c = std::get<ConicPiece>(piecesOf(curve).front().shape);
    const Vector3 normal = arbitraryFrame(curve.normal).z;
    return curveOfConic(m * c.center, m * c.u, m * c.v, c.range, m * normal);
}

Curve image(const Circle& c, const VcGeMatrix3d& m)
{
    return c.radius > 0 ? imageOfConic(c, m) : Circle{m * c.center, 0, m * c.normal};
}
Curve image(const Arc& a, const VcGeMatrix3d& m)
{
    return a.radius > 0 ? imageOfConic(a, m) : Arc{m * a.center, 0, a.start, a.end, m * a.normal};
}
Curve image(const Ellipse& e, const VcGeMatrix3d& m) { return imageOfConic(e, m); }

Curve image(const Nurbs& n, const VcGeMatrix3d& m)
{
    Nurbs r = n;
    for (Point3& pole : r.poles)
        pole = m * pole;
    return r;
}

Curve image(const Polyline3& p, const VcGeMatrix3d& m)
{
    Polyline3 r = p;
    for (Point3& v : r.vertices)
        v = m * v;
    return r;
}

bool hasBulge(const Polyline& p)
{
    for (const PolyVertex& v : p.vertices)
        if (v.bulge != 0)
            return true;
    return false;
}

// A polyline that no longer fits into a polyline: through space, or as a spline where it has arcs.
Curve looseImage(const Polyline& p, const VcGeMatrix3d& m)
{
    if (hasBulge(p))
        return image(*toNurbs(p), m);
    Polyline3 r{{}, p.closed};
    const Frame frame = arbitraryFrame(p.normal);
    for (const PolyVertex& v : p.vertices)
        r.vertices.push_back(m * frame.toWorld(Point3(v.point.x, v.point.y, p.elevation)));
    return r;
}

Curve image(const Polyline& p, const VcGeMatrix3d& m)
{
    const Frame frame = arbitraryFrame(p.normal);
    const Vector3 x = m * frame.x, y = m * frame.y;
    const double a = x.length(), b = y.length();
    const Vector3 cross = x.crossProduct(y);
    if (cross.length() <= 1e-14 * a * b || a == 0 || b == 0)
        return looseImage(p, m);
    const bool even = std::fabs(a - b) <= 1e-10 * a && std::fabs(x.dotProduct(y)) <= 1e-10 * a * b;
    if (!even && hasBulge(p))
        return looseImage(p, m);
    const double side = cross.dotProduct(m * frame.z) < 0 ? -1 : 1, widths = std::sqrt(cross.length());
    const Vector3 normal = cross.normal() * side;
    Polyline r{p.vertices, p.closed, 0, normal};
    for (PolyVertex& v : r.vertices) {
        const Point3 local = fromWorld(m * frame.toWorld(Point3(v.point.x, v.point.y, p.elevation)), normal);
        r.elevation = local.z;
        v = {{local.x, local.y}, v.bulge * side, v.startWidth * widths, v.endWidth * widths};
    }
    return r;
}

// The end counted from the first round after the start. What is a whole round but for rounding is one.
double endOfRound(double from, double to, double turn)
{
    const double rounds = (to - from) / turn, slack = rounds > 0.5 ? 1e-14 : 0;
    return std::min(to - std::ceil(rounds - 1 - slack) * turn, from + turn);
}

}  // namespace

std::optional<Curve> subCurve(const Curve& curve, double from, double to)
{
    if (!isValid(curve))
        return std::nullopt;
    const Interval range = paramRange(curve);
    if (isClosed(curve)) {
        const double turn = range.to - range.from;
        from -= std::floor((from - range.from) / turn) * turn;
        to = endOfRound(from, to, turn);
    } else {
        from = std::clamp(from, range.from, range.to);
        to = std::clamp(to, range.from, range.to);
    }
    if (!(from < to))
        return std::nullopt;
    return std::visit([&](const auto& c) { return part(c, from, to); }, curve);
}

std::vector<Curve> splitAt(const Curve& curve, std::vector<double> params)
{
    const Interval range = paramRange(curve);
    const bool closed = isClosed(curve);
    std::erase_if(params, [&](double t) { return !(t > range.from && t < range.to) && !(closed && t == range.from); });
    std::sort(params.begin(), params.end());
    params.erase(std::unique(params.begin(), params.end()), params.end());
    if (params.empty())
        return {curve};
    if (closed) {
        params.push_back(params.front() + (range.to - range.from));
    } else {
        params.insert(params.begin(), range.from);
        params.push_back(range.to);
    }
    std::vector<Curve> parts;
    for (size_t i = 0; i + 1 < params.size(); ++i)
        if (auto part = subCurve(curve, params[i], params[i + 1]))
            parts.push_back(std::move(*part));
    return parts;
}

Curve reversed(const Curve& curve)
{
    return isValid(curve) ? std::visit([](const auto& c) { return backwards(c); }, curve) : curve;
}

Curve transformed(const Curve& curve, const VcGeMatrix3d& m)
{
    return isValid(curve) ? std::visit([&](const auto& c) { return image(c, m); }, curve) : curve;
}

}  // namespace vk::geom
