// Picks by a point: what lies within the reach of the view. The nearest wins; of several as near, what was drawn last.
#pragma once

#include "host/base/api.h"
#include "host/edit/select_area.h"
#include "host/edit/select_index.h"
#include "host/edit/select_view.h"

#include <optional>
#include <vector>

namespace vk::edit {

class Editor;

struct NestedPick {
    VcDbObjectId entity;                   // the innermost
    std::vector<VcDbObjectId> containers;  // innermost first; none for what stands in the drawing itself
    VcGeMatrix3d toWorld;                  // from the coordinates of the innermost definition
};

// Picks in one space of a drawing as a view shows it.
class VKHOST_API Picker {
public:
    Picker(DatabaseCore& db, VcDbObjectId space, PickView view, SeenLayers layers);
    static Picker of(Editor& editor);  // in the current space

    // Null when nothing lies there. Points are in the world.
    VcDbObjectId entityAt(const VcGePoint3d& at) const;
    std::optional<NestedPick> nestedAt(const VcGePoint3d& at) const;
    // Within one entity, wherever that stands and whatever the state of its layer.
    std::optional<NestedPick> nestedIn(VcDbObjectId entity, const VcGePoint3d& at) const;
    bool isAt(VcDbObjectId entity, const VcGePoint3d& at) const { return nestedIn(entity, at).has_value(); }
    // Everything within reach, in the order of drawing.
    std::vector<VcDbObjectId> allAt(const VcGePoint3d& at) const;
    std::vector<VcDbObjectId> takenBy(const SelectArea& area) const;
    // A point on the entity, where a pick of it by name is taken to be.
    std::optional<VcGePoint3d> pointOn(VcDbObjectId entity) const;

    const PickView& view() const { return m_view; }
    const SeenLayers& layers() const { return m_layers; }

private:
    struct Hit {
        double distance;
        NestedPick pick;
    };
    SelectArea boxAbout(const VcGePoint3d& at) const;
    std::optional<PlanArea> planAbout(const VcGePoint3d& at) const;
    std::optional<Hit> hit(const VcDbEntity& entity, const VcGePoint3d& at) const;
    std::optional<Hit> nearest(const VcGePoint3d& at) const;
    std::vector<SpaceIndex::Candidate> candidates(const SelectArea& area) const;
    std::vector<SpaceIndex::Candidate> seen(std::vector<SpaceIndex::Candidate> found) const;

    DatabaseCore& m_db;
    VcDbObjectId m_space;
    PickView m_view;
    SeenLayers m_layers;
};

}  // namespace vk::edit
