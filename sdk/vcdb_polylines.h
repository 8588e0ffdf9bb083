// Polylines and meshes that own their vertices as objects, and what ends such a list.
#pragma once

#include "vcdb_entity.h"
#include "vcdb_tables.h"

namespace VcDb {
enum Poly2dType : int { k2dSimplePoly = 0, k2dFitCurvePoly = 1, k2dQuadSplinePoly = 2, k2dCubicSplinePoly = 3 };
enum Poly3dType : int { k3dSimplePoly = 0, k3dQuadSplinePoly = 1, k3dCubicSplinePoly = 2 };
enum PolyMeshType : int { kSimpleMesh = 0, kQuadSurfaceMesh = 5, kCubicSurfaceMesh = 6, kBezierSurfaceMesh = 8 };
enum Vertex2dType : int { k2dVertex = 0, k2dSplineCtlVertex = 1, k2dSplineFitVertex = 2, k2dCurveFitVertex = 3 };
}

// Ends a list of vertices or attributes.
class VK_SDK VcDbSequenceEnd : public VcDbEntity {
    VCDB_DECLARE(VcDbSequenceEnd)
public:
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d&) override { return Vcad::eOk; }
};

// Sub-entities of one owner. They belong to its place in the drawing: copies of the owner begin without them.
class VK_SDK VcDbSubEntities {
public:
    const std::vector<VcDbObjectId>& ids() const { return m_owned->ids; }
    std::vector<VcDbObjectId>& ids() { return m_owned->ids; }
    VcDbObjectId end() const { return m_owned->end; }
    void setEnd(VcDbObjectId id) { m_owned->end = id; }
    // Takes over a sub-entity: at once when the owner is in a database, else when it comes into one.
    Vcad::ErrorStatus append(VcDbEntity& owner, VcDbObjectId& id, VcDbEntity* entity);
    // Brings the waiting ones into the owner's database, and makes the end mark that it lacks.
    void adoptPending(VcDbEntity& owner);
    // The live sub-entities, those still waiting included.
    std::vector<VcDbEntity*> entities(const VcDbEntity& owner) const;

private:
    struct Owned {
        std::vector<VcDbObjectId> ids;
        std::vector<std::unique_ptr<VcDbEntity>> pending;
        VcDbObjectId end;
    };
    VcDbOwned<Owned> m_owned;
};

// Every kind of vertex. Its flags are those of group 70.
class VK_SDK VcDbVertex : public VcDbEntity {
    VCRX_DECLARE(VcDbVertex)
public:
    enum Flag : std::int16_t {
        kExtra = 1,  // made by curve fitting
        kTangent = 2,
        kSplineFit = 8,
        kSplineFrame = 16,
        k3dPolyline = 32,
        kMesh = 64,
        kPolyFace = 128,
    };
    // As the file has it: of a 2D polyline in its own coordinates.
    VcGePoint3d position() const { return m_position; }
    Vcad::ErrorStatus setPosition(const VcGePoint3d& p);
    std::int16_t vertexFlags() const { return m_flags; }
    void setVertexFlags(std::int16_t flags);

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;

protected:
    void vertexFields(FieldVisitor& visitor, const char* marker);
    VcGePoint3d m_position;
    std::int16_t m_flags = 0;
};

class VK_SDK VcDb2dVertex : public VcDbVertex {
    VCDB_DECLARE(VcDb2dVertex)
public:
    VcDb2dVertex() = default;
    explicit VcDb2dVertex(const VcGePoint3d& position, double bulge = 0, double startWidth = 0, double endWidth = 0);
    VcDb::Vertex2dType vertexType() const;
    double bulge() const { return m_bulge; }
    Vcad::ErrorStatus setBulge(double bulge);
    double startWidth() const { return m_startWidth; }
    Vcad::ErrorStatus setStartWidth(double width);
    double endWidth() const { return m_endWidth; }
    Vcad::ErrorStatus setEndWidth(double width);
    double tangent() const { return m_tangent; }
    bool isTangentUsed() const { return (m_flags & kTangent) != 0; }
    void fields(FieldVisitor& visitor) override;

private:
    double m_startWidth = 0, m_endWidth = 0, m_bulge = 0, m_tangent = 0;
    std::int32_t m_identifier = 0;
    friend class VcDb2dPolyline;
};

class VK_SDK VcDb3dPolylineVertex : public VcDbVertex {
    VCDB_DECLARE(VcDb3dPolylineVertex)
public:
    VcDb3dPolylineVertex() { m_flags = k3dPolyline; }
    explicit VcDb3dPolylineVertex(const VcGePoint3d& position);
    void fields(FieldVisitor& visitor) override;
};

class VK_SDK VcDbPolygonMeshVertex : public VcDbVertex {
    VCDB_DECLARE(VcDbPolygonMeshVertex)
public:
    VcDbPolygonMeshVertex() { m_flags = kMesh; }
    explicit VcDbPolygonMeshVertex(const VcGePoint3d& position);
    void fields(FieldVisitor& visitor) override;
};

class VK_SDK VcDbPolyFaceMeshVertex : public VcDbVertex {
    VCDB_DECLARE(VcDbPolyFaceMeshVertex)
public:
    VcDbPolyFaceMeshVertex() { m_flags = kMesh | kPolyFace; }
    explicit VcDbPolyFaceMeshVertex(const VcGePoint3d& position);
    void fields(FieldVisitor& visitor) override;
};

// One face of a polyface mesh: up to four vertices by their number from 1; a negative number hides the edge that begins
// there, 0 means none.
class VK_SDK VcDbFaceRecord : public VcDbVertex {
    VCDB_DECLARE(VcDbFaceRecord)
public:
    VcDbFaceRecord() { m_flags = kPolyFace; }
    VcDbFaceRecord(std::int16_t a, std::int16_t b, std::int16_t c, std::int16_t d);
    Vcad::ErrorStatus getVertexAt(unsigned corner, std::int16_t& vertex) const;
    Vcad::ErrorStatus setVertexAt(unsigned corner, std::int16_t vertex);
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d&) override { return Vcad::eOk; }
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

private:
    std::int16_t m_vertices[4] = {0, 0, 0, 0};
};

// What the four kinds share: vertices, flags, and a dummy point that carries the elevation.
class VK_SDK VcDbVertexOwner : public VcDbCurve {
    VCRX_DECLARE(VcDbVertexOwner)
public:
    enum Flag : std::int16_t {
        kClosed = 1,  // of a mesh: in the M direction
        kCurveFit = 2,
        kSplineFit = 4,
        k3dPolyline = 8,
        kPolygonMesh = 16,
        kClosedN = 32,
        kPolyFaceMesh = 64,
        kPlinegen = 128,
    };
    // The caller deletes it.
    VcDbObjectIterator* vertexIterator() const;
    std::vector<VcDbEntity*> vertices() const { return m_vertices.entities(*this); }
    Vcad::ErrorStatus appendSubEntity(VcDbObjectId& id, VcDbEntity* vertex)
    {
        return m_vertices.append(*this, id, vertex);
    }
    std::int16_t polylineFlags() const { return m_flags; }

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    const std::vector<VcDbObjectId>* subEntities() const override { return &m_vertices.ids(); }
    std::vector<VcDbObjectId>* subEntities() override { return &m_vertices.ids(); }
    VcDbObjectId endMark() const override { return m_vertices.end(); }
    void setEndMark(VcDbObjectId id) override { m_vertices.setEnd(id); }
    void addedToDatabase() override { m_vertices.adoptPending(*this); }

protected:
    void setFlag(std::int16_t flag, bool on);
    void pointAndFlags(FieldVisitor& visitor, const char* marker);
    VcDbSubEntities m_vertices;
    VcGePoint3d m_point;
    std::int16_t m_flags = 0;
    std::int16_t m_type = 0;  // of smoothing, group 75
};

class VK_SDK VcDb2dPolyline : public VcDbVertexOwner {
    VCDB_DECLARE(VcDb2dPolyline)
public:
    VcDb::Poly2dType polyType() const;
    bool isClosed() const override { return (m_flags & kClosed) != 0; }
    void setClosed(bool closed) { setFlag(kClosed, closed); }
    double elevation() const { return m_point.z; }
    Vcad::ErrorStatus setElevation(double elevation);
    double thickness() const { return m_extrusion.thickness(); }
    Vcad::ErrorStatus setThickness(double thickness);
    VcGeVector3d normal() const { return m_extrusion.normal(); }
    Vcad::ErrorStatus setNormal(const VcGeVector3d& normal);
    double defaultStartWidth() const { return m_startWidth; }
    double defaultEndWidth() const { return m_endWidth; }
    bool isLinetypeGenerationOn() const { return (m_flags & kPlinegen) != 0; }
    Vcad::ErrorStatus appendVertex(VcDbObjectId& id, VcDb2dVertex* vertex) { return appendSubEntity(id, vertex); }
    VcGePoint3d vertexPosition(const VcDb2dVertex& vertex) const;  // in the world

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    void fields(FieldVisitor& visitor) override;

private:
    std::vector<const VcDb2dVertex*> curveVertices() const;
    VcDbExtrusion m_extrusion;
    double m_startWidth = 0, m_endWidth = 0;
};

class VK_SDK VcDb3dPolyline : public VcDbVertexOwner {
    VCDB_DECLARE(VcDb3dPolyline)
public:
    VcDb3dPolyline() { m_flags = k3dPolyline; }
    VcDb::Poly3dType polyType() const;
    bool isClosed() const override { return (m_flags & kClosed) != 0; }
    void setClosed(bool closed) { setFlag(kClosed, closed); }
    Vcad::ErrorStatus appendVertex(VcDbObjectId& id, VcDb3dPolylineVertex* vertex)
    {
        return appendSubEntity(id, vertex);
    }

    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    void fields(FieldVisitor& visitor) override;
};

// A grid of M by N vertices.
class VK_SDK VcDbPolygonMesh : public VcDbVertexOwner {
    VCDB_DECLARE(VcDbPolygonMesh)
public:
    VcDbPolygonMesh() { m_flags = kPolygonMesh; }
    VcDb::PolyMeshType polyMeshType() const { return VcDb::PolyMeshType(m_type); }
    std::int16_t mSize() const { return m_mSize; }
    Vcad::ErrorStatus setMSize(std::int16_t size);
    std::int16_t nSize() const { return m_nSize; }
    // Of the surface that the mesh has been smoothed to.
    std::int16_t mDensity() const { return m_mDensity; }
    std::int16_t nDensity() const { return m_nDensity; }
    Vcad::ErrorStatus setNSize(std::int16_t size);
    bool isMClosed() const { return (m_flags & kClosed) != 0; }
    void setMClosed(bool closed) { setFlag(kClosed, closed); }
    bool isNClosed() const { return (m_flags & kClosedN) != 0; }
    void setNClosed(bool closed) { setFlag(kClosedN, closed); }
    Vcad::ErrorStatus appendVertex(VcDbObjectId& id, VcDbPolygonMeshVertex* vertex)
    {
        return appendSubEntity(id, vertex);
    }

    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    void fields(FieldVisitor& visitor) override;

private:
    std::int16_t m_mSize = 0, m_nSize = 0, m_mDensity = 0, m_nDensity = 0;
};

class VK_SDK VcDbPolyFaceMesh : public VcDbVertexOwner {
    VCDB_DECLARE(VcDbPolyFaceMesh)
public:
    VcDbPolyFaceMesh() { m_flags = kPolyFaceMesh; }
    std::int16_t numVertices() const { return m_numVertices; }
    std::int16_t numFaces() const { return m_numFaces; }
    Vcad::ErrorStatus appendVertex(VcDbObjectId& id, VcDbPolyFaceMeshVertex* vertex);
    Vcad::ErrorStatus appendFaceRecord(VcDbObjectId& id, VcDbFaceRecord* face);

    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    void fields(FieldVisitor& visitor) override;

private:
    std::int16_t m_numVertices = 0, m_numFaces = 0;
};
