// Windows, crossing outlines and fences laid over a view: which curves they take.
//
// Corners are in the view's own plane. `toView` turns the world so that the view looks down the Z axis; what lies in
// front of or behind the plane counts as seen on it. The boundary belongs to the region. Curves count as they run,
// without their widths.
#pragma once

#include "host/geom/curve.h"

namespace vk::geom {

// An outline may cross itself: what is inside changes with each side that is passed.
class VKHOST_API Region {
public:
    Region(std::vector<Point2> corners, const VcGeMatrix3d& toView = {});
    static Region window(const Point2& corner, const Point2& opposite, const VcGeMatrix3d& toView = {});

    bool contains(const Point3& p) const;
    bool contains(const Curve& curve) const;  // wholly
    bool touches(const Curve& curve) const;   // inside or crossing

private:
    bool holds(const Point2& seen, double tolerance) const;
    bool holdsBetweenCuts(const Curve& seen) const;

    std::vector<Point2> m_corners;
    VcGeMatrix3d m_toView;
    Box3d m_box;
    bool m_isWindow = false;
};

// An open line of straight sides takes what it crosses or touches.
VKHOST_API bool fenceTouches(const std::vector<Point2>& fence, const Curve& curve, const VcGeMatrix3d& toView = {});

// The curve as seen on the view's plane.
VKHOST_API Curve flattened(const Curve& curve, const VcGeMatrix3d& toView);

}  // namespace vk::geom
