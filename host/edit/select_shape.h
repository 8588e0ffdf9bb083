// What is seen of an entity, as chains of points in the world: what picks, windows and fences are measured against.
#pragma once

#include "host/base/api.h"
#include "host/geom/curve.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcge.h"

#include <functional>
#include <optional>
#include <vector>

class VcDbBlockReference;
class VcDbBlockTableRecord;
class DatabaseCore;

namespace vk::edit {

class SeenLayers;

// A chain of straight pieces; a single point is a point. A filled one is closed and met anywhere within. What is bent says
// its curve as well, which the chain only comes near to.
struct Outline {
    std::vector<VcGePoint3d> points;
    bool filled = false;
    std::optional<geom::Curve> curve = std::nullopt;
};

// A rectangle of the world seen from above.
struct PlanArea {
    VcGePoint2d min, max;
    bool touches(const VcDbExtents& e) const
    {
        return e.minPoint().x <= max.x && min.x <= e.maxPoint().x && e.minPoint().y <= max.y && min.y <= e.maxPoint().y;
    }
};

// Goes through the outlines of an entity, those of the visible members of blocks included. Arcs become chords.
class VKHOST_API ShapeWalk {
public:
    struct Options {
        double tolerance = 1e-3;       // of chords from their arc
        std::optional<PlanArea> area;  // what matters; members of blocks that lie elsewhere are passed over
        bool wholeEntity = false;      // they matter all the same
    };
    ShapeWalk(const DatabaseCore& db, const SeenLayers& layers, const Options& options);

    // Whether to go on.
    using Visit = std::function<bool(const Outline&)>;
    // Asked ahead of each part: true where no outline of it is needed.
    std::function<bool(const VcDbEntity&)> passesOver;
    // False when visit ended it.
    bool walk(const VcDbEntity& entity, const Visit& visit);

    // Of the outline being visited: the entity that it belongs to, the references that hold that, outermost first, and the
    // way from its coordinates to the world's. An attribute is not held by its own reference.
    VcDbObjectId part() const { return m_part; }
    const std::vector<VcDbObjectId>& containers() const { return m_containers; }
    const VcGeMatrix3d& toWorld() const { return m_toWorld; }

private:
    bool walkReference(const VcDbBlockReference& reference, const Visit& visit);
    bool walkCell(const VcDbBlockReference& reference, const VcGeMatrix3d& cell, const Visit& visit);
    bool walkBlock(const VcDbBlockTableRecord& block, const Visit& visit);
    bool walkAttributes(const VcDbBlockReference& reference, const Visit& visit);
    bool walkPieces(const VcDbEntity& entity, const Visit& visit);
    bool walkOwn(const VcDbEntity& entity, const Visit& visit);
    bool isPassedOver(const VcDbEntity& member) const;
    bool isPassedOver(const VcDbBlockTableRecord& block) const;
    bool liesElsewhere(VcDbExtents extents) const;
    bool isSeenMember(const VcDbEntity& member) const;
    VcDbObjectId effectiveLayer(const VcDbEntity& entity) const;

    const DatabaseCore& m_db;
    const SeenLayers& m_layers;
    Options m_options;
    VcDbObjectId m_part;
    std::vector<VcDbObjectId> m_containers;
    std::vector<VcDbObjectId> m_blocks;       // being walked, against circles
    std::vector<VcDbObjectId> m_layerOfZero;  // what layer 0 stands for in each of them
    VcGeMatrix3d m_toWorld;
};

}  // namespace vk::edit
