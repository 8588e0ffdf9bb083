#include "host/commands/stretch_objects.h"

#include "host/db/curve_of.h"
#include "host/db/ent_util.h"
#include "host/geom/arbitrary_axis.h"
#include "host/geom/tangent_circle.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_hatch.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_text.h"

namespace vk::commands {

void moveWhole(VcDbEntity& entity, const VcGeVector3d& by) { entity.transformBy(VcGeMatrix3d::translation(by)); }

namespace {

void moveBy(VcDbEntity& entity, const VcGePoint3d& reference, const Pull& pull)
{
    if (pull.holds(reference))
        moveWhole(entity, pull.by);
}

void stretchLine(VcDbEntity& e, const Pull& pull)
{
    auto& line = static_cast<VcDbLine&>(e);
    const VcGePoint3d start = pull(line.startPoint()), end = pull(line.endPoint());
    line.setStartPoint(start);
    line.setEndPoint(end);
}

// One end of an arc goes with the height of the arc above its chord kept.
void stretchArc(VcDbEntity& e, const Pull& pull)
{
    auto& arc = static_cast<VcDbArc&>(e);
    const VcGePoint3d start = arc.startPoint(), end = arc.endPoint(), from = pull(start), to = pull(end);
    if (from == start && to == end)
        return;
    if (from != start && to != end)
        return moveWhole(e, pull.by);
    const double rise = arc.radius() * (1 - std::cos(arc.totalAngle() / 2));
    const VcGeVector3d chord = to - from;
    const VcGeVector3d outward = chord.crossProduct(arc.normal()).normal();
    const auto center = geom::centerThrough(from, from + chord * 0.5 + outward * rise, to);
    if (!center || std::fabs(chord.dotProduct(arc.normal())) > 1e-9 * chord.length())
        return;
    const double first = geom::angleInPlane(from - *center, arc.normal()),
                 last = geom::angleInPlane(to - *center, arc.normal());
    setCurveOf(e, geom::Arc{*center, center->distanceTo(from), first, last > first ? last : last + geom::kTwoPi,
                            arc.normal()});
}

void stretchCircle(VcDbEntity& e, const Pull& pull) { moveBy(e, static_cast<VcDbCircle&>(e).center(), pull); }
void stretchEllipse(VcDbEntity& e, const Pull& pull) { moveBy(e, static_cast<VcDbEllipse&>(e).center(), pull); }
void stretchText(VcDbEntity& e, const Pull& pull) { moveBy(e, static_cast<VcDbText&>(e).position(), pull); }
void stretchMText(VcDbEntity& e, const Pull& pull) { moveBy(e, static_cast<VcDbMText&>(e).location(), pull); }
void stretchInsert(VcDbEntity& e, const Pull& pull) { moveBy(e, static_cast<VcDbBlockReference&>(e).position(), pull); }
void stretchPoint(VcDbEntity& e, const Pull& pull) { moveBy(e, static_cast<VcDbPoint&>(e).position(), pull); }

void stretchEndless(VcDbEntity& e, const Pull& pull)
{
    auto& line = static_cast<VcDbUnboundedLine&>(e);
    const VcGePoint3d base = pull(line.basePoint());
    line.setBasePoint(base);
}

void stretchPolyline(VcDbEntity& e, const Pull& pull)
{
    auto& p = static_cast<VcDbPolyline&>(e);
    for (unsigned i = 0; i < p.numVerts(); ++i) {
        VcGePoint3d at;
        p.getPointAt(i, at);
        if (!pull.holds(at))
            continue;
        const VcGePoint3d moved = geom::fromWorld(at + pull.by, p.normal());
        p.setPointAt(i, {moved.x, moved.y});
    }
}

void stretch2dPolyline(VcDbEntity& e, const Pull& pull)
{
    auto& p = static_cast<VcDb2dPolyline&>(e);
    for (VcDbEntity* entity : p.vertices())
        if (auto* v = VcDb2dVertex::cast(entity)) {
            const VcGePoint3d moved = geom::fromWorld(pull(p.vertexPosition(*v)), p.normal());
            v->setPosition({moved.x, moved.y, v->position().z});
        }
    p.recordGraphicsModified();
}

void stretch3dPolyline(VcDbEntity& e, const Pull& pull)
{
    for (VcDbEntity* entity : static_cast<VcDbVertexOwner&>(e).vertices())
        if (auto* v = VcDbVertex::cast(entity))
            v->setPosition(pull(v->position()));
}

void stretchSpline(VcDbEntity& e, const Pull& pull)
{
    auto& spline = static_cast<VcDbSpline&>(e);
    const std::vector<VcGePoint3d> poles = spline.controlPoints();
    const bool all = std::all_of(poles.begin(), poles.end(), [&](const VcGePoint3d& p) { return pull.holds(p); });
    if (all)
        return moveWhole(e, pull.by);
    for (int i = 0; i < int(poles.size()); ++i)
        if (pull.holds(poles[std::size_t(i)]))
            spline.setControlPointAt(i, poles[std::size_t(i)] + pull.by);
}

void stretchQuad(VcDbEntity& e, const Pull& pull)
{
    auto& quad = static_cast<VcDbFilledQuad&>(e);
    for (unsigned i = 0; i < 4; ++i)
        if (VcGePoint3d p; quad.getPointAt(i, p) == Vcad::eOk && pull.holds(p))
            quad.setPointAt(i, p + pull.by);
}

void stretchFace(VcDbEntity& e, const Pull& pull)
{
    auto& face = static_cast<VcDbFace&>(e);
    for (unsigned i = 0; i < 4; ++i)
        if (VcGePoint3d p; face.getVertexAt(i, p) == Vcad::eOk && pull.holds(p))
            face.setVertexAt(i, p + pull.by);
}

// An arc keeps its bulge over the chord that its ends have then.
template <class Move>
void stretchArcEdge(VcDbHatch::Edge& edge, const Move& move)
{
    const double sense = edge.isAnticlockwise ? 1 : -1;
    const auto at = [&](double angle) {
        return edge.first + VcGeVector2d(std::cos(angle), sense * std::sin(angle)) * edge.radius;
    };
    const VcGePoint2d from = at(edge.startAngle), to = at(edge.endAngle);
    VcGePoint2d newFrom = from, newTo = to;
    move(newFrom);
    move(newTo);
    if (newFrom == from && newTo == to)
        return;
    const auto arc = bulgeArc(newFrom, newTo, sense * std::tan((edge.endAngle - edge.startAngle) / 4));
    if (!arc)
        return;
    edge.first = arc->center;
    edge.radius = arc->radius;
    edge.startAngle = turnOf(edge.isAnticlockwise ? arc->start : -arc->end);
    edge.endAngle = edge.startAngle + (arc->end - arc->start);
}

// One edge of a hatch's boundary; move(point) moves what lies within.
template <class Move>
void stretchEdge(VcDbHatch::Edge& edge, const Move& move)
{
    if (edge.type == VcDbHatch::kSpline) {
        VcDbHatch::SplineData& spline = edge.spline.make();
        for (VcDbHatch::ControlPoint& c : spline.controlPoints)
            move(c.point);
        for (VcGePoint2d& p : spline.fitPoints)
            move(p);
        return;
    }
    if (edge.type == VcDbHatch::kCirArc && edge.endAngle - edge.startAngle < geom::kTwoPi - 1e-9)
        return stretchArcEdge(edge, move);
    move(edge.first);
    if (edge.type == VcDbHatch::kLine)
        move(edge.second);
}

// The points that a dimension is measured by, and its text where a person has put it.
template <class Dimension>
struct DimPoint {
    VcGePoint3d (Dimension::*get)() const;
    Vcad::ErrorStatus (Dimension::*set)(const VcGePoint3d&);
};

template <class Dimension, std::size_t N>
void stretchDimension(Dimension& d, const Pull& pull, const DimPoint<Dimension> (&points)[N])
{
    const VcGePoint3d text = d.textPosition();
    for (const auto& point : points)
        if (const VcGePoint3d at = (d.*point.get)(); pull.holds(at))
            (d.*point.set)(at + pull.by);
    if (!d.isUsingDefaultTextPosition() && pull.holds(text))
        d.setTextPosition(text + pull.by);
}

template <class Dimension>
void stretchLinear(VcDbEntity& e, const Pull& pull)
{
    using D = Dimension;
    static const DimPoint<D> kPoints[] = {{&D::xLine1Point, &D::setXLine1Point},
                                          {&D::xLine2Point, &D::setXLine2Point},
                                          {&D::dimLinePoint, &D::setDimLinePoint}};
    stretchDimension(static_cast<D&>(e), pull, kPoints);
}

void stretchAngular(VcDbEntity& e, const Pull& pull)
{
    using D = VcDb2LineAngularDimension;
    static const DimPoint<D> kPoints[] = {{&D::xLine1Start, &D::setXLine1Start},
                                          {&D::xLine1End, &D::setXLine1End},
                                          {&D::xLine2Start, &D::setXLine2Start},
                                          {&D::xLine2End, &D::setXLine2End},
                                          {&D::arcPoint, &D::setArcPoint}};
    stretchDimension(static_cast<D&>(e), pull, kPoints);
}

template <class Dimension>
void stretchAboutCenter(VcDbEntity& e, const Pull& pull)
{
    using D = Dimension;
    static const DimPoint<D> kPoints[] = {{&D::centerPoint, &D::setCenterPoint},
                                          {&D::xLine1Point, &D::setXLine1Point},
                                          {&D::xLine2Point, &D::setXLine2Point},
                                          {&D::arcPoint, &D::setArcPoint}};
    stretchDimension(static_cast<D&>(e), pull, kPoints);
}

void stretchRadial(VcDbEntity& e, const Pull& pull)
{
    using D = VcDbRadialDimension;
    static const DimPoint<D> kPoints[] = {{&D::center, &D::setCenter}, {&D::chordPoint, &D::setChordPoint}};
    stretchDimension(static_cast<D&>(e), pull, kPoints);
}

void stretchDiametric(VcDbEntity& e, const Pull& pull)
{
    using D = VcDbDiametricDimension;
    static const DimPoint<D> kPoints[] = {{&D::farChordPoint, &D::setFarChordPoint},
                                          {&D::chordPoint, &D::setChordPoint}};
    stretchDimension(static_cast<D&>(e), pull, kPoints);
}

void stretchJogged(VcDbEntity& e, const Pull& pull)
{
    using D = VcDbRadialDimensionLarge;
    static const DimPoint<D> kPoints[] = {{&D::center, &D::setCenter},
                                          {&D::overrideCenter, &D::setOverrideCenter},
                                          {&D::jogPoint, &D::setJogPoint},
                                          {&D::chordPoint, &D::setChordPoint}};
    stretchDimension(static_cast<D&>(e), pull, kPoints);
}

void stretchOrdinate(VcDbEntity& e, const Pull& pull)
{
    using D = VcDbOrdinateDimension;
    static const DimPoint<D> kPoints[] = {{&D::origin, &D::setOrigin},
                                          {&D::definingPoint, &D::setDefiningPoint},
                                          {&D::leaderEndPoint, &D::setLeaderEndPoint}};
    stretchDimension(static_cast<D&>(e), pull, kPoints);
}

// The corners of a hatch's boundary go one by one; arcs between them keep their bulge, round edges go by their centre.
void stretchHatch(VcDbEntity& e, const Pull& pull)
{
    auto& hatch = static_cast<VcDbHatch&>(e);
    std::vector<VcDbHatch::Loop> loops = hatch.loops();
    std::size_t moved = 0, points = 0;
    const auto move = [&](VcGePoint2d& p) {
        const VcGePoint3d at = geom::toWorld(VcGePoint3d(p.x, p.y, hatch.elevation()), hatch.normal());
        ++points;
        if (!pull.holds(at))
            return;
        ++moved;
        const VcGePoint3d to = geom::fromWorld(at + pull.by, hatch.normal());
        p = {to.x, to.y};
    };
    for (VcDbHatch::Loop& loop : loops) {
        for (VcDbHatch::Vertex& v : loop.vertices)
            move(v.point);
        for (VcDbHatch::Edge& edge : loop.edges)
            stretchEdge(edge, move);
    }
    if (moved == points && points > 0)
        moveWhole(e, pull.by);
    else if (moved > 0)
        hatch.setLoops(std::move(loops));
}

void stretchShape(VcDbEntity& e, const Pull& pull) { moveBy(e, static_cast<VcDbShape&>(e).position(), pull); }
void stretchFrame(VcDbEntity& e, const Pull& pull) { moveBy(e, static_cast<VcDbFcf&>(e).location(), pull); }

void stretchLeader(VcDbEntity& e, const Pull& pull)
{
    auto& leader = static_cast<VcDbLeader&>(e);
    for (int i = 0; i < leader.numVertices(); ++i)
        leader.setVertexAt(i, pull(leader.vertexAt(i)));
}

struct Entry {
    VcRxClass* (*desc)();
    void (*stretch)(VcDbEntity&, const Pull&);
};

constexpr Entry kStretches[] = {
    {&VcDbLine::desc, stretchLine},
    {&VcDbPolyline::desc, stretchPolyline},
    {&VcDbArc::desc, stretchArc},
    {&VcDbCircle::desc, stretchCircle},
    {&VcDbEllipse::desc, stretchEllipse},
    {&VcDb2dPolyline::desc, stretch2dPolyline},
    {&VcDbVertexOwner::desc, stretch3dPolyline},
    {&VcDbSpline::desc, stretchSpline},
    {&VcDbUnboundedLine::desc, stretchEndless},
    {&VcDbText::desc, stretchText},
    {&VcDbMText::desc, stretchMText},
    {&VcDbBlockReference::desc, stretchInsert},
    {&VcDbPoint::desc, stretchPoint},
    {&VcDbFilledQuad::desc, stretchQuad},
    {&VcDbFace::desc, stretchFace},
    {&VcDbAlignedDimension::desc, stretchLinear<VcDbAlignedDimension>},
    {&VcDbRotatedDimension::desc, stretchLinear<VcDbRotatedDimension>},
    {&VcDb2LineAngularDimension::desc, stretchAngular},
    {&VcDb3PointAngularDimension::desc, stretchAboutCenter<VcDb3PointAngularDimension>},
    {&VcDbArcDimension::desc, stretchAboutCenter<VcDbArcDimension>},
    {&VcDbRadialDimension::desc, stretchRadial},
    {&VcDbDiametricDimension::desc, stretchDiametric},
    {&VcDbRadialDimensionLarge::desc, stretchJogged},
    {&VcDbOrdinateDimension::desc, stretchOrdinate},
    {&VcDbHatch::desc, stretchHatch},
    {&VcDbShape::desc, stretchShape},
    {&VcDbFcf::desc, stretchFrame},
    {&VcDbLeader::desc, stretchLeader},
};

// What has no points of its own goes when it lies wholly within.
void stretchOther(VcDbEntity& e, const Pull& pull)
{
    VcDbExtents box;
    if (!e.getGeomExtents(box) && !box.isEmpty() && pull.holds(box.minPoint()) && pull.holds(box.maxPoint()))
        moveWhole(e, pull.by);
}

}

void stretchObject(VcDbEntity& e, const Pull& pull)
{
    for (const Entry& entry : kStretches)
        if (e.isKindOf(entry.desc()))
            return entry.stretch(e, pull);
    stretchOther(e, pull);
}

}
