// Planes, lines and line segments of the sdk.
#include "vcge.h"

#include "host/geom/arbitrary_axis.h"

#include <algorithm>

using vk::geom::arbitraryFrame;

VcGeEntity3d::~VcGeEntity3d() = default;

VcGePlane& VcGePlane::set(const VcGePoint3d& origin, const VcGeVector3d& normal)
{
    const auto frame = arbitraryFrame(normal, origin);
    m_origin = origin;
    m_u = frame.x;
    m_v = frame.y;
    m_normal = frame.z;
    return *this;
}

VcGePlane& VcGePlane::set(const VcGePoint3d& origin, const VcGeVector3d& u, const VcGeVector3d& v)
{
    if (u.normal().crossProduct(v.normal()).isZeroLength())
        return set(origin, VcGeVector3d::zAxis());
    m_origin = origin;
    m_u = u;
    m_v = v;
    m_normal = u.normal().crossProduct(v.normal()).normal();
    return *this;
}

VcGePlane& VcGePlane::set(const VcGePoint3d& p, const VcGePoint3d& q, const VcGePoint3d& r)
{
    return set(p, q - p, r - p);
}

VcGePlane& VcGePlane::set(double a, double b, double c, double d)
{
    const VcGeVector3d n(a, b, c);
    const double squared = n.lengthSqrd();
    return set(squared > 0 ? VcGePoint3d() - n * (d / squared) : VcGePoint3d(), n);
}

void VcGePlane::getCoefficients(double& a, double& b, double& c, double& d) const
{
    a = m_normal.x;
    b = m_normal.y;
    c = m_normal.z;
    d = -m_normal.dotProduct(m_origin.asVector());
}

void VcGePlane::get(VcGePoint3d& origin, VcGeVector3d& u, VcGeVector3d& v) const
{
    origin = m_origin;
    u = m_u;
    v = m_v;
}

VcGePlane& VcGePlane::reverseNormal()
{
    m_v = -m_v;
    m_normal = -m_normal;
    return *this;
}

double VcGePlane::signedDistanceTo(const VcGePoint3d& p) const { return (p - m_origin).dotProduct(m_normal); }

VcGePoint3d VcGePlane::closestPointTo(const VcGePoint3d& p) const { return p - m_normal * signedDistanceTo(p); }

VcGePoint2d VcGePlane::paramOf(const VcGePoint3d& p) const
{
    const VcGeVector3d arm = p - m_origin;
    const double whole = m_u.crossProduct(m_v).dotProduct(m_normal);
    return {arm.crossProduct(m_v).dotProduct(m_normal) / whole, m_u.crossProduct(arm).dotProduct(m_normal) / whole};
}

VcGePoint3d VcGePlane::evalPoint(const VcGePoint2d& uv) const { return m_origin + m_u * uv.x + m_v * uv.y; }

bool VcGePlane::intersectWith(const VcGeLinearEnt3d& line, VcGePoint3d& p, const VcGeTol& tol) const
{
    return line.intersectWith(*this, p, tol);
}

bool VcGePlane::intersectWith(const VcGePlane& other, VcGeLine3d& line, const VcGeTol& tol) const
{
    if (isParallelTo(other, tol))
        return false;
    const VcGeVector3d direction = m_normal.crossProduct(other.m_normal).normal();
    const VcGeVector3d inThis = direction.crossProduct(m_normal);
    const double step = -other.signedDistanceTo(m_origin) / inThis.dotProduct(other.m_normal);
    line.set(m_origin + inThis * step, direction);
    return true;
}

bool VcGePlane::isParallelTo(const VcGePlane& other, const VcGeTol& tol) const
{
    return m_normal.isParallelTo(other.m_normal, tol);
}

bool VcGePlane::isPerpendicularTo(const VcGePlane& other, const VcGeTol& tol) const
{
    return m_normal.isPerpendicularTo(other.m_normal, tol);
}

bool VcGePlane::isCoplanarTo(const VcGePlane& other, const VcGeTol& tol) const
{
    return isParallelTo(other, tol) && isOn(other.m_origin, tol);
}

VcGePlane& VcGePlane::transformBy(const VcGeMatrix3d& m) { return set(m * m_origin, m * m_u, m * m_v); }

bool VcGePlane::isOn(const VcGePoint3d& p, const VcGeTol& tol) const { return distanceTo(p) <= tol.equalPoint; }

double VcGeCurve3d::distanceTo(const VcGePoint3d& p, const VcGeTol& tol) const
{
    return p.distanceTo(closestPointTo(p, tol));
}

bool VcGeCurve3d::isOn(const VcGePoint3d& p, const VcGeTol& tol) const { return distanceTo(p, tol) <= tol.equalPoint; }

VcGePoint3d VcGeLinearEnt3d::closestPointTo(const VcGePoint3d& p, const VcGeTol& tol) const
{
    return evalPoint(paramOf(p, tol));
}

double VcGeLinearEnt3d::paramOf(const VcGePoint3d& p, const VcGeTol&) const
{
    const double squared = m_vector.lengthSqrd();
    return squared > 0 ? clamped((p - m_start).dotProduct(m_vector) / squared) : 0;
}

bool VcGeLinearEnt3d::intersectWith(const VcGeLinearEnt3d& other, VcGePoint3d& p, const VcGeTol& tol) const
{
    if (isParallelTo(other, tol))
        return false;
    const VcGeVector3d cross = m_vector.crossProduct(other.m_vector);
    if (cross.lengthSqrd() == 0)
        return false;
    const double t = (other.m_start - m_start).crossProduct(other.m_vector).dotProduct(cross) / cross.lengthSqrd();
    const VcGePoint3d met = evalPoint(t);
    if (!isOn(met, tol) || !other.isOn(met, tol))
        return false;
    p = met;
    return true;
}

bool VcGeLinearEnt3d::intersectWith(const VcGePlane& plane, VcGePoint3d& p, const VcGeTol& tol) const
{
    const VcGeVector3d d = direction();
    const double along = d.dotProduct(plane.normal());
    if (!(std::fabs(along) > tol.equalVector))
        return false;
    const VcGePoint3d met = m_start - d * (plane.signedDistanceTo(m_start) / along);
    if (!isOn(met, tol))
        return false;
    p = met;
    return true;
}

bool VcGeLinearEnt3d::isParallelTo(const VcGeLinearEnt3d& other, const VcGeTol& tol) const
{
    return m_vector.isParallelTo(other.m_vector, tol);
}

bool VcGeLinearEnt3d::isPerpendicularTo(const VcGeLinearEnt3d& other, const VcGeTol& tol) const
{
    return m_vector.isPerpendicularTo(other.m_vector, tol);
}

bool VcGeLinearEnt3d::isColinearTo(const VcGeLinearEnt3d& other, const VcGeTol& tol) const
{
    return isParallelTo(other, tol) && getLine().isOn(other.m_start, tol);
}

VcGeLine3d VcGeLinearEnt3d::getLine() const { return {m_start, m_vector}; }

VcGeLinearEnt3d& VcGeLinearEnt3d::transformBy(const VcGeMatrix3d& m)
{
    m_start = m * m_start;
    m_vector = m * m_vector;
    return *this;
}

VcGeLineSeg3d& VcGeLineSeg3d::transformBy(const VcGeMatrix3d& m) { return *this = {m * m_start, m * m_end}; }

bool VcGeLineSeg3d::hasStartPoint(VcGePoint3d& p) const
{
    p = m_start;
    return true;
}

bool VcGeLineSeg3d::hasEndPoint(VcGePoint3d& p) const
{
    p = m_end;
    return true;
}

double VcGeLineSeg3d::clamped(double param) const { return std::clamp(param, 0.0, 1.0); }
