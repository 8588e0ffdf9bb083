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
constexpr double kEven = 1e-9;  // what lies as far from either end of an arc is left where it was found

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

struct Operand {
    std::vector<Piece> pieces;       // about the common origin
    std::vector<PieceShape> shapes;  // the same with their ranges widened where the curve goes on
    std::vector<Interval> reaches;   // the rounds on either side of its own range that a widened arc is counted in
    std::vector<Box3d> boxes;
    Interval range;
    size_t own = 0;  // how many of the pieces are the curve's; those of circles beyond it follow
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
        own = pieces.size();
        reaches.resize(own);
        if (extend && !closed && !shapes.empty()) {
            const size_t last = shapes.size() - 1;
            widen(0, true, last == 0);
            if (last > 0)
                widen(last, false, true);
            addFlatArcsBeyond(curve, shift);
        }
        for (const PieceShape& shape : shapes)
            boxes.push_back(boxOf(shape).grown(tolerance));
    }

    double toCurve(size_t i, double t) const { return pieces[i].toCurve(t + wholeTurns(i, t)); }
    Interval toCurve(size_t i, Interval stretch) const
    {
        const double turns = wholeTurns(i, (stretch.from + stretch.to) / 2);
        return {pieces[i].toCurve(stretch.from + turns), pieces[i].toCurve(stretch.to + turns)};
    }

    // Where a flat arc's circle begins, its own end is the truer one.
    bool isKnownBetter(size_t i, double t) const
    {
        const double slack = 1e-8, param = toCurve(i, t);
        return i >= own && param > range.from - slack && param < range.to + slack;
    }

    // Whether two parameters mean places that follow each other, so that one point found at both is one.
    bool adjoining(double p, double q) const
    {
        const double reach = segmented ? 1.5 : 1e-3 * (range.to - range.from);
        const double apart = std::fabs(p - q);
        return !std::isfinite(reach) || apart <= reach || (closed && range.to - range.from - apart <= reach);
    }

private:
    void widen(size_t i, bool atStart, bool atEnd)
    {
        PieceShape& shape = shapes[i];
        if (auto* line = std::get_if<LinePiece>(&shape); line && line->vector.lengthSqrd() > 0)
            line->range = {atStart ? -Box3d::kInfinite : line->range.from, atEnd ? Box3d::kInfinite : line->range.to};
        auto* conic = std::get_if<ConicPiece>(&shape);
        if (!conic)
            return;
        const Interval r = conic->range;
        const double rest = kTwoPi - (r.to - r.from), share = atStart && atEnd ? rest / 2 : rest;
        reaches[i] = {atStart ? r.from - share : r.from, atEnd ? r.to + share : r.to};
        conic->range = atEnd ? Interval{r.from, r.from + kTwoPi} : Interval{r.to - kTwoPi, r.to};
    }

    // An arc held by its poles ends where they end; beyond goes its circle.
    void addFlatArcsBeyond(const Curve& curve, const Vector3& shift)
    {
        const auto* polyline = std::get_if<Polyline>(&curve);
        if (!polyline)
            return;
        const auto round = piecesOf(curve, FlatArcs::AsCircles);
        for (bool atStart : {true, false}) {
            const size_t i = atStart ? 0 : own - 1;
            if (!std::holds_alternative<BezierPiece>(shapes[i]))
                continue;
            Piece piece = round[i];
            piece.shape = translated(std::move(piece.shape), shift);
            const Interval r = piece.range();
            PieceShape beyond = piece.shape;
            setRange(beyond, atStart ? Interval{r.from - kTwoPi / 2, r.from} : Interval{r.to, r.to + kTwoPi / 2});
            pieces.push_back(std::move(piece));
            reaches.push_back(rangeOf(beyond));
            shapes.push_back(std::move(beyond));
        }
    }

    // Beyond the ends of an arc, the nearer end counts; an arc at the end of a polyline has only that one.
    double wholeTurns(size_t i, double t) const
    {
        const Interval r = reaches[i];
        if (r.from == r.to || !std::holds_alternative<ConicPiece>(shapes[i]))
            return 0;
        return t < r.from - kEven ? kTwoPi : t > r.to + kEven ? -kTwoPi : 0;
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
    // Where curves run over a place more than once, the one that goes on is among the last few.
    std::vector<Overlap> joined;
    for (const Overlap& o : overlaps) {
        const auto recent = joined.rbegin() + std::min<long>(8, long(joined.size()));
        const auto before = std::find_if(joined.rbegin(), recent, [&](const Overlap& j) { return joins(j, o); });
        if (before == recent) {
            joined.push_back(o);
            continue;
        }
        before->first.to = o.first.to;
        before->second.to = o.second.to;
        before->end = o.end;
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
        if (a.isKnownBetter(i, t.a) || b.isKnownBetter(j, t.b))
            continue;
        const bool tangent = t.tangent || tangentAt(a.shapes[i], t.a, b.shapes[j], t.b);
        meeting.points.push_back({place(a.shapes[i], t.a) + back, a.toCurve(i, t.a), b.toCurve(j, t.b), tangent});
    }
    const auto at = [&](double t) { return std::isfinite(t) ? place(a.shapes[i], t) + back : Point3(t, t, t); };
    for (const SharedStretch& s : found.shared)
        meeting.overlaps.push_back({a.toCurve(i, s.a), b.toCurve(j, s.b), at(s.a.from), at(s.a.to)});
}

auto orderOf(const Curve& curve, const Box3d& box)
{
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

bool extends(Extend extend, Extend which) { return (int(extend) & int(which)) != 0; }

}  // namespace

static double meetingTolerance(const Box3d& boxA, const Box3d& boxB)
{
    return kSizeShare * std::max(boxA.diagonal(), boxB.diagonal()) +
           kRounding * std::max(boxA.magnitude(), boxB.magnitude());
}

double meetingTolerance(const Curve& a, const Curve& b) { return meetingTolerance(finiteBox(a), finiteBox(b)); }

// In the order of orderOf, so that swapped arguments give the same points.
static Meeting intersectInOrder(const Curve& a, const Box3d& boxA, const Curve& b, const Box3d& boxB, Extend extend,
                                double tolerance)
{
    if (tolerance <= 0)
        tolerance = meetingTolerance(boxA, boxB);
    // Near the origin coordinates have all their digits.
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

Meeting intersect(const Curve& a, const Curve& b, Extend extend, double tolerance)
{
    if (!isValid(a) || !isValid(b))
        return {};
    const Box3d boxA = finiteBox(a), boxB = finiteBox(b);
    if (!(orderOf(b, boxB) < orderOf(a, boxA)))
        return intersectInOrder(a, boxA, b, boxB, extend, tolerance);
    const int turned = (int(extend) >> 1 & 1) | (int(extend) << 1 & 2);
    Meeting meeting = intersectInOrder(b, boxB, a, boxA, Extend(turned), tolerance);
    swapOrder(meeting);
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

}  // namespace vk::geom
