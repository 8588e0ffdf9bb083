// Splines from points.
#pragma once

#include "sdk/vcge.h"

#include <memory>
#include <vector>

class VcDbSpline;

namespace vk::commands {

// A cubic of continuous curvature through the points, its parameter running with the chords. An open one ends straight. Null
// when fewer than two points differ. Neighbours must differ.
std::unique_ptr<VcDbSpline> splineThrough(std::vector<VcGePoint3d> points, bool closed);
// The points are its control vertices, the knots are even. The degree is held to what the points allow.
std::unique_ptr<VcDbSpline> splineByVertices(std::vector<VcGePoint3d> points, int degree, bool closed);

}  // namespace vk::commands
