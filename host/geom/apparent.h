// Where curves appear to meet when they are looked at along a direction.
#pragma once

#include "host/geom/intersect.h"

namespace vk::geom {

// Points and parameters are those of the curves themselves, each point on the first curve. Parallel projection; curves that
// lie in one plane across the direction are met as they stand.
VKHOST_API std::vector<Crossing> apparentCrossings(const Curve& a, const Curve& b, const Vector3& direction,
                                                   Extend extend = Extend::Neither);

// The parameter of the place on a curve that is seen at a point; the nearest one where the curve runs on beyond its ends.
VKHOST_API std::optional<double> paramSeenAt(const Curve& curve, const Point3& seen, const Vector3& direction);

}  // namespace vk::geom
