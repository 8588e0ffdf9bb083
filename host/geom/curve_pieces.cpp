// How each kind of curve is put together from pieces, and what follows from its pieces alone.
#include "host/geom/arbitrary_axis.h"
#include "host/geom/piece.h"

#include <cmath>

namespace vk::geom {

namespace {

constexpr double kInfinite = Box3d::kInfinite;

// An end that is not above the start counts from the next turn; whole turns are one.
Interval turn(double start, double end)
{
    double sweep = end - start;
    if (sweep > 0 && sweep <= kTwoPi)
        return {start, end};
    if (sweep <= 0)
        sweep -= std::floor(sweep / kTwoPi) * kTwoPi;
    return {start, start + (sweep > 0 ? std::min(sweep, kTwoPi) : kTwoPi)};
}

// Of larger ones not enough is left after the turns are taken off.
bool isAngle(double v) { return std::fabs(v) < 1e9; }

// Products of coordinates must stay finite too.
bool finite(double v) { return std::fabs(v) < 1e60; }
bool finite(const Point3& p) { return finite(p.x) && finite(p.y) && finite(p.z); }
bool finite(const Vector3& v) { return finite(v.x) && finite(v.y) && finite(v.z); }

bool valid(const Segment& s) { return finite(s.start) && finite(s.end); }
bool valid(const Ray& r) { return finite(r.base) && finite(r.direction) && r.direction.lengthSqrd() > 0; }
bool valid(const XLine& x) { return finite(x.base) && finite(x.direction) && x.direction.lengthSqrd() > 0; }
bool valid(const Circle& c) { return finite(c.center) && finite(c.radius) && c.radius >= 0 && finite(c.normal); }
bool valid(const Arc& a)
{
    return finite(a.center) && finite(a.radius) && a.radius >= 0 && isAngle(a.start) && isAngle(a.end) &&
           finite(a.normal);
}
bool valid(const Ellipse& e)
{
    return finite(e.center) && finite(e.major) && finite(e.normal) && isAngle(e.start) && isAngle(e.end) &&
           e.ratio >= 0 && e.ratio <= 1e6;
}

bool valid(const Nurbs& n)
{
    const size_t count = n.poles.size();
    if (n.degree < 1 || n.degree > 25 || count < size_t(n.degree) + 1 || n.knots.size() != count + n.degree + 1 ||
        (!n.weights.empty() && n.weights.size() != count))
        return false;
    for (const Point3& p : n.poles)
        if (!finite(p))
            return false;
    for (double w : n.weights)
        if (!finite(w) || !(w > 0))
            return false;
    for (size_t i = 0; i < n.knots.size(); ++i)
        if (!finite(n.knots[i]) || (i > 0 && n.knots[i] < n.knots[i - 1]))
            return false;
    return n.knots[n.degree] < n.knots[count];
}

bool valid(const Polyline& p)
{
    for (const PolyVertex& v : p.vertices)
        if (!finite(v.point.x) || !finite(v.point.y) || !finite(v.bulge) || !finite(v.startWidth) ||
            !finite(v.endWidth))
            return false;
    return !p.vertices.empty() && finite(p.elevation) && finite(p.normal);
}

bool valid(const Polyline3& p)
{
    for (const Point3& v : p.vertices)
        if (!finite(v))
            return false;
    return !p.vertices.empty();
}

std::vector<Piece> pieces(const Segment& s) { return {{LinePiece{s.start, s.end - s.start}, {0, 1}}}; }

std::vector<Piece> pieces(const Ray& r) { return {{LinePiece{r.base, r.direction, {0, kInfinite}}, {0, kInfinite}}}; }

std::vector<Piece> pieces(const XLine& x)
{
    return {{LinePiece{x.base, x.direction, {-kInfinite, kInfinite}}, {-kInfinite, kInfinite}}};
}

Piece round(const Point3& center, double radius, const Vector3& normal, Interval range)
{
    const Frame f = arbitraryFrame(normal);
    return {ConicPiece{center, f.x * radius, f.y * radius, range}, range};
}

std::vector<Piece> pieces(const Circle& c) { return {round(c.center, c.radius, c.normal, {0, kTwoPi})}; }

std::vector<Piece> pieces(const Arc& a) { return {round(a.center, a.radius, a.normal, turn(a.start, a.end))}; }

// An axis called major may be the shorter; the piece then starts a quarter turn later on the other.
std::vector<Piece> pieces(const Ellipse& e)
{
    const Vector3 z = arbitraryFrame(e.normal).z;
    const Vector3 minor = z.crossProduct(e.major) * e.ratio;
    const Interval range = turn(e.start, e.end);
    if (e.ratio <= 1)
        return {{ConicPiece{e.center, e.major, minor, range}, range}};
    const double quarter = kTwoPi / 4;
    return {{ConicPiece{e.center, minor, -e.major, {range.from - quarter, range.to - quarter}}, range}};
}

Piece bezierPiece(const Nurbs& n, int span)
{
    return {BezierPiece{bezierSpan(n, span)}, {n.knots[span], n.knots[span + 1]}};
}

std::vector<Piece> pieces(const Nurbs& n)
{
    std::vector<Piece> result;
    for (int span = n.degree; span < int(n.poles.size()); ++span)
        if (n.knots[span] < n.knots[span + 1])
            result.push_back(bezierPiece(n, span));
    return result;
}

// Below this bulge the center stands so far off that its rounding shows in the arc; such an arc is held by its poles.
constexpr double kFlatBulge = 1e-5;

BezierPiece flatArc(const Point3& from, const Point3& to, const Vector3& right, double bulge)
{
    const double squared = bulge * bulge;
    const Point3 corner = from + (to - from) * 0.5 + right * (bulge / (1 - squared));
    return {{Pole::of(from), Pole::of(corner, (1 - squared) / (1 + squared)), Pole::of(to)}};
}

PieceShape bulged(const Frame& frame, const Point2& from, const Point2& to, double bulge, FlatArcs flat)
{
    const auto world = [&](const Point2& p) { return frame.toWorld(Point3(p.x, p.y, 0)); };
    const Vector2 chord = to - from;
    if (std::fabs(bulge) < 1e-12 || chord.lengthSqrd() == 0)
        return LinePiece{world(from), world(to) - world(from)};
    if (std::fabs(bulge) < kFlatBulge && flat == FlatArcs::ByPoles)
        return flatArc(world(from), world(to), frame.toWorld(Vector3(chord.y, -chord.x, 0)), bulge);
    // The center lies left of the chord's middle by this part of the chord, negative for clockwise arcs above half.
    const double aside = (1 - bulge * bulge) / (4 * bulge);
    const Point2 center = from + chord * 0.5 + chord.perpVector() * aside;
    const Vector2 arm = from - center;
    const Vector2 turned = bulge > 0 ? arm.perpVector() : -arm.perpVector();
    const double angle = 4 * std::atan(std::fabs(bulge));
    return ConicPiece{world(center),
                      frame.toWorld(Vector3(arm.x, arm.y, 0)),
                      frame.toWorld(Vector3(turned.x, turned.y, 0)),
                      {0, angle}};
}

Frame frameOf(const Polyline& p)
{
    Frame frame = arbitraryFrame(p.normal);
    frame.origin = Point3() + frame.z * p.elevation;
    return frame;
}

// A single vertex counts as a segment of no length.
template <class AnyPolyline>
size_t segmentCount(const AnyPolyline& p)
{
    const size_t count = p.vertices.size();
    return count == 1 || p.closed ? count : count - 1;
}

Piece segmentPiece(const Polyline& p, const Frame& frame, size_t i, FlatArcs flat)
{
    const PolyVertex &a = p.vertices[i], &b = p.vertices[(i + 1) % p.vertices.size()];
    return {bulged(frame, a.point, b.point, a.bulge, flat), {double(i), i + 1.0}};
}

Piece segmentPiece(const Polyline3& p, size_t i)
{
    const Point3 &a = p.vertices[i], &b = p.vertices[(i + 1) % p.vertices.size()];
    return {LinePiece{a, b - a}, {double(i), i + 1.0}};
}

std::vector<Piece> pieces(const Polyline& p, FlatArcs flat)
{
    const Frame frame = frameOf(p);
    std::vector<Piece> result(segmentCount(p));
    for (size_t i = 0; i < result.size(); ++i)
        result[i] = segmentPiece(p, frame, i, flat);
    return result;
}

std::vector<Piece> pieces(const Polyline& p) { return pieces(p, FlatArcs::ByPoles); }

std::vector<Piece> pieces(const Polyline3& p)
{
    std::vector<Piece> result(segmentCount(p));
    for (size_t i = 0; i < result.size(); ++i)
        result[i] = segmentPiece(p, i);
    return result;
}

template <class AnyPolyline>
size_t segmentAt(const AnyPolyline& p, double param)
{
    return size_t(std::clamp(std::floor(param), 0.0, segmentCount(p) - 1.0));
}

// The one piece that holds a parameter, or the nearest to it, without making the others.
Piece pieceAt(const Segment& s, double) { return pieces(s).front(); }
Piece pieceAt(const Ray& r, double) { return pieces(r).front(); }
Piece pieceAt(const XLine& x, double) { return pieces(x).front(); }
Piece pieceAt(const Circle& c, double) { return pieces(c).front(); }
Piece pieceAt(const Arc& a, double) { return pieces(a).front(); }
Piece pieceAt(const Ellipse& e, double) { return pieces(e).front(); }

Piece pieceAt(const Nurbs& n, double param)
{
    const auto first = n.knots.begin() + n.degree, last = n.knots.begin() + long(n.poles.size());
    auto span = std::upper_bound(first, last, param);
    span = span == first ? first : span - 1;
    while (span[0] == span[1])
        span += param < n.knots[n.degree] ? 1 : -1;
    return bezierPiece(n, int(span - n.knots.begin()));
}

Piece pieceAt(const Polyline& p, double param)
{
    const bool within = param >= 0 && param <= double(segmentCount(p));
    return segmentPiece(p, frameOf(p), segmentAt(p, param), within ? FlatArcs::ByPoles : FlatArcs::AsCircles);
}
Piece pieceAt(const Polyline3& p, double param) { return segmentPiece(p, segmentAt(p, param)); }

bool holdsAtEnds(const Curve& curve)
{
    const bool round = std::holds_alternative<Circle>(curve) || std::holds_alternative<Ellipse>(curve);
    return std::holds_alternative<Nurbs>(curve) || (isClosed(curve) && !round);
}

}  // namespace

Piece arcPiece(const Point3& center, const Vector3& x, const Vector3& y, double from, double to)
{
    return {ConicPiece{center, x, y, {from, to}}, {from, to}};
}

bool isValid(const Curve& curve)
{
    return std::visit([](const auto& c) { return valid(c); }, curve);
}

std::vector<Piece> piecesOf(const Curve& curve, FlatArcs flat)
{
    if (!isValid(curve))
        return {};
    if (const auto* polyline = std::get_if<Polyline>(&curve))
        return pieces(*polyline, flat);
    return std::visit([](const auto& c) { return pieces(c); }, curve);
}

bool isClosed(const Curve& curve)
{
    if (const auto* p = std::get_if<Polyline>(&curve))
        return p->closed;
    if (const auto* p = std::get_if<Polyline3>(&curve))
        return p->closed;
    if (std::holds_alternative<Circle>(curve))
        return true;
    if (const auto* e = std::get_if<Ellipse>(&curve)) {
        const Interval r = turn(e->start, e->end);
        return r.to - r.from >= kTwoPi * (1 - 1e-14);
    }
    if (!std::holds_alternative<Nurbs>(curve) || !isValid(curve))
        return false;
    const auto start = startPoint(curve), end = endPoint(curve);
    Box3d hull;
    for (const Point3& pole : std::get<Nurbs>(curve).poles)
        hull.add(pole);
    return start->distanceTo(*end) <= 1e-10 * hull.diagonal();
}

Interval paramRange(const Curve& curve)
{
    if (!isValid(curve))
        return {};
    const auto ends = [](const auto& c) {
        return Interval{pieceAt(c, -kInfinite).onCurve.from, pieceAt(c, kInfinite).onCurve.to};
    };
    return std::visit(ends, curve);
}

Derivatives derivativesAt(const Curve& curve, double param)
{
    if (!isValid(curve))
        return {};
    if (holdsAtEnds(curve)) {
        const Interval whole = paramRange(curve);
        param = std::clamp(param, whole.from, whole.to);
    }
    const Piece piece = std::visit([&](const auto& c) { return pieceAt(c, param); }, curve);
    Derivatives d = derivatives(piece.shape, piece.fromCurve(param));
    const Interval r = piece.range();
    const double rate = (r.to - r.from) / (piece.onCurve.to - piece.onCurve.from);
    if (std::isfinite(rate)) {
        d.first *= rate;
        d.second *= rate * rate;
    }
    return d;
}

Point3 pointAt(const Curve& curve, double param) { return derivativesAt(curve, param).point; }

std::optional<Point3> startPoint(const Curve& curve)
{
    const Interval r = paramRange(curve);
    return isValid(curve) && std::isfinite(r.from) ? std::optional(pointAt(curve, r.from)) : std::nullopt;
}

std::optional<Point3> endPoint(const Curve& curve)
{
    const Interval r = paramRange(curve);
    return isValid(curve) && std::isfinite(r.to) ? std::optional(pointAt(curve, r.to)) : std::nullopt;
}

std::optional<Closest> closestPoint(const Curve& curve, const Point3& to)
{
    std::optional<Closest> best;
    for (const Piece& piece : piecesOf(curve)) {
        const auto* bezier = std::get_if<BezierPiece>(&piece.shape);
        if (best && bezier && distanceToBox(hullBox(bezier->poles), to) >= best->distance)
            continue;
        const Nearest n = nearest(piece.shape, to);
        if (!best || n.distance < best->distance)
            best = {place(piece.shape, n.t), piece.toCurve(n.t), n.distance};
    }
    return best;
}

std::optional<double> paramAt(const Curve& curve, const Point3& point, double tolerance)
{
    const auto found = closestPoint(curve, point);
    return found && found->distance <= tolerance ? std::optional(found->param) : std::nullopt;
}

}  // namespace vk::geom
