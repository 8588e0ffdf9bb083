// DIVIDE, MEASURE - points or blocks at even steps along a curve.
#include "host/commands/block_definition.h"
#include "host/commands/curve_edits.h"
#include "host/commands/families.h"
#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/edit/selection_set.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"

#include <cmath>

namespace vk::commands {

namespace {

using namespace edit;
using Status = Answer::Status;

constexpr double kMostMarks = 100000;

struct Path {
    geom::Curve curve;
    double length = 0;
    bool fromEnd = false;  // it was picked nearer to its end
};

Path askPath(Editor& ed, const char* prompt)
{
    for (;;) {
        const Answer a = ed.askEntity(prompt);
        const VcDbEntity* entity = pickedCurve(ed, a);
        const auto curve = entity ? curveOf(*entity) : std::nullopt;
        const double length = curve ? geom::length(*curve) : 0;
        if (!(length > 0) || !std::isfinite(length)) {
            ed.printLine("A line, an arc, a circle, an ellipse, a spline or a polyline is wanted.");
            continue;
        }
        Path path{*curve, length, false};
        if (const auto near = a.hasPoint ? geom::closestPoint(*curve, toWorld(ed, a.point)) : std::nullopt)
            path.fromEnd = !geom::isClosed(*curve) &&
                           geom::lengthBetween(*curve, geom::paramRange(*curve).from, near->param) > length / 2;
        return path;
    }
}

// What stands at each place: a point, or a block, along the curve or level in the UCS.
struct Mark {
    const VcDbBlockTableRecord* block = nullptr;
    bool isAligned = true;
};

Mark askBlockMark(Editor& ed)
{
    const std::string name = ed.word("Enter name of block to insert");
    const VcDbBlockTableRecord* block = blockNamed(ed, name);
    if (!block)
        throw CommandError{fmt::format("Block \"{}\" not found.", name)};
    if (refersTo(ed.db(), block->objectId(), ed.db().currentSpace()))
        throw CommandError{"A block cannot come to hold itself."};
    return {block, ed.keyword("Align block with object? [Yes/No] <Y>", "Yes No", "Yes") == "Yes"};
}

std::unique_ptr<VcDbEntity> referenceAt(Editor& ed, const Mark& mark, const Path& path, double param)
{
    const auto plane = geom::planeOf(path.curve);
    const VcGeVector3d normal = mark.isAligned && plane ? plane->normal() : ucsNormal(ed);
    const VcGeVector3d along = geom::derivativesAt(path.curve, param).first;
    const geom::Frame frame = geom::arbitraryFrame(normal);
    auto reference = std::make_unique<VcDbBlockReference>(VcGePoint3d(), mark.block->objectId());
    reference->setNormal(normal);
    reference->setPosition(geom::pointAt(path.curve, param));
    reference->setRotation(mark.isAligned ? std::atan2(along.dotProduct(frame.y), along.dotProduct(frame.x))
                                          : ucsTwist(ed));
    return reference;
}

// The new objects are the previous selection for what comes next.
void place(Editor& ed, const Path& path, const Mark& mark, const std::vector<double>& lengths)
{
    auto made = std::make_shared<SelectionSet>();
    for (const double along : lengths) {
        ed.throwIfInterrupted();
        const auto param = geom::paramAtLength(path.curve, path.fromEnd ? path.length - along : along);
        if (!param)
            continue;
        made->add(mark.block ? addToSpace(ed, referenceAt(ed, mark, path, *param))
                             : addToSpace(ed, std::make_unique<VcDbPoint>(geom::pointAt(path.curve, *param))));
    }
    ed.previousSelection = made;
}

void divide(Editor& ed)
{
    constexpr std::int64_t kFewest = 2, kMost = 32767;
    const Path path = askPath(ed, "Select object to divide");
    Mark mark;
    Answer a = ed.askInteger("Enter the number of segments or [Block]", {.keywords = "Block"});
    if (a.status == Status::Keyword) {
        mark = askBlockMark(ed);
        a = ed.askInteger("Enter the number of segments", {});
    }
    while (a.integer < kFewest || a.integer > kMost) {
        ed.printLine(fmt::format("Requires an integer between {} and {}.", kFewest, kMost));
        a = ed.askInteger("Enter the number of segments", {});
    }
    std::vector<double> lengths;
    for (std::int64_t i = geom::isClosed(path.curve) ? 0 : 1; i < a.integer; ++i)
        lengths.push_back(path.length * double(i) / double(a.integer));
    place(ed, path, mark, lengths);
}

void measure(Editor& ed)
{
    constexpr int kPositive = InitGet::NoZero | InitGet::NoNegative;
    const Path path = askPath(ed, "Select object to measure");
    Mark mark;
    Answer a = ed.askDistance("Specify length of segment or [Block]", {.keywords = "Block", .bits = kPositive});
    if (a.status == Status::Keyword) {
        mark = askBlockMark(ed);
        a = ed.askDistance("Specify length of segment", {.bits = kPositive});
    }
    const double count = std::floor(path.length / a.real + 1e-9);
    if (count < 1)
        throw CommandError{"The object is not as long as that."};
    if (count > kMostMarks)
        throw CommandError{fmt::format("That would be {:.0f} marks; {:.0f} are the most.", count, kMostMarks)};
    std::vector<double> lengths;
    for (int i = 1; i <= int(count); ++i)
        lengths.push_back(std::min(a.real * i, path.length));
    place(ed, path, mark, lengths);
}

const HostCommand kCommands[] = {
    {"DIVIDE", "DIV", kPlain, "Sets points or blocks that divide a curve evenly.", divide},
    {"MEASURE", "ME", kPlain, "Sets points or blocks at a distance along a curve.", measure},
};

}

std::span<const HostCommand> divideCommands() { return kCommands; }

}
