// DIMLINEAR, DIMALIGNED.
#include "host/commands/dim_common.h"
#include "host/commands/dim_pick.h"
#include "host/commands/families.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;

// Both ends of what is measured, in the UCS.
struct Ends {
    VcGePoint3d first, second;
};

Ends endsOf(Editor& ed, const VcDbEntity& object, const VcGePoint3d& pick)
{
    if (const auto* line = VcDbLine::cast(&object))
        return {fromWorld(ed, line->startPoint()), fromWorld(ed, line->endPoint())};
    if (const auto* arc = VcDbArc::cast(&object))
        return {fromWorld(ed, arc->startPoint()), fromWorld(ed, arc->endPoint())};
    // A circle from the pick across to the other side.
    const auto& circle = static_cast<const VcDbCircle&>(object);
    const VcGePoint3d center = fromWorld(ed, circle.center());
    const VcGeVector3d away = pick - center;
    const VcGeVector3d out = std::abs(away.x) >= std::abs(away.y) ? VcGeVector3d(circle.radius(), 0, 0)
                                                                  : VcGeVector3d(0, circle.radius(), 0);
    return {center - out, center + out};
}

Ends askObject(Editor& ed)
{
    const auto object = askMeasured<VcDbLine, VcDbArc, VcDbCircle>(ed, "Select object to dimension",
                                                                   "A line, an arc or a circle is wanted.");
    return endsOf(ed, *object.get(), object.pick());
}

Ends askEnds(Editor& ed)
{
    const Answer a = ed.askPoint("Specify first extension line origin or <select object>", {.enterEnds = true});
    if (a.status == Answer::Status::Enter)
        return askObject(ed);
    return {a.point, ed.point("Specify second extension line origin", {.from = a.point})};
}

double lengthAt(const Ends& ends, double angle)
{
    const VcGeVector3d v = ends.second - ends.first;
    return std::abs(v.x * std::cos(angle) + v.y * std::sin(angle));
}

// Where the line through the point at that angle meets the second extension line.
VcGePoint3d onSecond(const Ends& ends, double angle, const VcGePoint3d& through)
{
    const VcGeVector3d up(-std::sin(angle), std::cos(angle), 0);
    return ends.second + up * (through - ends.second).dotProduct(up);
}

std::unique_ptr<VcDbRotatedDimension> rotatedDimension(Editor& ed, const Ends& ends, double angle,
                                                       const VcGePoint3d& through)
{
    auto made = std::make_unique<VcDbRotatedDimension>();
    made->setXLine1Point(toWorld(ed, ends.first));
    made->setXLine2Point(toWorld(ed, ends.second));
    made->setDimLinePoint(toWorld(ed, onSecond(ends, angle, through)));
    made->setRotation(angle + ucsTwist(ed));
    return made;
}

std::unique_ptr<VcDbAlignedDimension> alignedDimension(Editor& ed, const Ends& ends, const VcGePoint3d& through)
{
    const VcGeVector3d v = ends.second - ends.first;
    auto made = std::make_unique<VcDbAlignedDimension>();
    made->setXLine1Point(toWorld(ed, ends.first));
    made->setXLine2Point(toWorld(ed, ends.second));
    made->setDimLinePoint(toWorld(ed, onSecond(ends, std::atan2(v.y, v.x), through)));
    return made;
}

void finish(Editor& ed, std::unique_ptr<VcDbDimension> made, const DimChoices& choices)
{
    const NewDimension added = addDimension(ed, std::move(made), choices);
    lastDimension() = added.id;
    reportMeasure(ed, {added.measurement, DimMeasure::Kind::Length});
}

std::unique_ptr<VcDbDimension> linearThrough(Editor& ed, const Ends& ends, std::optional<double> angle,
                                             const VcGePoint3d& through)
{
    const double direction = angle ? *angle : wantsHorizontal(ends.first, ends.second, through) ? 0 : M_PI / 2;
    auto made = rotatedDimension(ed, ends, direction, through);
    placeText(ed, *made, through);
    return made;
}

void locateLinear(Editor& ed, const Ends& ends, std::optional<double> angle)
{
    DimChoices choices;
    for (;;) {
        const auto through = [&ed, ends, angle](const VcGePoint3d& p) { return linearThrough(ed, ends, angle, p); };
        showDimension(ed, choices, through);
        const Answer a =
            ed.askPoint("Specify dimension line location or [Mtext/Text/Angle/Horizontal/Vertical/Rotated]",
                        {.keywords = "Mtext Text Angle Horizontal Vertical Rotated", .from = ends.second});
        if (a.status == Answer::Status::Value)
            return finish(ed, through(a.point), choices);
        if (a.text == "Horizontal")
            angle = 0;
        else if (a.text == "Vertical")
            angle = M_PI / 2;
        else if (a.text == "Rotated")
            angle = askDirection(ed, "Specify angle of dimension line").real;
        else
            takeTextChoice(ed, a.text, choices, {lengthAt(ends, angle.value_or(0)), DimMeasure::Kind::Length});
    }
}

void dimLinear(Editor& ed)
{
    const Ends ends = askEnds(ed);
    locateLinear(ed, ends, {});
}

void dimAligned(Editor& ed)
{
    const Ends ends = askEnds(ed);
    const auto through = [&ed, ends](const VcGePoint3d& p) -> std::unique_ptr<VcDbDimension> {
        auto made = alignedDimension(ed, ends, p);
        placeText(ed, *made, p);
        return made;
    };
    DimChoices choices;
    for (;;) {
        showDimension(ed, choices, through);
        const Answer a = ed.askPoint("Specify dimension line location or [Mtext/Text/Angle]",
                                     {.keywords = "Mtext Text Angle", .from = ends.second});
        if (a.status == Answer::Status::Value)
            return finish(ed, through(a.point), choices);
        takeTextChoice(ed, a.text, choices, {ends.first.distanceTo(ends.second), DimMeasure::Kind::Length});
    }
}

const HostCommand kCommands[] = {
    {"DIMLINEAR", "DLI", kPlain, "Dimensions a horizontal, vertical or turned distance.", dimLinear},
    {"DIMALIGNED", "DAL", kPlain, "Dimensions the distance between two points.", dimAligned},
};

}

void dimensionAtAngle(Editor& ed, std::optional<double> angle)
{
    const double direction = angle ? *angle : askDirection(ed, "Specify angle of dimension line").real;
    const Ends ends = askEnds(ed);
    locateLinear(ed, ends, direction);
}

std::span<const HostCommand> linearDimensionCommands() { return kCommands; }

}  // namespace vk::commands
