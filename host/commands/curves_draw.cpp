// ELLIPSE, XLINE, RAY, ISOPLANE.
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/figure_preview.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_curves.h"

namespace vk::commands {

namespace {

using namespace edit;

VcGeVector3d inWorld(Editor& ed, const VcGeVector3d& ucs) { return ucsToWorld(ed) * ucs; }

// Ellipses

// Points and axes in the UCS; the major one may be the shorter until the ellipse is made.
struct Axes {
    VcGePoint3d center;
    VcGeVector3d first;
    double other = 0;
};

Axes askAxes(Editor& ed, bool byCenter)
{
    Axes axes;
    if (byCenter) {
        axes.center = ed.point("Specify center of ellipse");
        axes.first = ed.point("Specify endpoint of axis", {.from = axes.center}) - axes.center;
    }
    return axes;
}

std::unique_ptr<VcDbEllipse> ellipseOf(Editor& ed, const Axes& axes)
{
    VcGeVector3d major = axes.first;
    double minor = axes.other;
    if (minor > major.length()) {
        const VcGeVector3d turned(-major.y, major.x, 0);
        const double length = major.length();
        major = turned * (minor / length);
        minor = length;
    }
    return std::make_unique<VcDbEllipse>(toWorld(ed, axes.center), ucsNormal(ed), inWorld(ed, major),
                                         minor / major.length());
}

void finishAxes(Editor& ed, Axes& axes)
{
    axes.first.z = 0;
    if (!(axes.first.length() > 0))
        throw CommandError{"The axis of the ellipse has no length."};
    showFigure(ed, [&ed, axes](const VcGePoint3d& cursor) -> std::unique_ptr<VcDbEntity> {
        const double other = axes.center.distanceTo(cursor);
        return other > 0 ? ellipseOf(ed, {axes.center, axes.first, other}) : nullptr;
    });
    const Answer a =
        ed.askDistance("Specify distance to other axis or [Rotation]",
                       {.keywords = "Rotation", .from = axes.center, .bits = InitGet::NoZero | InitGet::NoNegative});
    if (a.status == Answer::Status::Value) {
        axes.other = a.real;
        return;
    }
    for (;;) {
        const double angle = ed.askAngle("Specify rotation around major axis", {.from = axes.center}).real;
        axes.other = axes.first.length() * std::abs(std::cos(angle));
        if (axes.other > axes.first.length() * 1e-4)
            return;
        ed.printLine("The ellipse would be seen from its edge; the rotation must lie between 0 and 89.4 degrees.");
    }
}

// The parameter of the point of an ellipse that lies in a direction from its centre.
double paramInDirection(const VcDbEllipse& e, double angleFromMajor)
{
    const double turns = std::floor((angleFromMajor + M_PI) / (2 * M_PI));
    const double a = angleFromMajor - turns * 2 * M_PI;
    return std::atan2(std::sin(a), std::cos(a) * e.radiusRatio()) + turns * 2 * M_PI;
}

double directionOfMajor(Editor& ed, const VcDbEllipse& e)
{
    const VcGeVector3d major = ucsToWorld(ed).inverse() * e.majorAxis();
    return std::atan2(major.y, major.x);
}

void cutToArc(Editor& ed, VcDbEllipse& e, const VcGePoint3d& center)
{
    const double major = directionOfMajor(ed, e);
    bool parameters = false;
    const auto ask = [&](const char* angle, const char* parameter, const char* keywords) {
        return ed.askAngle(parameters ? parameter : angle, {.keywords = keywords, .from = center});
    };
    const auto param = [&](double typed) { return parameters ? typed : paramInDirection(e, typed - major); };
    Answer start;
    for (;;) {
        start = ask("Specify start angle or [Parameter]", "Specify start parameter or [Angle]",
                    parameters ? "Angle" : "Parameter");
        if (start.status != Answer::Status::Keyword)
            break;
        parameters = !parameters;
    }
    const double from = param(start.real);
    double to = 0;
    for (;;) {
        const Answer end =
            ask("Specify end angle or [Parameter/Included angle]", "Specify end parameter or [Angle/Included angle]",
                parameters ? "Angle Included" : "Parameter Included");
        if (end.status == Answer::Status::Keyword && end.text == "Included") {
            to = param(start.real + ed.askAngle("Specify included angle for arc").real);
            break;
        }
        if (end.status != Answer::Status::Keyword) {
            to = param(end.real);
            break;
        }
        parameters = !parameters;
    }
    const auto turn = [](double a) { return a - std::floor(a / (2 * M_PI)) * 2 * M_PI; };
    const double first = turn(from), sweep = turn(to - from);
    if (!(sweep > 1e-12))
        throw CommandError{"The arc has no length: it starts where it ends."};
    e.set(e.center(), e.normal(), e.majorAxis(), e.radiusRatio(), first, first + sweep);
}

// A circle as it is seen in the isometric plane that SNAPISOPAIR tells: left, top, right.
Axes seenInIsoplane(Editor& ed, const VcGePoint3d& center, double radius)
{
    static constexpr double kMajorDirections[] = {-M_PI / 3, 0, M_PI / 3};
    const double direction =
        kMajorDirections[std::clamp<std::int64_t>(ed.vars().integer("SNAPISOPAIR"), 0, 2)] + ed.vars().real("SNAPANG");
    return {center, VcGeVector3d(std::cos(direction), std::sin(direction), 0) * (radius * std::sqrt(1.5)),
            radius * std::sqrt(0.5)};
}

void isocircle(Editor& ed)
{
    const VcGePoint3d center = ed.point("Specify center of isocircle");
    const auto circleOf = [&ed, center](double radius) { return ellipseOf(ed, seenInIsoplane(ed, center, radius)); };
    showFigure(ed, [=](const VcGePoint3d& cursor) -> std::unique_ptr<VcDbEntity> {
        const double radius = center.distanceTo(cursor);
        return radius > 0 ? circleOf(radius) : nullptr;
    });
    const Answer r =
        ed.askDistance("Specify radius of isocircle or [Diameter]",
                       {.keywords = "Diameter", .from = center, .bits = InitGet::NoZero | InitGet::NoNegative});
    const double radius = r.status == Answer::Status::Keyword
                              ? ed.askDistance("Specify diameter of isocircle",
                                               {.from = center, .bits = InitGet::NoZero | InitGet::NoNegative})
                                        .real /
                                    2
                              : r.real;
    addToSpace(ed, circleOf(radius));
}

void isoplane(Editor& ed)
{
    static constexpr const char* kPlanes[] = {"Left", "Top", "Right"};
    const auto now = std::clamp<std::int64_t>(ed.vars().integer("SNAPISOPAIR"), 0, 2);
    const std::string plane =
        ed.keyword(fmt::format("Enter isometric plane setting [Left/Top/Right] <{}>", kPlanes[(now + 1) % 3]),
                   "Left Top Right", kPlanes[(now + 1) % 3]);
    for (int i = 0; i < 3; ++i)
        if (plane == kPlanes[i])
            ed.vars().set("SNAPISOPAIR", std::int32_t(i));
    ed.printLine("Current isoplane:  " + plane);
}

void ellipse(Editor& ed)
{
    bool arc = false;
    const bool isometric = ed.vars().integer("SNAPSTYL") == 1;
    Answer a = ed.askPoint(isometric ? "Specify axis endpoint of ellipse or [Arc/Center/Isocircle]"
                                     : "Specify axis endpoint of ellipse or [Arc/Center]",
                           {.keywords = isometric ? "Arc Center Isocircle" : "Arc Center"});
    if (a.status == Answer::Status::Keyword && a.text == "Isocircle")
        return isocircle(ed);
    if (a.status == Answer::Status::Keyword && a.text == "Arc") {
        arc = true;
        a = ed.askPoint("Specify axis endpoint of elliptical arc or [Center]", {.keywords = "Center"});
    }
    Axes axes = askAxes(ed, a.status == Answer::Status::Keyword);
    if (a.status == Answer::Status::Value) {
        const VcGePoint3d other = ed.point("Specify other endpoint of axis", {.from = a.point});
        axes.center = a.point + (other - a.point) * 0.5;
        axes.first = other - axes.center;
    }
    finishAxes(ed, axes);
    auto made = ellipseOf(ed, axes);
    if (arc)
        cutToArc(ed, *made, axes.center);
    addToSpace(ed, std::move(made));
}

// Construction lines

template <class T>
void addUnbounded(Editor& ed, const VcGePoint3d& base, const VcGeVector3d& direction)
{
    auto line = std::make_unique<T>();
    line->setBasePoint(toWorld(ed, base));
    line->setUnitDir(inWorld(ed, direction).normal());
    addToSpace(ed, std::move(line));
}

// Each further point makes a line from the first through it.
template <class T>
void throughPoints(Editor& ed, const VcGePoint3d& base)
{
    for (;;) {
        const Answer a = ed.askPoint("Specify through point", {.from = base, .enterEnds = true});
        if (a.status != Answer::Status::Value)
            return;
        if (a.point.distanceTo(base) > 0)
            addUnbounded<T>(ed, base, a.point - base);
        else
            ed.printLine("The point must differ from the first one.");
    }
}

void parallels(Editor& ed, const VcGeVector3d& direction)
{
    for (;;) {
        const Answer a = ed.askPoint("Specify through point", {.enterEnds = true});
        if (a.status != Answer::Status::Value)
            return;
        addUnbounded<VcDbXline>(ed, a.point, direction);
    }
}

// Direction of a line that is picked, in the UCS.
std::optional<VcGeVector3d> directionOf(Editor& ed, const VcDbEntity* entity)
{
    const VcGeMatrix3d m = ucsToWorld(ed).inverse();
    if (const auto* line = VcDbLine::cast(entity); line && line->startPoint() != line->endPoint())
        return m * (line->endPoint() - line->startPoint()).normal();
    if (const auto* line = VcDbUnboundedLine::cast(entity))
        return m * line->unitDir();
    return std::nullopt;
}

struct PickedLine {
    VcGePoint3d base;
    VcGeVector3d direction;
};

std::optional<PickedLine> askLine(Editor& ed)
{
    for (;;) {
        const Answer a = ed.askEntity("Select a line object");
        const auto* entity = ed.db().liveAs<VcDbEntity>(a.entity);
        if (a.status == Answer::Status::Enter)
            return std::nullopt;
        if (const auto direction = directionOf(ed, entity)) {
            const auto* line = VcDbLine::cast(entity);
            return PickedLine{
                fromWorld(ed, line ? line->startPoint() : static_cast<const VcDbUnboundedLine*>(entity)->basePoint()),
                *direction};
        }
        ed.printLine("A line, a ray or a construction line is needed.");
    }
}

void atAngle(Editor& ed)
{
    const Answer a =
        askDirection(ed, "Enter angle of xline (0) or [Reference]", {.keywords = "Reference", .enterEnds = true});
    double angle = a.status == Answer::Status::Value ? a.real : 0;
    if (a.status == Answer::Status::Keyword) {
        const auto line = askLine(ed);
        if (!line)
            return;
        const Answer by = ed.askAngle("Enter angle of xline <0>", {.enterEnds = true});
        angle = std::atan2(line->direction.y, line->direction.x) + (by.status == Answer::Status::Value ? by.real : 0);
    }
    parallels(ed, {std::cos(angle), std::sin(angle), 0});
}

void bisectors(Editor& ed)
{
    const VcGePoint3d vertex = ed.point("Specify angle vertex point");
    VcGeVector3d first;
    while ((first = ed.point("Specify angle start point", {.from = vertex}) - vertex).isZeroLength())
        ed.printLine("The point must differ from the vertex.");
    first = first.normal();
    for (;;) {
        const Answer a = ed.askPoint("Specify angle end point", {.from = vertex, .enterEnds = true});
        if (a.status != Answer::Status::Value)
            return;
        if ((a.point - vertex).isZeroLength()) {
            ed.printLine("The point must differ from the vertex.");
            continue;
        }
        const VcGeVector3d sum = first + (a.point - vertex).normal();
        addUnbounded<VcDbXline>(ed, vertex, sum.length() > 1e-9 ? sum : VcGeVector3d(-first.y, first.x, 0));
    }
}

void offsets(Editor& ed)
{
    const Answer d =
        ed.askDistance("Specify offset distance or [Through] <Through>",
                       {.keywords = "Through", .bits = InitGet::NoZero | InitGet::NoNegative, .enterEnds = true});
    while (const auto line = askLine(ed)) {
        if (d.status != Answer::Status::Value) {
            addUnbounded<VcDbXline>(ed, ed.point("Specify through point"), line->direction);
            continue;
        }
        const VcGeVector3d across = VcGeVector3d(-line->direction.y, line->direction.x, 0).normal();
        const bool left = (ed.point("Specify side to offset") - line->base).dotProduct(across) > 0;
        addUnbounded<VcDbXline>(ed, line->base + across * (left ? d.real : -d.real), line->direction);
    }
}

void xline(Editor& ed)
{
    const Answer a =
        ed.askPoint("Specify a point or [Hor/Ver/Ang/Bisect/Offset]", {.keywords = "Hor Ver Ang Bisect Offset"});
    if (a.status == Answer::Status::Value)
        return throughPoints<VcDbXline>(ed, a.point);
    a.text == "Hor"      ? parallels(ed, {1, 0, 0})
    : a.text == "Ver"    ? parallels(ed, {0, 1, 0})
    : a.text == "Ang"    ? atAngle(ed)
    : a.text == "Bisect" ? bisectors(ed)
                         : offsets(ed);
}

void ray(Editor& ed) { throughPoints<VcDbRay>(ed, ed.point("Specify start point")); }

const HostCommand kCommands[] = {
    {"ELLIPSE", "EL", kPlain, "Draws an ellipse or a part of one.", ellipse},
    {"XLINE", "XL", kPlain, "Draws construction lines without ends.", xline},
    {"ISOPLANE", nullptr, kTransparent, "Chooses the plane of isometric drawing.", isoplane},
    {"RAY", nullptr, kPlain, "Draws construction lines with one end.", ray},
};

}

std::span<const HostCommand> curveCommands() { return kCommands; }

}
