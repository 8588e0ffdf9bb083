#include "host/commands/corners.h"

#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"
#include "host/geom/join.h"
#include "host/geom/tangent_circle.h"
#include "sdk/vcdb_polylines.h"

#include <algorithm>

namespace vk::commands {

using geom::CornerFailure;
using geom::Curve;

namespace {

// One segment of a polyline as the line or arc that it is.
std::optional<Curve> segmentCurve(const geom::Polyline& p, std::size_t segment)
{
    const double to = segment + 1 == p.vertices.size() ? 0 : double(segment + 1);
    const VcGePoint3d from = geom::pointAt(p, double(segment)), end = geom::pointAt(p, to);
    const double bulge = p.vertices[segment].bulge;
    if (bulge == 0)
        return geom::Segment{from, end};
    const auto center = geom::centerThrough(from, geom::pointAt(p, double(segment) + 0.5), end);
    if (!center)
        return std::nullopt;
    const double start = geom::angleInPlane((bulge > 0 ? from : end) - *center, p.normal);
    return geom::Arc{*center, center->distanceTo(from), start, start + 4 * std::atan(std::fabs(bulge)), p.normal};
}

bool isEndSegment(const geom::Polyline& p, std::size_t segment)
{
    return !p.closed && (segment == 0 || segment + 2 == p.vertices.size());
}

const char* reason(CornerFailure failure)
{
    switch (failure) {
    case CornerFailure::Parallel:
        return "Those lines are parallel.";
    case CornerFailure::NoCircle:
        return "The radius does not fit between those objects.";
    case CornerFailure::NotPlanar:
        return "Those objects cannot be joined by a corner: they do not lie in one plane, or are of the wrong kind.";
    case CornerFailure::TooLong:
        return "The distance is too great for those lines.";
    default:
        return "Those objects do not meet.";
    }
}

bool refuse(edit::Editor& ed, const char* why)
{
    ed.printLine(why);
    return false;
}

// What stays of a polyline beside its end segment.
std::optional<Curve> restOf(const CornerPick& side)
{
    const geom::Polyline* p = side.segment ? polylineOf(side.pick) : nullptr;
    if (!p || p->vertices.size() < 3)
        return std::nullopt;
    const double last = double(p->vertices.size() - 1);
    return *side.segment == 0 ? geom::subCurve(*p, 1, last) : geom::subCurve(*p, 0, last - 1);
}

// A width that a polyline has all along is that of what becomes of it.
void keepWidth(geom::Polyline& changed, const geom::Polyline& before)
{
    const double width = before.vertices.front().startWidth;
    const bool even = std::all_of(before.vertices.begin(), before.vertices.end(),
                                  [&](const auto& v) { return v.startWidth == width && v.endWidth == width; });
    for (auto& v : changed.vertices)
        if (even)
            v.startWidth = v.endWidth = width;
}

// The parts as one polyline, the order in which they meet.
std::optional<geom::Polyline> onePolylineOf(const std::vector<Curve>& parts, const geom::Polyline& like)
{
    const double tolerance = 1e3 * geom::meetingTolerance(like, like);
    const auto whole = geom::joinedToFirst(parts, tolerance);
    if (!whole || whole->used.size() != parts.size() || !std::holds_alternative<geom::Polyline>(whole->curve))
        return std::nullopt;
    geom::Polyline result = std::get<geom::Polyline>(whole->curve);
    keepWidth(result, like);
    return result;
}

bool areParallel(const Curve& a, const Curve& b)
{
    const auto *s = std::get_if<geom::Segment>(&a), *t = std::get_if<geom::Segment>(&b);
    return s && t && (s->end - s->start).normal().crossProduct((t->end - t->start).normal()).length() <= 1e-10;
}

// Parallel sides are joined at the end that the pick is near; of a segment of a polyline that is the one which does not stay.
void faceParallel(geom::CornerSide& side, const Curve& other)
{
    if (areParallel(side.curve, other))
        side.picked = side.picked > 0.5 ? 0 : 1;
}

// Towards an end of the segment; of an arc its middle, which also tells the tangent circles on both sides of a line apart.
geom::CornerSide keptTowards(const CornerPick& pick, const VcGePoint3d& end)
{
    if (const auto* arc = std::get_if<geom::Arc>(&pick.side.curve))
        return {*arc, (arc->start + arc->end) / 2};
    const auto near = geom::closestPoint(pick.side.curve, end);
    return {pick.side.curve, near ? near->param : pick.side.picked};
}

// What a polyline keeps beside two of its segments when the corner takes the place of all that lies between them; of the
// first and the last segment of an open one, when the corner closes it.
struct Remainder {
    VcGePoint3d firstKept, secondKept;  // towards these ends the two segments stay
    std::vector<Curve> parts;
};

Remainder remainderOf(const geom::Polyline& p, std::size_t first, std::size_t second, bool closes)
{
    const std::size_t n = p.vertices.size(), last = p.closed ? n : n - 1;
    const auto at = [&](std::size_t vertex) { return geom::pointAt(p, double(vertex % n)); };
    Remainder rest{at(closes ? first + 1 : first), at(closes ? second : second + 1), {}};
    const auto keep = [&](double from, double to) {
        if (auto part = from < to ? geom::subCurve(p, from, to) : std::nullopt)
            rest.parts.push_back(std::move(*part));
    };
    if (closes) {
        keep(double(first + 1), double(second));
    } else if (p.closed) {
        const std::size_t from = (second + 1) % n;
        keep(double(from), double(first >= from ? first : first + n));
    } else {
        keep(0, double(first));
        keep(double(second + 1), double(last));
    }
    return rest;
}

bool farCorner(edit::Editor& ed, CurveEdits& edits, const CornerPick& a, const CornerPick& b, const CornerMaker& maker,
               bool firstLeads, bool closes)
{
    const geom::Polyline& p = *polylineOf(a.pick);
    const CornerPick &lead = firstLeads ? a : b, &follow = firstLeads ? b : a;
    Remainder rest = remainderOf(p, *lead.segment, *follow.segment, closes);
    geom::CornerSide leadSide = keptTowards(lead, rest.firstKept), followSide = keptTowards(follow, rest.secondKept);
    faceParallel(leadSide, followSide.curve);
    faceParallel(followSide, leadSide.curve);
    const geom::CornerResult result =
        firstLeads ? maker.corner(leadSide, followSide) : maker.corner(followSide, leadSide);
    if (result.failure != CornerFailure::None)
        return refuse(ed, reason(result.failure));
    for (const auto& part : {result.corner.first, result.corner.between, result.corner.second})
        if (part)
            rest.parts.push_back(*part);
    const auto whole = onePolylineOf(rest.parts, p);
    if (!whole)
        return refuse(ed, "The corner does not fit there.");
    return edits.replace(*a.pick.entity, {Curve(*whole)});
}

bool onePolyline(edit::Editor& ed, CurveEdits& edits, const CornerPick& a, const CornerPick& b,
                 const CornerMaker& maker)
{
    const geom::Polyline& p = *polylineOf(a.pick);
    const std::size_t n = p.vertices.size(), s = *a.segment, t = *b.segment;
    const bool firstLeads = t == s + 1 || (p.closed && t == (s + 1) % n),
               secondLeads = s == t + 1 || (p.closed && s == (t + 1) % n);
    if (!firstLeads && !secondLeads) {
        const std::size_t segments = n - (p.closed ? 0 : 1), ahead = t > s ? t - s : s - t;
        const bool overOne = ahead == 2 || (p.closed && ahead + 2 == segments),
                   closes = !overOne && isEndSegment(p, s) && isEndSegment(p, t);
        if (!overOne && !closes)
            return refuse(ed,
                          "Those segments of the polyline neither follow each other nor have just one between them.");
        return farCorner(ed, edits, a, b, maker, p.closed ? (s + 2) % n == t : s < t, closes);
    }
    if (p.vertices[s].bulge != 0 || p.vertices[t].bulge != 0)
        return farCorner(ed, edits, a, b, maker, firstLeads, false);
    const auto changed = maker.atVertex(p, firstLeads ? t : s, !firstLeads);
    if (!changed)
        return refuse(ed, "The corner does not fit there: its sides are too short, run in one line, or are arcs.");
    return edits.replace(*a.pick.entity, {Curve(*changed)});
}

// Whether it is an end segment of a polyline that has more.
bool hangsOn(const CornerPick& side) { return side.segment && polylineOf(side.pick)->vertices.size() > 2; }

// Where a polyline takes part, everything becomes one polyline, which is the first one.
bool joinAll(edit::Editor& ed, CurveEdits& edits, const CornerPick& a, const CornerPick& b, const geom::Corner& corner)
{
    const CornerPick& owner = a.segment ? a : b;
    const CornerPick& other = a.segment ? b : a;
    std::vector<Curve> parts;
    const auto add = [&](std::optional<Curve> curve) {
        if (curve)
            parts.push_back(std::move(*curve));
    };
    add(a.segment ? corner.first : corner.second);
    add(corner.between);
    add(a.segment ? corner.second : corner.first);
    add(restOf(owner));
    add(restOf(other));
    const auto whole = onePolylineOf(parts, *polylineOf(owner.pick));
    if (!whole)
        return refuse(ed, "Those objects cannot become one polyline.");
    if (!edits.replace(*owner.pick.entity, {Curve(*whole)}))
        return false;
    edits.erase(*other.pick.entity);
    return true;
}

// The arc or the bevel goes on the layer of both objects, or the current one where they differ.
bool addBetween(edit::Editor& ed, CurveEdits& edits, const CornerPick& a, const CornerPick& b, const Curve& between)
{
    VcDbEntity* added = edits.add(between, *a.pick.entity);
    if (added && a.pick.entity->layerId() != b.pick.entity->layerId())
        added->setDatabaseDefaults(&ed.drawing());
    return added != nullptr;
}

bool apart(edit::Editor& ed, CurveEdits& edits, const CornerPick& a, const CornerPick& b, const geom::Corner& corner)
{
    if (corner.between)
        addBetween(ed, edits, a, b, *corner.between);
    if (corner.first)
        edits.replace(*a.pick.entity, {*corner.first});
    if (corner.second)
        edits.replace(*b.pick.entity, {*corner.second});
    return true;
}

}

const geom::Polyline* polylineOf(const CurvePick& pick) { return std::get_if<geom::Polyline>(&pick.curve); }

CornerPick cornerPick(const CurvePick& pick)
{
    CornerPick result{pick, {pick.curve, pick.param}, std::nullopt};
    const geom::Polyline* p = polylineOf(pick);
    if (!p || p->vertices.size() < 2)
        return result;
    const std::size_t segments = p->vertices.size() - (p->closed ? 0 : 1);
    result.segment = std::min(std::size_t(std::max(0.0, pick.param)), segments - 1);
    if (const auto curve = segmentCurve(*p, *result.segment)) {
        const auto near = geom::closestPoint(*curve, geom::pointAt(pick.curve, pick.param));
        result.side = {*curve, near ? near->param : 0.5};
    }
    // Of an end segment the side that hangs on to the polyline stays.
    if (isEndSegment(*p, *result.segment) && p->vertices.size() > 2) {
        const VcGePoint3d inner = geom::pointAt(*p, *result.segment == 0 ? 1.0 : double(*result.segment));
        if (const auto near = geom::closestPoint(result.side.curve, inner))
            result.side.picked = near->param;
    }
    return result;
}

bool makeCorner(edit::Editor& ed, CurveEdits& edits, const CornerPick& a, const CornerPick& b, const CornerMaker& maker)
{
    if (a.pick.entity == b.pick.entity) {
        if (a.segment && b.segment && *a.segment != *b.segment)
            return onePolyline(ed, edits, a, b, maker);
        return refuse(ed, "The corner needs two different lines.");
    }
    for (const CornerPick* side : {&a, &b})
        if (side->segment && maker.trims && !isEndSegment(*polylineOf(side->pick), *side->segment))
            return refuse(ed, "Of a polyline only the first and last segment can be joined to another object.");
    geom::CornerSide first = a.side, second = b.side;
    if (hangsOn(a))
        faceParallel(first, b.side.curve);
    if (hangsOn(b))
        faceParallel(second, a.side.curve);
    const geom::CornerResult result = maker.corner(first, second);
    if (result.failure != CornerFailure::None)
        return refuse(ed, reason(result.failure));
    if (!maker.trims)
        return !result.corner.between || addBetween(ed, edits, a, b, *result.corner.between);
    if (a.segment || b.segment)
        return joinAll(ed, edits, a, b, result.corner);
    return apart(ed, edits, a, b, result.corner);
}

}
