// LINE, CIRCLE, POINT.
#include "host/commands/curve_edits.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/edit/pick_service.h"
#include "host/edit/sysvars.h"
#include "host/geom/tangent_circle.h"
#include "sdk/vcdb_curves.h"

namespace vk::commands {

namespace {

using namespace edit;

AskOptions from(const VcGePoint3d& base, std::string keywords = {}, bool enterEnds = true)
{
    return {.keywords = std::move(keywords), .from = base, .bits = 0, .enterEnds = enterEnds};
}

void eraseLast(Editor& ed, std::vector<VcDbObjectId>& made)
{
    ed.db().object(made.back())->erase();
    made.pop_back();
}

VcDbObjectId addLine(Editor& ed, const VcGePoint3d& from, const VcGePoint3d& to)
{
    return addToSpace(ed, std::make_unique<VcDbLine>(toWorld(ed, from), toWorld(ed, to)));
}

void line(Editor& ed)
{
    AskOptions first;
    first.enterEnds = true;
    const Answer start = ed.askPoint("Specify first point", first);
    std::vector<VcGePoint3d> points{start.point};
    std::vector<VcDbObjectId> made;
    if (start.status == Answer::Status::Enter) {
        const auto last = lastCurveEnd(ed);
        points[0] = last ? last->point : ed.lastPoint;
        if (last && last->isArc) {
            points.push_back(points[0] + last->direction * ed.askDistance("Length of line", {.from = points[0]}).real);
            made.push_back(addLine(ed, points[0], points[1]));
            ed.lastPoint = points[1];
        }
    }
    for (;;) {
        const bool canClose = made.size() >= 2;
        const Answer a = ed.askPoint(canClose ? "Specify next point or [Close/Undo]" : "Specify next point or [Undo]",
                                     from(points.back(), canClose ? "Close Undo" : "Undo"));
        if (a.status == Answer::Status::Enter)
            return;
        if (a.status == Answer::Status::Keyword && a.text == "Undo") {
            if (made.empty()) {
                ed.printLine("All segments already undone.");
                continue;
            }
            eraseLast(ed, made);
            points.pop_back();
            ed.lastPoint = points.back();
            continue;
        }
        const bool closing = a.status == Answer::Status::Keyword;
        points.push_back(closing ? points.front() : a.point);
        made.push_back(addLine(ed, points[points.size() - 2], points.back()));
        if (closing)
            return;
    }
}

void addCircle(Editor& ed, const VcGePoint3d& centre, double radius)
{
    if (!(radius > 0))
        throw CommandError{"The circle has no size: its radius must be greater than 0."};
    addToSpace(ed, std::make_unique<VcDbCircle>(toWorld(ed, centre), ucsNormal(ed), radius));
    ed.vars().force("CIRCLERAD", radius);
    ed.lastPoint = centre;
}

void circleByThree(Editor& ed)
{
    const VcGePoint3d a = ed.point("Specify first point on circle"), b = ed.point("Specify second point on circle"),
                      c = ed.point("Specify third point on circle");
    const auto centre = geom::centerThrough(a, b, c);
    if (!centre)
        throw CommandError{"The circle does not exist: its three points lie on a line."};
    addCircle(ed, *centre, centre->distanceTo(a));
}

void circleByTwo(Editor& ed)
{
    const VcGePoint3d a = ed.point("Specify first end point of circle's diameter");
    const VcGePoint3d b = ed.point("Specify second end point of circle's diameter", {.from = a});
    addCircle(ed, a + (b - a) * 0.5, a.distanceTo(b) / 2);
}

CurvePick askTangent(Editor& ed, const char* prompt)
{
    for (;;) {
        const Answer a = ed.askEntity(prompt);
        if (a.status != Answer::Status::Value)
            throw CommandCancelled();
        auto* entity = ed.db().liveAs<VcDbEntity>(a.entity);
        const VcGePoint3d at = toWorld(ed, a.hasPoint ? a.point : pointOnEntity(ed, a.entity));
        if (auto pick = entity ? curvePickAt(ed, *entity, at) : std::nullopt)
            return *pick;
        ed.printLine("That object has no tangents.");
    }
}

void circleByTangents(Editor& ed)
{
    const CurvePick a = askTangent(ed, "Specify point on object for first tangent of circle");
    const CurvePick b = askTangent(ed, "Specify point on object for second tangent of circle");
    const double known = ed.vars().real("CIRCLERAD");
    const double radius = ed.distance("Specify radius of circle", known > 0 ? std::optional(known) : std::nullopt, {.bits = InitGet::NoZero | InitGet::NoNegative});
    const auto found = geom::tangentCircleNear(geom::carrierOf(a.curve), geom::carrierOf(b.curve), radius, ucsNormal(ed), a.at, b.at);
    if (!found)
        throw CommandError{"The circle does not exist: none of that radius touches both objects."};
    addCircle(ed, fromWorld(ed, found->center), radius);
}

void circle(Editor& ed)
{
    AskOptions first;
    first.keywords = "3P 2P Ttr";
    const Answer a = ed.askPoint("Specify center point for circle or [3P/2P/Ttr (tan tan radius)]", first);
    if (a.status == Answer::Status::Keyword)
        return a.text == "3P" ? circleByThree(ed) : a.text == "2P" ? circleByTwo(ed) : circleByTangents(ed);
    const double known = ed.vars().real("CIRCLERAD");
    AskOptions radius{.keywords = "Diameter", .from = a.point, .bits = InitGet::NoZero | InitGet::NoNegative, .enterEnds = known > 0};
    const Answer r = ed.askDistance(known > 0 ? fmt::format("Specify radius of circle or [Diameter] <{}>", lengthText(known))
                                              : "Specify radius of circle or [Diameter]",
                                    radius);
    if (r.status == Answer::Status::Keyword) {
        AskOptions diameter{.from = a.point, .bits = InitGet::NoZero | InitGet::NoNegative};
        return addCircle(ed, a.point, ed.askDistance("Specify diameter of circle", diameter).real / 2);
    }
    addCircle(ed, a.point, r.status == Answer::Status::Enter ? known : r.real);
}

void point(Editor& ed)
{
    const VcGePoint3d p = ed.point("Specify a point");
    auto made = std::make_unique<VcDbPoint>(toWorld(ed, p));
    made->setNormal(ucsNormal(ed));
    addToSpace(ed, std::move(made));
}

const HostCommand kCommands[] = {
    {"LINE", "L", kPlain, "Draws straight lines.", line},
    {"CIRCLE", "C", kPlain, "Draws a circle.", circle},
    {"POINT", "PO", kPlain, "Draws a point.", point},
};

}

std::span<const HostCommand> drawCommands() { return kCommands; }

}
