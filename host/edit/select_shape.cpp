#include "host/edit/select_shape.h"

#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/db/kept_extents.h"
#include "host/edit/select_outline.h"
#include "host/edit/select_view.h"
#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve_edit.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_text.h"

namespace vk::edit {

namespace {

// Blocks may hold each other in a circle in a broken file; deeper nesting than this is not drawn.
constexpr std::size_t kDeepest = 64;

double largestScale(const VcGeMatrix3d& m)
{
    double largest = 0;
    for (const VcGeVector3d& axis : {VcGeVector3d::xAxis(), VcGeVector3d::yAxis(), VcGeVector3d::zAxis()})
        largest = std::max(largest, (m * axis).length());
    return largest;
}

// A line without end, as far as it matters.
Outline cutOff(const OutlineBuilder::Infinite& line, const VcGeMatrix3d& toWorld, const std::optional<PlanArea>& area)
{
    constexpr double kFar = 1e7;
    const VcGePoint3d base = toWorld * line.base;
    const VcGeVector3d direction = (toWorld * line.direction).normal();
    VcGePoint3d middle;
    double reach = kFar;
    if (area) {
        middle.set((area->min.x + area->max.x) / 2, (area->min.y + area->max.y) / 2, base.z);
        reach = area->min.distanceTo(area->max) + 1;
    }
    const double flat = std::max(direction.convert2d().length(), 1e-6);
    const double length = (base.distanceTo(middle) + reach) / flat;
    return {{line.bothWays ? base - direction * length : base, base + direction * length}, false};
}

}

ShapeWalk::ShapeWalk(const DatabaseCore& db, const SeenLayers& layers, const Options& options)
    : m_db(db), m_layers(layers), m_options(options)
{
}

bool ShapeWalk::walk(const VcDbEntity& entity, const Visit& visit)
{
    m_part = entity.objectId();
    if (const auto* reference = VcDbBlockReference::cast(&entity))
        return walkReference(*reference, visit);
    return walkOwn(entity, visit);
}

VcDbObjectId ShapeWalk::effectiveLayer(const VcDbEntity& entity) const
{
    const VcDbObjectId layer = entity.layerId();
    return !m_layerOfZero.empty() && m_layers.isZero(layer) ? m_layerOfZero.back() : layer;
}

bool ShapeWalk::isSeenMember(const VcDbEntity& member) const
{
    if (member.isErased() || member.visibility() != VcDb::kVisible)
        return false;
    const VcDbObjectId layer = effectiveLayer(member);
    // A reference on a layer that is off still shows those of its members that lie on others.
    return VcDbBlockReference::cast(&member) ? !m_layers.isFrozen(layer) : m_layers.isSeen(layer);
}

bool ShapeWalk::isPassedOver(const VcDbEntity& member) const
{
    if (!m_options.area || m_options.wholeEntity)
        return false;
    VcDbExtents extents;
    if (member.getGeomExtents(extents) != Vcad::eOk || extents.isEmpty())
        return false;
    return liesElsewhere(extents);
}

// Of a box in the coordinates that are being walked.
bool ShapeWalk::liesElsewhere(VcDbExtents extents) const
{
    if (!m_blocks.empty())
        extents.transformBy(m_toWorld);
    return !m_options.area->touches(extents);
}

// By the box that the extents of its references have left known.
bool ShapeWalk::isPassedOver(const VcDbBlockTableRecord& block) const
{
    if (!m_options.area || m_options.wholeEntity)
        return false;
    const VcDbObjectId id = block.objectId();
    const KeptExtents* kept = KeptExtents::existing(id.databaseSerial());
    const VcDbExtents* known = kept ? kept->find(id.slot()) : nullptr;
    return known && !known->isEmpty() && liesElsewhere(*known);
}

bool ShapeWalk::walkReference(const VcDbBlockReference& reference, const Visit& visit)
{
    const VcGeMatrix3d outside = m_toWorld;
    const VcGeMatrix3d first = reference.blockTransform();
    const auto* grid = VcDbMInsertBlock::cast(&reference);
    const geom::Frame frame = geom::arbitraryFrame(reference.normal());
    const double c = std::cos(reference.rotation()), s = std::sin(reference.rotation());
    bool goOn = true;
    for (int row = 0; goOn && row < (grid ? grid->rows() : 1); ++row)
        for (int column = 0; goOn && column < (grid ? grid->columns() : 1); ++column) {
            const double along = grid ? column * grid->columnSpacing() : 0, up = grid ? row * grid->rowSpacing() : 0;
            const VcGeVector3d offset = frame.toWorld(VcGeVector3d(along * c - up * s, along * s + up * c, 0));
            goOn = walkCell(reference, outside * VcGeMatrix3d::translation(offset) * first, visit);
        }
    m_toWorld = outside;
    return goOn && walkAttributes(reference, visit);
}

bool ShapeWalk::walkCell(const VcDbBlockReference& reference, const VcGeMatrix3d& cell, const Visit& visit)
{
    const auto* block = m_db.liveAs<VcDbBlockTableRecord>(reference.blockTableRecord());
    const bool isCircle = std::find(m_blocks.begin(), m_blocks.end(), reference.blockTableRecord()) != m_blocks.end();
    if (!block || isCircle || m_blocks.size() >= kDeepest)
        return true;
    m_toWorld = cell;
    m_layerOfZero.push_back(effectiveLayer(reference));
    m_containers.push_back(reference.objectId());
    m_blocks.push_back(block->objectId());
    const bool goOn = isPassedOver(*block) || walkBlock(*block, visit);
    m_blocks.pop_back();
    m_containers.pop_back();
    m_layerOfZero.pop_back();
    return goOn;
}

bool ShapeWalk::walkBlock(const VcDbBlockTableRecord& block, const Visit& visit)
{
    const VcGeMatrix3d inBlock = m_toWorld;
    for (const std::uint32_t slot : block.memberSlots()) {
        const auto* member = VcDbEntity::cast(m_db.objectAt(slot));
        if (!member || !isSeenMember(*member) || isPassedOver(*member))
            continue;
        // Of definitions only constant ones are seen in a reference.
        const auto* definition = VcDbAttributeDefinition::cast(member);
        if (definition && !definition->isConstant())
            continue;
        if (!walk(*member, visit))
            return false;
        m_toWorld = inBlock;
    }
    return true;
}

bool ShapeWalk::walkAttributes(const VcDbBlockReference& reference, const Visit& visit)
{
    m_layerOfZero.push_back(effectiveLayer(reference));
    bool goOn = true;
    for (const VcDbEntity* entity : reference.attributes()) {
        const auto* attribute = VcDbAttribute::cast(entity);
        if (!goOn || !attribute || attribute->isInvisible() || !isSeenMember(*attribute) || isPassedOver(*attribute))
            continue;
        goOn = walk(*attribute, visit);
    }
    m_layerOfZero.pop_back();
    m_part = reference.objectId();
    return goOn;
}

// What has no outline of its own is taken apart; what cannot be is the box that it fills.
bool ShapeWalk::walkPieces(const VcDbEntity& entity, const Visit& visit)
{
    std::vector<VcDbEntity*> raw;
    const bool exploded = entity.explode(raw) == Vcad::eOk && !raw.empty();
    std::vector<std::unique_ptr<VcDbEntity>> pieces(raw.begin(), raw.end());
    if (exploded) {
        for (const auto& piece : pieces) {
            const bool goOn = VcDbBlockReference::cast(piece.get()) ? walk(*piece, visit) : walkOwn(*piece, visit);
            m_part = entity.objectId();
            if (!goOn)
                return false;
        }
        return true;
    }
    VcDbExtents e;
    if (entity.getGeomExtents(e) != Vcad::eOk || e.isEmpty())
        return true;
    const VcGePoint3d &a = e.minPoint(), &b = e.maxPoint();
    for (const double z : {a.z, b.z}) {
        Outline box{{{a.x, a.y, z}, {b.x, a.y, z}, {b.x, b.y, z}, {a.x, b.y, z}}, true};
        for (VcGePoint3d& p : box.points)
            p = m_toWorld * p;
        if (!visit(box))
            return false;
    }
    return true;
}

// Of a curve of one outline that is not straight.
static std::optional<geom::Curve> bentCurve(const VcDbEntity& entity)
{
    auto curve = curveOf(entity);
    if (!curve)
        return std::nullopt;
    if (const auto* p = std::get_if<geom::Polyline>(&*curve)) {
        const bool bent =
            std::any_of(p->vertices.begin(), p->vertices.end(), [](const geom::PolyVertex& v) { return v.bulge != 0; });
        return bent ? curve : std::nullopt;
    }
    const bool straight = std::holds_alternative<geom::Segment>(*curve) ||
                          std::holds_alternative<geom::Polyline3>(*curve) ||
                          std::holds_alternative<geom::Ray>(*curve) || std::holds_alternative<geom::XLine>(*curve);
    return straight ? std::nullopt : curve;
}

bool ShapeWalk::walkOwn(const VcDbEntity& entity, const Visit& visit)
{
    if (passesOver && passesOver(entity))
        return true;
    OutlineBuilder builder(m_options.tolerance / std::max(largestScale(m_toWorld), 1e-12));
    if (!buildOutline(entity, builder))
        return walkPieces(entity, visit);
    // The bare curve comes last, after what its widths fill.
    if (auto curve = builder.outlines.empty() || builder.outlines.back().filled ? std::nullopt : bentCurve(entity))
        builder.outlines.back().curve = geom::transformed(*curve, m_toWorld);
    for (Outline& outline : builder.outlines) {
        for (VcGePoint3d& p : outline.points)
            p = m_toWorld * p;
        if (!visit(outline))
            return false;
    }
    for (const auto& line : builder.lines)
        if (!visit(cutOff(line, m_toWorld, m_options.area)))
            return false;
    return true;
}

}  // namespace vk::edit
