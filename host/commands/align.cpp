// ALIGN - moves, turns and scales objects so that one, two or three of their points come to stand where others are.
#include "host/commands/copies.h"
#include "host/commands/displacement.h"
#include "host/commands/families.h"

#include <cmath>

namespace vk::commands {

namespace {

using namespace edit;
using Status = Answer::Status;

struct Pair {
    VcGePoint3d from, to;  // in the UCS
};

// Nothing where Enter ends the pairs.
std::optional<Pair> askPair(Editor& ed, const char* nth, const char* tail = "")
{
    const Answer from = ed.askPoint(fmt::format("Specify {} source point{}", nth, tail), {.enterEnds = true});
    if (from.status != Status::Value)
        return std::nullopt;
    return Pair{from.point, ed.point(fmt::format("Specify {} destination point", nth), {.from = from.point})};
}

struct Axes {
    VcGeVector3d x, y, z;
};

// X along the first direction, Y towards the second.
Axes axesOf(const VcGeVector3d& along, const VcGeVector3d& towards)
{
    const VcGeVector3d z = along.crossProduct(towards);
    if (!(z.length() > 1e-12 * along.length() * towards.length()))
        throw CommandError{"The points lie on a line."};
    return {along.normal(), z.normal().crossProduct(along.normal()), z.normal()};
}

VcGeMatrix3d between(const Pair& origin, const Axes& from, const Axes& to)
{
    return VcGeMatrix3d::alignCoordSys(origin.from, from.x, from.y, from.z, origin.to, to.x, to.y, to.z);
}

// Level directions turn about the Z axis; others take the Z axis along as far as they can.
VcGeVector3d sideOf(const VcGeVector3d& direction)
{
    const bool isUpright = std::hypot(direction.x, direction.y) <= 1e-9 * direction.length();
    return isUpright ? VcGeVector3d::yAxis() : VcGeVector3d(-direction.y, direction.x, 0);
}

VcGeMatrix3d byTwo(Editor& ed, const Pair& first, const Pair& second)
{
    const VcGeVector3d from = second.from - first.from, to = second.to - first.to;
    if (!(from.length() > 0) || !(to.length() > 0))
        throw CommandError{"The second point must be another than the first."};
    const bool scales =
        ed.keyword("Scale objects based on alignment points? [Yes/No] <N>", "Yes No", "No") == "Yes";
    const VcGeMatrix3d turn = between(first, axesOf(from, sideOf(from)), axesOf(to, sideOf(to)));
    return scales ? VcGeMatrix3d::scaling(to.length() / from.length(), first.to) * turn : turn;
}

VcGeMatrix3d askAlignment(Editor& ed, const SelectionSet& objects)
{
    const VcGePoint3d source = ed.point("Specify first source point");
    showMovedFrom(ed, objects, source);
    const Pair first{source, ed.point("Specify first destination point", {.from = source})};
    const auto second = askPair(ed, "second");
    if (!second)
        return VcGeMatrix3d::translation(first.to - first.from);
    const auto third = askPair(ed, "third", " or <continue>");
    if (!third)
        return byTwo(ed, first, *second);
    return between(first, axesOf(second->from - first.from, third->from - first.from),
                   axesOf(second->to - first.to, third->to - first.to));
}

void align(Editor& ed)
{
    const auto objects = ed.select();
    if (!objects->empty())
        transformObjects(ed, *objects, inWorld(ed, askAlignment(ed, *objects)));
}

const HostCommand kCommands[] = {
    {"ALIGN", "AL", kUsesPickSet, "Moves and turns objects to other points.", align},
};

}

std::span<const HostCommand> alignCommands() { return kCommands; }

}
