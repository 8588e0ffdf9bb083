// Splines from points.
#pragma once

#include "sdk/vcge.h"

#include <memory>
#include <optional>
#include <vector>

class VcDbSpline;

namespace vk::commands {

// How the parameter runs from point to point: with the chords, with their square roots, or evenly; as SPLKNOTS counts them.
enum class FitKnots { Chord = 0, SquareRoot = 1, Uniform = 2 };

struct SplineFit {
    FitKnots knots = FitKnots::Chord;
    std::optional<VcGeVector3d> start, end;  // directions at the ends of an open one
};

// A cubic of continuous curvature through the points. An open one ends straight where nothing is said of its direction. Null
// when fewer than two points differ. Neighbours must differ.
std::unique_ptr<VcDbSpline> splineThrough(std::vector<VcGePoint3d> points, bool closed, const SplineFit& fit = {});
// The points are its control vertices, the knots are even. The degree is held to what the points allow.
std::unique_ptr<VcDbSpline> splineByVertices(std::vector<VcGePoint3d> points, int degree, bool closed);

}  // namespace vk::commands
