#include "host/geom/trim.h"

#include "host/geom/curve_edit.h"
#include "host/geom/prolong.h"

#include <cmath>

namespace vk::geom {

namespace {

// The cuts strictly within an open curve, or anywhere on a closed one, each once.
std::vector<double> usableCuts(const Curve& curve, std::vector<double> cuts, double tolerance)
{
    const Interval range = paramRange(curve);
    const bool closed = isClosed(curve);
    const double turn = range.to - range.from;
    if (closed)
        for (double& t : cuts)
            t -= std::floor((t - range.from) / turn) * turn;
    std::erase_if(cuts, [&](double t) { return !std::isfinite(t) || t < range.from || t > range.to; });
    std::sort(cuts.begin(), cuts.end());
    std::vector<double> kept;
    Point3 last = startPoint(curve).value_or(Point3());
    bool hasLast = !closed && std::isfinite(range.from);
    const auto end = closed ? std::nullopt : endPoint(curve);
    for (double t : cuts) {
        const Point3 p = pointAt(curve, t);
        // Near in space and along the curve: a curve that comes by again is cut again.
        const bool again = hasLast && p.distanceTo(last) <= tolerance &&
                           lengthBetween(curve, kept.empty() ? range.from : kept.back(), t) <= 100 * tolerance;
        const bool atEnd =
            end && p.distanceTo(*end) <= tolerance && lengthBetween(curve, t, range.to) <= 100 * tolerance;
        if (again || atEnd)
            continue;
        kept.push_back(t);
        last = p;
        hasLast = true;
    }
    if (closed && kept.size() > 1 &&
        pointAt(curve, kept.front()).distanceTo(pointAt(curve, kept.back())) <= tolerance &&
        kept.front() + turn - kept.back() <= 1e-6 * turn)
        kept.pop_back();
    return kept;
}

Trimmed failed(TrimFailure why) { return {{}, why}; }

Trimmed trimmedRound(const Curve& curve, const std::vector<double>& cuts, double at)
{
    if (cuts.size() < 2)
        return failed(cuts.empty() ? TrimFailure::NoCut : TrimFailure::OnlyOneCut);
    const Interval range = paramRange(curve);
    const double turn = range.to - range.from;
    at -= std::floor((at - range.from) / turn) * turn;
    const auto above = std::upper_bound(cuts.begin(), cuts.end(), at);
    const double next = above == cuts.end() ? cuts.front() : *above;
    const double before = above == cuts.begin() ? cuts.back() : *(above - 1);
    auto rest = subCurve(curve, next, before > next ? before : before + turn);
    return rest ? Trimmed{{std::move(*rest)}} : failed(TrimFailure::NoCut);
}

}  // namespace

Trimmed trimmedAround(const Curve& curve, std::vector<double> cuts, double at, double tolerance)
{
    cuts = usableCuts(curve, std::move(cuts), tolerance);
    if (cuts.empty())
        return failed(TrimFailure::NoCut);
    if (isClosed(curve))
        return trimmedRound(curve, cuts, at);
    const Interval range = paramRange(curve);
    const auto above = std::upper_bound(cuts.begin(), cuts.end(), at);
    Trimmed result;
    if (above != cuts.begin())
        if (auto before = subCurve(curve, range.from, *(above - 1)))
            result.kept.push_back(std::move(*before));
    if (above != cuts.end())
        if (auto after = subCurve(curve, *above, range.to))
            result.kept.push_back(std::move(*after));
    return result;
}

Trimmed extendedTowards(const Curve& curve, const std::vector<double>& places, double at, double tolerance)
{
    const Interval range = paramRange(curve);
    const bool atStart = isNearerStart(curve, at);
    if (!canProlong(curve, atStart))
        return failed(TrimFailure::Closed);
    const double end = atStart ? range.from : range.to;
    const Point3 tip = pointAt(curve, end);
    std::optional<double> best;
    for (double t : places) {
        const bool beyond = atStart ? t < end : t > end;
        if (!beyond || pointAt(curve, t).distanceTo(tip) <= tolerance)
            continue;
        if (!best || std::fabs(t - end) < std::fabs(*best - end))
            best = t;
    }
    if (!best)
        return failed(TrimFailure::NoEdge);
    auto longer = betweenEnds(curve, atStart ? *best : range.from, atStart ? range.to : *best);
    return longer ? Trimmed{{std::move(*longer)}} : failed(TrimFailure::NoEdge);
}

}  // namespace vk::geom
