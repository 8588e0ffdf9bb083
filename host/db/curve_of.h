// Between entities and the curves of the engine.
#pragma once

#include "host/base/api.h"
#include "host/geom/curve.h"
#include "sdk/vcdb_entity.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

// The curve that an entity of a curve class is; nothing for other classes and for what has no shape.
VKHOST_API std::optional<vk::geom::Curve> curveOf(const VcDbEntity& entity);

// A new entity of the class that the curve asks for, with the properties, extended data, thickness and the like of
// another. Of the two planar polylines it is the kind that `like` is. Null for a curve that no entity can hold.
VKHOST_API std::unique_ptr<VcDbEntity> makeEntityOf(const vk::geom::Curve& curve, const VcDbEntity& like);

// Gives the entity another shape and keeps the object. False, with nothing changed, when its class cannot hold it.
VKHOST_API bool setCurveOf(VcDbEntity& entity, const vk::geom::Curve& curve);

// All that is drawn of an entity, as curves in the world: members of blocks in their place, outlines of texts, faces, fills
// and frames, what is exploded of the rest.
class VKHOST_API DrawnCurves {
public:
    // Returns whether to go on.
    using Visit = std::function<bool(const vk::geom::Curve&)>;
    // Members of blocks that lie outside the box are passed over; without one none is.
    explicit DrawnCurves(std::optional<vk::geom::Box3d> within = {}) : m_within(std::move(within)) {}
    // False when a visit ended it.
    bool visit(const VcDbEntity& entity, const Visit& visit);

private:
    bool visitPlaced(const VcDbEntity& entity, const VcGeMatrix3d& m, const Visit& visit);
    bool visitReference(const VcDbEntity& entity, const VcGeMatrix3d& m, const Visit& visit);
    bool visitMembers(VcDbObjectId block, const VcGeMatrix3d& m, const Visit& visit);
    bool visitPieces(const VcDbEntity& entity, const VcGeMatrix3d& m, const Visit& visit);
    bool isOutside(const VcDbEntity& entity, const VcGeMatrix3d& m) const;

    std::optional<vk::geom::Box3d> m_within;
    std::vector<VcDbObjectId> m_blocks;  // being visited, against circles
    int m_depth = 0;
};

VKHOST_API std::vector<vk::geom::Curve> drawnCurves(const VcDbEntity& entity);
