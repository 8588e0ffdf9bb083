// Curves as plain values in world coordinates, and what can be asked of one curve.
//
// Parameters. Segment: 0 at the start, 1 at the end. Ray, XLine: multiples of the direction. Circle, Arc: the angle
// from the arbitrary X axis of the normal. Ellipse: the parameter t of center + major * cos t + minor * sin t. Nurbs:
// knots. Polylines: the index of the segment's first vertex and a fraction, which in an arc is a fraction of its angle.
// Arcs run anticlockwise about their normal, so end > start; an end that is not above the start is a turn further on.
//
// Degenerate input. A zero normal counts as Z. A curve of no size is a point and answers as one. What is not a curve at
// all (isValid) has no length, no box and no points.
#pragma once

#include "host/base/api.h"
#include "host/geom/box.h"
#include "vcge.h"

#include <optional>
#include <variant>
#include <vector>

namespace vk::geom {

using Point2 = VcGePoint2d;
using Point3 = VcGePoint3d;
using Vector2 = VcGeVector2d;
using Vector3 = VcGeVector3d;

inline constexpr double kTwoPi = 6.28318530717958647692;

struct Segment {
    Point3 start, end;
};

struct Ray {
    Point3 base;
    Vector3 direction;
};

struct XLine {
    Point3 base;
    Vector3 direction;
};

struct Circle {
    Point3 center;
    double radius = 0;
    Vector3 normal{0, 0, 1};
};

struct Arc {
    Point3 center;
    double radius = 0;
    double start = 0, end = kTwoPi;
    Vector3 normal{0, 0, 1};
};

// The minor axis is normal x major * ratio.
struct Ellipse {
    Point3 center;
    Vector3 major;
    double ratio = 1;
    double start = 0, end = kTwoPi;
    Vector3 normal{0, 0, 1};
};

// Knots are degree + 1 more than poles; weights are as many as poles, or none. The curve lives between the knots
// [degree] and [poles], whatever stands outside them, so that periodic splines need no flag.
struct Nurbs {
    int degree = 3;
    std::vector<Point3> poles;
    std::vector<double> knots;
    std::vector<double> weights;
};

// The bulge is the tangent of a quarter of the arc's angle from this vertex to the next, positive anticlockwise.
struct PolyVertex {
    Point2 point;
    double bulge = 0;
    double startWidth = 0, endWidth = 0;
};

// Vertices are in the coordinates of the normal's arbitrary axes, at the elevation along it.
struct Polyline {
    std::vector<PolyVertex> vertices;
    bool closed = false;
    double elevation = 0;
    Vector3 normal{0, 0, 1};
};

struct Polyline3 {
    std::vector<Point3> vertices;
    bool closed = false;
};

using Curve = std::variant<Segment, Ray, XLine, Circle, Arc, Ellipse, Nurbs, Polyline, Polyline3>;

struct Interval {
    double from = 0, to = 0;
};

struct Closest {
    Point3 point;
    double param = 0;
    double distance = 0;
};

struct Derivatives {
    Point3 point;
    Vector3 first, second;  // by the curve's parameter
};

// Numbers below 1e60, positive weights, knots that ascend and are as many as they must be, something to run along.
VKHOST_API bool isValid(const Curve& curve);
VKHOST_API bool isClosed(const Curve& curve);
// Infinite at the open ends of rays and construction lines.
VKHOST_API Interval paramRange(const Curve& curve);

// A parameter beyond the ends goes on along the first or last piece's own line, circle or ellipse; closed curves and
// splines hold at their ends, circles go round.
VKHOST_API Point3 pointAt(const Curve& curve, double param);
VKHOST_API Derivatives derivativesAt(const Curve& curve, double param);
VKHOST_API std::optional<Point3> startPoint(const Curve& curve);
VKHOST_API std::optional<Point3> endPoint(const Curve& curve);

// Nothing only when the curve is not valid.
VKHOST_API std::optional<Closest> closestPoint(const Curve& curve, const Point3& to);
// Nothing when the point lies further than the tolerance from the curve.
VKHOST_API std::optional<double> paramAt(const Curve& curve, const Point3& point, double tolerance);

// Infinite for rays and construction lines.
VKHOST_API double length(const Curve& curve);
VKHOST_API double lengthBetween(const Curve& curve, double from, double to);
VKHOST_API std::optional<double> paramAtLength(const Curve& curve, double along);

// What the curve encloses; an open one is closed by its chord. What winds twice counts twice. Infinite curves have
// none.
VKHOST_API double area(const Curve& curve);
// Twice signed: the direction is the normal about which the curve runs anticlockwise, the length is the area.
VKHOST_API Vector3 vectorArea(const Curve& curve);

// Tight. Infinite curves have infinite boxes in the directions they run to; widths of polylines count.
VKHOST_API Box3d extents(const Curve& curve);

// The plane that a curve lies in; lines and straight splines have none of their own.
VKHOST_API std::optional<VcGePlane> planeOf(const Curve& curve);

}  // namespace vk::geom
