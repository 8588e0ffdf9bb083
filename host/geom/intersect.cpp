#include "host/geom/intersect.h"

#include "host/geom/meet.h"
#include "host/geom/sweep.h"

#include <cmath>
#include <tuple>

namespace vk::geom {

namespace {

constexpr double kSizeShare = 1e-10;
constexpr double kRounding = 4e-15;
constexpr double kTangentSine = 1e-7;

// The box without what is infinite: of a ray, its base.
Box3d finiteBox(const Curve& curve)
{
    Box3d box;
    if (const auto* ray = std::get_if<Ray>(&curve))
        box.add(ray->base);
    else if (const auto* line = std::get_if<XLine>(&curve))
        box.add(line->base);
    else
        box = extents(curve);
    return box;
}

struct Operand
{
    std::vector<Piece> pieces;      // about the common origin
    std::vector<PieceShape> shapes; // the same with their ranges widened where the curve goes on
    std::vector<Box3d> boxes;
    Interval range;
    bool closed = false;
    bool segmented = false;

    Operand(const Curve& curve, const Vector3& shift, bool extend, double tolerance)
        : pieces(piecesOf(curve)), range(paramRange(curve)), closed(isClosed(curve))
    {
        segmented = std::holds_alternative<Polyline>(curve) || std::holds_alternative<Polyline3>(curve);
        for (Piece& piece : pieces) {
            piece.shape = translated(std::move(piece.shape), shift);
            shapes.push_back(piece.shape);
        }
        if (extend && !closed && !shapes.empty()) {
            widen(shapes.front(), true, shapes.size() == 1);
            widen(shapes.back(), shapes.size() == 1, true);
        }
        for (const PieceShape& shape : shapes)
            boxes.push_back(boxOf(shape).grown(tolerance));
    }

    double toCurve(size_t i, double t) const
    {
        const Piece& piece = pieces[i];
        const Interval r = piece.range();
        if (std::holds_alternative<ConicPiece>(piece.shape)) {
            // Beyond the ends of an arc, the nearer end counts.
            while (t > r.to && t - r.to > r.from - (t - kTwoPi))
                t -= kTwoPi;
            while (t < r.from && r.from - t > (t + kTwoPi) - r.to)
                t += kTwoPi;
        }
        return piece.toCurve(t);
    }

    // Whether two parameters mean places that follow each other, so that one point found at both is one.
    bool adjoining(double p, double q) const
    {
        const double reach = segmented ? 1.5 : 1e-3 * (range.to - range.from);
        const double apart = std::fabs(p - q);
        return !std::isfinite(reach) || apart <= reach || (closed && range.to - range.from - apart <= reach);
    }

private:
    static void widen(PieceShape& shape, bool atStart, bool atEnd)
    {
        if (auto* line = std::get_if<LinePiece>(&shape); line && line->vector.lengthSqrd() > 0)
            line->range = {atStart ? -Box3d::kInfinite : line->range.from, atEnd ? Box3d::kInfinite : line->range.to};
        auto* conic = std::get_if<ConicPiece>(&shape);
        if (conic && atStart && !atEnd)
            conic->range.from = conic->range.to - kTwoPi;
        else if (conic && (atStart || atEnd))
            conic->range.to = conic->range.from + kTwoPi;
    }
};

bool tangentAt(const PieceShape& a, double s, const PieceShape& b, double t)
{
    const Vector3 da = derivatives(a, s).first.normal(), db = derivatives(b, t).first.normal();
    return da.crossProduct(db).length() <= kTangentSine && da.lengthSqrd() > 0 && db.lengthSqrd() > 0;
}

bool joins(const Overlap& p, const Overlap& q)
{
    const double slack = 1e-9;
    return std::fabs(p.first.to - q.first.from) <= slack && std::fabs(p.second.to - q.second.from) <= slack &&
           (p.second.to - p.second.from) * (q.second.to - q.second.from) > 0;
}

void joinOverlaps(std::vector<Overlap>& overlaps)
{
    std::sort(overlaps.begin(), overlaps.end(),
              [](const Overlap& p, const Overlap& q) { return p.first.from < q.first.from; });
    std::vector<Overlap> joined;
    for (const Overlap& o : overlaps) {
        if (!joined.empty() && joins(joined.back(), o)) {
            joined.back().first.to = o.first.to;
            joined.back().second.to = o.second.to;
            joined.back().end = o.end;
        } else {
            joined.push_back(o);
        }
    }
    overlaps = std::move(joined);
}

bool within(double t, Interval range)
{
    return t >= std::min(range.from, range.to) && t <= std::max(range.from, range.to);
}

// Touches at vertices are found by both segments; those at the ends of overlaps belong to these.
void keepDistinct(Meeting& meeting, const Operand& a, const Operand& b, double tolerance)
{
    std::sort(meeting.points.begin(), meeting.points.end(), [](const Crossing& p, const Crossing& q) {
        return std::tie(p.first, p.second) < std::tie(q.first, q.second);
    });
    std::vector<Crossing> kept;
    for (const Crossing& c : meeting.points) {
        const auto same = [&](const Crossing& k) {
            return k.point.distanceTo(c.point) <= 2 * tolerance && a.adjoining(k.first, c.first) &&
                   b.adjoining(k.second, c.second);
        };
        const auto covers = [&](const Overlap& o) {
            return std::min(o.start.distanceTo(c.point), o.end.distanceTo(c.point)) <= 4 * tolerance ||
                   (within(c.first, o.first) && within(c.second, o.second));
        };
        // Sorted by the first parameter, equal ones are neighbours but for the seam.
        const size_t recent = kept.size() > 8 ? kept.size() - 8 : 0;
        const bool known = std::any_of(kept.begin() + recent, kept.end(), same) ||
                           std::any_of(kept.begin(), kept.begin() + std::min<size_t>(kept.size(), 8), same);
        if (!known && std::none_of(meeting.overlaps.begin(), meeting.overlaps.end(), covers))
            kept.push_back(c);
    }
    meeting.points = std::move(kept);
}

void addMeetings(const Operand& a, size_t i, const Operand& b, size_t j, const Vector3& back, double tolerance,
                 Meeting& meeting)
{
    const PieceMeeting found = meet(a.shapes[i], b.shapes[j], tolerance);
    for (const Touch& t : found.touches) {
        const bool tangent = t.tangent || tangentAt(a.shapes[i], t.a, b.shapes[j], t.b);
        meeting.points.push_back({place(a.shapes[i], t.a) + back, a.toCurve(i, t.a), b.toCurve(j, t.b), tangent});
    }
    const auto at = [&](double t) { return std::isfinite(t) ? place(a.shapes[i], t) + back : Point3(t, t, t); };
    for (const SharedStretch& s : found.shared)
        meeting.overlaps.push_back({{a.toCurve(i, s.a.from), a.toCurve(i, s.a.to)},
                                    {b.toCurve(j, s.b.from), b.toCurve(j, s.b.to)},
                                    at(s.a.from),
                                    at(s.a.to)});
}

auto orderOf(const Curve& curve)
{
    const Box3d box = finiteBox(curve);
    return std::make_tuple(curve.index(), box.min.x, box.min.y, box.min.z, box.max.x, box.max.y, box.max.z);
}

void swapOrder(Meeting& meeting)
{
    for (Crossing& c : meeting.points)
        std::swap(c.first, c.second);
    std::sort(meeting.points.begin(), meeting.points.end(), [](const Crossing& p, const Crossing& q) {
        return std::tie(p.first, p.second) < std::tie(q.first, q.second);
    });
    for (Overlap& o : meeting.overlaps) {
        std::swap(o.first, o.second);
        if (o.first.from > o.first.to) {
            std::swap(o.first.from, o.first.to);
            std::swap(o.second.from, o.second.to);
            std::swap(o.start, o.end);
        }
    }
    joinOverlaps(meeting.overlaps);
}

bool extends(Extend extend, Extend which)
{
    return (int(extend) & int(which)) != 0;
}

} // namespace

double meetingTolerance(const Curve& a, const Curve& b)
{
    const Box3d boxA = finiteBox(a), boxB = finiteBox(b);
    return kSizeShare * std::max(boxA.diagonal(), boxB.diagonal()) +
           kRounding * std::max(boxA.magnitude(), boxB.magnitude());
}

Meeting intersect(const Curve& a, const Curve& b, Extend extend, double tolerance)
{
    if (!isValid(a) || !isValid(b))
        return {};
    if (orderOf(b) < orderOf(a)) {
        const int turned = (int(extend) >> 1 & 1) | (int(extend) << 1 & 2);
        Meeting meeting = intersect(b, a, Extend(turned), tolerance);
        swapOrder(meeting);
        return meeting;
    }
    if (tolerance <= 0)
        tolerance = meetingTolerance(a, b);
    // Near the origin coordinates have all their digits.
    const Box3d boxA = finiteBox(a), boxB = finiteBox(b);
    const Vector3 origin = (boxA.diagonal() <= boxB.diagonal() ? boxA : boxB).center().asVector();
    const Operand first(a, -origin, extends(extend, Extend::First), tolerance);
    const Operand second(b, -origin, extends(extend, Extend::Second), tolerance);
    Meeting meeting;
    eachTouchingPair(first.boxes, second.boxes,
                     [&](size_t i, size_t j) { addMeetings(first, i, second, j, origin, tolerance, meeting); });
    joinOverlaps(meeting.overlaps);
    keepDistinct(meeting, first, second, tolerance);
    return meeting;
}

std::vector<Point3> contactPoints(const Meeting& meeting)
{
    std::vector<Point3> points;
    for (const Crossing& c : meeting.points)
        points.push_back(c.point);
    for (const Overlap& o : meeting.overlaps)
        for (const auto& [p, t] : {std::pair(o.start, o.first.from), std::pair(o.end, o.first.to)})
            if (std::isfinite(t))
                points.push_back(p);
    return points;
}

} // namespace vk::geom
