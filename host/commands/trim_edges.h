// The edges that TRIM and EXTEND cut and reach to.
#pragma once

#include "host/commands/curve_edits.h"
#include "host/edit/selection_set.h"
#include "host/geom/intersect.h"

namespace vk::commands {

class TrimEdges {
public:
    // Everything in the current space when no edges were selected.
    TrimEdges(edit::Editor& ed, std::shared_ptr<edit::SelectionSet> selected)
        : m_ed(ed), m_selected(std::move(selected))
    {
    }

    // Parameters at which edges cut the curve. PROJMODE says what counts as crossing, EDGEMODE whether edges go on.
    std::vector<double> cuts(const CurvePick& target) const;
    // Parameters beyond one end of the curve at which it would meet an edge.
    std::vector<double> placesBeyond(const CurvePick& target, bool atStart) const;

private:
    bool edgesGoOn() const;
    std::optional<VcGeVector3d> projection() const;
    template <class Use>
    void eachEdge(const CurvePick& target, const geom::Curve& reach, Use&& use) const;
    std::vector<const VcDbEntity*> edgesNear(const geom::Curve& reach) const;
    std::vector<geom::Crossing> meet(const geom::Curve& target, const geom::Curve& edge, bool targetGoesOn) const;

    edit::Editor& m_ed;
    std::shared_ptr<edit::SelectionSet> m_selected;
};

}  // namespace vk::commands
