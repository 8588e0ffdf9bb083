#include "host/commands/corners.h"

#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"
#include "host/geom/join.h"
#include "host/geom/tangent_circle.h"
#include "sdk/vcdb_polylines.h"

namespace vk::commands {

using geom::Curve;
using geom::CornerFailure;

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

bool onePolyline(edit::Editor& ed, CurveEdits& edits, const CornerPick& a, const CornerPick& b, const CornerMaker& maker)
{
    const geom::Polyline& p = *polylineOf(a.pick);
    const std::size_t n = p.vertices.size(), s = *a.segment, t = *b.segment;
    const bool firstLeads = t == s + 1 || (p.closed && t == (s + 1) % n), secondLeads = s == t + 1 || (p.closed && s == (t + 1) % n);
    if (!firstLeads && !secondLeads)
        return refuse(ed, "Those segments of the polyline do not follow each other.");
    const auto changed = maker.atVertex(p, firstLeads ? t : s, !firstLeads);
    if (!changed)
        return refuse(ed, "The corner does not fit there: its sides are too short, run in one line, or are arcs.");
    return edits.replace(*a.pick.entity, {Curve(*changed)});
}

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
    const double tolerance = 1e3 * geom::meetingTolerance(owner.pick.curve, other.pick.curve);
    const auto whole = geom::joinedToFirst(parts, tolerance);
    if (!whole || whole->used.size() != parts.size() || !std::holds_alternative<geom::Polyline>(whole->curve))
        return refuse(ed, "Those objects cannot become one polyline.");
    if (!edits.replace(*owner.pick.entity, {whole->curve}))
        return false;
    edits.erase(*other.pick.entity);
    return true;
}

bool apart(CurveEdits& edits, const CornerPick& a, const CornerPick& b, const geom::Corner& corner)
{
    if (corner.between)
        edits.add(*corner.between, *a.pick.entity);
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
    const geom::CornerResult result = maker.corner(a.side, b.side);
    if (result.failure != CornerFailure::None)
        return refuse(ed, reason(result.failure));
    if (!maker.trims)
        return !result.corner.between || edits.add(*result.corner.between, *a.pick.entity) != nullptr;
    if (a.segment || b.segment)
        return joinAll(ed, edits, a, b, result.corner);
    return apart(edits, a, b, result.corner);
}

}
