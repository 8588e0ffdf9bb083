// Splines through given points.
#pragma once

#include "host/geom/curve.h"

namespace vk::geom {

struct FitEnds {
    std::optional<Vector3> start, end;  // directions; without one the curve runs out straight
};

// The cubic spline with even curvature through all points in order, by the lengths of the chords between them. Points that
// repeat the one before are left out; nothing when fewer than two differ. A closed one comes back to the first point with
// its direction and curvature.
VKHOST_API std::optional<Nurbs> fittedThrough(const std::vector<Point3>& points, bool closed, const FitEnds& ends = {});

}  // namespace vk::geom
