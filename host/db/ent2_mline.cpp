// Multilines. Each vertex has, for each element of the style, where it runs and where it is broken.
#include "host/db/ent_util.h"
#include "host/db/hatch_fields.h"
#include "sdk/vcdb_misc.h"

VCDB_DEFINE(VcDbMline, VcDbEntity, "MLINE")

VcGePoint3d VcDbMline::vertexAt(int index) const
{
    return index >= 0 && index < numVertices() ? m_vertices[std::size_t(index)].point : VcGePoint3d();
}

Vcad::ErrorStatus VcDbMline::setJustification(MlineJustification j)
{
    return setMember(*this, m_justification, std::int8_t(j), j >= kTop && j <= kBottom);
}

Vcad::ErrorStatus VcDbMline::setScale(double s) { return setMember(*this, m_scale, s, isFinite(s)); }

Vcad::ErrorStatus VcDbMline::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, m_normal);
    if (!move)
        return Vcad::eInvalidInput;
    if (!move->even || !move->upright)
        return Vcad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    m_start = m * m_start;
    // The elements lie to the left of the line as the normal sees it: a mirror turns the normal over.
    m_normal = move->mirrored ? -move->normal : move->normal;
    m_scale *= move->scale;
    for (Vertex& vertex : m_vertices) {
        vertex.point = m * vertex.point;
        vertex.direction = (m * vertex.direction).normal();
        vertex.miter = (m * vertex.miter).normal();
        for (Element& element : vertex.elements) {
            for (double& length : element.lengths)
                length *= move->scale;
            for (double& length : element.fillLengths)
                length *= move->scale;
        }
    }
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbMline::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    for (const Vertex& vertex : m_vertices)
        extents.addPoint(vertex.point);
    return extentsStatus(extents);
}

void VcDbMline::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbMline");
    v.text(2, m_styleName);
    v.ref(340, RefKind::HardPointer, m_style);
    v.real(40, m_scale);
    v.number(70, m_justification);
    v.number(71, m_flags);
    v.count(72, m_vertices.size());
    v.number(73, m_elementCount);
    v.point(10, m_start);
    v.vector(210, m_normal);
    OrderedFields ordered(v);
    listed(v, 11, m_vertices, [&](Vertex& vertex) {
        v.point(11, vertex.point);
        v.vector(12, vertex.direction);
        v.vector(13, vertex.miter);
        listed(v, 74, vertex.elements, [&](Element& element) {
            v.count(74, element.lengths.size());
            listed(v, 41, element.lengths, [&](double& length) { v.real(41, length); });
            v.count(75, element.fillLengths.size());
            listed(v, 42, element.fillLengths, [&](double& length) { v.real(42, length); });
        });
    });
}
