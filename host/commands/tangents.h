// Lines and circles that touch curves picked beforehand. Everything lies in the plane of the UCS and in its coordinates.
#pragma once

#include "host/geom/curve.h"

#include <array>
#include <optional>
#include <utility>

namespace vk::commands {

// A point that is known, or a curve that is to be touched near where it was picked.
struct Touch {
    VcGePoint3d at;
    std::optional<geom::Curve> curve;
    bool squarely = false;  // the line is to stand across the curve, not along it
};

// The ends of the line from one to the other; nothing when there is none.
std::optional<std::pair<VcGePoint3d, VcGePoint3d>> lineTouching(const Touch& from, const Touch& to);

struct TouchingCircle {
    VcGePoint3d center;
    double radius;
};
// Through the points and touching the curves; of several the one that comes nearest to the picks.
std::optional<TouchingCircle> circleTouching(const std::array<Touch, 3>& touches);

}  // namespace vk::commands
