// From axes back to circles, arcs and ellipses.
#pragma once

#include "host/geom/piece.h"

namespace vk::geom {

// center + u * cos t + v * sin t over the range, u and v in any directions. Becomes a circle or an arc where it is one,
// a segment where u and v are parallel. The normal lies on the side of `up`; against it the curve runs backwards.
Curve curveOfConic(const Point3& center, const Vector3& u, const Vector3& v, Interval range, const Vector3& up);

}  // namespace vk::geom
