// BREAK - takes a part out of a curve, or parts it at a point.
#include "host/commands/curve_edits.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/geom/apparent.h"
#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"

namespace vk::commands {

namespace {

using namespace edit;
using Status = Answer::Status;

// What is left of a curve when the part between two places goes. On a closed one the part runs from the first place to the
// second in the direction of the curve.
std::vector<geom::Curve> withoutPart(const geom::Curve& curve, double first, double second)
{
    std::vector<geom::Curve> left;
    const geom::Interval range = geom::paramRange(curve);
    if (geom::isClosed(curve)) {
        if (auto rest = geom::subCurve(curve, second, first > second ? first : first + (range.to - range.from)))
            left.push_back(std::move(*rest));
        return left;
    }
    if (auto before = geom::subCurve(curve, range.from, std::min(first, second)))
        left.push_back(std::move(*before));
    if (auto after = geom::subCurve(curve, std::max(first, second), range.to))
        left.push_back(std::move(*after));
    return left;
}

// Circles and arcs run anticlockwise as they are looked at, whatever side their normal is on.
bool runsClockwise(const geom::Curve& curve, const VcGeVector3d& view)
{
    const bool round = std::holds_alternative<geom::Circle>(curve) || std::holds_alternative<geom::Ellipse>(curve);
    const auto plane = round ? geom::planeOf(curve) : std::nullopt;
    return plane && plane->normal().dotProduct(view) < 0;
}

std::optional<VcGePoint3d> askSecond(Editor& ed, CurvePick& target)
{
    const Answer a = ed.askPoint("Specify second break point or [First point]", {.keywords = "First"});
    if (a.status == Status::Value)
        return toWorld(ed, a.point);
    const auto moved = curvePickAt(ed, *target.entity, toWorld(ed, ed.point("Specify first break point")));
    if (!moved)
        return std::nullopt;
    target = *moved;
    return toWorld(ed, ed.point("Specify second break point"));
}

void breakCurve(Editor& ed)
{
    std::optional<CurvePick> target;
    while (!target) {
        const Answer a = ed.askEntity("Select object");
        if (a.status != Status::Value)
            return;
        target = curvePick(ed, a);
        // An object that was given by name is broken where the answers say; its own place is the last point.
        ed.lastPoint = fromWorld(ed, target ? target->at : toWorld(ed, ed.lastPoint));
    }
    const auto second = askSecond(ed, *target);
    const auto param = second ? geom::paramSeenAt(target->curve, *second, viewNormal(ed)) : std::nullopt;
    if (!param)
        throw CommandError{"The object cannot be broken there."};
    double from = target->param, to = *param;
    if (runsClockwise(target->curve, viewNormal(ed)))
        std::swap(from, to);
    const VcGePoint3d a = geom::pointAt(target->curve, from), b = geom::pointAt(target->curve, to);
    const bool same = a.distanceTo(b) <= geom::meetingTolerance(target->curve, target->curve);
    if (same && geom::isClosed(target->curve))
        throw CommandError{"A closed object needs two different break points."};
    const auto left = withoutPart(target->curve, from, same ? from : to);
    if (left.empty())
        throw CommandError{"Nothing would be left of the object; ERASE removes it."};
    CurveEdits edits(ed);
    edits.begin();
    if (!edits.replace(*target->entity, left))
        throw CommandError{"The object cannot be broken there."};
}

const HostCommand kCommands[] = {
    {"BREAK", "BR", kPlain, "Takes a part out of a curve, or parts it at a point.", breakCurve},
};

}

std::span<const HostCommand> breakCommands() { return kCommands; }

}
