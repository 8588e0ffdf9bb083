// ID and DIST.
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/edit/sysvars.h"

namespace vk::commands {

namespace {

using namespace edit;

void identify(Editor& ed)
{
    const VcGePoint3d p = ed.point("Specify point");
    ed.printLine(pointText(p));
    ed.lastPoint = p;
}

// Along a chain of points; each further one is told with the length so far.
double alongPoints(Editor& ed, const VcGePoint3d& first)
{
    std::vector<VcGePoint3d> points{first};
    double total = 0;
    for (;;) {
        const Answer a =
            ed.askPoint(points.size() > 1 ? "Specify next point or [Undo/Total] <Total>" : "Specify next point",
                        {.keywords = points.size() > 1 ? "Undo Total" : "", .from = points.back(), .enterEnds = true});
        if (a.status == Answer::Status::Value) {
            total += points.back().distanceTo(a.point);
            points.push_back(a.point);
        } else if (a.status == Answer::Status::Keyword && a.text == "Undo") {
            const VcGePoint3d last = points.back();
            points.pop_back();
            total -= points.back().distanceTo(last);
            ed.lastPoint = points.back();
        } else {
            return total;
        }
        ed.printLine(fmt::format("Distance = {}", lengthText(total)));
    }
}

void distance(Editor& ed)
{
    const VcGePoint3d a = ed.point("Specify first point");
    const Answer second = ed.askPoint("Specify second point or [Multiple points]", {.keywords = "Multiple", .from = a});
    if (second.status == Answer::Status::Keyword) {
        ed.vars().force("DISTANCE", alongPoints(ed, a));
        return;
    }
    const VcGeVector3d d = second.point - a;
    const double flat = std::hypot(d.x, d.y);
    const double inPlane = std::atan2(d.y, d.x);
    ed.printLine(fmt::format("Distance = {},  Angle in XY Plane = {},  Angle from XY Plane = {}",
                             lengthText(d.length()), directionText(ed, inPlane), angleText(std::atan2(d.z, flat))));
    ed.printLine(
        fmt::format("Delta X = {},  Delta Y = {},   Delta Z = {}", lengthText(d.x), lengthText(d.y), lengthText(d.z)));
    ed.vars().force("DISTANCE", d.length());
}

const HostCommand kCommands[] = {
    {"ID", nullptr, kTransparent | kNoUndoStep, "Shows the coordinates of a point.", identify},
    {"DIST", "DI", kTransparent | kNoUndoStep, "Shows the distance between two points.", distance},
};

}

std::span<const HostCommand> inquiryCommands() { return kCommands; }

}
