// Vectors and points of the sdk.
#include "vcge.h"

#include "host/geom/arbitrary_axis.h"

#include <numbers>

using vk::geom::arbitraryXAxis;

namespace {

// Sines and cosines of quarter turns are exact, so that turned drawings keep their right angles.
struct SinCos {
    explicit SinCos(double angle) : sine(std::sin(angle)), cosine(std::cos(angle))
    {
        const double quarters = angle / (std::numbers::pi / 2);
        if (std::fabs(quarters) > 1e6 || std::fabs(quarters - std::round(quarters)) > 1e-15 * std::fabs(quarters))
            return;
        sine = std::round(sine);
        cosine = std::round(cosine);
    }
    double sine, cosine;
};

bool within(double a, double b, double tol) { return std::fabs(a - b) <= tol; }

}  // namespace

double VcGeVector2d::angleTo(const VcGeVector2d& v) const
{
    return std::atan2(std::fabs(crossProduct(v)), dotProduct(v));
}

VcGeVector2d& VcGeVector2d::rotateBy(double angle)
{
    const SinCos t(angle);
    return *this = {x * t.cosine - y * t.sine, x * t.sine + y * t.cosine};
}

VcGeVector2d& VcGeVector2d::transformBy(const VcGeMatrix2d& m) { return *this = m * *this; }

bool VcGeVector2d::isParallelTo(const VcGeVector2d& v, const VcGeTol& tol) const
{
    const double scale = length() * v.length();
    return scale > 0 && std::fabs(crossProduct(v)) <= tol.equalVector * scale;
}

bool VcGeVector2d::isEqualTo(const VcGeVector2d& v, const VcGeTol& tol) const
{
    return (*this - v).length() <= tol.equalVector;
}

VcGePoint2d& VcGePoint2d::rotateBy(double angle, const VcGePoint2d& about)
{
    VcGeVector2d arm = *this - about;
    return *this = about + arm.rotateBy(angle);
}

VcGePoint2d& VcGePoint2d::transformBy(const VcGeMatrix2d& m) { return *this = m * *this; }

bool VcGePoint2d::isEqualTo(const VcGePoint2d& p, const VcGeTol& tol) const { return distanceTo(p) <= tol.equalPoint; }

double VcGeVector3d::angleTo(const VcGeVector3d& v) const
{
    return std::atan2(crossProduct(v).length(), dotProduct(v));
}

double VcGeVector3d::angleTo(const VcGeVector3d& v, const VcGeVector3d& ref) const
{
    const double angle = angleTo(v);
    return crossProduct(v).dotProduct(ref) < 0 ? 2 * std::numbers::pi - angle : angle;
}

VcGeVector3d VcGeVector3d::perpVector() const { return arbitraryXAxis(*this); }

bool VcGeVector3d::isParallelTo(const VcGeVector3d& v, const VcGeTol& tol) const
{
    const double scale = length() * v.length();
    return scale > 0 && crossProduct(v).length() <= tol.equalVector * scale;
}

bool VcGeVector3d::isCodirectionalTo(const VcGeVector3d& v, const VcGeTol& tol) const
{
    return isParallelTo(v, tol) && dotProduct(v) > 0;
}

bool VcGeVector3d::isPerpendicularTo(const VcGeVector3d& v, const VcGeTol& tol) const
{
    const double scale = length() * v.length();
    return scale > 0 && std::fabs(dotProduct(v)) <= tol.equalVector * scale;
}

VcGeVector3d& VcGeVector3d::rotateBy(double angle, const VcGeVector3d& axis)
{
    const SinCos t(angle);
    const VcGeVector3d a = axis.normal();
    return *this = *this * t.cosine + a.crossProduct(*this) * t.sine + a * (a.dotProduct(*this) * (1 - t.cosine));
}

VcGeVector3d& VcGeVector3d::mirror(const VcGeVector3d& planeNormal)
{
    const VcGeVector3d n = planeNormal.normal();
    return *this = *this - n * (2 * dotProduct(n));
}

VcGeVector3d VcGeVector3d::orthoProject(const VcGeVector3d& planeNormal) const
{
    const VcGeVector3d n = planeNormal.normal();
    return *this - n * dotProduct(n);
}

VcGeVector2d VcGeVector3d::convert2d(const VcGePlane& plane) const
{
    return plane.paramOf(plane.pointOnPlane() + *this).asVector();
}

bool VcGeVector3d::isEqualTo(const VcGeVector3d& v, const VcGeTol& tol) const
{
    return (*this - v).length() <= tol.equalVector;
}

VcGeVector3d& VcGeVector3d::transformBy(const VcGeMatrix3d& m) { return *this = m * *this; }

VcGePoint3d& VcGePoint3d::transformBy(const VcGeMatrix3d& m) { return *this = m * *this; }

VcGePoint3d& VcGePoint3d::rotateBy(double angle, const VcGeVector3d& axis, const VcGePoint3d& about)
{
    VcGeVector3d arm = *this - about;
    return *this = about + arm.rotateBy(angle, axis);
}

VcGePoint3d& VcGePoint3d::scaleBy(double scale, const VcGePoint3d& about)
{
    return *this = about + (*this - about) * scale;
}

VcGePoint3d& VcGePoint3d::mirror(const VcGePlane& plane)
{
    return *this = *this - plane.normal() * (2 * plane.signedDistanceTo(*this));
}

VcGePoint3d VcGePoint3d::orthoProject(const VcGePlane& plane) const { return plane.closestPointTo(*this); }

VcGePoint3d VcGePoint3d::project(const VcGePlane& plane, const VcGeVector3d& direction) const
{
    const double along = direction.dotProduct(plane.normal());
    return along == 0 ? *this : *this - direction * (plane.signedDistanceTo(*this) / along);
}

VcGePoint2d VcGePoint3d::convert2d(const VcGePlane& plane) const { return plane.paramOf(*this); }

bool VcGePoint3d::isEqualTo(const VcGePoint3d& p, const VcGeTol& tol) const { return distanceTo(p) <= tol.equalPoint; }

bool VcGeScale3d::isEqualTo(const VcGeScale3d& s, const VcGeTol& tol) const
{
    return within(sx, s.sx, tol.equalVector) && within(sy, s.sy, tol.equalVector) && within(sz, s.sz, tol.equalVector);
}
