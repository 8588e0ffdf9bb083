// Circles of a given radius that touch two curves.
#pragma once

#include "host/geom/curve.h"

namespace vk::geom {

struct TangentCircle {
    Point3 center;
    double first = 0, second = 0;  // where the carriers are touched
};

// The whole that a curve is part of: the line, circle or ellipse beyond its ends. Splines and polylines are their own.
VKHOST_API Curve carrierOf(const Curve& curve);

// Touching the carriers, in the plane across `up`. Both curves must lie in it.
VKHOST_API std::vector<TangentCircle> tangentCircles(const Curve& carrierA, const Curve& carrierB, double radius,
                                                     const Vector3& up);

// The one whose contacts lie nearest to two places.
VKHOST_API std::optional<TangentCircle> tangentCircleNear(const Curve& carrierA, const Curve& carrierB, double radius,
                                                          const Vector3& up, const Point3& nearA, const Point3& nearB);

// The centre of the circle through three points; nothing when they lie on a line.
VKHOST_API std::optional<Point3> centerThrough(const Point3& a, const Point3& b, const Point3& c);

}  // namespace vk::geom
