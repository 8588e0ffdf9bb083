// Splines and helices. Knots, weights and points are lists; counts in a file are never trusted.
#include "host/db/curve_of.h"
#include "host/db/ent_util.h"
#include "sdk/vcdb_curves.h"

#include <algorithm>

VCDB_DEFINE(VcDbSpline, VcDbCurve, "SPLINE")
VCDB_DEFINE(VcDbHelix, VcDbSpline, "HELIX")

Vcad::ErrorStatus VcDbSpline::getControlPointAt(int index, VcGePoint3d& point) const
{
    if (index < 0 || index >= numControlPoints())
        return Vcad::eInvalidIndex;
    point = m_controlPoints[std::size_t(index)];
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbSpline::setControlPointAt(int index, const VcGePoint3d& point)
{
    if (index < 0 || index >= numControlPoints())
        return Vcad::eInvalidIndex;
    if (!isFinite(point))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_controlPoints[std::size_t(index)] = point;
    m_fitPoints.clear();
    return Vcad::eOk;
}

double VcDbSpline::weightAt(int index) const
{
    return index >= 0 && std::size_t(index) < m_weights.size() ? m_weights[std::size_t(index)] : 1.0;
}

Vcad::ErrorStatus VcDbSpline::getFitPointAt(int index, VcGePoint3d& point) const
{
    if (index < 0 || index >= numFitPoints())
        return Vcad::eInvalidIndex;
    point = m_fitPoints[std::size_t(index)];
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbSpline::setFitTolerance(double t)
{
    return setMember(*this, m_fitTolerance, t, t >= 0 && isFinite(t));
}

static bool isPlanarSet(const std::vector<VcGePoint3d>& points)
{
    VcGeVector3d normal;
    for (std::size_t i = 2; i < points.size() && normal.lengthSqrd() == 0; ++i)
        normal = (points[1] - points[0]).crossProduct(points[i] - points[0]);
    normal = normal.normal();
    return std::all_of(points.begin(), points.end(), [&](const VcGePoint3d& p) {
        const VcGeVector3d arm = p - points[0];
        return std::fabs(arm.dotProduct(normal)) <= 1e-9 * arm.length();
    });
}

Vcad::ErrorStatus VcDbSpline::setNurbsData(int degree, bool closed, bool periodic,
                                           const std::vector<VcGePoint3d>& points, const std::vector<double>& knots,
                                           const std::vector<double>& weights)
{
    const std::size_t n = points.size();
    if (degree < 1 || degree > 11 || n <= std::size_t(degree) || knots.size() != n + std::size_t(degree) + 1)
        return Vcad::eInvalidInput;
    if (!weights.empty() && weights.size() != n)
        return Vcad::eInvalidInput;
    const bool sound = std::is_sorted(knots.begin(), knots.end()) &&
                       std::all_of(weights.begin(), weights.end(), isPositive) &&
                       std::all_of(points.begin(), points.end(), [](const VcGePoint3d& p) { return isFinite(p); });
    if (!sound || !isFinite(knots.front()) || !isFinite(knots.back()))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_degree = std::int16_t(degree);
    m_controlPoints = points;
    m_knots = knots;
    m_weights = weights;
    m_fitPoints.clear();
    m_startTangent.reset();
    m_endTangent.reset();
    m_flags =
        std::int16_t((closed ? 1 : 0) | (periodic ? 2 : 0) | (weights.empty() ? 0 : 4) | (isPlanarSet(points) ? 8 : 0));
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbSpline::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, m_normal);
    if (!move)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    for (VcGePoint3d& p : m_controlPoints)
        p = m * p;
    for (VcGePoint3d& p : m_fitPoints)
        p = m * p;
    for (VcDbRare<VcGeVector3d>* tangent : {&m_startTangent, &m_endTangent})
        if (tangent->isSet())
            tangent->set(m * **tangent);
    m_normal = move->normal;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbSpline::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    if (const auto curve = curveOf(*this)) {
        const vk::geom::Box3d box = vk::geom::extents(*curve);
        extents = VcDbExtents(box.min, box.max);
        return Vcad::eOk;
    }
    for (const VcGePoint3d& p : m_controlPoints.empty() ? m_fitPoints : m_controlPoints)
        extents.addPoint(p);
    return extentsStatus(extents);
}

namespace {

void tangentField(FieldVisitor& v, int code, VcDbRare<VcGeVector3d>& member)
{
    VcGeVector3d tangent = member.get();
    v.optionalVector(code, tangent, VcGeVector3d());
    if (v.isReading())
        member.set(tangent);
}

void numbers(FieldVisitor& v, int code, std::vector<double>& list)
{
    v.repeated(code, list, [&](double& value) { v.real(code, value); });
}

void points(FieldVisitor& v, int code, std::vector<VcGePoint3d>& list)
{
    v.repeated(code, list, [&](VcGePoint3d& p) { v.point(code, p); });
}

}

void VcDbSpline::splineFields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbSpline");
    // Curves that lie in no plane have no normal, and a plane one says it even when it is the Z axis.
    if (v.isReading() || isPlanar() || m_hasNormal) {
        const VcGeVector3d none(0, 0, 0);
        VcGeVector3d normal = v.isReading() ? none : m_normal;
        v.optionalVector(210, normal, none);
        if (v.isReading() && normal != none) {
            m_normal = normal;
            m_hasNormal = true;
        }
    }
    v.number(70, m_flags);
    v.number(71, m_degree);
    v.count(72, m_knots.size());
    v.count(73, m_controlPoints.size());
    v.count(74, m_fitPoints.size());
    v.optional(42, m_knotTolerance, 1e-7);
    v.optional(43, m_controlTolerance, 1e-7);
    if (v.isReading() || hasFitData())
        v.real(44, m_fitTolerance);
    tangentField(v, 12, m_startTangent);
    tangentField(v, 13, m_endTangent);
    numbers(v, 40, m_knots);
    if (!v.isWriting() || isRational() || !m_weights.empty())
        numbers(v, 41, m_weights);
    points(v, 10, m_controlPoints);
    points(v, 11, m_fitPoints);
}

void VcDbSpline::fields(FieldVisitor& v) { splineFields(v); }

// Helix

Vcad::ErrorStatus VcDbHelix::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, m_axis);
    if (!move)
        return Vcad::eInvalidInput;
    if (!move->even || !move->upright)
        return Vcad::eCannotScaleNonUniformly;
    if (const Vcad::ErrorStatus status = VcDbSpline::transformBy(m))
        return status;
    m_axisPoint = m * m_axisPoint;
    m_startPoint = m * m_startPoint;
    m_axis = move->normal;
    m_radius *= move->scale;
    m_turnHeight *= move->height;
    m_anticlockwise = m_anticlockwise != move->mirrored;
    return Vcad::eOk;
}

void VcDbHelix::fields(FieldVisitor& v)
{
    splineFields(v);
    v.subclass("AcDbHelix");
    v.number(90, m_majorRelease);
    v.number(91, m_maintenanceRelease);
    v.point(10, m_axisPoint);
    v.point(11, m_startPoint);
    v.vector(12, m_axis);
    v.real(40, m_radius);
    v.real(41, m_turns);
    v.real(42, m_turnHeight);
    v.number(290, m_anticlockwise);
    v.number(280, m_constrain);
}
