#include "host/commands/trim_edges.h"

#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/edit/select_index.h"
#include "host/edit/select_view.h"
#include "host/edit/sysvars.h"
#include "host/geom/apparent.h"
#include "host/geom/prolong.h"
#include "sdk/vcdb_insert.h"

namespace vk::commands {

using namespace edit;

namespace {

using Edges = std::vector<const VcDbEntity*>;

// Of everything, what people mean as edges: curves, and the curves in blocks.
bool isImpliedEdge(const VcDbEntity& entity)
{
    return entity.isKindOf(VcDbCurve::desc()) || entity.isKindOf(VcDbBlockReference::desc());
}

void addEdges(Edges& edges, const std::vector<SpaceIndex::Candidate>& candidates, const SeenLayers& layers)
{
    for (const auto& [entity, extents] : candidates)
        if (isImpliedEdge(*entity) && layers.shows(*entity))
            edges.push_back(entity);
}

// The box in which edges can meet a curve, of any height; nothing for what has no bounds.
std::optional<geom::Box3d> columnAbout(const geom::Curve& curve)
{
    geom::Box3d box = geom::extents(curve);
    if (!box.isFinite())
        return std::nullopt;
    box = box.grown(1e-9 * (box.diagonal() + box.magnitude()));
    box.min.z = -geom::Box3d::kInfinite;
    box.max.z = geom::Box3d::kInfinite;
    return box;
}

}

bool TrimEdges::edgesGoOn() const { return m_ed.vars().integer("EDGEMODE") == 1; }

// The direction to look along; nothing where only true crossings count.
std::optional<VcGeVector3d> TrimEdges::projection() const
{
    switch (m_ed.vars().integer("PROJMODE")) {
    case 0:
        return std::nullopt;
    case 2:
        return viewNormal(m_ed);
    default:
        return ucsNormal(m_ed);
    }
}

std::vector<const VcDbEntity*> TrimEdges::edgesNear(const geom::Curve& reach) const
{
    Edges edges;
    if (m_selected) {
        for (const VcDbObjectId id : m_selected->ids())
            if (const auto* entity = m_ed.db().liveAs<VcDbEntity>(id))
                edges.push_back(entity);
        return edges;
    }
    const SpaceIndex& index = SpaceIndex::of(m_ed.db(), m_ed.db().currentSpace());
    const SeenLayers layers = SeenLayers::of(m_ed);
    const auto direction = projection();
    const bool inPlan = !direction || (direction->x == 0 && direction->y == 0);
    if (edgesGoOn() || !inPlan) {
        addEdges(edges, index.candidates(std::nullopt), layers);
    } else if (const auto* ray = std::get_if<geom::Ray>(&reach)) {
        addEdges(edges, index.along(ray->base, ray->direction), layers);
    } else if (const auto* line = std::get_if<geom::XLine>(&reach)) {
        addEdges(edges, index.along(line->base, line->direction), layers);
        addEdges(edges, index.along(line->base, -line->direction), layers);
    } else if (const auto box = columnAbout(reach)) {
        addEdges(edges, index.candidates(PlanArea{{box->min.x, box->min.y}, {box->max.x, box->max.y}}), layers);
    }
    return edges;
}

std::vector<geom::Crossing> TrimEdges::meet(const geom::Curve& target, const geom::Curve& edge, bool targetGoesOn) const
{
    const auto extend = geom::Extend((targetGoesOn ? 1 : 0) | (edgesGoOn() ? 2 : 0));
    if (const auto direction = projection())
        return geom::apparentCrossings(target, edge, *direction, extend);
    const geom::Meeting meeting = geom::intersect(target, edge, extend);
    std::vector<geom::Crossing> all = meeting.points;
    for (const geom::Overlap& o : meeting.overlaps) {
        all.push_back({o.start, o.first.from, o.second.from, true});
        all.push_back({o.end, o.first.to, o.second.to, true});
    }
    return all;
}

// use(curve) for each curve of each edge that may meet what is reached for; the target itself is none.
template <class Use>
void TrimEdges::eachEdge(const CurvePick& target, const geom::Curve& reach, Use&& use) const
{
    const auto within = edgesGoOn() || projection().value_or(VcGeVector3d::zAxis()) != VcGeVector3d::zAxis()
                            ? std::nullopt
                            : columnAbout(reach);
    for (const VcDbEntity* edge : edgesNear(reach)) {
        m_ed.throwIfInterrupted();
        if (edge != target.entity)
            DrawnCurves(within).visit(*edge, [&](const geom::Curve& curve) {
                use(curve);
                return true;
            });
    }
}

std::vector<double> TrimEdges::cuts(const CurvePick& target) const
{
    std::vector<double> params;
    eachEdge(target, target.curve, [&](const geom::Curve& edge) {
        for (const geom::Crossing& c : meet(target.curve, edge, false))
            params.push_back(c.first);
    });
    if (!m_selected || m_selected->has(target.entity->objectId()))
        for (const geom::Crossing& c : geom::selfCrossings(target.curve)) {
            params.push_back(c.first);
            params.push_back(c.second);
        }
    return params;
}

std::vector<double> TrimEdges::placesBeyond(const CurvePick& target, bool atStart) const
{
    const auto path = geom::pathBeyond(target.curve, atStart);
    std::vector<double> params;
    if (path)
        eachEdge(target, *path, [&](const geom::Curve& edge) {
            for (const geom::Crossing& c : meet(target.curve, edge, true))
                params.push_back(c.first);
        });
    return params;
}

}
