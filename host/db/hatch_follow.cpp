#include "host/db/hatch_follow.h"

#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "host/db/extras.h"
#include "host/db/undo.h"
#include "host/geom/arbitrary_axis.h"
#include "host/geom/intersect.h"
#include "host/geom/join.h"
#include "sdk/vcdb_hatch.h"
#include "sdk/vcdb_polylines.h"

#include <unordered_map>
#include <unordered_set>

namespace {

using namespace vk;
using Hatch = VcDbHatch;

// The boundary as it is seen in a hatch's plane.
class PlaneView {
public:
    explicit PlaneView(const Hatch& hatch) : m_normal(hatch.normal()), m_elevation(hatch.elevation()) {}

    VcGePoint2d operator()(const VcGePoint3d& world)
    {
        const VcGePoint3d p = geom::fromWorld(world, m_normal);
        if (!m_known)
            m_elevation = p.z;
        m_level = m_level && std::fabs(p.z - m_elevation) <=
                                 1e-9 * std::max({1.0, std::fabs(p.x), std::fabs(p.y), std::fabs(p.z)});
        m_known = true;
        return {p.x, p.y};
    }
    // 1 or -1 by the side from which a curve's plane is seen; 0 where it is seen askew.
    double sense(const VcGeVector3d& normal)
    {
        const double along = normal.normal().dotProduct(m_normal);
        m_level = m_level && std::fabs(std::fabs(along) - 1) <= 1e-9;
        return along < 0 ? -1 : 1;
    }
    bool isLevel() const { return m_level; }
    double elevation() const { return m_elevation; }

private:
    VcGeVector3d m_normal;
    double m_elevation;
    bool m_known = false, m_level = true;
};

std::vector<Hatch::Vertex> verticesOf(const geom::Polyline& p, PlaneView& view)
{
    const double sense = view.sense(p.normal);
    std::vector<Hatch::Vertex> vertices;
    for (std::size_t i = 0; i < p.vertices.size(); ++i)
        vertices.push_back({view(geom::pointAt(geom::Curve(p), double(i))), p.vertices[i].bulge * sense});
    return vertices;
}

Hatch::Edge edgeBetween(const Hatch::Vertex& from, const VcGePoint2d& to)
{
    Hatch::Edge edge;
    edge.first = from.point;
    edge.second = to;
    const auto arc = bulgeArc(from.point, to, from.bulge);
    if (!arc)
        return edge;
    edge.type = Hatch::kCirArc;
    edge.isAnticlockwise = from.bulge > 0;
    edge.first = arc->center;
    edge.second = {};
    edge.radius = arc->radius;
    edge.startAngle = turnOf(edge.isAnticlockwise ? arc->start : -arc->end);
    edge.endAngle = edge.startAngle + (arc->end - arc->start);
    return edge;
}

std::vector<Hatch::Edge> edgesOf(const std::vector<Hatch::Vertex>& vertices)
{
    std::vector<Hatch::Edge> edges;
    for (std::size_t i = 0; i < vertices.size(); ++i)
        edges.push_back(edgeBetween(vertices[i], vertices[(i + 1) % vertices.size()].point));
    return edges;
}

Hatch::Edge edgeOf(const geom::Ellipse& e, PlaneView& view)
{
    const VcGePoint2d center = view(e.center), end = view(e.center + e.major);
    Hatch::Edge edge;
    edge.type = Hatch::kEllArc;
    edge.first = center;
    edge.second = VcGePoint2d() + (end - center);
    edge.radius = e.ratio;
    edge.endAngle = geom::kTwoPi;
    view.sense(e.normal);
    return edge;
}

Hatch::Edge edgeOf(const geom::Nurbs& n, PlaneView& view)
{
    Hatch::Edge edge;
    edge.type = Hatch::kSpline;
    Hatch::SplineData& spline = edge.spline.make();
    spline.degree = n.degree;
    spline.isRational = !n.weights.empty();
    spline.knots = n.knots;
    for (std::size_t i = 0; i < n.poles.size(); ++i)
        spline.controlPoints.push_back({view(n.poles[i]), n.weights.empty() ? 1 : n.weights[i]});
    return edge;
}

// A closed curve as a loop of the kind that the old one is, where that can hold it.
std::optional<Hatch::Loop> loopOf(const geom::Curve& curve, const Hatch::Loop& old, PlaneView& view)
{
    Hatch::Loop loop = old;
    loop.vertices.clear();
    loop.edges.clear();
    if (const auto* p = std::get_if<geom::Polyline>(&curve); p && p->closed) {
        loop.vertices = verticesOf(*p, view);
    } else if (const auto* c = std::get_if<geom::Circle>(&curve)) {
        view.sense(c->normal);
        const VcGePoint2d center = view(c->center);
        loop.vertices = {{center + VcGeVector2d(c->radius, 0), 1}, {center - VcGeVector2d(c->radius, 0), 1}};
        if (!old.isPolyline()) {
            Hatch::Edge edge;
            edge.type = Hatch::kCirArc;
            edge.first = center;
            edge.radius = c->radius;
            edge.endAngle = geom::kTwoPi;
            loop.vertices.clear();
            loop.edges = {edge};
        }
        return loop;
    } else if (const auto* e = std::get_if<geom::Ellipse>(&curve); e && !old.isPolyline() && geom::isClosed(curve)) {
        loop.edges = {edgeOf(*e, view)};
    } else if (const auto* n = std::get_if<geom::Nurbs>(&curve); n && !old.isPolyline() && geom::isClosed(curve)) {
        loop.edges = {edgeOf(*n, view)};
    } else {
        return std::nullopt;
    }
    if (!old.isPolyline() && loop.edges.empty())
        loop.edges = edgesOf(std::exchange(loop.vertices, {}));
    for (const Hatch::Vertex& v : loop.vertices)
        loop.saysBulges |= v.bulge != 0;
    return loop;
}

std::optional<geom::Curve> boundaryOf(const DatabaseCore& db, const Hatch::Loop& loop)
{
    std::vector<geom::Curve> curves;
    double tolerance = 0;
    for (const VcDbObjectId id : loop.sources) {
        const auto* entity = db.liveAs<VcDbEntity>(id);
        auto curve = entity ? curveOf(*entity) : std::nullopt;
        if (!curve)
            return std::nullopt;
        tolerance = std::max(tolerance, 100 * geom::meetingTolerance(*curve, *curve));
        curves.push_back(std::move(*curve));
    }
    if (curves.size() < 2)
        return curves.empty() ? std::nullopt : std::optional(curves.front());
    const auto joined = geom::joinedToFirst(curves, tolerance);
    return joined && joined->used.size() == curves.size() ? std::optional(joined->curve) : std::nullopt;
}

bool isNear(const VcGePoint2d& a, const VcGePoint2d& b)
{
    return (a - b).length() <= 1e-9 * std::max({1.0, std::fabs(a.x), std::fabs(a.y)});
}

bool isSame(const Hatch::Edge& a, const Hatch::Edge& b)
{
    const auto near = [](double x, double y) { return std::fabs(x - y) <= 1e-9 * std::max(1.0, std::fabs(x)); };
    return a.type == b.type && isNear(a.first, b.first) && isNear(a.second, b.second) && near(a.radius, b.radius) &&
           near(a.startAngle, b.startAngle) && near(a.endAngle, b.endAngle) && a.isAnticlockwise == b.isAnticlockwise &&
           a.spline.get() == b.spline.get();
}

bool isSame(const Hatch::Loop& a, const Hatch::Loop& b)
{
    const auto sameVertex = [](const Hatch::Vertex& v, const Hatch::Vertex& w) {
        return isNear(v.point, w.point) && std::fabs(v.bulge - w.bulge) <= 1e-9;
    };
    return std::equal(a.vertices.begin(), a.vertices.end(), b.vertices.begin(), b.vertices.end(), sameVertex) &&
           std::equal(a.edges.begin(), a.edges.end(), b.edges.begin(), b.edges.end(),
                      [](const auto& e, const auto& f) { return isSame(e, f); });
}

bool haveSameShape(const Hatch& a, const Hatch& b)
{
    return std::equal(a.loops().begin(), a.loops().end(), b.loops().begin(), b.loops().end(),
                      [](const auto& l, const auto& m) { return isSame(l, m); });
}

class Followers {
public:
    explicit Followers(DatabaseCore& db) : m_db(db) {}
    void note(const UndoJournal::Touched& touched);
    void update();

private:
    void noteReactors(const VcDbObject& object);
    void update(Hatch& hatch);
    bool isTouched(const Hatch::Loop& loop) const;
    bool wasChangedItself(const Hatch& hatch) const;

    DatabaseCore& m_db;
    std::unordered_set<VcDbObjectId> m_touched;
    std::vector<VcDbObjectId> m_hatches;
    std::unordered_map<VcDbObjectId, const VcDbObject*> m_before;
};

void Followers::noteReactors(const VcDbObject& object)
{
    m_touched.insert(object.objectId());
    const ObjectExtras* extras = object.extras();
    for (const VcDbObjectId reactor : extras ? extras->reactors : std::vector<VcDbObjectId>())
        if (const auto* hatch = m_db.liveAs<Hatch>(reactor); hatch && hatch->associative())
            m_hatches.push_back(reactor);
}

void Followers::note(const UndoJournal::Touched& touched)
{
    const VcDbObject* object = m_db.object(touched.id);
    if (!object || touched.created)
        return;
    if (const auto* hatch = Hatch::cast(object)) {
        if (touched.before && !hatch->isErased() && hatch->associative()) {
            m_before[touched.id] = touched.before;
            m_hatches.push_back(touched.id);
        }
        return;
    }
    const VcDbObject* owner = VcDbVertex::cast(object) ? m_db.object(object->ownerId()) : nullptr;
    noteReactors(owner ? *owner : *object);
}

bool Followers::isTouched(const Hatch::Loop& loop) const
{
    return std::any_of(loop.sources.begin(), loop.sources.end(),
                       [&](VcDbObjectId id) { return m_touched.contains(id); });
}

bool Followers::wasChangedItself(const Hatch& hatch) const
{
    const auto before = m_before.find(hatch.objectId());
    return before != m_before.end() && !haveSameShape(static_cast<const Hatch&>(*before->second), hatch);
}

void Followers::update(Hatch& hatch)
{
    std::vector<Hatch::Loop> loops = hatch.loops();
    PlaneView view(hatch);
    std::size_t followed = 0;
    for (Hatch::Loop& loop : loops) {
        if (!isTouched(loop))
            continue;
        ++followed;
        const auto boundary = boundaryOf(m_db, loop);
        auto changed = boundary ? loopOf(*boundary, loop, view) : std::nullopt;
        if (!changed) {
            hatch.setAssociative(false);
            return;
        }
        loop = std::move(*changed);
    }
    const bool rises =
        std::fabs(view.elevation() - hatch.elevation()) > 1e-9 * std::max(1.0, std::fabs(hatch.elevation()));
    if (!view.isLevel() || (followed == 0 && wasChangedItself(hatch)) || (rises && followed < loops.size())) {
        hatch.setAssociative(false);
        return;
    }
    const bool same = std::equal(loops.begin(), loops.end(), hatch.loops().begin(),
                                 [](const auto& l, const auto& m) { return isSame(l, m); });
    if (!same)
        hatch.setLoops(std::move(loops));
    if (rises)
        hatch.setElevation(view.elevation());
}

void Followers::update()
{
    std::unordered_set<VcDbObjectId> done;
    for (const VcDbObjectId id : m_hatches)
        if (auto* hatch = done.insert(id).second ? m_db.liveAs<Hatch>(id) : nullptr)
            update(*hatch);
}

}

void followBoundaries(DatabaseCore& db, std::size_t since)
{
    if (!db.undo().changedSince(since))
        return;
    Followers followers(db);
    for (const UndoJournal::Touched& touched : db.undo().touchedSince(since))
        followers.note(touched);
    followers.update();
}
