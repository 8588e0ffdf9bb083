// STRETCH - moves what lies within crossing windows and lets go with it what hangs on to it.
#include "host/commands/copies.h"
#include "host/commands/families.h"
#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/edit/pick.h"
#include "host/edit/select_prompt.h"
#include "host/geom/arbitrary_axis.h"
#include "host/geom/region.h"
#include "host/geom/tangent_circle.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_text.h"

#include <unordered_set>

namespace vk::commands {

namespace {

using namespace edit;
using Status = Answer::Status;

// Moves what lies within the regions; everything in the world.
struct Pull {
    std::vector<geom::Region> regions;
    VcGeVector3d by;

    bool holds(const VcGePoint3d& p) const
    {
        return std::any_of(regions.begin(), regions.end(), [&](const geom::Region& r) { return r.contains(p); });
    }
    VcGePoint3d operator()(const VcGePoint3d& p) const { return holds(p) ? p + by : p; }
};

void moveWhole(VcDbEntity& entity, const VcGeVector3d& by) { entity.transformBy(VcGeMatrix3d::translation(by)); }

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
    const double first = geom::angleInPlane(from - *center, arc.normal()), last = geom::angleInPlane(to - *center, arc.normal());
    setCurveOf(e, geom::Arc{*center, center->distanceTo(from), first, last > first ? last : last + geom::kTwoPi, arc.normal()});
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

template <class Dimension>
void stretchLinear(VcDbEntity& e, const Pull& pull)
{
    auto& d = static_cast<Dimension&>(e);
    const VcGePoint3d a = pull(d.xLine1Point()), b = pull(d.xLine2Point()), line = pull(d.dimLinePoint());
    d.setXLine1Point(a);
    d.setXLine2Point(b);
    d.setDimLinePoint(line);
}

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
    {&VcDbLeader::desc, stretchLeader},
};

// What has no points of its own goes when it lies wholly within.
void stretchOther(VcDbEntity& e, const Pull& pull)
{
    VcDbExtents box;
    if (!e.getGeomExtents(box) && !box.isEmpty() && pull.holds(box.minPoint()) && pull.holds(box.maxPoint()))
        moveWhole(e, pull.by);
}

void stretchOne(VcDbEntity& e, const Pull& pull)
{
    for (const Entry& entry : kStretches)
        if (e.isKindOf(entry.desc()))
            return entry.stretch(e, pull);
    stretchOther(e, pull);
}

struct Chosen {
    std::shared_ptr<SelectionSet> objects;
    std::vector<SelectedRegion> regions;
};

Chosen choose(Editor& ed)
{
    ed.printLine("Select objects to stretch by crossing-window or crossing-polygon...");
    SelectRequest request;
    request.leavesLocked = true;
    SelectResult result = selectByPrompt(ed, request);
    if (result.status == SelectResult::Cancelled)
        throw CommandCancelled();
    if (!result.set->empty())
        ed.previousSelection = std::make_shared<SelectionSet>(*result.set);
    return {result.set, std::move(result.regions)};
}

// Objects that were picked for themselves, and not by a window, move whole.
std::unordered_set<VcDbObjectId> takenByRegions(Editor& ed, const std::vector<SelectedRegion>& regions)
{
    const Picker picker = Picker::of(ed);
    std::unordered_set<VcDbObjectId> taken;
    for (const SelectedRegion& r : regions)
        for (const VcDbObjectId id : picker.takenBy(SelectArea::polygon(picker.view(), r.corners, SelectArea::Kind::Crossing)))
            taken.insert(id);
    return taken;
}

std::vector<geom::Region> regionsOn(const PickView& view, const std::vector<SelectedRegion>& drawn)
{
    std::vector<geom::Region> regions;
    for (const SelectedRegion& r : drawn) {
        std::vector<VcGePoint2d> corners;
        for (const VcGePoint3d& p : r.corners)
            corners.push_back(view.project(p));
        regions.emplace_back(std::move(corners), view.fromWorld());
    }
    return regions;
}

VcGeVector3d askDisplacement(Editor& ed)
{
    const Answer base = ed.askPoint("Specify base point or [Displacement] <Displacement>", {.keywords = "Displacement", .enterEnds = true});
    if (base.status != Status::Value)
        return ed.point("Specify displacement").asVector();
    const Answer second = ed.askPoint("Specify second point or <use first point as displacement>", {.from = base.point, .enterEnds = true});
    return second.status == Status::Enter ? base.point.asVector() : second.point - base.point;
}

void stretch(Editor& ed)
{
    const Chosen chosen = choose(ed);
    if (chosen.objects->empty())
        return;
    const VcGeVector3d by = ucsToWorld(ed) * askDisplacement(ed);
    const Pull pull{regionsOn(PickView::of(ed), chosen.regions), by};
    const auto byRegion = takenByRegions(ed, chosen.regions);
    for (const VcDbObjectId id : chosen.objects->ids()) {
        ed.throwIfInterrupted();
        auto* entity = ed.db().liveAs<VcDbEntity>(id);
        if (!entity)
            continue;
        if (byRegion.contains(id))
            stretchOne(*entity, pull);
        else
            moveWhole(*entity, by);
        entity->dropCaches();  // dimensions are drawn anew
    }
}

const HostCommand kCommands[] = {
    {"STRETCH", "S", kPlain, "Moves parts of objects and lets the rest follow.", stretch},
};

}

std::span<const HostCommand> stretchCommands() { return kCommands; }

}
