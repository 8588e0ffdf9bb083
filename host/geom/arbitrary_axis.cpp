#include "host/geom/arbitrary_axis.h"

#include <cmath>
#include <numbers>

namespace vk::geom {

static VcGeVector3d unitNormal(const VcGeVector3d& normal)
{
    const double longest = std::fmax(std::fabs(normal.x), std::fmax(std::fabs(normal.y), std::fabs(normal.z)));
    return longest > 0 && std::isfinite(longest) ? (normal / longest).normal() : VcGeVector3d::zAxis();
}

VcGeVector3d arbitraryXAxis(const VcGeVector3d& normal)
{
    constexpr double kNearZ = 1.0 / 64;
    if (normal == VcGeVector3d::zAxis())
        return VcGeVector3d::xAxis();
    const VcGeVector3d n = unitNormal(normal);
    const bool nearZ = std::fabs(n.x) < kNearZ && std::fabs(n.y) < kNearZ;
    return (nearZ ? VcGeVector3d::yAxis() : VcGeVector3d::zAxis()).crossProduct(n).normal();
}

Frame arbitraryFrame(const VcGeVector3d& normal, const VcGePoint3d& origin)
{
    if (normal == VcGeVector3d::zAxis())
        return {origin};
    const VcGeVector3d z = unitNormal(normal);
    const VcGeVector3d x = arbitraryXAxis(z);
    return {origin, x, z.crossProduct(x).normal(), z};
}

VcGePoint3d toWorld(const VcGePoint3d& p, const VcGeVector3d& normal)
{
    return normal == VcGeVector3d::zAxis() ? p : arbitraryFrame(normal).toWorld(p);
}

VcGePoint3d fromWorld(const VcGePoint3d& p, const VcGeVector3d& normal)
{
    return normal == VcGeVector3d::zAxis() ? p : arbitraryFrame(normal).fromWorld(p);
}

double angleInPlane(const VcGeVector3d& direction, const VcGeVector3d& normal)
{
    const Frame frame = arbitraryFrame(normal);
    const double angle = std::atan2(direction.dotProduct(frame.y), direction.dotProduct(frame.x));
    return angle < 0 ? angle + 2 * std::numbers::pi : angle;
}

}  // namespace vk::geom
