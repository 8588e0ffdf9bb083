// LINE, CIRCLE, POINT.
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
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

void line(Editor& ed)
{
    AskOptions first;
    first.enterEnds = true;
    const Answer start = ed.askPoint("Specify first point", first);
    std::vector<VcGePoint3d> points{start.status == Answer::Status::Enter ? ed.lastPoint : start.point};
    std::vector<VcDbObjectId> made;
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
        made.push_back(addToSpace(ed, std::make_unique<VcDbLine>(toWorld(ed, points[points.size() - 2]), toWorld(ed, points.back()))));
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

// The centre of the circle through three points of the XY plane; nothing when they lie on a line.
std::optional<VcGePoint3d> centreThrough(const VcGePoint3d& a, const VcGePoint3d& b, const VcGePoint3d& c)
{
    const double bx = b.x - a.x, by = b.y - a.y, cx = c.x - a.x, cy = c.y - a.y;
    const double cross = 2 * (bx * cy - by * cx);
    const double size = std::max({std::abs(bx), std::abs(by), std::abs(cx), std::abs(cy)});
    if (std::abs(cross) <= 1e-12 * size * size)
        return std::nullopt;
    const double b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
    return VcGePoint3d(a.x + (cy * b2 - by * c2) / cross, a.y + (bx * c2 - cx * b2) / cross, a.z);
}

void circleByThree(Editor& ed)
{
    const VcGePoint3d a = ed.point("Specify first point on circle"), b = ed.point("Specify second point on circle"),
                      c = ed.point("Specify third point on circle");
    const auto centre = centreThrough(a, b, c);
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

void circle(Editor& ed)
{
    AskOptions first;
    first.keywords = "3P 2P";
    const Answer a = ed.askPoint("Specify center point for circle or [3P/2P]", first);
    if (a.status == Answer::Status::Keyword)
        return a.text == "3P" ? circleByThree(ed) : circleByTwo(ed);
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
