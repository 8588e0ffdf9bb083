// Cutting, joining and turning splines around.
#pragma once

#include "host/geom/piece.h"

namespace vk::geom {

Nurbs nurbsBetween(const Nurbs& nurbs, double from, double to);
Nurbs reversed(const Nurbs& nurbs);
// Pieces of equal degree, each ending where the next begins, over unit knot spans.
Nurbs composed(const std::vector<Bezier>& beziers);
// Straight pieces have the given degree, 1 or 2; elliptical ones have degree 2, each within a quarter turn.
std::vector<Bezier> asBeziers(const PieceShape& shape, int degree);

}  // namespace vk::geom
