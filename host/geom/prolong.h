// Curves with other ends: cut back, or going on beyond where they ended.
#pragma once

#include "host/geom/curve.h"

namespace vk::geom {

// The curve between two parameters, which may lie beyond its ends: lines go straight on, arcs round until they are whole,
// open polylines along their first and last segment. Splines and closed curves have nothing beyond their ends and are held
// to them. Nothing when nothing is left.
VKHOST_API std::optional<Curve> betweenEnds(const Curve& curve, double from, double to);

// Whether the curve goes on beyond an end.
VKHOST_API bool canProlong(const Curve& curve, bool atStart);

// The line or circle that an end would follow if it went on; nothing where nothing lies beyond it.
VKHOST_API std::optional<Curve> pathBeyond(const Curve& curve, bool atStart);

// Of the two ends the one that a point is nearer to, along the curve; an endless side is never it.
VKHOST_API bool isNearerStart(const Curve& curve, double param);

// The parameter at a length, measured from the start, that may be negative or more than the whole.
VKHOST_API std::optional<double> paramAtLengthBeyond(const Curve& curve, double along);

}  // namespace vk::geom
