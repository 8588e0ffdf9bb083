// DIMRADIUS, DIMDIAMETER, DIMJOGGED, DIMANGULAR, DIMARC, DIMORDINATE, DIMCENTER.
#include "host/commands/dim_common.h"
#include "host/commands/dim_pick.h"
#include "host/commands/families.h"
#include "sdk/vcdb_curves.h"

namespace vk::commands {

namespace {

using namespace edit;

// A circle or an arc, in the UCS; an arc runs anticlockwise there.
struct Round {
    VcGePoint3d center;
    double radius = 0;
    std::optional<VcGePoint3d> start, end;
};

Round roundOf(Editor& ed, const VcDbEntity& object)
{
    if (const auto* arc = VcDbArc::cast(&object)) {
        Round r{fromWorld(ed, arc->center()), arc->radius(), fromWorld(ed, arc->startPoint()),
                fromWorld(ed, arc->endPoint())};
        if (arc->normal().dotProduct(ucsNormal(ed)) < 0)
            std::swap(r.start, r.end);
        return r;
    }
    const auto& circle = static_cast<const VcDbCircle&>(object);
    return {fromWorld(ed, circle.center()), circle.radius(), {}, {}};
}

Round askRound(Editor& ed)
{
    return roundOf(
        ed, *askMeasured<VcDbArc, VcDbCircle>(ed, "Select arc or circle", "A circle or an arc is wanted.").get());
}

VcGePoint3d onRound(const Round& r, const VcGePoint3d& towards, double sign = 1)
{
    VcGeVector3d v = towards - r.center;
    v.z = 0;
    return r.center + (v.length() > 0 ? v.normal() : VcGeVector3d::xAxis()) * (sign * r.radius);
}

// The point that a person gives is where the text goes.
VcGePoint3d askLocation(Editor& ed, const Round& r, DimChoices& choices, const DimMeasure& measure,
                        const DimensionAt& shown)
{
    for (;;) {
        if (shown)
            showDimension(ed, choices, shown);
        const Answer a = ed.askPoint("Specify dimension line location or [Mtext/Text/Angle]",
                                     {.keywords = "Mtext Text Angle", .from = r.center});
        if (a.status == Answer::Status::Value)
            return a.point;
        takeTextChoice(ed, a.text, choices, measure);
    }
}

std::unique_ptr<VcDbDimension> radiusAt(Editor& ed, const Round& r, const VcGePoint3d& at)
{
    auto made = std::make_unique<VcDbRadialDimension>();
    made->setNormal(ucsNormal(ed));
    made->setCenter(toWorld(ed, r.center));
    made->setChordPoint(toWorld(ed, onRound(r, at)));
    made->setTextPosition(toWorld(ed, at));
    return made;
}

void dimRadius(Editor& ed)
{
    const Round r = askRound(ed);
    const DimMeasure measure{r.radius, DimMeasure::Kind::Length};
    reportMeasure(ed, measure);
    DimChoices choices;
    const auto placed = [&ed, r](const VcGePoint3d& at) { return radiusAt(ed, r, at); };
    addDimension(ed, placed(askLocation(ed, r, choices, measure, placed)), choices);
}

std::unique_ptr<VcDbDimension> diameterAt(Editor& ed, const Round& r, const VcGePoint3d& at)
{
    auto made = std::make_unique<VcDbDiametricDimension>();
    made->setNormal(ucsNormal(ed));
    made->setChordPoint(toWorld(ed, onRound(r, at)));
    made->setFarChordPoint(toWorld(ed, onRound(r, at, -1)));
    made->setTextPosition(toWorld(ed, at));
    return made;
}

void dimDiameter(Editor& ed)
{
    const Round r = askRound(ed);
    const DimMeasure measure{2 * r.radius, DimMeasure::Kind::Length};
    reportMeasure(ed, measure);
    DimChoices choices;
    const auto placed = [&ed, r](const VcGePoint3d& at) { return diameterAt(ed, r, at); };
    addDimension(ed, placed(askLocation(ed, r, choices, measure, placed)), choices);
}

void dimJogged(Editor& ed)
{
    const Round r = askRound(ed);
    const VcGePoint3d center = ed.point("Specify center location override", {.from = r.center});
    reportMeasure(ed, {r.radius, DimMeasure::Kind::Length});
    DimChoices choices;
    const VcGePoint3d at = askLocation(ed, r, choices, {r.radius, DimMeasure::Kind::Length}, {});
    const VcGePoint3d jog = ed.point("Specify jog location", {.from = at});
    auto made = std::make_unique<VcDbRadialDimensionLarge>();
    made->setNormal(ucsNormal(ed));
    made->setCenter(toWorld(ed, r.center));
    made->setChordPoint(toWorld(ed, onRound(r, at)));
    made->setOverrideCenter(toWorld(ed, center));
    made->setJogPoint(toWorld(ed, jog));
    made->setJogAngle(currentDimVars(ed).dimjogang);
    addDimension(ed, std::move(made), choices);
}

// Angles

struct Lines {
    VcGePoint3d a, b, c, d;
};

std::optional<VcGePoint3d> crossing(const Lines& l)
{
    const VcGeVector3d u = l.b - l.a, v = l.d - l.c, w = l.c - l.a;
    const double cross = u.x * v.y - u.y * v.x;
    if (std::abs(cross) <= 1e-12 * u.length() * v.length())
        return std::nullopt;
    return l.a + u * ((w.x * v.y - w.y * v.x) / cross);
}

std::unique_ptr<VcDbDimension> betweenLines(Editor& ed, const Lines& l, const VcGePoint3d& arc)
{
    auto made = std::make_unique<VcDb2LineAngularDimension>();
    made->setNormal(ucsNormal(ed));
    made->setXLine1Start(toWorld(ed, l.a));
    made->setXLine1End(toWorld(ed, l.b));
    made->setXLine2Start(toWorld(ed, l.c));
    made->setXLine2End(toWorld(ed, l.d));
    made->setArcPoint(toWorld(ed, arc));
    return made;
}

std::unique_ptr<VcDbDimension> aboutPoint(Editor& ed, const VcGePoint3d& center, const VcGePoint3d& first,
                                          const VcGePoint3d& second, const VcGePoint3d& arc)
{
    auto made = std::make_unique<VcDb3PointAngularDimension>();
    made->setCenterPoint(toWorld(ed, center));
    made->setXLine1Point(toWorld(ed, first));
    made->setXLine2Point(toWorld(ed, second));
    made->setArcPoint(toWorld(ed, arc));
    return made;
}

VcGePoint3d askArcLocation(Editor& ed, DimChoices& choices, const VcGePoint3d& from, double angle,
                           const DimensionAt& shown)
{
    for (;;) {
        showDimension(ed, choices, shown);
        const Answer a = ed.askPoint("Specify dimension arc line location or [Mtext/Text/Angle]",
                                     {.keywords = "Mtext Text Angle", .from = from});
        if (a.status == Answer::Status::Value)
            return a.point;
        takeTextChoice(ed, a.text, choices, {angle, DimMeasure::Kind::Angle});
    }
}

NewDimension finishLength(Editor& ed, std::unique_ptr<VcDbDimension> made, const DimChoices& choices)
{
    const NewDimension added = addDimension(ed, std::move(made), choices);
    reportMeasure(ed, {added.measurement, DimMeasure::Kind::Length});
    return added;
}

void finishAngle(Editor& ed, std::unique_ptr<VcDbDimension> made, const DimChoices& choices, const VcGePoint3d& at)
{
    placeText(ed, *made, at);
    const NewDimension added = addDimension(ed, std::move(made), choices);
    lastDimension() = added.id;
    reportMeasure(ed, {added.measurement, DimMeasure::Kind::Angle});
}

double angleAt(const VcGePoint3d& center, const VcGePoint3d& first, const VcGePoint3d& second)
{
    return (first - center).angleTo(second - center);
}

void angleOfThreePoints(Editor& ed, const VcGePoint3d& center, const VcGePoint3d& first, const VcGePoint3d& second)
{
    if (center.distanceTo(first) == 0 || center.distanceTo(second) == 0)
        throw CommandError{"The angle's ends must not lie on its vertex."};
    DimChoices choices;
    const auto through = [&ed, center, first, second](const VcGePoint3d& p) {
        return aboutPoint(ed, center, first, second, p);
    };
    const VcGePoint3d at = askArcLocation(ed, choices, center, angleAt(center, first, second), through);
    finishAngle(ed, through(at), choices, at);
}

void angleOfLines(Editor& ed, const VcDbLine& first)
{
    const auto picked = askMeasured<VcDbLine>(ed, "Select second line", "A line is wanted.");
    const VcDbLine& second = *picked.as<VcDbLine>();
    const Lines l{fromWorld(ed, first.startPoint()), fromWorld(ed, first.endPoint()),
                  fromWorld(ed, second.startPoint()), fromWorld(ed, second.endPoint())};
    const auto vertex = crossing(l);
    if (!vertex)
        throw CommandError{"The lines are parallel and have no angle."};
    DimChoices choices;
    const auto through = [&ed, l](const VcGePoint3d& p) { return betweenLines(ed, l, p); };
    const VcGePoint3d at = askArcLocation(ed, choices, *vertex, (l.b - l.a).angleTo(l.d - l.c), through);
    finishAngle(ed, through(at), choices, at);
}

void dimAngular(Editor& ed)
{
    for (;;) {
        const Answer a = ed.askEntity("Select arc, circle, line, or <specify vertex>", {.enterEnds = true});
        if (a.status == Answer::Status::Enter) {
            const VcGePoint3d center = ed.point("Specify angle vertex");
            const VcGePoint3d first = ed.point("Specify first angle endpoint", {.from = center});
            return angleOfThreePoints(ed, center, first, ed.point("Specify second angle endpoint", {.from = center}));
        }
        const MeasuredObject object(ed, a);
        if (const auto* line = object.as<VcDbLine>())
            return angleOfLines(ed, *line);
        if (object.as<VcDbArc>()) {
            const Round r = roundOf(ed, *object.get());
            return angleOfThreePoints(ed, r.center, *r.start, *r.end);
        }
        if (object.as<VcDbCircle>()) {
            const Round r = roundOf(ed, *object.get());
            const VcGePoint3d first = onRound(r, a.hasPoint ? a.point : r.center);
            return angleOfThreePoints(ed, r.center, first,
                                      ed.point("Specify second angle endpoint", {.from = r.center}));
        }
        ed.printLine("A line, an arc or a circle is wanted.");
    }
}

// The dimension's arc lies on the side of the arc itself, whatever side the point is on.
std::unique_ptr<VcDbDimension> arcLengthAt(Editor& ed, const Round& r, double middle, const VcGePoint3d& at)
{
    auto made = std::make_unique<VcDbArcDimension>();
    made->setCenterPoint(toWorld(ed, r.center));
    made->setXLine1Point(toWorld(ed, *r.start));
    made->setXLine2Point(toWorld(ed, *r.end));
    made->setArcPoint(
        toWorld(ed, r.center + VcGeVector3d(std::cos(middle), std::sin(middle), 0) * r.center.distanceTo(at)));
    return made;
}

void dimArc(Editor& ed)
{
    const Round r = roundOf(ed, *askMeasured<VcDbArc>(ed, "Select arc", "An arc is wanted.").get());
    DimChoices choices;
    const VcGeVector3d a = *r.start - r.center, b = *r.end - r.center;
    const double sweep = std::fmod(std::atan2(b.y, b.x) - std::atan2(a.y, a.x) + 4 * M_PI, 2 * M_PI);
    const double middle = std::atan2(a.y, a.x) + sweep / 2;
    const auto through = [&ed, r, middle](const VcGePoint3d& p) { return arcLengthAt(ed, r, middle, p); };
    for (;;) {
        showDimension(ed, choices, through);
        const Answer at = ed.askPoint("Specify arc length dimension location or [Mtext/Text/Angle]",
                                      {.keywords = "Mtext Text Angle", .from = r.center});
        if (at.status != Answer::Status::Value) {
            takeTextChoice(ed, at.text, choices, {r.radius * sweep, DimMeasure::Kind::Length});
            continue;
        }
        auto made = through(at.point);
        placeText(ed, *made, at.point);
        finishLength(ed, std::move(made), choices);
        return;
    }
}

// A leader that runs up or down tells the X coordinate.
std::unique_ptr<VcDbDimension> ordinateTo(Editor& ed, const VcGePoint3d& feature, std::optional<bool> useX,
                                          const VcGePoint3d& end)
{
    const bool x = useX.value_or(std::abs(end.y - feature.y) > std::abs(end.x - feature.x));
    auto made = std::make_unique<VcDbOrdinateDimension>();
    made->setOrigin(toWorld(ed, VcGePoint3d()));
    made->setDefiningPoint(toWorld(ed, feature));
    made->setLeaderEndPoint(toWorld(ed, end));
    x ? made->useXAxis() : made->useYAxis();
    return made;
}

void dimOrdinate(Editor& ed)
{
    const VcGePoint3d feature = ed.point("Specify feature location");
    DimChoices choices;
    std::optional<bool> useX;
    for (;;) {
        const auto to = [&ed, feature, useX](const VcGePoint3d& end) { return ordinateTo(ed, feature, useX, end); };
        showDimension(ed, choices, to);
        const Answer a = ed.askPoint("Specify leader endpoint or [Xdatum/Ydatum/Mtext/Text/Angle]",
                                     {.keywords = "Xdatum Ydatum Mtext Text Angle", .from = feature});
        if (a.status == Answer::Status::Value) {
            lastDimension() = finishLength(ed, to(a.point), choices).id;
            return;
        }
        if (a.text == "Xdatum" || a.text == "Ydatum")
            useX = a.text == "Xdatum";
        else
            takeTextChoice(ed, a.text, choices,
                           {std::abs(useX.value_or(true) ? feature.x : feature.y), DimMeasure::Kind::Length});
    }
}

// DIMCEN: a cross or, below zero, with the axes as well, as loose lines.
void addCenterLine(Editor& ed, const VcGePoint3d& a, const VcGePoint3d& b)
{
    addToSpace(ed, std::make_unique<VcDbLine>(toWorld(ed, a), toWorld(ed, b)));
}

void dimCenter(Editor& ed)
{
    const VcDbDimVars vars = currentDimVars(ed);
    const double size = std::abs(vars.dimcen) * currentDimScale(ed, vars);
    if (size == 0)
        throw CommandError{"DIMCEN is 0: there is no mark to draw."};
    const Round r = askRound(ed);
    for (const VcGeVector3d& axis : {VcGeVector3d::xAxis(), VcGeVector3d::yAxis()}) {
        addCenterLine(ed, r.center - axis * size, r.center + axis * size);
        if (vars.dimcen > 0 || r.radius <= 2 * size)
            continue;
        for (const double side : {-1.0, 1.0})
            addCenterLine(ed, r.center + axis * (side * 2 * size), r.center + axis * (side * (r.radius + size)));
    }
}

const HostCommand kCommands[] = {
    {"DIMCENTER", "DCE", kPlain, "Marks the centre of a circle or an arc.", dimCenter},
    {"DIMRADIUS", "DRA", kPlain, "Dimensions the radius of a circle or an arc.", dimRadius},
    {"DIMDIAMETER", "DDI", kPlain, "Dimensions the diameter of a circle or an arc.", dimDiameter},
    {"DIMJOGGED", "DJO", kPlain, "Dimensions a radius whose centre is far away.", dimJogged},
    {"DIMANGULAR", "DAN", kPlain, "Dimensions an angle.", dimAngular},
    {"DIMARC", "DAR", kPlain, "Dimensions the length of an arc.", dimArc},
    {"DIMORDINATE", "DOR", kPlain, "Dimensions a coordinate.", dimOrdinate},
};

}

std::span<const HostCommand> roundDimensionCommands() { return kCommands; }

}  // namespace vk::commands
