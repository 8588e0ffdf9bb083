#include "host/geom/offset.h"

#include "host/geom/arbitrary_axis.h"
#include "host/geom/conic_form.h"
#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"
#include "host/geom/meet.h"
#include "host/geom/nurbs.h"
#include "host/geom/offset_chain.h"

#include <cmath>

namespace vk::geom {

namespace {

constexpr double kFitShare = 1e-8;  // of the curve's size and the distance
constexpr double kFlattest = 1e-7;  // an ellipse flatter than this has no sides to speak of

OffsetResult failed(OffsetFailure why) { return {{}, why}; }

OffsetResult one(Curve curve) { return {{std::move(curve)}, OffsetFailure::None}; }

std::optional<Vector3> aside(const Vector3& direction, double distance, const Vector3& up)
{
    const Vector3 right = direction.normal().crossProduct(up.normal());
    return right.length() > 1e-9 ? std::optional(right.normal() * distance) : std::nullopt;
}

OffsetResult moved(const Segment& s, double distance, GapFill, const Vector3& up)
{
    const auto by = aside(s.end - s.start, distance, up);
    return by ? one(Segment{s.start + *by, s.end + *by}) : failed(OffsetFailure::NotPlanar);
}

OffsetResult moved(const Ray& r, double distance, GapFill, const Vector3& up)
{
    const auto by = aside(r.direction, distance, up);
    return by ? one(Ray{r.base + *by, r.direction}) : failed(OffsetFailure::NotPlanar);
}

OffsetResult moved(const XLine& x, double distance, GapFill, const Vector3& up)
{
    const auto by = aside(x.direction, distance, up);
    return by ? one(XLine{x.base + *by, x.direction}) : failed(OffsetFailure::NotPlanar);
}

bool closesUp(double radius, double distance)
{
    return radius + distance <= 1e-12 * std::max(radius, std::fabs(distance));
}

OffsetResult moved(Circle c, double distance, GapFill, const Vector3&)
{
    if (closesUp(c.radius, distance))
        return failed(OffsetFailure::Vanished);
    c.radius += distance;
    return one(c);
}

OffsetResult moved(Arc a, double distance, GapFill, const Vector3&)
{
    if (closesUp(a.radius, distance))
        return failed(OffsetFailure::Vanished);
    a.radius += distance;
    return one(a);
}

// In the frame of the curve's plane, so that its pieces lie in z = 0.
struct Local {
    Frame frame;
    VcGeMatrix3d toWorld, fromWorld;

    explicit Local(const Frame& f) : frame(f)
    {
        toWorld.setCoordSystem(f.origin, f.x, f.y, f.z);
        fromWorld = toWorld.inverse();
    }

    PieceShape inPlane(const PieceShape& shape) const
    {
        const auto flat = [](Point3 p) {
            p.z = 0;
            return p;
        };
        if (const auto* line = std::get_if<LinePiece>(&shape)) {
            const Point3 start = flat(fromWorld * line->base), end = flat(fromWorld * (line->base + line->vector));
            return LinePiece{start, end - start, line->range};
        }
        if (const auto* conic = std::get_if<ConicPiece>(&shape))
            return ConicPiece{flat(fromWorld * conic->center), fromWorld * conic->u, fromWorld * conic->v,
                              conic->range};
        BezierPiece bezier = std::get<BezierPiece>(shape);
        for (Pole& pole : bezier.poles)
            pole = Pole::of(flat(fromWorld * pole.point()), pole.w);
        return bezier;
    }
};

// A polyline's arc that no offset would tell from its chord goes for that; others that are all but straight need their
// centers, which may stand so far off that their rounding counts.
std::vector<PieceShape> sourcePieces(const Curve& curve, double flat)
{
    const auto pieces = piecesOf(curve), round = piecesOf(curve, FlatArcs::AsCircles);
    std::vector<PieceShape> shapes;
    for (size_t i = 0; i < pieces.size(); ++i) {
        const auto* arc = std::get_if<BezierPiece>(&pieces[i].shape);
        if (!arc || !std::holds_alternative<Polyline>(curve)) {
            shapes.push_back(pieces[i].shape);
            continue;
        }
        const Point3 start = arc->poles.front().point(), end = arc->poles.back().point();
        const double height = place(*arc, 0.5).distanceTo(start + (end - start) * 0.5);
        shapes.push_back(height <= flat ? PieceShape(LinePiece{start, end - start}) : round[i].shape);
    }
    return shapes;
}

double roundingOf(const PieceShape& shape)
{
    const auto* arc = std::get_if<ConicPiece>(&shape);
    return arc ? 2e-15 * arc->u.length() : 0;
}

OffsetSource sourceOf(const Curve& curve, const Local& local, double distance, GapFill gap)
{
    const Box3d box = extents(curve);
    OffsetSource source;
    source.closed = isClosed(curve);
    source.distance = distance;
    source.gap = gap;
    source.tolerance = meetingTolerance(curve, curve) + 1e-12 * std::fabs(distance);
    const double tolerance = source.tolerance;
    const auto pieces = sourcePieces(curve, kFitShare * box.diagonal());
    for (size_t i = 0; i < pieces.size(); ++i) {
        PieceShape shape = local.inPlane(pieces[i]);
        source.tolerance = std::max(source.tolerance, tolerance + roundingOf(shape));
        if (boxOf(shape).diagonal() <= source.tolerance)
            continue;
        const auto* conic = std::get_if<ConicPiece>(&shape);
        const bool straight = std::holds_alternative<LinePiece>(shape);
        if (!straight && !(conic && std::holds_alternative<Polyline>(curve)))
            source.fit = kFitShare * (box.diagonal() + std::fabs(distance));
        source.pieces.push_back(std::move(shape));
        source.origins.push_back(i);
    }
    return source;
}

double bulgeOf(const PieceShape& shape)
{
    const auto* arc = std::get_if<ConicPiece>(&shape);
    if (!arc)
        return 0;
    const double side = arc->u.crossProduct(arc->v).z > 0 ? 1 : -1;
    return side * std::tan((arc->range.to - arc->range.from) / 4);
}

Curve asPolyline(const Chain& chain, const Polyline& like)
{
    Polyline p{{}, chain.closed, like.elevation, like.normal};
    const auto add = [&](const Point3& at, double bulge, const PolyVertex& widths) {
        p.vertices.push_back({{at.x, at.y}, bulge, widths.startWidth, widths.endWidth});
    };
    for (const ChainPiece& piece : chain.pieces)
        add(startOf(piece.shape), bulgeOf(piece.shape), like.vertices[piece.origin]);
    if (!chain.closed)
        add(endOf(chain.pieces.back().shape), 0, {});
    return p;
}

Bezier elevated(const Bezier& b)
{
    const double degree = double(b.size());
    Bezier r{b.front()};
    for (size_t i = 1; i < b.size(); ++i)
        r.push_back(mix(b[i], b[i - 1], double(i) / degree));
    r.push_back(b.back());
    return r;
}

Curve asSpline(const Chain& chain)
{
    std::vector<Bezier> beziers;
    for (const ChainPiece& piece : chain.pieces)
        for (Bezier& bezier : asBeziers(piece.shape, 2)) {
            while (bezier.size() < 4)
                bezier = elevated(bezier);
            beziers.push_back(std::move(bezier));
        }
    return composed(beziers);
}

std::vector<Chain> chainsOf(OffsetSource& source)
{
    return source.pieces.empty() ? std::vector<Chain>{} : trimmedOffset(source, rawOffset(source));
}

OffsetResult moved(const Polyline& p, double distance, GapFill gap, const Vector3&)
{
    Frame frame = arbitraryFrame(p.normal);
    frame.origin = Point3() + frame.z * p.elevation;
    OffsetSource source = sourceOf(p, Local(frame), distance, gap);
    OffsetResult result;
    for (const Chain& chain : chainsOf(source))
        result.curves.push_back(asPolyline(chain, p));
    return result.curves.empty() ? failed(OffsetFailure::Vanished) : result;
}

// The curve's plane on the side of `up`. A straight curve takes the plane across `up`.
std::optional<Frame> frameOf(const Curve& curve, const Vector3& up)
{
    const Point3 start = *startPoint(curve);
    if (const auto plane = planeOf(curve)) {
        const Vector3 normal = plane->normal();
        return arbitraryFrame(normal.dotProduct(up) < 0 ? -normal : normal, start);
    }
    const Frame frame = arbitraryFrame(up, start);
    const Box3d box = extents(curve);
    for (const Point3& p : {pointAt(curve, paramRange(curve).to), box.min, box.max})
        if (std::fabs(frame.fromWorld(p).z) > 1e-9 * box.diagonal())
            return std::nullopt;
    return frame;
}

OffsetResult movedAsSpline(const Curve& curve, const Frame& frame, double distance, GapFill gap)
{
    const Local local(frame);
    OffsetSource source = sourceOf(curve, local, distance, gap);
    OffsetResult result;
    for (const Chain& chain : chainsOf(source))
        result.curves.push_back(transformed(asSpline(chain), local.toWorld));
    return result.curves.empty() ? failed(OffsetFailure::Vanished) : result;
}

OffsetResult moved(const Ellipse& e, double distance, GapFill gap, const Vector3&)
{
    if (e.ratio < kFlattest)
        return failed(OffsetFailure::Invalid);
    return movedAsSpline(e, arbitraryFrame(e.normal, e.center), distance, gap);
}

OffsetResult moved(const Nurbs& n, double distance, GapFill gap, const Vector3& up)
{
    const auto frame = frameOf(n, up);
    return frame ? movedAsSpline(n, *frame, distance, gap) : failed(OffsetFailure::NotPlanar);
}

OffsetResult moved(const Polyline3& p, double distance, GapFill gap, const Vector3& up)
{
    const auto frame = frameOf(p, up);
    if (!frame)
        return failed(OffsetFailure::NotPlanar);
    Polyline flat{{}, p.closed, 0, frame->z};
    for (const Point3& v : p.vertices) {
        const Point3 local = fromWorld(v, frame->z);
        flat.vertices.push_back({{local.x, local.y}});
        flat.elevation = local.z;
    }
    return moved(flat, distance, gap, up);
}

}  // namespace

OffsetResult offset(const Curve& curve, double distance, GapFill gap, const Vector3& up)
{
    if (!isValid(curve) || !std::isfinite(distance))
        return failed(OffsetFailure::Invalid);
    if (distance == 0)
        return one(curve);
    return std::visit([&](const auto& c) { return moved(c, distance, gap, up); }, curve);
}

std::optional<double> offsetDistanceThrough(const Curve& curve, const Point3& point, const Vector3& up)
{
    const auto near = closestPoint(curve, point);
    if (!near)
        return std::nullopt;
    const auto plane = planeOf(curve);
    Vector3 normal = plane ? plane->normal() : up.normal();
    const bool ownNormal = !std::holds_alternative<Nurbs>(curve) && !std::holds_alternative<Polyline3>(curve);
    if (plane && !ownNormal && normal.dotProduct(up) < 0)
        normal = -normal;
    const Vector3 arm = (point - near->point).orthoProject(normal);
    // At a corner either side's tangent may be the wrong one; the one that the arm leans less along decides.
    const Interval r = paramRange(curve);
    const double nudge = std::isfinite(r.to - r.from) ? 1e-9 * (r.to - r.from) : 0;
    double best = 0, lean = Box3d::kInfinite;
    for (double t : {near->param - nudge, near->param + nudge}) {
        const Vector3 tangent = derivativesAt(curve, t).first.normal();
        const Vector3 right = tangent.crossProduct(normal);
        const double along = std::fabs(arm.dotProduct(tangent));
        if (along < lean) {
            lean = along;
            best = arm.dotProduct(right);
        }
    }
    return std::copysign(arm.length(), best);
}

}  // namespace vk::geom
