// One answer out of what the kernels find: shared stretches, ends that lie on the other piece, crossings; each contact
// once.
#include "host/geom/meet.h"

#include <cmath>

namespace vk::geom {

namespace {

bool isWholeConic(const PieceShape& shape)
{
    const auto* conic = std::get_if<ConicPiece>(&shape);
    return conic && conic->isWhole();
}

std::vector<double> finiteEnds(const PieceShape& shape)
{
    const Interval r = rangeOf(shape);
    std::vector<double> ends;
    for (double t : {r.from, r.to})
        if (std::isfinite(t))
            ends.push_back(t);
    return ends;
}

bool isPoint(const PieceShape& shape, double tolerance)
{
    if (const auto* line = std::get_if<LinePiece>(&shape); line && line->vector.lengthSqrd() == 0)
        return true;
    return boxOf(shape).diagonal() <= tolerance;
}

// The seam of a whole circle is an end to stretches, though not to touches.
void addEndTouches(const PieceShape& a, const PieceShape& b, double tolerance, bool seams, std::vector<Touch>& touches)
{
    const auto ends = [seams](const PieceShape& shape) {
        return seams || !isWholeConic(shape) ? finiteEnds(shape) : std::vector<double>{};
    };
    for (double t : ends(a))
        if (const Nearest n = nearest(b, place(a, t)); n.distance <= tolerance)
            touches.push_back({t, n.t, false, true});
    for (double t : ends(b))
        if (const Nearest n = nearest(a, place(b, t)); n.distance <= tolerance)
            touches.push_back({n.t, t, false, true});
}

std::vector<Touch> admittedOf(const std::vector<Touch>& found, const PieceShape& a, const PieceShape& b,
                              double tolerance)
{
    std::vector<Touch> kept;
    for (Touch touch : found) {
        const auto s = admitted(a, touch.a, tolerance), t = admitted(b, touch.b, tolerance);
        if (s && t)
            kept.push_back({*s, *t, touch.tangent, touch.vague});
    }
    return kept;
}

// Two touches are one contact where the curves do not part between them.
bool sameContact(const Touch& p, const Touch& q, const PieceShape& a, const PieceShape& b, double tolerance)
{
    const double apart = place(a, p.a).distanceTo(place(a, q.a));
    if (apart > 1e-3 * boxOf(a).diagonal() && apart > 1e-3 * boxOf(b).diagonal())
        return false;
    return runsAlong(a, p.a, q.a, b, tolerance, 3);
}

// A tangency stands for its contact, a crossing rather than an end.
bool better(const Touch& p, const Touch& q) { return p.tangent != q.tangent ? p.tangent : p.vague < q.vague; }

std::vector<Touch> oncePerContact(std::vector<Touch> touches, const PieceShape& a, const PieceShape& b,
                                  double tolerance)
{
    std::sort(touches.begin(), touches.end(), [](const Touch& p, const Touch& q) { return p.a < q.a; });
    std::vector<Touch> kept;
    for (size_t i = 0; i < touches.size(); ++i) {
        if (i > 0 && sameContact(touches[i - 1], touches[i], a, b, tolerance)) {
            if (better(touches[i], kept.back()))
                kept.back() = touches[i];
        } else {
            kept.push_back(touches[i]);
        }
    }
    if (kept.size() > 1 && isWholeConic(a)) {
        Touch last = kept.back();
        last.a -= kTwoPi;
        if (sameContact(last, kept.front(), a, b, tolerance))
            better(kept.back(), kept.front()) ? kept.erase(kept.begin()) : kept.erase(kept.end() - 1);
    }
    return kept;
}

bool within(double t, Interval r, double slack)
{
    return t >= std::min(r.from, r.to) - slack && t <= std::max(r.from, r.to) + slack;
}

bool belongsTo(const SharedStretch& stretch, const Touch& touch, const PieceShape& a, double tolerance)
{
    if (within(touch.a, stretch.a, 0))
        return true;
    const Point3 p = place(a, touch.a);
    for (double t : {stretch.a.from, stretch.a.to})
        if (std::isfinite(t) && p.distanceTo(place(a, t)) <= 2 * tolerance)
            return true;
    return false;
}

// On a whole circle the seam is both ends; the way the stretch runs tells which is meant. It never runs over the seam.
void unwrap(const PieceShape& b, double quarter, double middle, double tolerance, Interval& stretch)
{
    const Interval r = rangeOf(b);
    const bool up = middle > quarter;
    const Point3 seam = place(b, r.from);
    const auto atSeam = [&](double t) {
        return std::min(t - r.from, r.to - t) < 1e-3 && place(b, t).distanceTo(seam) <= 2 * tolerance;
    };
    if (atSeam(stretch.from))
        stretch.from = up ? r.from : r.to;
    if (atSeam(stretch.to))
        stretch.to = up ? r.to : r.from;
}

bool onSameConic(const ConicPiece& a, const ConicPiece& b, double tolerance)
{
    ConicPiece wholeA = a;
    wholeA.range = {0, kTwoPi};
    for (int i = 0; i < 5; ++i)
        if (nearest(wholeA, place(b, b.range.from + (b.range.to - b.range.from) * i / 4)).distance > tolerance)
            return false;
    return true;
}

bool canShare(const PieceShape& a, const PieceShape& b, double tolerance)
{
    const auto *conicA = std::get_if<ConicPiece>(&a), *conicB = std::get_if<ConicPiece>(&b);
    if (conicA && conicB)
        return onSameConic(*conicA, *conicB, tolerance);
    return std::holds_alternative<BezierPiece>(a) || std::holds_alternative<BezierPiece>(b);
}

std::vector<Touch> kernelTouches(const PieceShape& a, const PieceShape& b, double tolerance)
{
    const auto *lineA = std::get_if<LinePiece>(&a), *lineB = std::get_if<LinePiece>(&b);
    const auto *conicA = std::get_if<ConicPiece>(&a), *conicB = std::get_if<ConicPiece>(&b);
    if (lineA && conicB)
        return meetLineConic(*lineA, *conicB, tolerance);
    if (conicA && conicB)
        return meetConics(*conicA, *conicB, tolerance);
    if (conicA && lineB) {
        auto found = meetLineConic(*lineB, *conicA, tolerance);
        for (Touch& touch : found)
            std::swap(touch.a, touch.b);
        return found;
    }
    return meetBySubdivision(a, b, tolerance);
}

// The parts of a that are not shared, so that subdivision does not wade through what coincides.
std::vector<Interval> unshared(const PieceShape& a, const std::vector<SharedStretch>& shared)
{
    const Interval r = rangeOf(a);
    std::vector<Interval> rest;
    double from = r.from;
    for (const SharedStretch& s : shared) {
        if (s.a.from > from)
            rest.push_back({from, s.a.from});
        from = s.a.to;
    }
    if (from < r.to)
        rest.push_back({from, r.to});
    return rest;
}

PieceMeeting meetPoint(const PieceShape& a, const PieceShape& b, double tolerance)
{
    const double t = rangeOf(a).from;
    const Nearest n = nearest(b, place(a, t));
    return n.distance <= tolerance ? PieceMeeting{{{t, n.t, false, true}}, {}} : PieceMeeting{};
}

}  // namespace

bool runsAlong(const PieceShape& a, double from, double to, const PieceShape& b, double tolerance, int samples)
{
    for (int i = 1; i <= samples; ++i)
        if (nearest(b, place(a, from + (to - from) * i / (samples + 1))).distance > tolerance)
            return false;
    return true;
}

std::vector<SharedStretch> sharedStretches(const PieceShape& a, const PieceShape& b, double tolerance)
{
    std::vector<Touch> ends;
    addEndTouches(a, b, tolerance, true, ends);
    std::vector<double> params;
    for (const Touch& end : ends)
        params.push_back(end.a);
    std::sort(params.begin(), params.end());
    std::vector<SharedStretch> shared;
    for (size_t i = 0; i + 1 < params.size(); ++i) {
        const double from = params[i], to = params[i + 1], mid = (from + to) / 2;
        const bool longEnough = place(a, from).distanceTo(place(a, mid)) > 2 * tolerance;
        if (!longEnough || !runsAlong(a, from, to, b, 1.5 * tolerance, 9))
            continue;
        Interval onB{nearest(b, place(a, from)).t, nearest(b, place(a, to)).t};
        if (isWholeConic(b))
            unwrap(b, nearest(b, place(a, (from + mid) / 2)).t, nearest(b, place(a, mid)).t, tolerance, onB);
        shared.push_back({{from, to}, onB});
    }
    return shared;
}

PieceMeeting meet(const PieceShape& a, const PieceShape& b, double tolerance)
{
    if (isPoint(a, tolerance))
        return meetPoint(a, b, tolerance);
    if (isPoint(b, tolerance)) {
        PieceMeeting swapped = meetPoint(b, a, tolerance);
        for (Touch& touch : swapped.touches)
            std::swap(touch.a, touch.b);
        return swapped;
    }
    PieceMeeting result;
    std::vector<Touch> found;
    const auto *lineA = std::get_if<LinePiece>(&a), *lineB = std::get_if<LinePiece>(&b);
    if (lineA && lineB) {
        result = meetLines(*lineA, *lineB, tolerance);
        found = std::move(result.touches);
    } else {
        if (canShare(a, b, tolerance))
            result.shared = sharedStretches(a, b, tolerance);
        for (const Interval& rest : unshared(a, result.shared)) {
            PieceShape part = a;
            setRange(part, rest);
            const auto more = kernelTouches(part, b, tolerance);
            found.insert(found.end(), more.begin(), more.end());
        }
    }
    found = admittedOf(found, a, b, tolerance);
    addEndTouches(a, b, tolerance, false, found);
    std::erase_if(found, [&](const Touch& touch) {
        return std::any_of(result.shared.begin(), result.shared.end(),
                           [&](const SharedStretch& s) { return belongsTo(s, touch, a, tolerance); });
    });
    result.touches = oncePerContact(std::move(found), a, b, tolerance);
    return result;
}

}  // namespace vk::geom
