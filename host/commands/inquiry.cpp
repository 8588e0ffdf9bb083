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

void distance(Editor& ed)
{
    const VcGePoint3d a = ed.point("Specify first point"), b = ed.point("Specify second point", {.from = a});
    const VcGeVector3d d = b - a;
    const double flat = std::hypot(d.x, d.y);
    double inPlane = std::atan2(d.y, d.x);
    if (inPlane < 0)
        inPlane += 2 * M_PI;
    ed.printLine(fmt::format("Distance = {},  Angle in XY Plane = {},  Angle from XY Plane = {}", lengthText(d.length()), angleText(inPlane),
                             angleText(std::atan2(d.z, flat))));
    ed.printLine(fmt::format("Delta X = {},  Delta Y = {},   Delta Z = {}", lengthText(d.x), lengthText(d.y), lengthText(d.z)));
    ed.vars().force("DISTANCE", d.length());
}

const HostCommand kCommands[] = {
    {"ID", nullptr, kTransparent | kNoUndoStep, "Shows the coordinates of a point.", identify},
    {"DIST", "DI", kTransparent | kNoUndoStep, "Shows the distance between two points.", distance},
};

}

std::span<const HostCommand> inquiryCommands() { return kCommands; }

}
