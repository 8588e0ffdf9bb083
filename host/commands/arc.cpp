// ARC, in the customary ways.
#include "host/commands/curve_edits.h"
#include "host/commands/families.h"
#include "host/commands/figure_preview.h"
#include "host/geom/tangent_circle.h"
#include "sdk/vcdb_curves.h"

namespace vk::commands {

namespace {

using namespace edit;

// In the UCS: anticlockwise from start to end about the centre.
struct ArcShape {
    VcGePoint3d centre;
    double radius, start, end;
};

double directionOf(const VcGePoint3d& from, const VcGePoint3d& to) { return std::atan2(to.y - from.y, to.x - from.x); }

// In the plane of the UCS at the height of the first point.
VcGePoint3d levelWith(const VcGePoint3d& first, const VcGePoint3d& p) { return {p.x, p.y, first.z}; }

double withinTurn(double angle)
{
    const double rest = std::fmod(angle, 2 * M_PI);
    return rest < 0 ? rest + 2 * M_PI : rest;
}

std::unique_ptr<VcDbArc> arcOf(Editor& ed, const ArcShape& arc)
{
    if (!(arc.radius > 0) || arc.start == arc.end)
        throw CommandError{"The arc does not exist: its points do not allow one."};
    const double twist = ucsTwist(ed);
    return std::make_unique<VcDbArc>(toWorld(ed, arc.centre), ucsNormal(ed), arc.radius, withinTurn(arc.start + twist),
                                     withinTurn(arc.end + twist));
}

void addArc(Editor& ed, const ArcShape& arc) { addToSpace(ed, arcOf(ed, arc)); }

// With the next question.
template <class ShapeAt>
void showArc(Editor& ed, ShapeAt shapeAt)
{
    showFigure(ed, [&ed, shapeAt](const VcGePoint3d& cursor) { return arcOf(ed, shapeAt(cursor)); });
}

ArcShape throughThree(const VcGePoint3d& a, const VcGePoint3d& b, const VcGePoint3d& c)
{
    const auto centre = geom::centerThrough(a, b, c);
    if (!centre)
        throw CommandError{"The arc does not exist: its three points lie on a line."};
    const bool anticlockwise = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x) > 0;
    const double first = directionOf(*centre, a), last = directionOf(*centre, c);
    return {*centre, centre->distanceTo(a), anticlockwise ? first : last, anticlockwise ? last : first};
}

ArcShape byAngle(const VcGePoint3d& centre, const VcGePoint3d& start, double included)
{
    const double first = directionOf(centre, start);
    return included > 0 ? ArcShape{centre, centre.distanceTo(start), first, first + included}
                        : ArcShape{centre, centre.distanceTo(start), first + included, first};
}

ArcShape byChord(const VcGePoint3d& centre, const VcGePoint3d& start, double chord)
{
    const double radius = centre.distanceTo(start);
    if (std::abs(chord) > 2 * radius)
        throw CommandError{"The arc does not exist: the chord is longer than the diameter."};
    const double angle = 2 * std::asin(std::abs(chord) / (2 * radius));
    return byAngle(centre, start, chord > 0 ? angle : 2 * M_PI - angle);
}

// From start to end with a radius: the shorter arc, anticlockwise; the longer for a negative one.
ArcShape byRadius(const VcGePoint3d& start, const VcGePoint3d& end, double radius)
{
    const double chord = start.distanceTo(end);
    if (chord == 0 || chord > 2 * std::abs(radius))
        throw CommandError{"The arc does not exist: the radius does not reach both ends."};
    const double height = std::sqrt(std::max(0.0, radius * radius - chord * chord / 4));
    const VcGeVector3d along = (end - start) / chord, left(-along.y, along.x, 0);
    const VcGePoint3d centre = start + along * (chord / 2) + left * (radius > 0 ? height : -height);
    return {centre, std::abs(radius), directionOf(centre, start), directionOf(centre, end)};
}

ArcShape endsWithAngle(const VcGePoint3d& start, const VcGePoint3d& end, double included)
{
    const double chord = start.distanceTo(end), half = included / 2;
    if (chord == 0 || std::sin(half) == 0)
        throw CommandError{"The arc does not exist: the included angle does not allow one."};
    const VcGeVector3d along = (end - start) / chord, left(-along.y, along.x, 0);
    const VcGePoint3d centre = start + along * (chord / 2) + left * (chord / 2 / std::tan(half));
    const double first = directionOf(centre, start), last = directionOf(centre, end);
    return {centre, centre.distanceTo(start), included > 0 ? first : last, included > 0 ? last : first};
}

ArcShape fromCentreTo(const VcGePoint3d& centre, const VcGePoint3d& start, const VcGePoint3d& end)
{
    return {centre, centre.distanceTo(start), directionOf(centre, start), directionOf(centre, end)};
}

// The rest of the questions when the centre and the start are known.
void fromCentre(Editor& ed, const VcGePoint3d& centre, const VcGePoint3d& start)
{
    showArc(ed, [=](const VcGePoint3d& cursor) { return fromCentreTo(centre, start, cursor); });
    const Answer a =
        ed.askPoint("Specify end point of arc or [Angle/chord Length]", {.keywords = "Angle Length", .from = centre});
    if (a.status == Answer::Status::Value)
        return addArc(ed, fromCentreTo(centre, start, a.point));
    if (a.text == "Angle") {
        showArc(ed, [=](const VcGePoint3d& cursor) {
            return byAngle(centre, start, withinTurn(directionOf(centre, cursor)));
        });
        const double angle = ed.askAngle("Specify included angle", {.from = centre, .bits = InitGet::NoZero}).real;
        return addArc(ed, byAngle(centre, start, angle));
    }
    showArc(ed, [=](const VcGePoint3d& cursor) { return byChord(centre, start, start.distanceTo(cursor)); });
    const double chord = ed.askDistance("Specify length of chord", {.from = start, .bits = InitGet::NoZero}).real;
    addArc(ed, byChord(centre, start, chord));
}

// In a given direction from the start.
ArcShape goingOn(const VcGePoint3d& start, const VcGeVector3d& direction, const VcGePoint3d& end)
{
    const VcGeVector3d chord = end - start;
    const double turn = std::atan2(direction.x * chord.y - direction.y * chord.x, direction.dotProduct(chord));
    return endsWithAngle(start, end, 2 * turn);
}

// From the last line or arc, as it ends.
void goOn(Editor& ed, const VcGePoint3d& start, const VcGeVector3d& direction)
{
    const auto shape = [=](const VcGePoint3d& end) { return goingOn(start, direction, levelWith(start, end)); };
    showArc(ed, shape);
    addArc(ed, shape(ed.point("Specify end point of arc", {.from = start})));
}

void fromEndsByDirection(Editor& ed, const VcGePoint3d& start, const VcGePoint3d& end)
{
    showArc(ed, [=](const VcGePoint3d& cursor) { return goingOn(start, cursor - start, end); });
    const double direction =
        askDirection(ed, "Specify tangent direction for the start point of arc", {.from = start}).real;
    addArc(ed, goingOn(start, {std::cos(direction), std::sin(direction), 0}, end));
}

void fromEnds(Editor& ed, const VcGePoint3d& start)
{
    const VcGePoint3d end = levelWith(start, ed.point("Specify end point of arc", {.from = start}));
    const auto about = [=](const VcGePoint3d& centre) { return fromCentreTo(levelWith(start, centre), start, end); };
    showArc(ed, about);
    const Answer a = ed.askPoint("Specify center point of arc or [Angle/Direction/Radius]",
                                 {.keywords = "Angle Direction Radius", .from = start});
    if (a.status == Answer::Status::Value)
        return addArc(ed, about(a.point));
    if (a.text == "Direction")
        return fromEndsByDirection(ed, start, end);
    if (a.text == "Angle") {
        showArc(ed, [=](const VcGePoint3d& cursor) {
            return endsWithAngle(start, end, withinTurn(directionOf(start, cursor)));
        });
        const double angle = ed.askAngle("Specify included angle", {.from = start, .bits = InitGet::NoZero}).real;
        return addArc(ed, endsWithAngle(start, end, angle));
    }
    showArc(ed, [=](const VcGePoint3d& cursor) { return byRadius(start, end, end.distanceTo(cursor)); });
    const double radius = ed.askDistance("Specify radius of arc", {.from = end, .bits = InitGet::NoZero}).real;
    addArc(ed, byRadius(start, end, radius));
}

void arc(Editor& ed)
{
    const auto last = lastCurveEnd(ed);
    const Answer first =
        ed.askPoint("Specify start point of arc or [Center]", {.keywords = "Center", .enterEnds = last.has_value()});
    if (first.status == Answer::Status::Enter)
        return goOn(ed, last->point, last->direction);
    if (first.status == Answer::Status::Keyword) {
        const VcGePoint3d centre = ed.point("Specify center point of arc");
        return fromCentre(ed, centre, levelWith(centre, ed.point("Specify start point of arc", {.from = centre})));
    }
    const VcGePoint3d start = first.point;
    const Answer second =
        ed.askPoint("Specify second point of arc or [Center/End]", {.keywords = "Center End", .from = start});
    if (second.status == Answer::Status::Keyword && second.text == "Center")
        return fromCentre(ed, levelWith(start, ed.point("Specify center point of arc", {.from = start})), start);
    if (second.status == Answer::Status::Keyword)
        return fromEnds(ed, start);
    const auto through = [start, middle = levelWith(start, second.point)](const VcGePoint3d& end) {
        return throughThree(start, middle, levelWith(start, end));
    };
    showArc(ed, through);
    addArc(ed, through(ed.point("Specify end point of arc", {.from = second.point})));
}

const HostCommand kCommands[] = {
    {"ARC", "A", kPlain, "Draws an arc.", arc},
};

}

std::span<const HostCommand> arcCommands() { return kCommands; }

}
