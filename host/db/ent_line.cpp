// Lines without an arc in them: lines, rays, construction lines; and points.
#include "host/db/ent_util.h"
#include "sdk/vcdb_curves.h"

VCDB_DEFINE(VcDbLine, VcDbCurve, "LINE")
VCDB_DEFINE(VcDbPoint, VcDbEntity, "POINT")
VCDB_DEFINE_ABSTRACT(VcDbUnboundedLine, VcDbCurve)
VCDB_DEFINE(VcDbRay, VcDbUnboundedLine, "RAY")
VCDB_DEFINE(VcDbXline, VcDbUnboundedLine, "XLINE")

// R10 has lines in space as a kind of their own.
static VcRxClass s_lineInSpace("VcDbLine", &VcDbCurve::desc, "3DLINE", &s_create_VcDbLine);

// Line

Vcad::ErrorStatus VcDbLine::setStartPoint(const VcGePoint3d& p) { return setMember(*this, m_start, p, isFinite(p)); }
Vcad::ErrorStatus VcDbLine::setEndPoint(const VcGePoint3d& p) { return setMember(*this, m_end, p, isFinite(p)); }
Vcad::ErrorStatus VcDbLine::setThickness(double t) { return setThicknessOf(*this, m_extrusion, t); }
Vcad::ErrorStatus VcDbLine::setNormal(const VcGeVector3d& n) { return setNormalOf(*this, m_extrusion, n); }

Vcad::ErrorStatus VcDbLine::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, normal());
    if (!move)
        return Vcad::eInvalidInput;
    if (!move->canMove(m_extrusion))
        return Vcad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    m_start = m * m_start;
    m_end = m * m_end;
    move->move(m_extrusion);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbLine::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    addExtruded(extents, m_start, m_extrusion);
    addExtruded(extents, m_end, m_extrusion);
    return Vcad::eOk;
}

void VcDbLine::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbLine");
    m_extrusion.thicknessField(v);
    v.point(10, m_start);
    v.point(11, m_end);
    m_extrusion.normalField(v);
}

// Point

Vcad::ErrorStatus VcDbPoint::setPosition(const VcGePoint3d& p) { return setMember(*this, m_position, p, isFinite(p)); }
Vcad::ErrorStatus VcDbPoint::setThickness(double t) { return setThicknessOf(*this, m_extrusion, t); }
Vcad::ErrorStatus VcDbPoint::setNormal(const VcGeVector3d& n) { return setNormalOf(*this, m_extrusion, n); }
Vcad::ErrorStatus VcDbPoint::setEcsRotation(double a) { return setMember(*this, m_ecsRotation, a, isFinite(a)); }

Vcad::ErrorStatus VcDbPoint::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, normal());
    if (!move)
        return Vcad::eInvalidInput;
    if (!move->canMove(m_extrusion))
        return Vcad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    m_position = m * m_position;
    // The angle of the mark is kept the other way round: from the mark's axis to the X axis.
    m_ecsRotation = -move->angle(-m_ecsRotation);
    move->move(m_extrusion);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPoint::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    addExtruded(extents, m_position, m_extrusion);
    return Vcad::eOk;
}

void VcDbPoint::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbPoint");
    v.point(10, m_position);
    m_extrusion.thicknessField(v);
    m_extrusion.normalField(v);
    v.optionalAngle(50, m_ecsRotation, 0.0);
}

// Rays and construction lines

Vcad::ErrorStatus VcDbUnboundedLine::setBasePoint(const VcGePoint3d& p)
{
    return setMember(*this, m_base, p, isFinite(p));
}

Vcad::ErrorStatus VcDbUnboundedLine::setUnitDir(const VcGeVector3d& direction)
{
    return setMember(*this, m_direction, direction.normal(), isDirection(direction));
}

Vcad::ErrorStatus VcDbUnboundedLine::transformBy(const VcGeMatrix3d& m)
{
    const VcGeVector3d direction = m * m_direction;
    if (!isDirection(direction) || m.isSingular())
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_base = m * m_base;
    m_direction = direction.normal();
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbUnboundedLine::getGeomExtents(VcDbExtents&) const { return Vcad::eNotApplicable; }

void VcDbUnboundedLine::lineFields(FieldVisitor& v, const char* marker)
{
    VcDbEntity::fields(v);
    v.subclass(marker);
    v.point(10, m_base);
    v.vector(11, m_direction);
}

void VcDbRay::fields(FieldVisitor& v) { lineFields(v, "AcDbRay"); }
void VcDbXline::fields(FieldVisitor& v) { lineFields(v, "AcDbXline"); }
