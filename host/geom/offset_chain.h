// The steps of an offset in the plane z = 0: each piece moved aside, the corners joined, and what then lies too close
// to the source cut away.
#pragma once

#include "host/geom/offset.h"
#include "host/geom/piece.h"

namespace vk::geom {

enum class Joint { Smooth, Inner, Extend, Fillet, Chamfer };

struct OffsetSource {
    std::vector<PieceShape> pieces;  // none of no length, each beginning where the last ends
    std::vector<size_t> origins;     // which segment of the curve each comes from
    bool closed = false;
    double distance = 0;
    GapFill gap = GapFill::Extend;
    double tolerance = 0;
    double fit = 0;  // how far from true a moved spline may be

    bool simple = false;        // closed and not crossing itself, so that whatever keeps its distance closes too
    std::vector<Joint> joints;  // after each piece; the last one of an open chain is Smooth

    size_t next(size_t i) const { return (i + 1) % pieces.size(); }
    size_t previous(size_t i) const { return (i + pieces.size() - 1) % pieces.size(); }
    bool hasJoint(size_t i) const { return closed || i + 1 < pieces.size(); }
};

struct ChainPiece {
    PieceShape shape;
    size_t origin = 0;
};

struct Chain {
    std::vector<ChainPiece> pieces;
    bool closed = false;
};

// Fills in the joints as well. Untrimmed, without gaps.
Chain rawOffset(OffsetSource& source);
std::vector<Chain> trimmedOffset(OffsetSource& source, const Chain& raw);

// Cubic pieces that follow the moved piece.
std::vector<BezierPiece> fittedOffset(const PieceShape& shape, double distance, double fit);

Vector3 startTangent(const PieceShape& shape);
Vector3 endTangent(const PieceShape& shape);
Point3 startOf(const PieceShape& shape);
Point3 endOf(const PieceShape& shape);

// The distance to the right of a piece, measured from its line or circle as it goes on beyond its ends, from the
// tangent where it is a spline.
double distanceToTheRight(const PieceShape& shape, bool atEnd, const Point3& p);

inline Vector3 rightOf(const Vector3& direction) { return Vector3(direction.y, -direction.x, 0).normal(); }

}  // namespace vk::geom
