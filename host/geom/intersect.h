// Where two curves meet.
#pragma once

#include "host/geom/curve.h"

namespace vk::geom {

// Which curve is taken to go on beyond its ends: lines straight on, arcs and elliptical arcs all the way round, open
// polylines along their first and last segment. Splines and closed curves do not go on.
enum class Extend { Neither = 0, First = 1, Second = 2, Both = 3 };

struct Crossing {
    Point3 point;
    double first = 0, second = 0;  // parameters; beyond the ends where the curve was taken to go on
    bool tangent = false;
};

// A stretch that the curves have in common. `second` runs downwards where the second curve runs the other way.
struct Overlap {
    Interval first, second;
    Point3 start, end;
};

struct Meeting {
    std::vector<Crossing> points;   // in the order of the first curve; those at or in an overlap are left out
    std::vector<Overlap> overlaps;  // in the order of the first curve
    bool empty() const { return points.empty() && overlaps.empty(); }
};

// What counts as meeting: 1e-10 of the larger curve's size, and no less than the rounding of its coordinates.
VKHOST_API double meetingTolerance(const Curve& a, const Curve& b);

// The same whichever curve comes first. A contact shorter than what the tolerance can resolve is one point: a tangent
// line meets a circle once. A tolerance of 0 stands for meetingTolerance.
VKHOST_API Meeting intersect(const Curve& a, const Curve& b, Extend extend = Extend::Neither, double tolerance = 0);

// Where a curve crosses or touches itself away from where it just goes on.
VKHOST_API std::vector<Crossing> selfCrossings(const Curve& curve, double tolerance = 0);

// The points of a meeting, with the ends of its overlaps.
VKHOST_API std::vector<Point3> contactPoints(const Meeting& meeting);

}  // namespace vk::geom
