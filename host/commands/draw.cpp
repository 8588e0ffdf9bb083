// LINE, CIRCLE, POINT.
#include "host/commands/curve_edits.h"
#include "host/commands/families.h"
#include "host/commands/tangents.h"
#include "host/db/database.h"
#include "host/edit/display.h"
#include "host/edit/pick_service.h"
#include "host/edit/snap.h"
#include "host/edit/sysvars.h"
#include "host/geom/curve_edit.h"
#include "host/geom/tangent_circle.h"
#include "sdk/vcdb_curves.h"

#include <array>

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
    auto made = std::make_unique<VcDbLine>(toWorld(ed, from), toWorld(ed, to));
    made->setNormal(ucsNormal(ed));
    return addToSpace(ed, std::move(made));
}

// A point of a question that takes tangents: given, or a curve that is to be touched.
Touch touchOf(Editor& ed, const Answer& a)
{
    Touch touch{a.point, std::nullopt, a.integer == kSnapPerpendicular};
    auto* entity = ed.db().liveAs<VcDbEntity>(a.entity);
    if (const auto pick = entity ? curvePickAt(ed, *entity, toWorld(ed, a.point)) : std::nullopt)
        touch.curve = geom::transformed(pieceAt(pick->curve, pick->param), ucsToWorld(ed).inverse());
    return touch;
}

// LINE: the points so far, and what was drawn between them.
struct Chain {
    Editor& ed;
    std::vector<VcGePoint3d> points;
    std::vector<VcDbObjectId> made;

    void goTo(const VcGePoint3d& to)
    {
        made.push_back(addLine(ed, points.back(), to));
        points.push_back(to);
        ed.lastPoint = to;
    }
    void undo()
    {
        if (made.empty())
            return ed.printLine("All segments already undone.");
        eraseLast(ed, made);
        points.pop_back();
        ed.lastPoint = points.back();
    }
    // A first point that waits for the second becomes known with it.
    bool goBetween(const Touch& from, const Touch& to)
    {
        const auto ends = lineTouching(from, to);
        if (!ends) {
            ed.printLine("There is no such line between these places.");
            return false;
        }
        points.back() = ends->first;
        goTo(ends->second);
        return true;
    }
};

// From where the line or arc drawn last ends; after an arc, in its direction.
void goOnFromLast(Editor& ed, Chain& chain)
{
    const auto last = lastCurveEnd(ed);
    chain.points[0] = last ? last->point : ed.lastPoint;
    ed.lastPoint = chain.points[0];
    if (last && last->isArc)
        chain.goTo(chain.points[0] +
                   last->direction * ed.askDistance("Length of line", {.from = chain.points[0]}).real);
}

void line(Editor& ed)
{
    const Answer start = ed.askPoint("Specify first point", {.bits = kTakesTangent, .enterEnds = true});
    Chain chain{ed, {start.point}, {}};
    std::optional<Touch> waiting;
    if (start.status == Answer::Status::Enter)
        goOnFromLast(ed, chain);
    else if (!start.entity.isNull())
        waiting = touchOf(ed, start);
    for (;;) {
        const bool canClose = chain.made.size() >= 2;
        AskOptions options = from(chain.points.back(), canClose ? "Close Undo" : "Undo");
        options.bits = waiting ? kTakesTangent : 0;
        const Answer a =
            ed.askPoint(canClose ? "Specify next point or [Close/Undo]" : "Specify next point or [Undo]", options);
        if (a.status == Answer::Status::Enter)
            return;
        if (a.status == Answer::Status::Keyword && a.text == "Undo") {
            chain.undo();
            continue;
        }
        if (waiting) {
            if (chain.goBetween(*waiting, touchOf(ed, a)))
                waiting.reset();
            continue;
        }
        const bool closing = a.status == Answer::Status::Keyword;
        chain.goTo(closing ? chain.points.front() : a.point);
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

// In the plane of the UCS at the height of the first.
VcGePoint3d levelWith(const VcGePoint3d& first, const VcGePoint3d& p) { return {p.x, p.y, first.z}; }

void addTouching(Editor& ed, std::array<Touch, 3>& touches)
{
    for (Touch& touch : touches)
        touch.at = levelWith(touches[0].at, touch.at);
    const auto found = circleTouching(touches);
    if (!found)
        throw CommandError{"The circle does not exist: none passes through these three places."};
    addCircle(ed, found->center, found->radius);
}

void circleByThree(Editor& ed)
{
    std::array<Touch, 3> touches;
    const char* prompts[] = {"Specify first point on circle", "Specify second point on circle",
                             "Specify third point on circle"};
    for (int i = 0; i < 3; ++i)
        touches[i] = touchOf(ed, ed.askPoint(prompts[i], {.bits = kTakesTangent}));
    addTouching(ed, touches);
}

void circleByTwo(Editor& ed)
{
    const VcGePoint3d a = ed.point("Specify first end point of circle's diameter");
    const VcGePoint3d b = levelWith(a, ed.point("Specify second end point of circle's diameter", {.from = a}));
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
    const double radius = ed.distance("Specify radius of circle", known > 0 ? std::optional(known) : std::nullopt,
                                      {.bits = InitGet::NoZero | InitGet::NoNegative});
    const auto found =
        geom::tangentCircleNear(geom::carrierOf(a.curve), geom::carrierOf(b.curve), radius, ucsNormal(ed), a.at, b.at);
    if (!found)
        throw CommandError{"The circle does not exist: none of that radius touches both objects."};
    addCircle(ed, fromWorld(ed, found->center), radius);
}

void circleByThreeTangents(Editor& ed)
{
    static constexpr const char* kPrompts[] = {"Specify point on object for first tangent of circle",
                                               "Specify point on object for second tangent of circle",
                                               "Specify point on object for third tangent of circle"};
    std::array<Touch, 3> touches;
    for (int i = 0; i < 3; ++i) {
        const CurvePick pick = askTangent(ed, kPrompts[i]);
        touches[i] = {fromWorld(ed, geom::pointAt(pick.curve, pick.param)),
                      geom::transformed(pieceAt(pick.curve, pick.param), ucsToWorld(ed).inverse())};
    }
    addTouching(ed, touches);
}

// With the next question, which asks for a radius, or for a diameter.
void showCircle(const VcGePoint3d& center, double radiusPerLength)
{
    Display::instance().follow({{}, {}, [=](const VcGePoint3d& cursor) {
                                    constexpr int kSides = 64;
                                    const double radius = center.distanceTo(cursor) * radiusPerLength;
                                    std::vector<VcGePoint3d> outline;
                                    for (int i = 0; i <= kSides; ++i)
                                        outline.push_back(center + VcGeVector3d(std::cos(2 * M_PI * i / kSides),
                                                                                std::sin(2 * M_PI * i / kSides), 0) *
                                                                       radius);
                                    return Preview::Lines{outline};
                                }});
}

void circle(Editor& ed)
{
    const Answer a = ed.askPoint("Specify center point for circle or [3P/2P/Ttr (tan tan radius)/TTT (tan tan tan)]",
                                 {.keywords = "3P 2P Ttr TTT"});
    if (a.status == Answer::Status::Keyword)
        return a.text == "3P"    ? circleByThree(ed)
               : a.text == "2P"  ? circleByTwo(ed)
               : a.text == "TTT" ? circleByThreeTangents(ed)
                                 : circleByTangents(ed);
    const double known = ed.vars().real("CIRCLERAD");
    const auto byDefault = [&](double value) {
        return known > 0 ? fmt::format(" <{}>", lengthText(value)) : std::string();
    };
    AskOptions options{
        .keywords = "Diameter", .from = a.point, .bits = InitGet::NoZero | InitGet::NoNegative, .enterEnds = known > 0};
    showCircle(a.point, 1);
    const Answer r = ed.askDistance("Specify radius of circle or [Diameter]" + byDefault(known), options);
    if (r.status != Answer::Status::Keyword)
        return addCircle(ed, a.point, r.status == Answer::Status::Enter ? known : r.real);
    options.keywords.clear();
    showCircle(a.point, 0.5);
    const Answer d = ed.askDistance("Specify diameter of circle" + byDefault(known * 2), options);
    addCircle(ed, a.point, d.status == Answer::Status::Enter ? known : d.real / 2);
}

void point(Editor& ed)
{
    ed.printLine(fmt::format("Current point modes:  PDMODE={}  PDSIZE={}", ed.vars().integer("PDMODE"),
                             lengthText(ed.vars().real("PDSIZE"))));
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
