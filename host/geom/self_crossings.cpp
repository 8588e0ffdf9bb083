#include "host/geom/intersect.h"
#include "host/geom/meet.h"
#include "host/geom/nurbs.h"
#include "host/geom/sweep.h"

#include <cmath>

namespace vk::geom {

namespace {

// How far the legs of the poles turn in all; below half a turn a piece cannot cross itself.
double turning(const Bezier& bezier)
{
    double sum = 0;
    Vector3 last;
    for (size_t i = 0; i + 1 < bezier.size(); ++i) {
        const Vector3 leg = bezier[i + 1].point() - bezier[i].point();
        if (leg.lengthSqrd() == 0)
            continue;
        sum += last.lengthSqrd() > 0 ? last.angleTo(leg) : 0;
        last = leg;
    }
    return sum;
}

void addSimpleParts(const BezierPiece& whole, Interval range, Interval onCurve, int depth, std::vector<Piece>& parts)
{
    const Bezier poles = between(whole.poles, range.from, range.to);
    if (depth == 0 || turning(poles) < kTwoPi / 4) {
        parts.push_back({BezierPiece{poles}, onCurve});
        return;
    }
    const double mid = (range.from + range.to) / 2, onMid = (onCurve.from + onCurve.to) / 2;
    addSimpleParts(whole, {range.from, mid}, {onCurve.from, onMid}, depth - 1, parts);
    addSimpleParts(whole, {mid, range.to}, {onMid, onCurve.to}, depth - 1, parts);
}

std::vector<Piece> simpleParts(const Curve& curve, const Vector3& shift)
{
    std::vector<Piece> parts;
    for (Piece& piece : piecesOf(curve)) {
        piece.shape = translated(std::move(piece.shape), shift);
        if (const auto* bezier = std::get_if<BezierPiece>(&piece.shape))
            addSimpleParts(*bezier, bezier->range, piece.onCurve, 12, parts);
        else
            parts.push_back(std::move(piece));
    }
    return parts;
}

}  // namespace

std::vector<Crossing> selfCrossings(const Curve& curve, double tolerance)
{
    const Box3d box = extents(curve);
    if (!isValid(curve) || !box.isFinite())
        return {};
    if (tolerance <= 0)
        tolerance = meetingTolerance(curve, curve);
    const Vector3 origin = box.center().asVector();
    const auto parts = simpleParts(curve, -origin);
    const Interval range = paramRange(curve);
    const bool closed = isClosed(curve);
    const double perimeter = length(curve);

    std::vector<Box3d> boxes;
    for (const Piece& part : parts)
        boxes.push_back(boxOf(part.shape).grown(tolerance));
    // The way along the curve between two places that are one point tells a crossing from the curve going on.
    const auto goesOn = [&](double s, double t) {
        const double way = lengthBetween(curve, s, t);
        return way <= 4 * tolerance || (closed && perimeter - way <= 4 * tolerance);
    };
    std::vector<Crossing> found;
    const auto add = [&](size_t i, size_t j) {
        const PieceMeeting m = meet(parts[i].shape, parts[j].shape, tolerance);
        for (const Touch& t : m.touches) {
            const double s = parts[i].toCurve(t.a), u = parts[j].toCurve(t.b);
            if (!goesOn(s, u))
                found.push_back({place(parts[i].shape, t.a) + origin, std::min(s, u), std::max(s, u), t.tangent});
        }
    };
    eachTouchingPair(boxes, add);
    std::sort(found.begin(), found.end(), [](const Crossing& p, const Crossing& q) { return p.first < q.first; });
    const auto same = [&](const Crossing& p, const Crossing& q) {
        return p.point.distanceTo(q.point) <= 2 * tolerance &&
               std::fabs(p.first - q.first) <= 1e-6 * (range.to - range.from) &&
               std::fabs(p.second - q.second) <= 1e-6 * (range.to - range.from);
    };
    found.erase(std::unique(found.begin(), found.end(), same), found.end());
    return found;
}

}  // namespace vk::geom
