// What is drawn of an entity, as curves: outlines of what is no curve itself, members of blocks in their place.
#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/db/solid_model.h"
#include "host/db/text_geometry.h"
#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve_edit.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_hatch.h"
#include "sdk/vcdb_images.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_misc.h"
#include "sdk/vcdb_solids.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_text.h"
#include "sdk/vcdb_viewport.h"

#include <algorithm>

using namespace vk::geom;

namespace {

constexpr int kDeepest = 64;

using Curves = std::vector<Curve>;
using Corners = std::vector<VcGePoint3d>;

Curves outline(Corners corners) { return {Polyline3{std::move(corners), true}}; }

Curves boxOutline(const vktext::Box& box, const VcGePoint3d& base, const VcGeVector3d& x, const VcGeVector3d& y)
{
    return outline({base + x * box.left + y * box.bottom, base + x * box.right + y * box.bottom,
                    base + x * box.right + y * box.top, base + x * box.left + y * box.top});
}

Curves textOutline(const VcDbEntity& e)
{
    const auto& text = static_cast<const VcDbText&>(e);
    const auto* definition = VcDbAttributeDefinition::cast(&e);
    const std::string& drawn = definition ? definition->tagUtf8() : text.textUtf8();
    const vktext::Box box = vktext::lineBox(lineLooks(text), text.height(), drawn);
    const Frame frame = arbitraryFrame(text.normal());
    const double c = std::cos(text.rotation()), s = std::sin(text.rotation());
    return boxOutline(box, drawnPosition(text, drawn), frame.x * c + frame.y * s, frame.y * c - frame.x * s);
}

Curves paragraphOutline(const VcDbEntity& e)
{
    const auto& text = static_cast<const VcDbMText&>(e);
    const VcGeVector3d x = text.direction().normal();
    return boxOutline(drawnBoxOf(text), text.location(), x, text.normal().crossProduct(x));
}

Curves quadOutline(const VcDbEntity& e)
{
    Corners corners(4);
    // The third and fourth corners are stored in crossed order.
    for (const unsigned i : {0u, 1u, 2u, 3u})
        static_cast<const VcDbFilledQuad&>(e).getPointAt(i, corners[i < 2 ? i : 5 - i]);
    return outline(std::move(corners));
}

Curves faceOutline(const VcDbEntity& e)
{
    const auto& face = static_cast<const VcDbFace&>(e);
    Corners corners(4);
    for (unsigned i = 0; i < 4; ++i)
        face.getVertexAt(i, corners[i]);
    Curves edges;
    for (unsigned i = 0; i < 4; ++i)
        if (bool visible = true; !face.isEdgeVisibleAt(i, visible) && visible && corners[i] != corners[(i + 1) % 4])
            edges.push_back(Segment{corners[i], corners[(i + 1) % 4]});
    return edges;
}

Curves imageOutline(const VcDbEntity& e)
{
    Corners corners;
    if (static_cast<const VcDbRasterImage&>(e).getVertices(corners) || corners.size() < 3)
        return {};
    if (corners.front() == corners.back())
        corners.pop_back();
    return outline(std::move(corners));
}

Curves viewportOutline(const VcDbEntity& e)
{
    const auto& viewport = static_cast<const VcDbViewport&>(e);
    const VcGePoint3d c = viewport.centerPoint();
    const VcGeVector3d right(viewport.width() / 2, 0, 0), up(0, viewport.height() / 2, 0);
    return outline({c - right - up, c + right - up, c + right + up, c - right + up});
}

Curves multilineOutline(const VcDbEntity& e)
{
    const auto& mline = static_cast<const VcDbMline&>(e);
    std::size_t elements = 0;
    for (const VcDbMline::Vertex& v : mline.vertices())
        elements = std::max(elements, v.elements.size());
    Curves curves;
    for (std::size_t i = 0; i < elements; ++i) {
        Polyline3 line{{}, mline.closedMline()};
        for (const VcDbMline::Vertex& v : mline.vertices())
            line.vertices.push_back(i < v.elements.size() && !v.elements[i].lengths.empty()
                                        ? v.point + v.miter * v.elements[i].lengths[0]
                                        : v.point);
        curves.push_back(std::move(line));
    }
    return curves;
}

// Hatches

struct HatchPlane {
    Frame frame;
    double elevation;
    VcGePoint3d at(const VcGePoint2d& p) const { return frame.toWorld(VcGePoint3d(p.x, p.y, elevation)); }
    VcGeVector3d along(const VcGePoint2d& v) const { return frame.toWorld(VcGeVector3d(v.x, v.y, 0)); }
};

Interval edgeAngles(const VcDbHatch::Edge& edge)
{
    const double start = edge.isAnticlockwise ? edge.startAngle : -edge.endAngle;
    const double end = edge.isAnticlockwise ? edge.endAngle : -edge.startAngle;
    return {start, end};
}

std::optional<Curve> edgeCurve(const VcDbHatch::Edge& edge, const HatchPlane& plane)
{
    const Interval turn = edgeAngles(edge);
    switch (edge.type) {
    case VcDbHatch::kLine:
        return Segment{plane.at(edge.first), plane.at(edge.second)};
    case VcDbHatch::kCirArc:
        return Arc{plane.at(edge.first), edge.radius, turn.from, turn.to, plane.frame.z};
    case VcDbHatch::kEllArc:
        return Ellipse{plane.at(edge.first), plane.along(edge.second), edge.radius, turn.from, turn.to, plane.frame.z};
    case VcDbHatch::kSpline: {
        const auto& spline = edge.spline.get();
        Nurbs n{spline.degree, {}, spline.knots, {}};
        for (const VcDbHatch::ControlPoint& p : spline.controlPoints) {
            n.poles.push_back(plane.at(p.point));
            if (spline.isRational)
                n.weights.push_back(p.weight);
        }
        return n;
    }
    default:
        return std::nullopt;
    }
}

Curves hatchOutline(const VcDbEntity& e)
{
    const auto& hatch = static_cast<const VcDbHatch&>(e);
    const HatchPlane plane{arbitraryFrame(hatch.normal()), hatch.elevation()};
    Curves curves;
    for (const VcDbHatch::Loop& loop : hatch.loops()) {
        if (loop.isPolyline()) {
            Polyline p{{}, loop.isClosed, hatch.elevation(), hatch.normal()};
            for (const VcDbHatch::Vertex& v : loop.vertices)
                p.vertices.push_back({v.point, v.bulge});
            curves.push_back(std::move(p));
            continue;
        }
        for (const VcDbHatch::Edge& edge : loop.edges)
            if (auto curve = edgeCurve(edge, plane))
                curves.push_back(std::move(*curve));
    }
    std::erase_if(curves, [](const Curve& c) { return !isValid(c); });
    return curves;
}

Curves solidOutline(const VcDbEntity& e) { return drawnCurvesOf(static_cast<const VcDbModelerGeometry&>(e)); }

struct OutlineClass {
    VcRxClass* (*desc)();
    Curves (*outline)(const VcDbEntity&);
};

constexpr OutlineClass kOutlines[] = {
    {&VcDbText::desc, textOutline},
    {&VcDbMText::desc, paragraphOutline},
    {&VcDbHatch::desc, hatchOutline},
    {&VcDbFilledQuad::desc, quadOutline},
    {&VcDbFace::desc, faceOutline},
    {&VcDbRasterImage::desc, imageOutline},
    {&VcDbViewport::desc, viewportOutline},
    {&VcDbMline::desc, multilineOutline},
    {&VcDbModelerGeometry::desc, solidOutline},
};

std::optional<Curves> ownCurves(const VcDbEntity& entity)
{
    if (auto curve = curveOf(entity))
        return Curves{std::move(*curve)};
    for (const OutlineClass& c : kOutlines)
        if (entity.isKindOf(c.desc()))
            return c.outline(entity);
    return std::nullopt;
}

bool isIdentity(const VcGeMatrix3d& m) { return m == VcGeMatrix3d(); }

const VcDbBlockTableRecord* blockOf(VcDbObjectId id)
{
    const DatabaseCore* db = DatabaseCore::of(id);
    return db ? db->liveAs<VcDbBlockTableRecord>(id) : nullptr;
}

// Of definitions only constant ones are drawn in a reference.
bool isDrawnMember(const VcDbEntity& member)
{
    const auto* definition = VcDbAttributeDefinition::cast(&member);
    return !member.isErased() && member.visibility() == VcDb::kVisible && (!definition || definition->isConstant());
}

}

bool DrawnCurves::visit(const VcDbEntity& entity, const Visit& visit)
{
    return visitPlaced(entity, VcGeMatrix3d(), visit);
}

bool DrawnCurves::visitPlaced(const VcDbEntity& entity, const VcGeMatrix3d& m, const Visit& visit)
{
    if (entity.isKindOf(VcDbBlockReference::desc()))
        return visitReference(entity, m, visit);
    const auto curves = ownCurves(entity);
    if (!curves)
        return visitPieces(entity, m, visit);
    for (const Curve& curve : *curves)
        if (!visit(isIdentity(m) ? curve : transformed(curve, m)))
            return false;
    return true;
}

bool DrawnCurves::visitReference(const VcDbEntity& entity, const VcGeMatrix3d& m, const Visit& visit)
{
    const auto& reference = static_cast<const VcDbBlockReference&>(entity);
    const VcGeMatrix3d first = reference.blockTransform();
    const auto* grid = VcDbMInsertBlock::cast(&entity);
    const Frame frame = arbitraryFrame(reference.normal());
    const double c = std::cos(reference.rotation()), s = std::sin(reference.rotation());
    for (int row = 0; row < (grid ? grid->rows() : 1); ++row)
        for (int column = 0; column < (grid ? grid->columns() : 1); ++column) {
            const double along = grid ? column * grid->columnSpacing() : 0, up = grid ? row * grid->rowSpacing() : 0;
            const VcGeVector3d offset = frame.toWorld(VcGeVector3d(along * c - up * s, along * s + up * c, 0));
            if (!visitMembers(reference.blockTableRecord(), m * VcGeMatrix3d::translation(offset) * first, visit))
                return false;
        }
    for (const VcDbEntity* attribute : reference.attributes())
        if (const auto* a = VcDbAttribute::cast(attribute);
            a && !a->isInvisible() && isDrawnMember(*a) && !visitPlaced(*a, m, visit))
            return false;
    return true;
}

bool DrawnCurves::visitMembers(VcDbObjectId block, const VcGeMatrix3d& m, const Visit& visit)
{
    const VcDbBlockTableRecord* record = blockOf(block);
    if (!record || m_blocks.size() >= kDeepest || std::find(m_blocks.begin(), m_blocks.end(), block) != m_blocks.end())
        return true;
    m_blocks.push_back(block);
    bool goOn = true;
    const DatabaseCore& db = *DatabaseCore::of(block);
    for (const std::uint32_t slot : record->memberSlots()) {
        const auto* member = VcDbEntity::cast(db.objectAt(slot));
        if (member && isDrawnMember(*member) && !isOutside(*member, m) && !(goOn = visitPlaced(*member, m, visit)))
            break;
    }
    m_blocks.pop_back();
    return goOn;
}

bool DrawnCurves::isOutside(const VcDbEntity& entity, const VcGeMatrix3d& m) const
{
    VcDbExtents e;
    if (!m_within || entity.getGeomExtents(e) || e.isEmpty())
        return false;
    e.transformBy(m);
    return !m_within->touches({e.minPoint(), e.maxPoint()});
}

bool DrawnCurves::visitPieces(const VcDbEntity& entity, const VcGeMatrix3d& m, const Visit& visit)
{
    std::vector<VcDbEntity*> raw;
    const bool exploded = m_depth < kDeepest && entity.explode(raw) == Vcad::eOk;
    const std::vector<std::unique_ptr<VcDbEntity>> pieces(raw.begin(), raw.end());
    if (!exploded)
        return true;
    ++m_depth;
    const bool goOn =
        std::all_of(pieces.begin(), pieces.end(), [&](const auto& piece) { return visitPlaced(*piece, m, visit); });
    --m_depth;
    return goOn;
}

std::vector<Curve> drawnCurves(const VcDbEntity& entity)
{
    Curves curves;
    DrawnCurves().visit(entity, [&](const Curve& curve) {
        curves.push_back(curve);
        return true;
    });
    return curves;
}
