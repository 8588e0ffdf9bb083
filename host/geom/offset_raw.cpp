#include "host/geom/meet.h"
#include "host/geom/offset_chain.h"

#include <cmath>

namespace vk::geom {

namespace {

bool isRound(const PieceShape& shape)
{
    const auto* conic = std::get_if<ConicPiece>(&shape);
    return conic && conic->u.length() - conic->v.length() <= 1e-12 * conic->u.length();
}

// A tangent of no length where poles coincide is taken a little further on.
Vector3 tangentNear(const PieceShape& shape, double t, double inwards)
{
    const Interval r = rangeOf(shape);
    for (double step : {0.0, 1e-6, 1e-3}) {
        const Vector3 d = derivatives(shape, t + inwards * step * (r.to - r.from)).first;
        if (d.length() > 1e-12 * boxOf(shape).diagonal())
            return d.normal();
    }
    return {1, 0, 0};
}

PieceShape movedLine(LinePiece line, double distance)
{
    line.base += rightOf(line.vector) * distance;
    return line;
}

// An arc that closes up comes out on the far side of its center; what follows trims it.
PieceShape movedArc(ConicPiece arc, double distance)
{
    const double radius = arc.u.length(), side = arc.u.crossProduct(arc.v).z > 0 ? 1 : -1;
    const double scale = (radius + side * distance) / radius;
    arc.u *= scale;
    arc.v *= scale;
    return arc;
}

Joint jointBetween(const OffsetSource& source, size_t i)
{
    const Vector3 before = endTangent(source.pieces[i]), after = startTangent(source.pieces[source.next(i)]);
    const double sine = before.crossProduct(after).z, cosine = before.dotProduct(after);
    const double gap = std::fabs(source.distance) * std::hypot(sine, 1 - cosine);
    if (cosine > 0 && gap <= source.tolerance + source.fit)
        return Joint::Smooth;
    const bool turnsBack = cosine < 0 && std::fabs(sine) < 1e-9;
    if (!turnsBack && sine * source.distance < 0)
        return Joint::Inner;
    switch (source.gap) {
    case GapFill::Extend:
        return Joint::Extend;
    case GapFill::Chamfer:
        return Joint::Chamfer;
    default:
        return Joint::Fillet;
    }
}

void addLine(Chain& chain, const Point3& from, const Point3& to, size_t origin)
{
    chain.pieces.push_back({LinePiece{from, to - from}, origin});
}

void addFillet(Chain& chain, const Point3& center, const Point3& from, const Point3& to, double distance, size_t origin)
{
    const Vector3 arm = from - center;
    const double way = distance > 0 ? 1 : -1;
    const Vector3 across = Vector3(-arm.y, arm.x, 0) * way;
    double angle = std::atan2((to - center).dotProduct(across), (to - center).dotProduct(arm));
    if (angle <= 0)
        angle += kTwoPi;
    chain.pieces.push_back({ConicPiece{center, arm, across, {0, angle}}, origin});
}

PieceShape goingOn(const PieceShape& shape, bool atEnd)
{
    PieceShape longer = shape;
    if (auto* line = std::get_if<LinePiece>(&longer))
        line->range = atEnd ? Interval{0, Box3d::kInfinite} : Interval{-Box3d::kInfinite, 1};
    else if (auto* conic = std::get_if<ConicPiece>(&longer))
        conic->range = atEnd ? Interval{conic->range.from, conic->range.from + kTwoPi}
                             : Interval{conic->range.to - kTwoPi, conic->range.to};
    else {
        const Vector3 tangent = atEnd ? endTangent(shape) : startTangent(shape);
        longer = LinePiece{atEnd ? endOf(shape) : startOf(shape), tangent,
                           atEnd ? Interval{0, Box3d::kInfinite} : Interval{-Box3d::kInfinite, 0}};
    }
    return longer;
}

// Where both sides meet when they go on, nearest to the corner and in the opening before it. Arcs may bend away from
// there and meet elsewhere or never.
std::optional<Touch> mitre(const PieceShape& before, const PieceShape& after, const Point3& corner, double tolerance)
{
    const PieceShape a = goingOn(before, true), b = goingOn(after, false);
    const Vector3 in = endTangent(before), out = startTangent(after);
    std::optional<Touch> best;
    for (const Touch& touch : meet(a, b, tolerance).touches) {
        const Vector3 arm = place(a, touch.a) - corner;
        const bool inOpening = arm.dotProduct(in) > 0 && arm.dotProduct(out) < 0;
        if (inOpening && (!best || arm.length() < place(a, best->a).distanceTo(corner)))
            best = touch;
    }
    return best;
}

void extendStart(PieceShape& shape, double t)
{
    if (std::holds_alternative<BezierPiece>(shape))
        return;
    setRange(shape, {t, rangeOf(shape).to});
}

class RawChain {
public:
    explicit RawChain(OffsetSource& source) : m_source(source) {}

    Chain build()
    {
        const size_t count = m_source.pieces.size();
        for (size_t i = 0; i < count; ++i)
            m_source.joints.push_back(m_source.hasJoint(i) ? jointBetween(m_source, i) : Joint::Smooth);
        for (size_t i = 0; i < count; ++i)
            m_moved.push_back(moved(i));
        for (size_t i = 0; i < count; ++i) {
            if (m_source.joints[i] == Joint::Extend)
                extend(i);
            else if (m_source.joints[i] == Joint::Inner)
                trim(i);
        }
        m_chain.closed = m_source.closed;
        for (size_t i = 0; i < count; ++i) {
            for (const PieceShape& shape : m_moved[i])
                m_chain.pieces.push_back({shape, m_source.origins[i]});
            join(i);
        }
        return std::move(m_chain);
    }

private:
    std::vector<PieceShape> moved(size_t i) const
    {
        const PieceShape& shape = m_source.pieces[i];
        if (const auto* line = std::get_if<LinePiece>(&shape))
            return {movedLine(*line, m_source.distance)};
        if (isRound(shape))
            return {movedArc(std::get<ConicPiece>(shape), m_source.distance)};
        std::vector<PieceShape> shapes;
        for (BezierPiece& bezier : fittedOffset(shape, m_source.distance, m_source.fit))
            shapes.push_back(std::move(bezier));
        return shapes;
    }

    Point3 corner(size_t i) const { return endOf(m_source.pieces[i]); }

    // Lengthens both sides up to their meeting; where they have none the joint becomes an arc.
    void extend(size_t i)
    {
        PieceShape &before = m_moved[i].back(), &after = m_moved[m_source.next(i)].front();
        const auto met = mitre(before, after, corner(i), m_source.tolerance);
        if (!met) {
            m_source.joints[i] = Joint::Fillet;
            return;
        }
        m_tips.resize(m_source.pieces.size());
        m_tips[i] = place(goingOn(before, true), met->a);
        if (!std::holds_alternative<BezierPiece>(before))
            setRange(before, {rangeOf(before).from, met->a});
        extendStart(after, met->b);
    }

    // Beyond their meeting both sides come too close to each other's source, by less than can be told where the turn is
    // slight.
    void trim(size_t i)
    {
        PieceShape &before = m_moved[i].back(), &after = m_moved[m_source.next(i)].front();
        if (&before == &after)
            return;
        const auto touches = meet(before, after, m_source.tolerance).touches;
        const auto last =
            std::max_element(touches.begin(), touches.end(), [](const Touch& p, const Touch& q) { return p.a < q.a; });
        if (last == touches.end() || last->a <= rangeOf(before).from || last->b >= rangeOf(after).to)
            return;
        setRange(before, {rangeOf(before).from, last->a});
        setRange(after, {last->b, rangeOf(after).to});
    }

    void join(size_t i)
    {
        if (!m_source.hasJoint(i))
            return;
        const Point3 from = endOf(m_moved[i].back()), to = startOf(m_moved[m_source.next(i)].front());
        if (from.distanceTo(to) <= m_source.tolerance)
            return;
        const size_t origin = m_source.origins[i];
        switch (m_source.joints[i]) {
        case Joint::Fillet:
            return addFillet(m_chain, corner(i), from, to, m_source.distance, origin);
        case Joint::Extend:
            addLine(m_chain, from, m_tips[i], origin);
            return addLine(m_chain, m_tips[i], to, origin);
        default:
            return addLine(m_chain, from, to, origin);
        }
    }

    OffsetSource& m_source;
    std::vector<std::vector<PieceShape>> m_moved;
    std::vector<Point3> m_tips;
    Chain m_chain;
};

}  // namespace

Vector3 startTangent(const PieceShape& shape) { return tangentNear(shape, rangeOf(shape).from, 1); }

Vector3 endTangent(const PieceShape& shape) { return tangentNear(shape, rangeOf(shape).to, -1); }

Point3 startOf(const PieceShape& shape) { return place(shape, rangeOf(shape).from); }

Point3 endOf(const PieceShape& shape) { return place(shape, rangeOf(shape).to); }

double distanceToTheRight(const PieceShape& shape, bool atEnd, const Point3& p)
{
    if (isRound(shape)) {
        const auto& arc = std::get<ConicPiece>(shape);
        const double side = arc.u.crossProduct(arc.v).z > 0 ? 1 : -1;
        return side * (p.distanceTo(arc.center) - arc.u.length());
    }
    const Point3 at = atEnd ? endOf(shape) : startOf(shape);
    return (p - at).dotProduct(rightOf(atEnd ? endTangent(shape) : startTangent(shape)));
}

Chain rawOffset(OffsetSource& source) { return RawChain(source).build(); }

}  // namespace vk::geom
