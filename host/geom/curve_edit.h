// Parts, halves, reversals and images of curves.
#pragma once

#include "host/geom/curve.h"

namespace vk::geom {

// The part between two parameters. On a closed curve it may run on over the seam: an end that is not above the start
// counts from the next round. Elsewhere the parameters are held to the curve's range. Nothing when nothing is left.
VKHOST_API std::optional<Curve> subCurve(const Curve& curve, double from, double to);

// All parts in order. Parameters may come in any order; those at the ends and outside are left out. A closed curve is
// not cut at its seam, so one cut opens it and n cuts give n parts. Without cuts the curve comes back whole.
VKHOST_API std::vector<Curve> splitAt(const Curve& curve, std::vector<double> params);

// The same points in the other direction. A ray has none and comes back as it is.
VKHOST_API Curve reversed(const Curve& curve);

// Any affine map. Circles and arcs stay what they are where they can and become ellipses where they must; polylines
// with arcs become splines then. Normals follow the image of the old normal, as thickness does, and an arc that is
// turned over against it runs from its old end to its old start. What a projection flattens becomes a segment or a
// polyline in space, an arc seen from its edge the segment that it sweeps.
VKHOST_API Curve transformed(const Curve& curve, const VcGeMatrix3d& m);

// The same shape; the parameter is another. Nothing for infinite curves.
VKHOST_API std::optional<Nurbs> toNurbs(const Curve& curve);

// The same points at a higher degree; what has the degree already comes back as it is.
VKHOST_API Nurbs withDegree(const Nurbs& nurbs, int degree);

// Ends where the other begins and goes on as it does; degrees must agree.
VKHOST_API Nurbs joined(const Nurbs& first, const Nurbs& second);

}  // namespace vk::geom
