// Moved splines and ellipses are no splines; cubic pieces with the true ends and tangents follow them as closely as
// asked for.
#include "host/geom/offset_chain.h"

#include "host/geom/meet.h"

#include <cmath>

namespace vk::geom {

namespace {

// Beyond these a curve bends more sharply than its size can tell.
constexpr size_t kMostPieces = 4000;
constexpr int kDeepest = 34;

struct Moved {
    Point3 point;
    Vector3 velocity;
};

class Fit {
public:
    Fit(const PieceShape& shape, double distance, double fit) : m_shape(shape), m_distance(distance), m_fit(fit) {}

    std::vector<BezierPiece> pieces()
    {
        constexpr int kFirstParts = 4;
        const Interval r = rangeOf(m_shape);
        for (int i = 0; i < kFirstParts; ++i)
            add(r.from + (r.to - r.from) * i / kFirstParts, r.from + (r.to - r.from) * (i + 1) / kFirstParts, kDeepest);
        return std::move(m_pieces);
    }

private:
    // Along a curve of curvature k the moved point runs 1 + distance * k times as fast.
    Moved at(double t) const
    {
        const Derivatives d = derivatives(m_shape, t);
        const double speed = d.first.length();
        const Vector3 along = speed > 0 ? d.first : (t < 0.5 ? startTangent(m_shape) : endTangent(m_shape));
        const double curvature = speed > 0 ? d.first.crossProduct(d.second).z / (speed * speed * speed) : 0;
        return {d.point + rightOf(along) * m_distance, d.first * (1 + m_distance * curvature)};
    }

    void add(double from, double to, int depth)
    {
        const Moved a = at(from), b = at(to);
        const double third = (to - from) / 3;
        const Bezier bezier{Pole::of(a.point), Pole::of(a.point + a.velocity * third),
                            Pole::of(b.point - b.velocity * third), Pole::of(b.point)};
        if (depth > 0 && m_pieces.size() < kMostPieces && !follows(bezier, from, to)) {
            const double mid = (from + to) / 2;
            add(from, mid, depth - 1);
            add(mid, to, depth - 1);
            return;
        }
        m_pieces.push_back({bezier});
    }

    // Point by point along both: a piece that only passes by the wanted places may still run wild between them.
    bool follows(const Bezier& bezier, double from, double to) const
    {
        for (double share : {0.15, 0.35, 0.5, 0.65, 0.85}) {
            const Point3 wanted = at(from + (to - from) * share).point;
            if (derivatives(bezier, share).point.distanceTo(wanted) > m_fit)
                return false;
        }
        return true;
    }

    const PieceShape& m_shape;
    double m_distance, m_fit;
    std::vector<BezierPiece> m_pieces;
};

}  // namespace

std::vector<BezierPiece> fittedOffset(const PieceShape& shape, double distance, double fit)
{
    return Fit(shape, distance, fit).pieces();
}

}  // namespace vk::geom
