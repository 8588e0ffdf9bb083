// The four kinds of polyline that own their vertices as objects.
#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/db/ent_factories.h"
#include "host/db/ent_util.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_faces.h"

#include <algorithm>

VCDB_DEFINE_ABSTRACT(VcDbVertexOwner, VcDbCurve)
VCDB_DEFINE(VcDb2dPolyline, VcDbVertexOwner, "POLYLINE")
VCDB_DEFINE(VcDb3dPolyline, VcDbVertexOwner, "POLYLINE")
VCDB_DEFINE(VcDbPolygonMesh, VcDbVertexOwner, "POLYLINE")
VCDB_DEFINE(VcDbPolyFaceMesh, VcDbVertexOwner, "POLYLINE")

std::unique_ptr<VcDbObject> createPolyline(std::int64_t flags, std::string_view marker)
{
    using Owner = VcDbVertexOwner;
    const bool isMarked = marker == "AcDb2dPolyline" || marker == "AcDb3dPolyline" || marker == "AcDbPolygonMesh" ||
                          marker == "AcDbPolyFaceMesh";
    if (isMarked ? marker == "AcDbPolyFaceMesh" : (flags & Owner::kPolyFaceMesh) != 0)
        return std::make_unique<VcDbPolyFaceMesh>();
    if (isMarked ? marker == "AcDbPolygonMesh" : (flags & Owner::kPolygonMesh) != 0)
        return std::make_unique<VcDbPolygonMesh>();
    if (isMarked ? marker == "AcDb3dPolyline" : (flags & Owner::k3dPolyline) != 0)
        return std::make_unique<VcDb3dPolyline>();
    return std::make_unique<VcDb2dPolyline>();
}

// What the four share

VcDbObjectIterator* VcDbVertexOwner::vertexIterator() const { return new VcDbObjectIterator(m_vertices.ids()); }

void VcDbVertexOwner::setFlag(std::int16_t flag, bool on)
{
    assertWriteEnabled();
    m_flags = std::int16_t(on ? m_flags | flag : m_flags & ~flag);
}

Vcad::ErrorStatus VcDbVertexOwner::transformBy(const VcGeMatrix3d& m)
{
    if (!planeMove(m, VcGeVector3d::zAxis()))
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    for (VcDbEntity* vertex : vertices())
        vertex->transformBy(m);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbVertexOwner::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    for (const VcDbEntity* entity : vertices())
        if (VcDbExtents one; entity->getGeomExtents(one) == Vcad::eOk)
            extents.addExt(one);
    return extentsStatus(extents);
}

void VcDbVertexOwner::pointAndFlags(FieldVisitor& v, const char* marker)
{
    VcDbEntity::fields(v);
    v.subclass(marker);
    std::int16_t follow = 1;
    v.number(66, follow);
    v.point(10, m_point);
}

// 2D polyline

VcDb::Poly2dType VcDb2dPolyline::polyType() const
{
    if (m_flags & kCurveFit)
        return VcDb::k2dFitCurvePoly;
    if (m_flags & kSplineFit)
        return m_type == 5 ? VcDb::k2dQuadSplinePoly : VcDb::k2dCubicSplinePoly;
    return VcDb::k2dSimplePoly;
}

Vcad::ErrorStatus VcDb2dPolyline::setElevation(double e) { return setMember(*this, m_point.z, e, isFinite(e)); }
Vcad::ErrorStatus VcDb2dPolyline::setThickness(double t) { return setThicknessOf(*this, m_extrusion, t); }
Vcad::ErrorStatus VcDb2dPolyline::setNormal(const VcGeVector3d& n) { return setNormalOf(*this, m_extrusion, n); }

VcGePoint3d VcDb2dPolyline::vertexPosition(const VcDb2dVertex& vertex) const
{
    const VcGePoint3d p = vertex.position();
    return vk::geom::toWorld(VcGePoint3d(p.x, p.y, m_point.z), normal());
}

// The vertices that the curve runs through: those of a spline's frame are beside it.
std::vector<const VcDb2dVertex*> VcDb2dPolyline::curveVertices() const
{
    std::vector<const VcDb2dVertex*> through;
    for (const VcDbEntity* entity : vertices())
        if (const auto* vertex = VcDb2dVertex::cast(entity); vertex && vertex->vertexType() != VcDb::k2dSplineCtlVertex)
            through.push_back(vertex);
    return through;
}

Vcad::ErrorStatus VcDb2dPolyline::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, normal());
    if (!move)
        return Vcad::eInvalidInput;
    const auto all = vertices();
    const bool needsEven =
        m_startWidth != 0 || m_endWidth != 0 || std::any_of(all.begin(), all.end(), [](const VcDbEntity* e) {
            const auto* vertex = VcDb2dVertex::cast(e);
            return vertex && (vertex->bulge() != 0 || vertex->startWidth() != 0 || vertex->endWidth() != 0);
        });
    if (!move->canMove(m_extrusion) || (!move->even && needsEven))
        return Vcad::eCannotScaleNonUniformly;

    assertWriteEnabled();
    const double elevation = m_point.z;
    for (VcDbEntity* entity : all) {
        auto* vertex = VcDb2dVertex::cast(entity);
        if (!vertex)
            continue;
        vertex->assertWriteEnabled();
        vertex->m_position = (*move)(VcGePoint3d(vertex->m_position.x, vertex->m_position.y, elevation));
        vertex->m_bulge = move->mirrored ? -vertex->m_bulge : vertex->m_bulge;
        vertex->m_startWidth *= move->scale;
        vertex->m_endWidth *= move->scale;
        if (vertex->isTangentUsed())
            vertex->m_tangent = turnOf(move->angle(vertex->m_tangent));
    }
    m_point.z = (*move)(VcGePoint3d(0, 0, elevation)).z;
    m_startWidth *= move->scale;
    m_endWidth *= move->scale;
    move->move(m_extrusion);
    return Vcad::eOk;
}

static std::vector<PlaneSegment> segmentsOf(const std::vector<const VcDb2dVertex*>& vertices, bool closed,
                                            double elevation)
{
    std::vector<PlaneSegment> segments;
    const std::size_t n = vertices.size();
    for (std::size_t i = 0; i + (closed ? 0 : 1) < n; ++i) {
        const VcGePoint3d from = vertices[i]->position(), to = vertices[(i + 1) % n]->position();
        segments.push_back({{from.x, from.y}, {to.x, to.y}, vertices[i]->bulge(), elevation});
    }
    return segments;
}

Vcad::ErrorStatus VcDb2dPolyline::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    const auto through = curveVertices();
    const vk::geom::Frame frame = vk::geom::arbitraryFrame(normal());
    for (const VcDb2dVertex* vertex : through)
        addExtruded(extents, vertexPosition(*vertex), m_extrusion);
    for (const PlaneSegment& s : segmentsOf(through, isClosed(), m_point.z)) {
        const auto arc = bulgeArc(s.from, s.to, s.bulge);
        if (!arc)
            continue;
        VcDbExtents flat;
        const VcGePoint3d center = frame.toWorld(VcGePoint3d(arc->center.x, arc->center.y, s.elevation));
        addEllipse(flat, center, frame.x * arc->radius, frame.y * arc->radius, arc->start,
                   arc->start + turnOf(arc->end - arc->start));
        addExtruded(extents, flat.minPoint(), m_extrusion);
        addExtruded(extents, flat.maxPoint(), m_extrusion);
    }
    const bool wide = std::any_of(through.begin(), through.end(),
                                  [](const VcDb2dVertex* v) { return v->startWidth() > 0 || v->endWidth() > 0; });
    if (const auto curve = wide ? curveOf(*this) : std::nullopt) {
        const vk::geom::Box3d box = vk::geom::extents(*curve);
        addExtruded(extents, box.min, m_extrusion);
        addExtruded(extents, box.max, m_extrusion);
    }
    return extentsStatus(extents);
}

Vcad::ErrorStatus VcDb2dPolyline::explode(std::vector<VcDbEntity*>& pieces) const
{
    for (const PlaneSegment& s : segmentsOf(curveVertices(), isClosed(), m_point.z))
        pieces.push_back(segmentPiece(*this, s, m_extrusion));
    return Vcad::eOk;
}

void VcDb2dPolyline::fields(FieldVisitor& v)
{
    pointAndFlags(v, "AcDb2dPolyline");
    m_extrusion.thicknessField(v);
    v.optionalNumber<std::int16_t>(70, m_flags, 0);
    v.optional(40, m_startWidth, 0.0);
    v.optional(41, m_endWidth, 0.0);
    v.optionalNumber<std::int16_t>(75, m_type, 0);
    m_extrusion.normalField(v);
}

// 3D polyline

VcDb::Poly3dType VcDb3dPolyline::polyType() const
{
    if (!(m_flags & kSplineFit))
        return VcDb::k3dSimplePoly;
    return m_type == 5 ? VcDb::k3dQuadSplinePoly : VcDb::k3dCubicSplinePoly;
}

Vcad::ErrorStatus VcDb3dPolyline::explode(std::vector<VcDbEntity*>& pieces) const
{
    std::vector<VcGePoint3d> points;
    for (const VcDbEntity* entity : vertices())
        if (const auto* vertex = VcDbVertex::cast(entity);
            vertex && !(vertex->vertexFlags() & VcDbVertex::kSplineFrame))
            points.push_back(vertex->position());
    for (std::size_t i = 0; i + (isClosed() ? 0 : 1) < points.size(); ++i)
        pieces.push_back(pieceOf(*this, std::make_unique<VcDbLine>(points[i], points[(i + 1) % points.size()])));
    return Vcad::eOk;
}

void VcDb3dPolyline::fields(FieldVisitor& v)
{
    pointAndFlags(v, "AcDb3dPolyline");
    v.number(70, m_flags);
    v.optionalNumber<std::int16_t>(75, m_type, 0);
}

// Polygon mesh

Vcad::ErrorStatus VcDbPolygonMesh::setMSize(std::int16_t size)
{
    return setMember(*this, m_mSize, size, size >= 2 && size <= 256);
}
Vcad::ErrorStatus VcDbPolygonMesh::setNSize(std::int16_t size)
{
    return setMember(*this, m_nSize, size, size >= 2 && size <= 256);
}

Vcad::ErrorStatus VcDbPolygonMesh::explode(std::vector<VcDbEntity*>& pieces) const
{
    // A smoothed mesh draws the vertices that smoothing made, in its densities, and not those of the frame.
    const bool smooth = (m_flags & kSplineFit) != 0;
    const std::size_t rows = std::size_t(std::max<std::int16_t>(0, smooth ? m_mDensity : m_mSize));
    const std::size_t columns = std::size_t(std::max<std::int16_t>(0, smooth ? m_nDensity : m_nSize));
    std::vector<VcGePoint3d> grid;
    for (const VcDbEntity* entity : vertices())
        if (const auto* vertex = VcDbVertex::cast(entity);
            vertex && !(smooth && (vertex->vertexFlags() & VcDbVertex::kSplineFrame)))
            grid.push_back(vertex->position());
    if (rows < 2 || columns < 2 || grid.size() < rows * columns)
        return Vcad::eCannotExplode;
    const auto at = [&](std::size_t row, std::size_t column) { return grid[row % rows * columns + column % columns]; };
    for (std::size_t row = 0; row + (isMClosed() ? 0 : 1) < rows; ++row)
        for (std::size_t column = 0; column + (isNClosed() ? 0 : 1) < columns; ++column)
            pieces.push_back(pieceOf(*this, std::make_unique<VcDbFace>(at(row, column), at(row, column + 1),
                                                                       at(row + 1, column + 1), at(row + 1, column))));
    return Vcad::eOk;
}

void VcDbPolygonMesh::fields(FieldVisitor& v)
{
    pointAndFlags(v, "AcDbPolygonMesh");
    v.number(70, m_flags);
    v.optionalNumber<std::int16_t>(71, m_mSize, 0);
    v.optionalNumber<std::int16_t>(72, m_nSize, 0);
    v.optionalNumber<std::int16_t>(73, m_mDensity, 0);
    v.optionalNumber<std::int16_t>(74, m_nDensity, 0);
    v.optionalNumber<std::int16_t>(75, m_type, 0);
}

// Polyface mesh

Vcad::ErrorStatus VcDbPolyFaceMesh::appendVertex(VcDbObjectId& id, VcDbPolyFaceMeshVertex* vertex)
{
    if (m_numVertices == std::numeric_limits<std::int16_t>::max())
        return Vcad::eOutOfRange;
    const Vcad::ErrorStatus status = appendSubEntity(id, vertex);
    if (!status)
        ++m_numVertices;
    return status;
}

Vcad::ErrorStatus VcDbPolyFaceMesh::appendFaceRecord(VcDbObjectId& id, VcDbFaceRecord* face)
{
    if (m_numFaces == std::numeric_limits<std::int16_t>::max())
        return Vcad::eOutOfRange;
    const Vcad::ErrorStatus status = appendSubEntity(id, face);
    if (!status)
        ++m_numFaces;
    return status;
}

namespace {

// A face of a mesh by its corners that exist: a face of three or four, a line of two, a point of one.
std::unique_ptr<VcDbEntity> faceOf(const VcDbFaceRecord& record, const std::vector<VcGePoint3d>& points)
{
    std::vector<VcGePoint3d> corners;
    std::vector<bool> visible;
    for (unsigned i = 0; i < 4; ++i) {
        std::int16_t vertex = 0;
        record.getVertexAt(i, vertex);
        const std::size_t number = std::size_t(std::abs(int(vertex)));
        if (number == 0 || number > points.size())
            continue;
        corners.push_back(points[number - 1]);
        visible.push_back(vertex > 0);
    }
    if (corners.empty())
        return nullptr;
    if (corners.size() == 1)
        return std::make_unique<VcDbPoint>(corners[0]);
    if (corners.size() == 2)
        return std::make_unique<VcDbLine>(corners[0], corners[1]);
    auto face = std::make_unique<VcDbFace>(corners[0], corners[1], corners[2], corners.back());
    for (unsigned i = 0; i < visible.size(); ++i)
        if (!visible[i])
            face->makeEdgeInvisibleAt(visible.size() == 3 && i == 2 ? 3 : i);
    return face;
}

}

Vcad::ErrorStatus VcDbPolyFaceMesh::explode(std::vector<VcDbEntity*>& pieces) const
{
    const auto all = vertices();
    std::vector<VcGePoint3d> points;
    for (const VcDbEntity* entity : all)
        if (const auto* vertex = VcDbPolyFaceMeshVertex::cast(entity))
            points.push_back(vertex->position());
    for (const VcDbEntity* entity : all)
        if (const auto* record = VcDbFaceRecord::cast(entity))
            if (auto piece = faceOf(*record, points))
                pieces.push_back(pieceOf(*record, std::move(piece)));
    return Vcad::eOk;
}

void VcDbPolyFaceMesh::fields(FieldVisitor& v)
{
    pointAndFlags(v, "AcDbPolyFaceMesh");
    v.number(70, m_flags);
    v.number(71, m_numVertices);
    v.number(72, m_numFaces);
}
