// The axes that a drawing leaves out: a planar entity keeps only its normal, and the X axis of its own coordinate
// system follows from it. Every reader of a drawing must agree on this rule, the 1/64 included.
#pragma once

#include "host/base/api.h"
#include "vcge.h"

namespace vk::geom {

// Orthonormal and right-handed.
struct Frame {
    VcGePoint3d origin;
    VcGeVector3d x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};

    VcGePoint3d toWorld(const VcGePoint3d& p) const { return origin + x * p.x + y * p.y + z * p.z; }
    VcGeVector3d toWorld(const VcGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    VcGePoint3d fromWorld(const VcGePoint3d& p) const
    {
        const VcGeVector3d v = p - origin;
        return {v.dotProduct(x), v.dotProduct(y), v.dotProduct(z)};
    }
    VcGeVector3d fromWorld(const VcGeVector3d& v) const { return {v.dotProduct(x), v.dotProduct(y), v.dotProduct(z)}; }
};

// A zero normal counts as the world's Z axis.
VKHOST_API VcGeVector3d arbitraryXAxis(const VcGeVector3d& normal);
VKHOST_API Frame arbitraryFrame(const VcGeVector3d& normal, const VcGePoint3d& origin = {});

// Between the world and the coordinate system of an entity with the given normal, whose origin is the world's.
VKHOST_API VcGePoint3d toWorld(const VcGePoint3d& p, const VcGeVector3d& normal);
VKHOST_API VcGePoint3d fromWorld(const VcGePoint3d& p, const VcGeVector3d& normal);

// The turn about an axis that a direction makes with the axis' arbitrary X axis, 0 to 2 pi.
VKHOST_API double angleInPlane(const VcGeVector3d& direction, const VcGeVector3d& normal);

}  // namespace vk::geom
