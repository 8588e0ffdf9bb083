// Rounded and bevelled corners between two curves.
#pragma once

#include "host/geom/curve.h"

namespace vk::geom {

struct CornerSide {
    Curve curve;
    double picked = 0;  // on the side of this place the curve is kept
};

struct Corner {
    std::optional<Curve> first, second;  // cut back or let go on; nothing for closed ones, which stay as they are
    std::optional<Curve> between;        // the arc or the bevel; nothing for a sharp corner
};

enum class CornerFailure {
    None,
    Parallel,    // lines that never meet, where an arc cannot help
    NoCircle,    // no circle of the radius touches both
    NotPlanar,   // not in one plane
    NoCrossing,  // the two never meet
    TooLong,     // the bevel takes more than there is
};

struct CornerResult {
    Corner corner;
    CornerFailure failure = CornerFailure::None;
};

// An arc of the radius that touches both; parallel lines get a half circle of their own. A radius of 0 makes a sharp corner.
VKHOST_API CornerResult filleted(const CornerSide& a, const CornerSide& b, double radius, const Vector3& up);

// A straight cut at distances from where the two straight sides meet.
VKHOST_API CornerResult chamfered(const CornerSide& a, const CornerSide& b, double first, double second);

struct RoundedPolyline {
    Polyline polyline;
    std::size_t done = 0, tooShort = 0, other = 0;  // corners changed, with too short sides, at arcs or in line
};
// Every corner between straight segments.
VKHOST_API RoundedPolyline filletedAll(const Polyline& p, double radius);
VKHOST_API RoundedPolyline chamferedAll(const Polyline& p, double first, double second);
// The corner at one vertex; nothing when it is none, or its sides are too short.
VKHOST_API std::optional<Polyline> filletedAt(const Polyline& p, std::size_t vertex, double radius);
VKHOST_API std::optional<Polyline> chamferedAt(const Polyline& p, std::size_t vertex, double first, double second);

}  // namespace vk::geom
