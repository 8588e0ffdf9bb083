// Rational Bezier pieces, which splines are taken apart into. Poles are homogeneous: x, y and z carry the weight.
#pragma once

#include "host/geom/curve.h"

#include <utility>
#include <vector>

namespace vk::geom {

struct Pole {
    double x = 0, y = 0, z = 0, w = 1;

    static Pole of(const Point3& p, double weight = 1) { return {p.x * weight, p.y * weight, p.z * weight, weight}; }
    Point3 point() const { return {x / w, y / w, z / w}; }
    Vector3 vector() const { return {x, y, z}; }
    Pole operator+(const Pole& b) const { return {x + b.x, y + b.y, z + b.z, w + b.w}; }
    Pole operator-(const Pole& b) const { return {x - b.x, y - b.y, z - b.z, w - b.w}; }
    Pole operator*(double s) const { return {x * s, y * s, z * s, w * s}; }
};

inline Pole mix(const Pole& a, const Pole& b, double t) { return a * (1 - t) + b * t; }

using Bezier = std::vector<Pole>;

Derivatives derivatives(const Bezier& bezier, double t);
std::pair<Bezier, Bezier> splitAt(const Bezier& bezier, double t);
Bezier between(const Bezier& bezier, double from, double to);

// The box of the poles, which holds the curve.
Box3d hullBox(const Bezier& bezier);

double distanceToBox(const Box3d& box, const Point3& p);

// The piece of a valid spline between the knots [span] and [span + 1], which differ.
Bezier bezierSpan(const Nurbs& nurbs, int span);

}  // namespace vk::geom
