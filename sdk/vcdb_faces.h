// Filled shapes, faces and meshes of one object.
#pragma once

#include "vcdb_entity.h"

#include <vector>

// What a solid and a trace share: four corners in one plane, the third and fourth in crossed order.
class VK_SDK VcDbFilledQuad : public VcDbEntity {
    VCRX_DECLARE(VcDbFilledQuad)
public:
    Vcad::ErrorStatus getPointAt(unsigned corner, VcGePoint3d& point) const;
    Vcad::ErrorStatus setPointAt(unsigned corner, const VcGePoint3d& point);
    double thickness() const { return m_extrusion.thickness(); }
    Vcad::ErrorStatus setThickness(double thickness);
    VcGeVector3d normal() const { return m_extrusion.normal(); }
    Vcad::ErrorStatus setNormal(const VcGeVector3d& normal);

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

protected:
    VcGePoint3d m_corners[4];  // in the shape's own coordinates
    VcDbExtrusion m_extrusion;
};

class VK_SDK VcDbSolid : public VcDbFilledQuad {
    VCDB_DECLARE(VcDbSolid)
public:
    VcDbSolid() = default;
    VcDbSolid(const VcGePoint3d& a, const VcGePoint3d& b, const VcGePoint3d& c, const VcGePoint3d& d);
};

class VK_SDK VcDbTrace : public VcDbFilledQuad {
    VCDB_DECLARE(VcDbTrace)
public:
    VcDbTrace() = default;
    VcDbTrace(const VcGePoint3d& a, const VcGePoint3d& b, const VcGePoint3d& c, const VcGePoint3d& d);
};

// A face of three or four corners anywhere in space; of three when the last two are the same.
class VK_SDK VcDbFace : public VcDbEntity {
    VCDB_DECLARE(VcDbFace)
public:
    VcDbFace() = default;
    VcDbFace(const VcGePoint3d& a, const VcGePoint3d& b, const VcGePoint3d& c, const VcGePoint3d& d);
    Vcad::ErrorStatus getVertexAt(unsigned corner, VcGePoint3d& point) const;
    Vcad::ErrorStatus setVertexAt(unsigned corner, const VcGePoint3d& point);
    // Edges by the corner that they begin at.
    Vcad::ErrorStatus isEdgeVisibleAt(unsigned edge, bool& visible) const;
    Vcad::ErrorStatus makeEdgeVisibleAt(unsigned edge) { return setEdge(edge, true); }
    Vcad::ErrorStatus makeEdgeInvisibleAt(unsigned edge) { return setEdge(edge, false); }

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

private:
    Vcad::ErrorStatus setEdge(unsigned edge, bool visible);
    VcGePoint3d m_corners[4];
    std::int16_t m_hiddenEdges = 0;
};

// A mesh that is smoothed by subdivision.
class VK_SDK VcDbSubDMesh : public VcDbEntity {
    VCDB_DECLARE(VcDbSubDMesh)
public:
    int subdivisionLevel() const { return m_level; }
    const std::vector<VcGePoint3d>& vertices() const { return m_vertices; }
    // A count of corners, then as many numbers of vertices from 0, and so on.
    const std::vector<std::int32_t>& faceArray() const { return m_faces; }
    int numOfFaces() const;
    struct Edge {
        std::int32_t from = 0, to = 0;
    };
    // Edges that say how sharp they stay when the mesh is smoothed: for so many levels, or always where it is negative.
    const std::vector<Edge>& edges() const { return m_edges; }
    const std::vector<double>& creases() const { return m_creases; }

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    // A 3D face for each face of three or four corners, a fan of them for more.
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    void fields(FieldVisitor& visitor) override;

private:
    std::vector<VcGePoint3d> m_vertices;
    std::vector<std::int32_t> m_faces;
    std::vector<Edge> m_edges;
    std::vector<double> m_creases;
    std::int32_t m_level = 0;
    std::int16_t m_version = 2;
    bool m_blendCrease = false;
};
