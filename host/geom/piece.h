// The three kinds of smooth pieces that every curve is made of: straight, elliptical, Bezier. Measuring, finding the
// closest point and intersecting work on pieces; a curve's own parameter runs evenly along each of them.
#pragma once

#include "host/geom/bezier.h"

#include <variant>
#include <vector>

namespace vk::geom {

// base + vector * t. The range may be infinite.
struct LinePiece {
    Point3 base;
    Vector3 vector;
    Interval range{0, 1};
};

// center + u * cos t + v * sin t, with u perpendicular to v, u not the shorter.
struct ConicPiece {
    Point3 center;
    Vector3 u, v;
    Interval range{0, kTwoPi};

    bool isWhole() const { return range.to - range.from >= kTwoPi * (1 - 1e-14); }
    Vector3 normal() const { return u.crossProduct(v).normal(); }
};

struct BezierPiece {
    Bezier poles;
    Interval range{0, 1};
};

using PieceShape = std::variant<LinePiece, ConicPiece, BezierPiece>;

struct Piece {
    PieceShape shape;
    Interval onCurve;  // the curve's parameters at the ends of the shape's range

    Interval range() const;
    double toCurve(double t) const;
    double fromCurve(double param) const;
};

// A polyline's arc that is all but straight is exact along its run when its poles hold it, and goes on beyond its ends as
// a circle does when its center holds it.
enum class FlatArcs { ByPoles, AsCircles };

// Pieces follow each other; of a curve that is not valid there are none. Zero-length segments stay in place so that the
// parameters hold.
std::vector<Piece> piecesOf(const Curve& curve, FlatArcs flat = FlatArcs::ByPoles);
Piece arcPiece(const Point3& center, const Vector3& x, const Vector3& y, double from, double to);

Interval rangeOf(const PieceShape& shape);
void setRange(PieceShape& shape, Interval range);
Derivatives derivatives(const PieceShape& shape, double t);
Point3 place(const PieceShape& shape, double t);
Box3d boxOf(const PieceShape& shape);
Box3d boxOf(const LinePiece& line);
Box3d boxOf(const ConicPiece& conic);
Box3d boxOf(const BezierPiece& bezier);
double lengthOf(const PieceShape& shape, double from, double to);
// Half the integral of (P - origin) x dP.
Vector3 sweptArea(const PieceShape& shape, const Point3& origin);

struct Nearest {
    double t = 0;
    double distance = 0;
};
Nearest nearest(const PieceShape& shape, const Point3& to);
Nearest nearest(const ConicPiece& conic, const Point3& to);

// Moves t by whole turns into the piece's range where that can be; what misses an end by no more than the tolerance, as
// a distance, becomes that end. Nothing when t stays outside.
std::optional<double> admitted(const PieceShape& shape, double t, double tolerance);

PieceShape translated(PieceShape shape, const Vector3& by);

}  // namespace vk::geom
