// Vertices of every kind, the end of a list, and the list of sub-entities itself.
#include "host/db/database.h"
#include "host/db/ent_factories.h"
#include "host/db/ent_util.h"
#include "sdk/vcdb_polylines.h"

#include <utility>

VCDB_DEFINE(VcDbSequenceEnd, VcDbEntity, "SEQEND")
VCDB_DEFINE_ABSTRACT(VcDbVertex, VcDbEntity)
VCDB_DEFINE(VcDb2dVertex, VcDbVertex, "VERTEX")
VCDB_DEFINE(VcDb3dPolylineVertex, VcDbVertex, "VERTEX")
VCDB_DEFINE(VcDbPolygonMeshVertex, VcDbVertex, "VERTEX")
VCDB_DEFINE(VcDbPolyFaceMeshVertex, VcDbVertex, "VERTEX")
VCDB_DEFINE(VcDbFaceRecord, VcDbVertex, "VERTEX")

std::unique_ptr<VcDbObject> createVertex(std::int64_t flags, std::string_view marker)
{
    if (marker == "AcDbFaceRecord")
        return std::make_unique<VcDbFaceRecord>();
    if (marker == "AcDbPolyFaceMeshVertex")
        return std::make_unique<VcDbPolyFaceMeshVertex>();
    if (marker == "AcDbPolygonMeshVertex")
        return std::make_unique<VcDbPolygonMeshVertex>();
    if (marker == "AcDb3dPolylineVertex")
        return std::make_unique<VcDb3dPolylineVertex>();
    if (marker == "AcDb2dVertex")
        return std::make_unique<VcDb2dVertex>();
    if (flags & VcDbVertex::kPolyFace)
        return flags & VcDbVertex::kMesh ? std::unique_ptr<VcDbObject>(std::make_unique<VcDbPolyFaceMeshVertex>())
                                         : std::make_unique<VcDbFaceRecord>();
    if (flags & VcDbVertex::kMesh)
        return std::make_unique<VcDbPolygonMeshVertex>();
    if (flags & VcDbVertex::k3dPolyline)
        return std::make_unique<VcDb3dPolylineVertex>();
    return std::make_unique<VcDb2dVertex>();
}

// Lists of sub-entities

Vcad::ErrorStatus VcDbSubEntities::append(VcDbEntity& owner, VcDbObjectId& id, VcDbEntity* entity)
{
    if (!entity || !entity->objectId().isNull())
        return Vcad::eInvalidInput;
    owner.assertWriteEnabled();
    std::unique_ptr<VcDbEntity> added(entity);
    if (entity->props().layer.isNull())
        added->setProps(owner.props());
    DatabaseCore* db = DatabaseCore::of(owner.objectId());
    if (!db) {
        id = {};
        m_owned->pending.push_back(std::move(added));
        return Vcad::eOk;
    }
    id = db->add(std::move(added), owner.objectId());
    m_owned->ids.push_back(id);
    entity->openNew();
    adoptPending(owner);
    return Vcad::eOk;
}

void VcDbSubEntities::adoptPending(VcDbEntity& owner)
{
    DatabaseCore* db = DatabaseCore::of(owner.objectId());
    if (!db)
        return;
    for (std::unique_ptr<VcDbEntity>& entity : std::exchange(m_owned->pending, {}))
        m_owned->ids.push_back(db->add(std::move(entity), owner.objectId()));
    if (m_owned->ids.empty() || !m_owned->end.isNull())
        return;
    auto end = std::make_unique<VcDbSequenceEnd>();
    end->setProps(owner.props());
    m_owned->end = db->add(std::move(end), owner.objectId());
}

std::vector<VcDbEntity*> VcDbSubEntities::entities(const VcDbEntity& owner) const
{
    std::vector<VcDbEntity*> all;
    all.reserve(m_owned->ids.size() + m_owned->pending.size());
    if (const DatabaseCore* db = DatabaseCore::of(owner.objectId()))
        for (const VcDbObjectId id : m_owned->ids)
            if (auto* entity = db->liveAs<VcDbEntity>(id))
                all.push_back(entity);
    for (const auto& entity : m_owned->pending)
        all.push_back(entity.get());
    return all;
}

// Vertices

Vcad::ErrorStatus VcDbVertex::setPosition(const VcGePoint3d& p) { return setMember(*this, m_position, p, isFinite(p)); }

void VcDbVertex::setVertexFlags(std::int16_t flags)
{
    assertWriteEnabled();
    m_flags = flags;
}

Vcad::ErrorStatus VcDbVertex::transformBy(const VcGeMatrix3d& m)
{
    if (m.isSingular())
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_position = m * m_position;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbVertex::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents(m_position, m_position);
    return Vcad::eOk;
}

void VcDbVertex::vertexFields(FieldVisitor& v, const char* marker)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbVertex");
    v.subclass(marker);
    v.point(10, m_position);
}

VcDb2dVertex::VcDb2dVertex(const VcGePoint3d& position, double bulge, double startWidth, double endWidth)
    : m_startWidth(startWidth), m_endWidth(endWidth), m_bulge(bulge)
{
    m_position = position;
}

VcDb::Vertex2dType VcDb2dVertex::vertexType() const
{
    if (m_flags & kSplineFrame)
        return VcDb::k2dSplineCtlVertex;
    if (m_flags & kSplineFit)
        return VcDb::k2dSplineFitVertex;
    return m_flags & kExtra ? VcDb::k2dCurveFitVertex : VcDb::k2dVertex;
}

Vcad::ErrorStatus VcDb2dVertex::setBulge(double bulge) { return setMember(*this, m_bulge, bulge, isFinite(bulge)); }

Vcad::ErrorStatus VcDb2dVertex::setStartWidth(double width)
{
    return setMember(*this, m_startWidth, width, width >= 0 && isFinite(width));
}

Vcad::ErrorStatus VcDb2dVertex::setEndWidth(double width)
{
    return setMember(*this, m_endWidth, width, width >= 0 && isFinite(width));
}

namespace {

// What is meant where a vertex says no width: that of its polyline.
std::pair<double, double> defaultWidths(const VcDb2dVertex& vertex)
{
    const DatabaseCore* db = DatabaseCore::of(vertex.objectId());
    const auto* polyline = db ? db->liveAs<VcDb2dPolyline>(vertex.ownerId()) : nullptr;
    return polyline ? std::pair(polyline->defaultStartWidth(), polyline->defaultEndWidth()) : std::pair(0.0, 0.0);
}

}

void VcDb2dVertex::fields(FieldVisitor& v)
{
    vertexFields(v, "AcDb2dVertex");
    const auto [start, end] = defaultWidths(*this);
    if (v.isReading() && !v.isChain())
        std::tie(m_startWidth, m_endWidth) = std::pair(start, end);
    v.optional(40, m_startWidth, start);
    v.optional(41, m_endWidth, end);
    v.optional(42, m_bulge, 0.0);
    v.optionalNumber<std::int16_t>(70, m_flags, 0);
    v.optionalAngle(50, m_tangent, 0.0);
    if (v.isReading() || v.isChain() || v.atLeast(DxfVersion::R2010))
        v.optionalNumber(91, m_identifier, 0);
}

VcDb3dPolylineVertex::VcDb3dPolylineVertex(const VcGePoint3d& position) : VcDb3dPolylineVertex()
{
    m_position = position;
}

void VcDb3dPolylineVertex::fields(FieldVisitor& v)
{
    vertexFields(v, "AcDb3dPolylineVertex");
    v.number(70, m_flags);
}

VcDbPolygonMeshVertex::VcDbPolygonMeshVertex(const VcGePoint3d& position) : VcDbPolygonMeshVertex()
{
    m_position = position;
}

void VcDbPolygonMeshVertex::fields(FieldVisitor& v)
{
    vertexFields(v, "AcDbPolygonMeshVertex");
    v.number(70, m_flags);
}

VcDbPolyFaceMeshVertex::VcDbPolyFaceMeshVertex(const VcGePoint3d& position) : VcDbPolyFaceMeshVertex()
{
    m_position = position;
}

void VcDbPolyFaceMeshVertex::fields(FieldVisitor& v)
{
    vertexFields(v, "AcDbPolyFaceMeshVertex");
    v.number(70, m_flags);
}

// Face records

VcDbFaceRecord::VcDbFaceRecord(std::int16_t a, std::int16_t b, std::int16_t c, std::int16_t d) : VcDbFaceRecord()
{
    const std::int16_t vertices[] = {a, b, c, d};
    std::copy(std::begin(vertices), std::end(vertices), m_vertices);
}

Vcad::ErrorStatus VcDbFaceRecord::getVertexAt(unsigned corner, std::int16_t& vertex) const
{
    if (corner > 3)
        return Vcad::eInvalidIndex;
    vertex = m_vertices[corner];
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbFaceRecord::setVertexAt(unsigned corner, std::int16_t vertex)
{
    return corner > 3 ? Vcad::eInvalidIndex : setMember(*this, m_vertices[corner], vertex, true);
}

Vcad::ErrorStatus VcDbFaceRecord::getGeomExtents(VcDbExtents&) const { return Vcad::eNotApplicable; }

void VcDbFaceRecord::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbFaceRecord");
    v.point(10, m_position);
    v.number(70, m_flags);
    for (int corner = 0; corner < 4; ++corner)
        v.optionalNumber<std::int16_t>(71 + corner, m_vertices[corner], 0);
}
