// Of the moved chain, what keeps its distance from the source stays.
//
// The chain is cut wherever it meets itself, and where it comes near the ends of an open source. Between cuts a part is
// wholly good or wholly bad, so its middle decides. Good parts are then strung together again.
#include "host/geom/meet.h"
#include "host/geom/offset_chain.h"
#include "host/geom/spatial_index.h"
#include "host/geom/sweep.h"

#include <cmath>

namespace vk::geom {

namespace {

// Answers whether a point is where the offset may be.
class Clearance {
public:
    explicit Clearance(const OffsetSource& source)
        : m_source(source), m_reach(std::fabs(source.distance)), m_side(source.distance > 0 ? 1 : -1),
          m_slack(1e-9 * m_reach + 3 * source.tolerance + 4 * source.fit)
    {
        std::vector<SpatialIndex::Entry> boxes;
        for (size_t i = 0; i < source.pieces.size(); ++i)
            boxes.emplace_back(i, boxOf(source.pieces[i]).grown(m_reach));
        m_pieces = SpatialIndex(boxes);
        boxes.clear();
        for (size_t i = 0; i < source.pieces.size(); ++i)
            if (source.joints[i] == Joint::Extend)
                boxes.emplace_back(i, mitreBox(i));
        m_mitres = SpatialIndex(boxes);
    }

    bool allows(const Point3& p) const
    {
        for (SpatialIndex::Id id : m_mitres.touching(Box3d{p, p}))
            if (withinMitre(id, p))
                return false;
        for (SpatialIndex::Id id : m_pieces.touching(Box3d{p, p}))
            if (isTooClose(id, p))
                return false;
        return true;
    }

private:
    bool isTooClose(size_t i, const Point3& p) const
    {
        const PieceShape& piece = m_source.pieces[i];
        const Nearest n = nearest(piece, p);
        if (n.distance >= m_reach - m_slack)
            return false;
        const Interval r = rangeOf(piece);
        if (n.t == r.to && m_source.hasJoint(i))
            return !beyondChamfer(i, p);
        if (n.t == r.from && m_source.hasJoint(m_source.previous(i)) && (m_source.closed || i > 0))
            return !beyondChamfer(m_source.previous(i), p);
        return true;
    }

    // In the corner that opens between two sides.
    bool inWedge(size_t joint, const Point3& p) const
    {
        const PieceShape &before = m_source.pieces[joint], &after = m_source.pieces[m_source.next(joint)];
        const Vector3 arm = p - endOf(before);
        return arm.dotProduct(endTangent(before)) >= -m_slack && arm.dotProduct(startTangent(after)) <= m_slack;
    }

    // A straight cut comes closer to its corner than the distance.
    bool beyondChamfer(size_t joint, const Point3& p) const
    {
        if (m_source.joints[joint] != Joint::Chamfer || !inWedge(joint, p))
            return false;
        const PieceShape &before = m_source.pieces[joint], &after = m_source.pieces[m_source.next(joint)];
        const Vector3 a = rightOf(endTangent(before)), b = rightOf(startTangent(after));
        const Vector3 outwards = (a + b).normal() * double(m_side);
        const double cut = (a * double(m_side)).dotProduct(outwards) * m_reach;
        return (p - endOf(before)).dotProduct(outwards) >= cut - m_slack;
    }

    bool withinMitre(size_t joint, const Point3& p) const
    {
        const PieceShape &before = m_source.pieces[joint], &after = m_source.pieces[m_source.next(joint)];
        return inWedge(joint, p) && m_side * distanceToTheRight(before, true, p) < m_reach - m_slack &&
               m_side * distanceToTheRight(after, false, p) < m_reach - m_slack;
    }

    // The tip of a mitre stands off by the reach over the cosine of half the turn.
    Box3d mitreBox(size_t joint) const
    {
        const PieceShape &before = m_source.pieces[joint], &after = m_source.pieces[m_source.next(joint)];
        const double half = endTangent(before).angleTo(startTangent(after)) / 2;
        const double far = m_reach / std::max(1e-6, std::cos(half));
        return Box3d::around(endOf(before), 2 * far);
    }

    const OffsetSource& m_source;
    double m_reach;
    int m_side;
    double m_slack;
    SpatialIndex m_pieces, m_mitres;
};

struct Cuts {
    std::vector<double> params;
    std::vector<Interval> doubled;  // stretches that another part runs back over, or runs along as well
};

bool runsBack(const SharedStretch& s) { return s.b.to < s.b.from; }

bool crossesItself(const OffsetSource& source)
{
    std::vector<Box3d> boxes;
    for (const PieceShape& piece : source.pieces)
        boxes.push_back(boxOf(piece).grown(source.tolerance));
    bool crosses = false;
    eachTouchingPair(boxes, [&](size_t i, size_t j) {
        const auto m = crosses ? PieceMeeting{} : meet(source.pieces[i], source.pieces[j], source.tolerance);
        const auto goesOn = [&](const Point3& p) {
            return (source.next(i) == j && p.distanceTo(endOf(source.pieces[i])) <= 4 * source.tolerance) ||
                   (source.next(j) == i && p.distanceTo(endOf(source.pieces[j])) <= 4 * source.tolerance);
        };
        const auto inside = [&](const Touch& t) { return !goesOn(place(source.pieces[i], t.a)); };
        crosses = crosses || !m.shared.empty() || std::any_of(m.touches.begin(), m.touches.end(), inside);
    });
    return crosses;
}

void cutAgainst(const std::vector<ChainPiece>& others, const Chain& raw, double tolerance, std::vector<Cuts>& cuts)
{
    std::vector<Box3d> ours, theirs;
    for (const ChainPiece& piece : raw.pieces)
        ours.push_back(boxOf(piece.shape).grown(tolerance));
    for (const ChainPiece& piece : others)
        theirs.push_back(boxOf(piece.shape).grown(tolerance));
    eachTouchingPair(ours, theirs, [&](size_t i, size_t j) {
        const PieceMeeting m = meet(raw.pieces[i].shape, others[j].shape, tolerance);
        for (const Touch& touch : m.touches)
            cuts[i].params.push_back(touch.a);
        for (const SharedStretch& s : m.shared)
            cuts[i].params.insert(cuts[i].params.end(), {s.a.from, s.a.to});
    });
}

// What bounds the forbidden zone besides the chain itself: circles about open ends, and the offset on the other side
// where the source comes round to itself from there.
std::vector<ChainPiece> otherBounds(const OffsetSource& source)
{
    if (source.simple)
        return {};
    OffsetSource other = source;
    other.distance = -source.distance;
    other.gap = GapFill::Fillet;
    other.joints.clear();
    std::vector<ChainPiece> bounds = rawOffset(other).pieces;
    const double reach = std::fabs(source.distance);
    if (!source.closed)
        for (const Point3& end : {startOf(source.pieces.front()), endOf(source.pieces.back())})
            bounds.push_back({ConicPiece{end, {reach, 0, 0}, {0, reach, 0}}});
    return bounds;
}

std::vector<Cuts> cutsOf(const OffsetSource& source, const Chain& raw)
{
    std::vector<Cuts> cuts(raw.pieces.size());
    std::vector<Box3d> boxes;
    for (const ChainPiece& piece : raw.pieces)
        boxes.push_back(boxOf(piece.shape).grown(source.tolerance));
    eachTouchingPair(boxes, [&](size_t i, size_t j) {
        const PieceMeeting m = meet(raw.pieces[i].shape, raw.pieces[j].shape, source.tolerance);
        for (const Touch& touch : m.touches) {
            cuts[i].params.push_back(touch.a);
            cuts[j].params.push_back(touch.b);
        }
        for (const SharedStretch& s : m.shared) {
            cuts[i].params.insert(cuts[i].params.end(), {s.a.from, s.a.to});
            cuts[j].params.insert(cuts[j].params.end(), {s.b.from, s.b.to});
            if (runsBack(s))
                cuts[i].doubled.push_back(s.a);
            cuts[j].doubled.push_back({std::min(s.b.from, s.b.to), std::max(s.b.from, s.b.to)});
        }
    });
    cutAgainst(otherBounds(source), raw, source.tolerance, cuts);
    return cuts;
}

bool inAny(const std::vector<Interval>& intervals, double t)
{
    return std::any_of(intervals.begin(), intervals.end(), [&](const Interval& r) { return t > r.from && t < r.to; });
}

struct Slice {
    ChainPiece piece;
    size_t raw = 0;  // index of the raw piece, to join again what was cut in vain
    Point3 start, end;
};

std::vector<Slice> goodSlices(const OffsetSource& source, const Chain& raw)
{
    const Clearance clearance(source);
    std::vector<Cuts> cuts = cutsOf(source, raw);
    std::vector<Slice> slices;
    for (size_t i = 0; i < raw.pieces.size(); ++i) {
        const PieceShape& shape = raw.pieces[i].shape;
        const Interval r = rangeOf(shape);
        auto& params = cuts[i].params;
        params.insert(params.end(), {r.from, r.to});
        std::sort(params.begin(), params.end());
        double from = r.from;
        for (double to : params) {
            const bool last = to >= r.to;
            if (to <= from || (!last && place(shape, from).distanceTo(place(shape, to)) <= 2 * source.tolerance))
                continue;
            const double mid = (from + to) / 2;
            if (!inAny(cuts[i].doubled, mid) && clearance.allows(place(shape, mid))) {
                Slice slice{raw.pieces[i], i, place(shape, from), place(shape, to)};
                setRange(slice.piece.shape, {from, to});
                slices.push_back(std::move(slice));
            }
            from = to;
        }
    }
    return slices;
}

// Strings slices together by their ends.
class Stringing {
public:
    Stringing(const OffsetSource& source, std::vector<Slice> slices)
        : m_source(source), m_slices(std::move(slices)), m_used(m_slices.size()),
          m_near(20 * source.tolerance + 20 * source.fit)
    {
        std::vector<SpatialIndex::Entry> starts;
        for (size_t i = 0; i < m_slices.size(); ++i)
            starts.emplace_back(i, Box3d{m_slices[i].start, m_slices[i].start});
        m_starts = SpatialIndex(starts);
    }

    std::vector<Chain> chains()
    {
        if (m_source.simple)
            dropDeadEnds();
        std::vector<Chain> result;
        for (size_t first : order())
            if (!m_used[first])
                if (auto chain = followed(first))
                    result.push_back(std::move(*chain));
        return result;
    }

private:
    // Beside a simple outline nothing leads nowhere: what does, passed for good by a hair.
    void dropDeadEnds()
    {
        std::vector<std::vector<size_t>> next(m_slices.size()), before(m_slices.size());
        std::vector<size_t> ways[2] = {std::vector<size_t>(m_slices.size()), std::vector<size_t>(m_slices.size())};
        for (size_t i = 0; i < m_slices.size(); ++i)
            for (auto id : m_starts.touching(Box3d::around(m_slices[i].end, m_near))) {
                next[i].push_back(id);
                before[id].push_back(i);
                ++ways[0][i];
                ++ways[1][id];
            }
        std::vector<size_t> dead;
        for (size_t i = 0; i < m_slices.size(); ++i)
            if (ways[0][i] == 0 || ways[1][i] == 0)
                dead.push_back(i);
        while (!dead.empty()) {
            const size_t i = dead.back();
            dead.pop_back();
            if (m_used[i])
                continue;
            m_used[i] = true;
            for (size_t id : next[i])
                if (--ways[1][id] == 0)
                    dead.push_back(id);
            for (size_t id : before[i])
                if (--ways[0][id] == 0)
                    dead.push_back(id);
        }
    }

    // Those that nothing leads to come first, so that open chains are walked from their start.
    std::vector<size_t> order() const
    {
        std::vector<bool> led(m_slices.size());
        for (size_t i = 0; i < m_slices.size(); ++i)
            for (auto id : m_starts.touching(Box3d::around(m_slices[i].end, m_near)))
                led[id] = led[id] || (id != i && !m_used[i]);
        std::vector<size_t> first, rest;
        for (size_t i = 0; i < m_slices.size(); ++i)
            (led[i] ? rest : first).push_back(i);
        first.insert(first.end(), rest.begin(), rest.end());
        return first;
    }

    // The next in the raw order where it is there, else the one that starts nearest.
    std::optional<size_t> after(size_t i) const
    {
        std::optional<size_t> best;
        double nearest = Box3d::kInfinite;
        for (auto id : m_starts.touching(Box3d::around(m_slices[i].end, m_near))) {
            if (m_used[id])
                continue;
            const double distance = id == i + 1 ? 0 : m_slices[id].start.distanceTo(m_slices[i].end) + m_near * 1e-3;
            if (distance < nearest) {
                nearest = distance;
                best = id;
            }
        }
        return best;
    }

    std::optional<Chain> followed(size_t first)
    {
        Chain chain;
        std::vector<size_t> members;
        double length = 0;
        for (std::optional<size_t> at = first; at; at = after(*at)) {
            m_used[*at] = true;
            members.push_back(*at);
            const Interval r = rangeOf(m_slices[*at].piece.shape);
            length += lengthOf(m_slices[*at].piece.shape, r.from, r.to);
        }
        const Point3 start = m_slices[members.front()].start, end = m_slices[members.back()].end;
        chain.closed =
            start.distanceTo(end) <= m_near && (m_source.closed || members.size() > 1) && length > 4 * m_near;
        const bool tail = length <= 4 * m_near || (m_source.simple && !chain.closed);
        if (tail)
            return std::nullopt;
        for (size_t i : members)
            append(chain, m_slices[i]);
        return chain;
    }

    void append(Chain& chain, const Slice& slice)
    {
        const bool goesOn = !chain.pieces.empty() && m_lastRaw == slice.raw &&
                            rangeOf(chain.pieces.back().shape).to == rangeOf(slice.piece.shape).from;
        m_lastRaw = slice.raw;
        if (!goesOn) {
            chain.pieces.push_back(slice.piece);
            return;
        }
        PieceShape& last = chain.pieces.back().shape;
        setRange(last, {rangeOf(last).from, rangeOf(slice.piece.shape).to});
    }

    const OffsetSource& m_source;
    std::vector<Slice> m_slices;
    std::vector<bool> m_used;
    double m_near;
    SpatialIndex m_starts;
    size_t m_lastRaw = 0;
};

}  // namespace

std::vector<Chain> trimmedOffset(OffsetSource& source, const Chain& raw)
{
    source.simple = source.closed && !crossesItself(source);
    return Stringing(source, goodSlices(source, raw)).chains();
}

}  // namespace vk::geom
