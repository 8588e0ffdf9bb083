// Ellipses: centre and axes in the world, ends as parameters.
#include "host/db/ent_util.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_curves.h"

VCDB_DEFINE(VcDbEllipse, VcDbCurve, "ELLIPSE")

namespace {

constexpr double kSmallestRatio = 1e-6;

// The principal axes of the ellipse that two conjugate half diameters span, and the parameter at which its major axis
// stands: the squared distance a^2 cos^2 + b^2 sin^2 + 2ab sin cos is largest there.
struct Axes {
    VcGeVector3d major, minor;
    double shift;
};

Axes principalAxes(const VcGeVector3d& a, const VcGeVector3d& b)
{
    // Perpendicular already: what stands must not be turned by rounding.
    const double skew = a.dotProduct(b);
    const double limit = 1e-14 * a.length() * b.length();
    if (std::fabs(skew) <= limit && a.lengthSqrd() >= b.lengthSqrd())
        return {a, b, 0};
    const double t = 0.5 * std::atan2(2 * skew, a.lengthSqrd() - b.lengthSqrd());
    return {a * std::cos(t) + b * std::sin(t), b * std::cos(t) - a * std::sin(t), t};
}

}

VcDbEllipse::VcDbEllipse(const VcGePoint3d& center, const VcGeVector3d& normal, const VcGeVector3d& majorAxis,
                         double radiusRatio, double startParam, double endParam)
    : m_center(center), m_major(majorAxis), m_normal(normal.normal()), m_ratio(radiusRatio), m_startParam(startParam),
      m_endParam(endParam)
{
}

Vcad::ErrorStatus VcDbEllipse::setCenter(const VcGePoint3d& center)
{
    return setMember(*this, m_center, center, isFinite(center));
}
VcGeVector3d VcDbEllipse::minorAxis() const { return m_normal.crossProduct(m_major) * m_ratio; }

Vcad::ErrorStatus VcDbEllipse::setRadiusRatio(double ratio)
{
    return setMember(*this, m_ratio, ratio, ratio >= kSmallestRatio && ratio <= 1);
}

Vcad::ErrorStatus VcDbEllipse::setStartParam(double p) { return setMember(*this, m_startParam, p, isFinite(p)); }
Vcad::ErrorStatus VcDbEllipse::setEndParam(double p) { return setMember(*this, m_endParam, p, isFinite(p)); }

static double angleOfParam(double param, double ratio)
{
    // Whole turns stay; within one the angle and the parameter meet on the axes.
    const double angle = std::atan2(ratio * std::sin(param), std::cos(param));
    return angle + kTwoPi * std::round((param - angle) / kTwoPi);
}

double VcDbEllipse::startAngle() const { return angleOfParam(m_startParam, m_ratio); }
double VcDbEllipse::endAngle() const { return angleOfParam(m_endParam, m_ratio); }

bool VcDbEllipse::isClosed() const { return std::fabs(std::fabs(m_endParam - m_startParam) - kTwoPi) < 1e-9; }

VcGePoint3d VcDbEllipse::pointAt(double param) const
{
    return m_center + m_major * std::cos(param) + minorAxis() * std::sin(param);
}

Vcad::ErrorStatus VcDbEllipse::set(const VcGePoint3d& center, const VcGeVector3d& normal, const VcGeVector3d& majorAxis,
                                   double radiusRatio, double startParam, double endParam)
{
    if (!isFinite(center) || !isDirection(normal) || !isDirection(majorAxis) || !isFinite(startParam) ||
        !isFinite(endParam))
        return Vcad::eOutOfRange;
    if (!(radiusRatio >= kSmallestRatio && radiusRatio <= 1))
        return Vcad::eOutOfRange;
    if (std::fabs(normal.normal().dotProduct(majorAxis.normal())) > 1e-6)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_center = center;
    m_normal = normal.normal();
    m_major = majorAxis;
    m_ratio = radiusRatio;
    m_startParam = startParam;
    m_endParam = endParam;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbEllipse::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, m_normal);
    if (!move)
        return Vcad::eInvalidInput;
    const bool whole = isClosed();
    const Axes axes = principalAxes(m * m_major, m * minorAxis());
    const double ratio = axes.minor.length() / axes.major.length();
    if (!(ratio >= kSmallestRatio))
        return Vcad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    m_center = m * m_center;
    m_normal = move->normal;
    m_major = axes.major;
    m_ratio = std::min(ratio, 1.0);
    if (whole && axes.shift == 0)
        return Vcad::eOk;
    const double start = m_startParam - axes.shift, end = m_endParam - axes.shift;
    m_startParam = whole ? 0 : move->mirrored ? -end : start;
    m_endParam = whole ? kTwoPi : move->mirrored ? -start : end;
    if (!whole && (axes.shift != 0 || move->mirrored)) {
        const double sweep = m_endParam - m_startParam;
        m_startParam = turnOf(m_startParam);
        m_endParam = m_startParam + sweep;
    }
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbEllipse::setFromCircle(const VcDbCircle& circle, const VcGeMatrix3d& m)
{
    const vk::geom::Frame frame = vk::geom::arbitraryFrame(circle.normal());
    VcDbEllipse round(circle.center(), circle.normal(), frame.x * circle.radius(), 1);
    if (const Vcad::ErrorStatus status = round.transformBy(m))
        return status;
    return set(round.m_center, round.m_normal, round.m_major, round.m_ratio, round.m_startParam, round.m_endParam);
}

Vcad::ErrorStatus VcDbEllipse::setFromArc(const VcDbArc& arc, const VcGeMatrix3d& m)
{
    const vk::geom::Frame frame = vk::geom::arbitraryFrame(arc.normal());
    VcDbEllipse round(arc.center(), arc.normal(), frame.x * arc.radius(), 1, arc.startAngle(),
                      arc.startAngle() + arc.totalAngle());
    if (const Vcad::ErrorStatus status = round.transformBy(m))
        return status;
    return set(round.m_center, round.m_normal, round.m_major, round.m_ratio, round.m_startParam, round.m_endParam);
}

Vcad::ErrorStatus VcDbEllipse::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    double sweep = m_endParam - m_startParam;
    if (sweep <= 0)
        sweep = kTwoPi - turnOf(-sweep);
    addEllipse(extents, m_center, m_major, minorAxis(), m_startParam, m_startParam + std::min(sweep, kTwoPi));
    return Vcad::eOk;
}

void VcDbEllipse::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbEllipse");
    v.point(10, m_center);
    v.vector(11, m_major);
    v.optionalVector(210, m_normal, VcGeVector3d::zAxis());
    v.real(40, m_ratio);
    v.real(41, m_startParam);
    v.real(42, m_endParam);
}
