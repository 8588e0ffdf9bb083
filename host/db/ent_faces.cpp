// Solids and traces, which lie in a plane of their own, and faces, which lie anywhere.
#include "host/db/ent_util.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_faces.h"

VCDB_DEFINE_ABSTRACT(VcDbFilledQuad, VcDbEntity)
VCDB_DEFINE(VcDbSolid, VcDbFilledQuad, "SOLID")
VCDB_DEFINE(VcDbTrace, VcDbFilledQuad, "TRACE")
VCDB_DEFINE(VcDbFace, VcDbEntity, "3DFACE")

namespace {

void setCorners(VcGePoint3d (&corners)[4], const VcGePoint3d& a, const VcGePoint3d& b, const VcGePoint3d& c,
                const VcGePoint3d& d)
{
    corners[0] = a;
    corners[1] = b;
    corners[2] = c;
    corners[3] = d;
}

void cornerFields(FieldVisitor& v, VcGePoint3d (&corners)[4])
{
    for (int i = 0; i < 4; ++i)
        v.point(10 + i, corners[i]);
}

// A file may leave out the fourth corner of a triangle, and a flat one all heights.
void readCorners(FieldVisitor& v, VcGePoint3d (&corners)[4])
{
    v.point(10, corners[0]);
    v.point(11, corners[1]);
    v.point(12, corners[2]);
    VcGePoint3d fourth(NAN, NAN, NAN);
    v.point(13, fourth);
    if (std::isfinite(fourth.x) && std::isnan(fourth.z))
        fourth.z = corners[2].z;
    if (v.isChain() ? isFinite(fourth) : true)
        corners[3] = isFinite(fourth) ? fourth : corners[2];
}

void quadFields(FieldVisitor& v, VcGePoint3d (&corners)[4])
{
    v.isReading() ? readCorners(v, corners) : cornerFields(v, corners);
}

}

// Solids and traces

VcDbSolid::VcDbSolid(const VcGePoint3d& a, const VcGePoint3d& b, const VcGePoint3d& c, const VcGePoint3d& d)
{
    setCorners(m_corners, a, b, c, d);
}

VcDbTrace::VcDbTrace(const VcGePoint3d& a, const VcGePoint3d& b, const VcGePoint3d& c, const VcGePoint3d& d)
{
    setCorners(m_corners, a, b, c, d);
}

Vcad::ErrorStatus VcDbFilledQuad::getPointAt(unsigned corner, VcGePoint3d& point) const
{
    if (corner > 3)
        return Vcad::eInvalidIndex;
    point = vk::geom::toWorld(m_corners[corner], normal());
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbFilledQuad::setPointAt(unsigned corner, const VcGePoint3d& point)
{
    if (corner > 3)
        return Vcad::eInvalidIndex;
    return setMember(*this, m_corners[corner], vk::geom::fromWorld(point, normal()), isFinite(point));
}

Vcad::ErrorStatus VcDbFilledQuad::setThickness(double t) { return setThicknessOf(*this, m_extrusion, t); }
Vcad::ErrorStatus VcDbFilledQuad::setNormal(const VcGeVector3d& n) { return setNormalOf(*this, m_extrusion, n); }

Vcad::ErrorStatus VcDbFilledQuad::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, normal());
    if (!move)
        return Vcad::eInvalidInput;
    if (!move->canMove(m_extrusion))
        return Vcad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    for (VcGePoint3d& corner : m_corners)
        corner = (*move)(corner);
    move->move(m_extrusion);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbFilledQuad::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    for (const VcGePoint3d& corner : m_corners)
        addExtruded(extents, vk::geom::toWorld(corner, normal()), m_extrusion);
    return Vcad::eOk;
}

void VcDbFilledQuad::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbTrace");
    quadFields(v, m_corners);
    m_extrusion.thicknessField(v);
    m_extrusion.normalField(v);
}

// Faces

VcDbFace::VcDbFace(const VcGePoint3d& a, const VcGePoint3d& b, const VcGePoint3d& c, const VcGePoint3d& d)
{
    setCorners(m_corners, a, b, c, d);
}

Vcad::ErrorStatus VcDbFace::getVertexAt(unsigned corner, VcGePoint3d& point) const
{
    if (corner > 3)
        return Vcad::eInvalidIndex;
    point = m_corners[corner];
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbFace::setVertexAt(unsigned corner, const VcGePoint3d& point)
{
    return corner > 3 ? Vcad::eInvalidIndex : setMember(*this, m_corners[corner], point, isFinite(point));
}

Vcad::ErrorStatus VcDbFace::isEdgeVisibleAt(unsigned edge, bool& visible) const
{
    if (edge > 3)
        return Vcad::eInvalidIndex;
    visible = (m_hiddenEdges >> edge & 1) == 0;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbFace::setEdge(unsigned edge, bool visible)
{
    if (edge > 3)
        return Vcad::eInvalidIndex;
    assertWriteEnabled();
    const int bit = 1 << edge;
    m_hiddenEdges = std::int16_t(visible ? m_hiddenEdges & ~bit : m_hiddenEdges | bit);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbFace::transformBy(const VcGeMatrix3d& m)
{
    if (!planeMove(m, VcGeVector3d::zAxis()))
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    for (VcGePoint3d& corner : m_corners)
        corner = m * corner;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbFace::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    for (const VcGePoint3d& corner : m_corners)
        extents.addPoint(corner);
    return Vcad::eOk;
}

void VcDbFace::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbFace");
    quadFields(v, m_corners);
    v.optionalNumber<std::int16_t>(70, m_hiddenEdges, 0);
}
