#include "host/edit/select_area.h"

#include "host/edit/pick_distance.h"
#include "host/geom/region.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_text.h"

#include <cmath>

namespace vk::edit {

namespace {

using Point = VcGePoint2d;
using Chain = std::vector<Point>;

double turn(const Point& a, const Point& b, const Point& c) { return (b - a).crossProduct(c - a); }

bool isBetween(const Point& a, const Point& b, const Point& p)
{
    return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
           p.y <= std::max(a.y, b.y);
}

int sign(double v) { return (v > 0) - (v < 0); }

// Ends that lie on the other piece count.
bool touch(const Point& a, const Point& b, const Point& c, const Point& d)
{
    const int abc = sign(turn(a, b, c)), abd = sign(turn(a, b, d)), cda = sign(turn(c, d, a)),
              cdb = sign(turn(c, d, b));
    if (abc * abd < 0 && cda * cdb < 0)
        return true;
    return (abc == 0 && isBetween(a, b, c)) || (abd == 0 && isBetween(a, b, d)) || (cda == 0 && isBetween(c, d, a)) ||
           (cdb == 0 && isBetween(c, d, b));
}

// Each goes through the other: ends that lie on the other piece do not count.
bool cross(const Point& a, const Point& b, const Point& c, const Point& d)
{
    return sign(turn(a, b, c)) * sign(turn(a, b, d)) < 0 && sign(turn(c, d, a)) * sign(turn(c, d, b)) < 0;
}

bool isOnEdge(const Point& p, const Chain& polygon)
{
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Point &a = polygon[i], &b = polygon[(i + 1) % polygon.size()];
        if (isBetween(a, b, p) && turn(a, b, p) == 0)
            return true;
    }
    return false;
}

// By counting the edges to the right of the point; on the edge is within.
bool isWithin(const Point& p, const Chain& polygon)
{
    bool inside = false;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Point &a = polygon[i], &b = polygon[(i + 1) % polygon.size()];
        if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (b.x - a.x) * (p.y - a.y) / (b.y - a.y))
            inside = !inside;
    }
    return inside || isOnEdge(p, polygon);
}

double distanceToPiece(const Point& p, const Point& a, const Point& b)
{
    const VcGeVector2d along = b - a;
    const double length = along.lengthSqrd();
    const double t = length > 0 ? std::clamp((p - a).dotProduct(along) / length, 0.0, 1.0) : 0.0;
    return p.distanceTo(a + along * t);
}

}

double distanceTo(const Point& p, const Outline& outline, const PickView& view, double chordError)
{
    const double toChords = distanceTo(p, projected(view, outline.points), outline.filled);
    if (!outline.curve || toChords > view.reach + chordError)
        return toChords;
    const auto near = geom::closestPoint(geom::flattened(*outline.curve, view.fromWorld()), {p.x, p.y, 0});
    return near ? near->distance : HUGE_VAL;
}

double distanceTo(const Point& p, const Chain& chain, bool filled)
{
    if (chain.size() == 1)
        return p.distanceTo(chain[0]);
    if (filled && isWithin(p, chain))
        return 0;
    double nearest = HUGE_VAL;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i)
        nearest = std::min(nearest, distanceToPiece(p, chain[i], chain[i + 1]));
    return filled ? std::min(nearest, distanceToPiece(p, chain.back(), chain.front())) : nearest;
}

Chain projected(const PickView& view, const std::vector<VcGePoint3d>& points)
{
    Chain chain;
    chain.reserve(points.size());
    for (const VcGePoint3d& p : points)
        chain.push_back(view.project(p));
    return chain;
}

SelectArea SelectArea::rectangle(const PickView& view, const VcGePoint3d& a, const VcGePoint3d& b, Kind kind)
{
    const Point p = view.project(a), q = view.project(b);
    const Point min(std::min(p.x, q.x), std::min(p.y, q.y)), max(std::max(p.x, q.x), std::max(p.y, q.y));
    return SelectArea(view, kind, {min, {max.x, min.y}, max, {min.x, max.y}}, true);
}

SelectArea SelectArea::polygon(const PickView& view, std::span<const VcGePoint3d> points, Kind kind)
{
    Chain chain = projected(view, {points.begin(), points.end()});
    if (kind != Kind::Fence && chain.size() > 1 && chain.front() == chain.back())
        chain.pop_back();
    return SelectArea(view, kind, std::move(chain), false);
}

SelectArea::SelectArea(const PickView& view, Kind kind, Chain points, bool isRectangle)
    : m_view(view), m_kind(kind), m_points(std::move(points)), m_isRectangle(isRectangle), m_min(HUGE_VAL, HUGE_VAL),
      m_max(-HUGE_VAL, -HUGE_VAL)
{
    for (const Point& p : m_points) {
        m_min = {std::min(m_min.x, p.x), std::min(m_min.y, p.y)};
        m_max = {std::max(m_max.x, p.x), std::max(m_max.y, p.y)};
    }
}

std::vector<VcGePoint3d> SelectArea::corners() const
{
    std::vector<VcGePoint3d> world;
    for (const Point& p : m_points)
        world.push_back(VcGePoint3d() + m_view.x * p.x + m_view.y * p.y);
    return world;
}

std::optional<PlanArea> SelectArea::plan() const
{
    // A view that is turned about the line of sight looks straight down as well, but its boxes are not the world's.
    if (!m_view.isPlan() || m_points.empty())
        return std::nullopt;
    PlanArea area{{HUGE_VAL, HUGE_VAL}, {-HUGE_VAL, -HUGE_VAL}};
    for (const Point& corner : {m_min, m_max, Point(m_min.x, m_max.y), Point(m_max.x, m_min.y)}) {
        const VcGeVector3d world = m_view.x * corner.x + m_view.y * corner.y;
        area.min = {std::min(area.min.x, world.x), std::min(area.min.y, world.y)};
        area.max = {std::max(area.max.x, world.x), std::max(area.max.y, world.y)};
    }
    return area;
}

namespace {

struct Rectangle {
    Point min{HUGE_VAL, HUGE_VAL}, max{-HUGE_VAL, -HUGE_VAL};
    void add(const Point& p)
    {
        min = {std::min(min.x, p.x), std::min(min.y, p.y)};
        max = {std::max(max.x, p.x), std::max(max.y, p.y)};
    }
};

Rectangle seenBox(const PickView& view, const VcDbExtents& extents)
{
    const VcGePoint3d &a = extents.minPoint(), &b = extents.maxPoint();
    if (view.isLevel())
        return {{a.x, a.y}, {b.x, b.y}};
    Rectangle seen;
    for (int corner = 0; corner < 8; ++corner)
        seen.add(view.project({corner & 1 ? b.x : a.x, corner & 2 ? b.y : a.y, corner & 4 ? b.z : a.z}));
    return seen;
}

// What rounding may take from or add to coordinates like these.
double slackOf(const Point& a, const Point& b)
{
    return 1e-9 * (std::fabs(a.x) + std::fabs(a.y) + std::fabs(b.x) + std::fabs(b.y));
}

bool passes(const Point& a, const Point& b, const Point& low, const Point& high)
{
    if (std::max(a.x, b.x) < low.x || high.x < std::min(a.x, b.x) || std::max(a.y, b.y) < low.y ||
        high.y < std::min(a.y, b.y))
        return false;
    // The four corners lie on one side of the line.
    const double first = turn(a, b, low);
    for (const Point& corner : {Point(high.x, low.y), high, Point(low.x, high.y)})
        if (first * turn(a, b, corner) <= 0)
            return true;
    return false;
}

}

// Whether an edge may come to the rectangle.
bool SelectArea::isNearEdge(const Point& low, const Point& high) const
{
    for (std::size_t e = 0; e < edgeCount(); ++e)
        if (passes(m_points[e], m_points[(e + 1) % m_points.size()], low, high))
            return true;
    return false;
}

std::optional<bool> SelectArea::takesExtents(const VcDbExtents& extents, bool tight) const
{
    const auto [min, max] = seenBox(m_view, extents);
    if (min.x > m_max.x || m_min.x > max.x || min.y > m_max.y || m_min.y > max.y)
        return false;
    if (m_isRectangle && m_min.x <= min.x && max.x <= m_max.x && m_min.y <= min.y && max.y <= m_max.y)
        return true;
    const double slack = slackOf(min, max) + slackOf(m_min, m_max);
    const bool sticksOut =
        min.x < m_min.x - slack || m_max.x + slack < max.x || min.y < m_min.y - slack || m_max.y + slack < max.y;
    if (m_kind == Kind::Window && tight && sticksOut && m_view.isLevel())
        return false;
    if (m_isRectangle || isNearEdge({min.x - slack, min.y - slack}, {max.x + slack, max.y + slack}))
        return std::nullopt;
    // Without an edge in it all of the box lies on one side.
    return m_kind != Kind::Fence && isWithin(min, m_points);
}

bool SelectArea::contains(const Point& p) const
{
    if (m_isRectangle)
        return m_min.x <= p.x && p.x <= m_max.x && m_min.y <= p.y && p.y <= m_max.y;
    return isWithin(p, m_points);
}

bool SelectArea::meets(const Chain& chain, bool filled) const
{
    if (m_kind != Kind::Fence)
        for (const Point& p : chain)
            if (contains(p))
                return true;
    const std::size_t pieces = chain.size() - (filled ? 0 : 1);
    for (std::size_t e = 0; e < edgeCount(); ++e) {
        const Point &a = m_points[e], &b = m_points[(e + 1) % m_points.size()];
        for (std::size_t i = 0; i < pieces; ++i)
            if (touch(a, b, chain[i], chain[(i + 1) % chain.size()]))
                return true;
    }
    if (chain.size() == 1 && m_kind == Kind::Fence)
        for (std::size_t e = 0; e < edgeCount(); ++e)
            if (distanceToPiece(chain[0], m_points[e], m_points[e + 1]) <= m_view.reach)
                return true;
    return filled && !m_points.empty() && isWithin(m_points[0], chain);
}

bool SelectArea::holds(const Chain& chain) const
{
    for (const Point& p : chain)
        if (!contains(p))
            return false;
    for (std::size_t i = 0; !m_isRectangle && i + 1 < chain.size(); ++i)
        for (std::size_t e = 0; e < m_points.size(); ++e)
            if (cross(m_points[e], m_points[(e + 1) % m_points.size()], chain[i], chain[i + 1]))
                return false;
    return true;
}

bool SelectArea::takesCurve(const geom::Curve& curve) const
{
    const VcGeMatrix3d toView = m_view.fromWorld();
    if (m_kind == Kind::Fence)
        return geom::fenceTouches(m_points, curve, toView);
    const geom::Region region =
        m_isRectangle ? geom::Region::window(m_min, m_max, toView) : geom::Region(m_points, toView);
    return m_kind == Kind::Window ? region.contains(curve) : region.touches(curve);
}

// A chain of chords and its curve are never further apart than the error. What that leaves open is nothing.
std::optional<bool> SelectArea::takesChords(const Chain& chain, double chordError) const
{
    return m_kind == Kind::Window ? holdsChords(chain) : meetsChords(chain, chordError);
}

std::optional<bool> SelectArea::holdsChords(const Chain& chain) const
{
    const double slack = slackOf(m_min, m_max);
    for (const Point& p : chain)
        if (p.x < m_min.x - slack || m_max.x + slack < p.x || p.y < m_min.y - slack || m_max.y + slack < p.y)
            return false;
    return std::nullopt;
}

std::optional<bool> SelectArea::meetsChords(const Chain& chain, double chordError) const
{
    const double slack = slackOf(m_min, m_max) + 2 * chordError;
    if (m_kind != Kind::Fence)
        for (const Point& p : chain)
            if (contains(p))
                return true;
    bool open = false;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        Rectangle chord;
        chord.add(chain[i]);
        chord.add(chain[i + 1]);
        if (!isNearEdge({chord.min.x - slack, chord.min.y - slack}, {chord.max.x + slack, chord.max.y + slack}))
            continue;
        if (crossesSurely(chain[i], chain[i + 1], slack))
            return true;
        open = true;
    }
    return open ? std::nullopt : std::optional(false);
}

// Whether what goes from one point to another, never further from the chord than the slack, must go through an edge: the
// points lie on both sides of it, and nothing on the way can pass its ends.
bool SelectArea::crossesSurely(const Point& from, const Point& to, double slack) const
{
    for (std::size_t e = 0; e < edgeCount(); ++e) {
        const Point &a = m_points[e], &b = m_points[(e + 1) % m_points.size()];
        const double length = a.distanceTo(b), left = turn(a, b, from), right = turn(a, b, to);
        if (!(std::min(std::fabs(left), std::fabs(right)) > slack * length) || (left > 0) == (right > 0))
            continue;
        const double first = (from - a).dotProduct(b - a), second = (to - a).dotProduct(b - a);
        if (std::min(first, second) > slack * length && std::max(first, second) < (length - slack) * length)
            return true;
    }
    return false;
}

bool SelectArea::takesChain(const Chain& chain, bool filled) const
{
    return m_kind == Kind::Window ? holds(chain) : meets(chain, filled);
}

std::optional<bool> SelectArea::takesPlain(const VcDbEntity& entity, const VcDbExtents& extents) const
{
    m_chain.clear();
    const VcRxClass* cls = entity.isA();
    if (cls == VcDbLine::desc()) {
        const auto& line = static_cast<const VcDbLine&>(entity);
        m_chain = {m_view.project(line.startPoint()), m_view.project(line.endPoint())};
        return takesChain(m_chain, false);
    }
    if (cls == VcDbPolyline::desc()) {
        const auto& line = static_cast<const VcDbPolyline&>(entity);
        if (line.hasBulges() || line.hasWidth() || line.numVerts() < 2)
            return std::nullopt;
        VcGePoint3d at;
        for (unsigned i = 0; i < line.numVerts(); ++i)
            if (line.getPointAt(i, at) == Vcad::eOk)
                m_chain.push_back(m_view.project(at));
        if (line.isClosed())
            m_chain.push_back(m_chain.front());
        return takesChain(m_chain, false);
    }
    if (!m_view.isLevel() || extents.isEmpty() || !fillsItsBox(entity))
        return std::nullopt;
    const VcGePoint3d &low = extents.minPoint(), &high = extents.maxPoint();
    m_chain = {{low.x, low.y}, {high.x, low.y}, {high.x, high.y}, {low.x, high.y}};
    return takesChain(m_chain, true);
}

bool SelectArea::takesOutline(const Outline& outline, double chordError) const
{
    const Chain chain = projected(m_view, outline.points);
    if (!outline.curve)
        return takesChain(chain, outline.filled);
    const auto quick = takesChords(chain, chordError);
    return quick ? *quick : takesCurve(*outline.curve);
}

// A fence takes points that it comes near to.
bool SelectArea::missesPart(const VcDbEntity& part, const VcGeMatrix3d& toWorld) const
{
    VcDbExtents extents;
    if (part.isA() == VcDbPoint::desc() || part.getGeomExtents(extents) != Vcad::eOk || extents.isEmpty())
        return false;
    extents.transformBy(toWorld);
    return takesExtents(extents, false) == std::optional(false);
}

bool SelectArea::takes(const DatabaseCore& db, const SeenLayers& layers, const VcDbEntity& entity) const
{
    ShapeWalk::Options options;
    options.tolerance = std::max(m_min.distanceTo(m_max) * 1e-5, 1e-12);
    options.area = plan();
    options.wholeEntity = m_kind == Kind::Window;
    bool seen = false, taken = false;
    ShapeWalk shape(db, layers, options);
    shape.passesOver = [&](const VcDbEntity& part) {
        return m_kind != Kind::Window && &part != &entity && missesPart(part, shape.toWorld());
    };
    shape.walk(entity, [&](const Outline& outline) {
        seen = true;
        taken = takesOutline(outline, options.tolerance);
        return m_kind == Kind::Window ? taken : !taken;
    });
    return seen && taken;
}

}  // namespace vk::edit
