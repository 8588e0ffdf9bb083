// The points of one curve that object snaps know. Everything is in the world.
#pragma once

#include "host/geom/curve.h"

#include <vector>

namespace vk::edit {

using SnapPoints = std::vector<VcGePoint3d>;

SnapPoints endsOf(const geom::Curve& piece);
SnapPoints middleOf(const geom::Curve& piece);
SnapPoints centerOf(const geom::Curve& piece);
// In the directions of the axis and of the one across it, as far as they lie on the curve.
SnapPoints quadrantsOf(const geom::Curve& piece, const VcGeVector3d& axis);
// Of what a closed curve encloses.
SnapPoints centroidOf(const geom::Curve& curve);
// Lines and circles are taken to go on beyond their ends.
SnapPoints perpendicularsOf(const geom::Curve& piece, const VcGePoint3d& from);
// Where lines from a point touch; of a curve that is no part of a circle or an ellipse, the place nearest to the pick.
SnapPoints tangentsOf(const geom::Curve& piece, const VcGePoint3d& from, const VcGePoint3d& pick);

}  // namespace vk::edit
