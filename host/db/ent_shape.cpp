// Shapes.
#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/ent_util.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_insert.h"

VCDB_DEFINE(VcDbShape, VcDbEntity, "SHAPE")

VcGePoint3d VcDbShape::position() const { return vk::geom::toWorld(m_position, normal()); }

Vcad::ErrorStatus VcDbShape::setPosition(const VcGePoint3d& p)
{
    return setMember(*this, m_position, vk::geom::fromWorld(p, normal()), isFinite(p));
}

Vcad::ErrorStatus VcDbShape::setSize(double size) { return setMember(*this, m_size, size, isPositive(size)); }
wchar_t* VcDbShape::name() const { return heapStringFromUtf8(m_name); }

Vcad::ErrorStatus VcDbShape::setName(const wchar_t* name)
{
    return name && *name ? setMember(*this, m_name, wideToUtf8(name), true) : Vcad::eInvalidInput;
}

Vcad::ErrorStatus VcDbShape::setShapeNumber(std::int16_t number)
{
    return setMember(*this, m_number, number, number > 0);
}
Vcad::ErrorStatus VcDbShape::setRotation(double a) { return setMember(*this, m_rotation, a, isFinite(a)); }
Vcad::ErrorStatus VcDbShape::setWidthFactor(double f)
{
    return setMember(*this, m_widthFactor, f, isFinite(f) && f != 0);
}

Vcad::ErrorStatus VcDbShape::setOblique(double a)
{
    return setMember(*this, m_oblique, a, std::fabs(a) <= 85 * kPi / 180 + 1e-9);
}

Vcad::ErrorStatus VcDbShape::setThickness(double t) { return setThicknessOf(*this, m_extrusion, t); }

Vcad::ErrorStatus VcDbShape::setNormal(const VcGeVector3d& n)
{
    const VcGePoint3d stays = position();
    const Vcad::ErrorStatus status = setNormalOf(*this, m_extrusion, n);
    if (!status)
        m_position = vk::geom::fromWorld(stays, normal());
    return status;
}

Vcad::ErrorStatus VcDbShape::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, normal());
    if (!move)
        return Vcad::eInvalidInput;
    if (!move->even || !move->canMove(m_extrusion))
        return Vcad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    m_position = (*move)(m_position);
    m_size *= move->scale;
    // A mirrored shape is drawn backwards, which a negative width says.
    const double rotation = move->angle(m_rotation) + (move->mirrored ? kPi : 0);
    m_rotation = rotation == m_rotation ? rotation : turnOf(rotation);
    m_widthFactor = move->mirrored ? -m_widthFactor : m_widthFactor;
    move->move(m_extrusion);
    return Vcad::eOk;
}

// What the figure looks like is in its file: its place is all that is known here.
Vcad::ErrorStatus VcDbShape::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    addExtruded(extents, position(), m_extrusion);
    return Vcad::eOk;
}

void VcDbShape::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbShape");
    m_extrusion.thicknessField(v);
    v.point(10, m_position);
    v.real(40, m_size);
    v.text(2, m_name);
    v.optionalAngle(50, m_rotation, 0.0);
    v.optional(41, m_widthFactor, 1.0);
    v.optionalAngle(51, m_oblique, 0.0);
    m_extrusion.normalField(v);
}
