// Curves that meet end to end, made one.
#pragma once

#include "host/geom/curve.h"

namespace vk::geom {

struct Joined {
    Curve curve;
    std::vector<std::size_t> used;  // of the given ones, the first among them
};

// Joins to the first curve whatever of the others goes with it, as one curve: lines along one line and arcs of one circle
// or ellipse stay what they are, over gaps too; lines, arcs and polylines of one plane that meet within the tolerance make
// a polyline; splines and what lies in no plane make a spline or a polyline through space. Nothing when none goes.
VKHOST_API std::optional<Joined> joinedToFirst(const std::vector<Curve>& curves, double tolerance);

// An arc or elliptical arc made whole.
VKHOST_API std::optional<Curve> closedRound(const Curve& curve);

}  // namespace vk::geom
