// The dimensions one by one: their definition points.
#include "host/db/dim_overrides.h"
#include "host/db/dim_change.h"
#include "host/db/ent_util.h"
#include "host/geom/arbitrary_axis.h"

VCDB_DEFINE(VcDbAlignedDimension, VcDbDimension, "DIMENSION")
VCDB_DEFINE(VcDbRotatedDimension, VcDbDimension, "DIMENSION")
VCDB_DEFINE(VcDb2LineAngularDimension, VcDbDimension, "DIMENSION")
VCDB_DEFINE(VcDb3PointAngularDimension, VcDbDimension, "DIMENSION")
VCDB_DEFINE(VcDbRadialDimension, VcDbDimension, "DIMENSION")
VCDB_DEFINE(VcDbDiametricDimension, VcDbDimension, "DIMENSION")
VCDB_DEFINE(VcDbOrdinateDimension, VcDbDimension, "DIMENSION")
VCDB_DEFINE(VcDbArcDimension, VcDbDimension, "ARC_DIMENSION")
VCDB_DEFINE(VcDbRadialDimensionLarge, VcDbDimension, "LARGE_RADIAL_DIMENSION")

namespace {

void moveAll(const VcGeMatrix3d& m, std::initializer_list<VcGePoint3d*> points)
{
    for (VcGePoint3d* p : points)
        *p = m * *p;
}

void moveAngle(const VcGeMatrix3d& m, const VcGeVector3d& normal, double& angle)
{
    const auto move = planeMove(m, normal);
    const double turned = move ? move->angle(angle) : angle;
    angle = turned == angle ? turned : turnOf(turned);
}

// 0 means that extension lines are square to the dimension line.
void moveOblique(const VcGeMatrix3d& m, const VcGeVector3d& normal, double& angle)
{
    if (angle != 0)
        moveAngle(m, normal, angle);
}

// Where a radius or diameter draws its arc on: the format keeps it in extended data.
constexpr const char* kArcExtension = "ACAD_DSTYLE_DIMRADIAL_EXTENSION";
constexpr int kExtensionStart = 388, kExtensionEnd = 390;

}

// Aligned

Vcad::ErrorStatus VcDbAlignedDimension::setOblique(double a) { return change(m_oblique, a, isFinite(a)); }

void VcDbAlignedDimension::movePoints(const VcGeMatrix3d& m)
{
    moveAll(m, {&m_xLine1, &m_xLine2});
    moveOblique(m, normal(), m_oblique);
}

void VcDbAlignedDimension::fields(FieldVisitor& v)
{
    VcDbDimension::fields(v);
    v.subclass("AcDbAlignedDimension");
    v.point(13, m_xLine1);
    v.point(14, m_xLine2);
    v.optionalAngle(52, m_oblique, 0.0);
}

// Rotated

Vcad::ErrorStatus VcDbRotatedDimension::setRotation(double a) { return change(m_rotation, a, isFinite(a)); }
Vcad::ErrorStatus VcDbRotatedDimension::setOblique(double a) { return change(m_oblique, a, isFinite(a)); }

void VcDbRotatedDimension::movePoints(const VcGeMatrix3d& m)
{
    moveAll(m, {&m_xLine1, &m_xLine2});
    moveAngle(m, normal(), m_rotation);
    moveOblique(m, normal(), m_oblique);
}

void VcDbRotatedDimension::fields(FieldVisitor& v)
{
    VcDbDimension::fields(v);
    v.subclass("AcDbAlignedDimension");
    v.point(13, m_xLine1);
    v.point(14, m_xLine2);
    if (v.isReading() || !m_rotationLast)
        v.optionalAngle(50, m_rotation, 0.0);
    v.optionalAngle(52, m_oblique, 0.0);
    v.subclass("AcDbRotatedDimension");
    if (v.isReading() ? v.peek() == 50 : m_rotationLast) {
        v.angle(50, m_rotation);
        m_rotationLast = true;
    }
}

// Angular

VcGePoint3d VcDb2LineAngularDimension::arcPoint() const { return vk::geom::toWorld(m_arc, normal()); }

Vcad::ErrorStatus VcDb2LineAngularDimension::setArcPoint(const VcGePoint3d& p)
{
    return setPoint(m_arc, vk::geom::fromWorld(p, normal()));
}

void VcDb2LineAngularDimension::movePoints(const VcGeMatrix3d& m)
{
    moveAll(m, {&m_line1Start, &m_line1End, &m_line2Start});
    if (const auto move = planeMove(m, normal()))
        m_arc = (*move)(m_arc);
}

void VcDb2LineAngularDimension::fields(FieldVisitor& v)
{
    VcDbDimension::fields(v);
    v.subclass("AcDb2LineAngularDimension");
    v.point(13, m_line1Start);
    v.point(14, m_line1End);
    v.point(15, m_line2Start);
    v.point(16, m_arc);
}

void VcDb3PointAngularDimension::movePoints(const VcGeMatrix3d& m) { moveAll(m, {&m_xLine1, &m_xLine2, &m_center}); }

void VcDb3PointAngularDimension::fields(FieldVisitor& v)
{
    VcDbDimension::fields(v);
    v.subclass("AcDb3PointAngularDimension");
    v.point(13, m_xLine1);
    v.point(14, m_xLine2);
    v.point(15, m_center);
}

void VcDbArcDimension::movePoints(const VcGeMatrix3d& m)
{
    moveAll(m, {&m_xLine1, &m_xLine2, &m_center, &m_leader1, &m_leader2});
}

// The parameters are radians in files too.
void VcDbArcDimension::fields(FieldVisitor& v)
{
    VcDbDimension::fields(v);
    v.subclass("AcDbArcDimension");
    v.point(13, m_xLine1);
    v.point(14, m_xLine2);
    v.point(15, m_center);
    v.number(70, m_partial);
    v.real(40, m_startParam);
    v.real(41, m_endParam);
    v.number(71, m_hasLeader);
    v.point(16, m_leader1);
    v.point(17, m_leader2);
}

// Radius and diameter

Vcad::ErrorStatus VcDbRadialDimension::setLeaderLength(double l) { return change(m_leaderLength, l, isFinite(l)); }
double VcDbRadialDimension::extArcStartAngle() const { return xdataNumber(*this, kArcExtension, kExtensionStart); }
double VcDbRadialDimension::extArcEndAngle() const { return xdataNumber(*this, kArcExtension, kExtensionEnd); }
void VcDbRadialDimension::movePoints(const VcGeMatrix3d& m) { moveAll(m, {&m_chord}); }

void VcDbRadialDimension::fields(FieldVisitor& v)
{
    VcDbDimension::fields(v);
    v.subclass("AcDbRadialDimension");
    v.point(15, m_chord);
    v.real(40, m_leaderLength);
}

Vcad::ErrorStatus VcDbDiametricDimension::setLeaderLength(double l) { return change(m_leaderLength, l, isFinite(l)); }
double VcDbDiametricDimension::extArcStartAngle() const { return xdataNumber(*this, kArcExtension, kExtensionStart); }
double VcDbDiametricDimension::extArcEndAngle() const { return xdataNumber(*this, kArcExtension, kExtensionEnd); }
void VcDbDiametricDimension::movePoints(const VcGeMatrix3d& m) { moveAll(m, {&m_chord}); }

void VcDbDiametricDimension::fields(FieldVisitor& v)
{
    VcDbDimension::fields(v);
    v.subclass("AcDbDiametricDimension");
    v.point(15, m_chord);
    v.real(40, m_leaderLength);
}

Vcad::ErrorStatus VcDbRadialDimensionLarge::setJogAngle(double a) { return change(m_jogAngle, a, isFinite(a)); }
double VcDbRadialDimensionLarge::extArcStartAngle() const { return xdataNumber(*this, kArcExtension, kExtensionStart); }
double VcDbRadialDimensionLarge::extArcEndAngle() const { return xdataNumber(*this, kArcExtension, kExtensionEnd); }
void VcDbRadialDimensionLarge::movePoints(const VcGeMatrix3d& m) { moveAll(m, {&m_overrideCenter, &m_jog, &m_chord}); }

void VcDbRadialDimensionLarge::fields(FieldVisitor& v)
{
    VcDbDimension::fields(v);
    v.subclass("AcDbRadialDimensionLarge");
    v.point(13, m_overrideCenter);
    v.point(14, m_jog);
    v.point(15, m_chord);
    v.real(40, m_jogAngle);
}

// Ordinate

void VcDbOrdinateDimension::useXAxis() { change(m_flags, std::int16_t(m_flags | 64), true); }
void VcDbOrdinateDimension::useYAxis() { change(m_flags, std::int16_t(m_flags & ~64), true); }

// The axes turn along: they are those of the coordinate system that it was made in.
void VcDbOrdinateDimension::movePoints(const VcGeMatrix3d& m)
{
    moveAll(m, {&m_defining, &m_leaderEnd});
    if (const auto move = planeMove(m, normal()))
        if (const double angle = move->angle(-m_horizontal); angle != -m_horizontal)
            m_horizontal = turnOf(-angle);
}

void VcDbOrdinateDimension::fields(FieldVisitor& v)
{
    VcDbDimension::fields(v);
    v.subclass("AcDbOrdinateDimension");
    v.point(13, m_defining);
    v.point(14, m_leaderEnd);
}
