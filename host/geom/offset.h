// Curves at an even distance.
#pragma once

#include "host/geom/curve.h"

namespace vk::geom {

// What fills the gap where a corner opens: its sides go on until they meet (an arc where they do not), an arc about the
// corner, a straight cut.
enum class GapFill { Extend = 0, Fillet = 1, Chamfer = 2 };

enum class OffsetFailure {
    None,
    Vanished,   // nothing stays at that distance: the circle is too small, the outline closes up
    NotPlanar,  // the curve does not lie in a plane, or a line runs along the normal
    Invalid,
};

struct OffsetResult {
    std::vector<Curve> curves;
    OffsetFailure failure = OffsetFailure::None;
};

// Positive distances lie to the right of the direction, seen from the tip of the curve's own normal, so that circles
// and anticlockwise outlines grow. Lines, and splines and polylines in space, take the side of `up` for their normal.
// Circles, arcs, lines and polylines stay what they are, but for a polyline's arcs that rise no higher than 1e-8 of its
// size, which become straight; ellipses and splines become splines within 1e-8 of their size. What comes closer to the curve than the distance is trimmed away, so that there may be several parts.
VKHOST_API OffsetResult offset(const Curve& curve, double distance, GapFill gap = GapFill::Extend,
                               const Vector3& up = {0, 0, 1});

// The distance with its sign at which an offset passes through a point, in the curve's plane.
VKHOST_API std::optional<double> offsetDistanceThrough(const Curve& curve, const Point3& point,
                                                       const Vector3& up = {0, 0, 1});

}  // namespace vk::geom
