// Circles and arcs: centre in their own coordinates, angles anticlockwise about the normal.
#include "host/db/ent_util.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_curves.h"

VCDB_DEFINE(VcDbCircle, VcDbCurve, "CIRCLE")
VCDB_DEFINE(VcDbArc, VcDbCurve, "ARC")

using vk::geom::fromWorld;
using vk::geom::toWorld;

namespace {

// In the plan the furthest points stand at quarter turns.
void addFlatArc(VcDbExtents& extents, const VcGePoint3d& center, double radius, double start, double end)
{
    static const VcGeVector3d kQuarters[] = {{1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}};
    const double sweep = end - start;
    for (int i = 0; i < 4; ++i)
        if (sweep >= kTwoPi || turnOf(i * kPi / 2 - start) <= sweep)
            extents.addPoint(center + kQuarters[i] * radius);
    if (sweep >= kTwoPi)
        return;
    for (const double t : {start, end})
        extents.addPoint(center + VcGeVector3d(std::cos(t), std::sin(t), 0) * radius);
}

// The part of a circle from start to end, with its thickness.
void addArc(VcDbExtents& extents, const VcGePoint3d& ownCenter, double radius, double start, double end,
            const VcDbExtrusion& extrusion)
{
    const vk::geom::Frame frame = vk::geom::arbitraryFrame(extrusion.normal());
    VcDbExtents flat;
    if (frame.z == VcGeVector3d::zAxis())
        addFlatArc(flat, ownCenter, radius, start, end);
    else
        addEllipse(flat, frame.toWorld(ownCenter), frame.x * radius, frame.y * radius, start, end);
    extents = flat;
    addExtruded(extents, flat.minPoint(), extrusion);
    addExtruded(extents, flat.maxPoint(), extrusion);
}

// A circle's groups, which an arc has too.
void circleFields(FieldVisitor& v, VcDbExtrusion& extrusion, VcGePoint3d& center, double& radius)
{
    v.subclass("AcDbCircle");
    extrusion.thicknessField(v);
    v.point(10, center);
    v.real(40, radius);
    extrusion.normalField(v);
}

Vcad::ErrorStatus whyNotRound(const std::optional<PlaneMove>& move, const VcDbExtrusion& extrusion)
{
    if (!move)
        return Vcad::eInvalidInput;
    return move->even && move->canMove(extrusion) ? Vcad::eOk : Vcad::eCannotScaleNonUniformly;
}

}

// Circle

VcDbCircle::VcDbCircle(const VcGePoint3d& center, const VcGeVector3d& normal, double radius)
    : m_center(fromWorld(center, normal)), m_radius(radius)
{
    m_extrusion.setNormal(normal.normal());
}

VcGePoint3d VcDbCircle::center() const { return toWorld(m_center, normal()); }

Vcad::ErrorStatus VcDbCircle::setCenter(const VcGePoint3d& center)
{
    return setMember(*this, m_center, fromWorld(center, normal()), isFinite(center));
}

Vcad::ErrorStatus VcDbCircle::setRadius(double radius)
{
    return setMember(*this, m_radius, radius, isPositive(radius));
}
Vcad::ErrorStatus VcDbCircle::setThickness(double t) { return setThicknessOf(*this, m_extrusion, t); }

Vcad::ErrorStatus VcDbCircle::setNormal(const VcGeVector3d& n)
{
    const VcGePoint3d stays = center();
    const Vcad::ErrorStatus status = setNormalOf(*this, m_extrusion, n);
    if (!status)
        m_center = fromWorld(stays, normal());
    return status;
}

Vcad::ErrorStatus VcDbCircle::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, normal());
    if (const Vcad::ErrorStatus refusal = whyNotRound(move, m_extrusion))
        return refusal;
    assertWriteEnabled();
    m_center = (*move)(m_center);
    m_radius *= move->scale;
    move->move(m_extrusion);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbCircle::getGeomExtents(VcDbExtents& extents) const
{
    addArc(extents, m_center, m_radius, 0, kTwoPi, m_extrusion);
    return Vcad::eOk;
}

void VcDbCircle::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    circleFields(v, m_extrusion, m_center, m_radius);
}

// Arc

VcDbArc::VcDbArc(const VcGePoint3d& center, const VcGeVector3d& normal, double radius, double startAngle,
                 double endAngle)
    : m_center(fromWorld(center, normal)), m_radius(radius), m_startAngle(startAngle), m_endAngle(endAngle)
{
    m_extrusion.setNormal(normal.normal());
}

VcGePoint3d VcDbArc::center() const { return toWorld(m_center, normal()); }

Vcad::ErrorStatus VcDbArc::setCenter(const VcGePoint3d& center)
{
    return setMember(*this, m_center, fromWorld(center, normal()), isFinite(center));
}

Vcad::ErrorStatus VcDbArc::setRadius(double radius) { return setMember(*this, m_radius, radius, isPositive(radius)); }
Vcad::ErrorStatus VcDbArc::setStartAngle(double a) { return setMember(*this, m_startAngle, a, isFinite(a)); }
Vcad::ErrorStatus VcDbArc::setEndAngle(double a) { return setMember(*this, m_endAngle, a, isFinite(a)); }
Vcad::ErrorStatus VcDbArc::setThickness(double t) { return setThicknessOf(*this, m_extrusion, t); }

Vcad::ErrorStatus VcDbArc::setNormal(const VcGeVector3d& n)
{
    const VcGePoint3d stays = center();
    const Vcad::ErrorStatus status = setNormalOf(*this, m_extrusion, n);
    if (!status)
        m_center = fromWorld(stays, normal());
    return status;
}

double VcDbArc::totalAngle() const
{
    const double turn = turnOf(m_endAngle - m_startAngle);
    return turn > 0 ? turn : kTwoPi;
}

VcGePoint3d VcDbArc::pointAt(double angle) const
{
    const VcGeVector3d arm(m_radius * std::cos(angle), m_radius * std::sin(angle), 0);
    return toWorld(m_center + arm, normal());
}

Vcad::ErrorStatus VcDbArc::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, normal());
    if (const Vcad::ErrorStatus refusal = whyNotRound(move, m_extrusion))
        return refusal;
    assertWriteEnabled();
    m_center = (*move)(m_center);
    m_radius *= move->scale;
    const double start = move->angle(m_startAngle), end = move->angle(m_endAngle);
    m_startAngle = turnOf(move->mirrored ? end : start);
    m_endAngle = turnOf(move->mirrored ? start : end);
    move->move(m_extrusion);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbArc::getGeomExtents(VcDbExtents& extents) const
{
    addArc(extents, m_center, m_radius, m_startAngle, m_startAngle + totalAngle(), m_extrusion);
    return Vcad::eOk;
}

void VcDbArc::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    circleFields(v, m_extrusion, m_center, m_radius);
    v.subclass("AcDbArc");
    v.angle(50, m_startAngle);
    v.angle(51, m_endAngle);
}
