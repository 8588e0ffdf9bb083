// DVIEW, VPOINT - looks at the drawing from another direction, turned, or between two clipping planes.
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/edit/sysvars.h"
#include "host/edit/view.h"

namespace vk::commands {

namespace {

using namespace edit;

// Directions are answered in the world, or in the UCS.
VcGeMatrix3d answersToWorld(Editor& ed)
{
    return ed.vars().integer("WORLDVIEW") != 0 ? VcGeMatrix3d() : ucsToWorld(ed);
}

VcGeVector3d directionOf(double around, double above)
{
    return {std::cos(around) * std::cos(above), std::sin(around) * std::cos(above), std::sin(above)};
}

double elevationOf(const VcGeVector3d& d) { return std::atan2(d.z, std::hypot(d.x, d.y)); }

double askAround(Editor& ed, const VcGeVector3d& now)
{
    const double known = std::atan2(now.y, now.x);
    const Answer a = askDirection(ed, fmt::format("Enter angle in XY plane from X axis <{}>", directionText(ed, known)),
                                  {.enterEnds = true});
    return a.status == Answer::Status::Value ? a.real : known;
}

double askAbove(Editor& ed, const VcGeVector3d& now)
{
    const Answer a =
        ed.askAngle(fmt::format("Enter angle from XY plane <{}>", turnText(ed, elevationOf(now))), {.enterEnds = true});
    return a.status == Answer::Status::Value ? a.real : elevationOf(now);
}

// Two angles give the direction to the eye.
VcGeVector3d askAngles(Editor& ed, const VcGeVector3d& now)
{
    const double above = askAbove(ed, now);
    return directionOf(askAround(ed, now), above);
}

void camera(Editor& ed, View& view)
{
    const VcGeMatrix3d m = answersToWorld(ed);
    view.direction = (m * askAngles(ed, m.inverse() * view.direction)).normal() * view.direction.length();
}

// The eye stays and what is looked at moves.
void target(Editor& ed, View& view)
{
    const VcGeMatrix3d m = answersToWorld(ed);
    const VcGePoint3d eye = view.target + view.direction;
    view.direction = (m * -askAngles(ed, -(m.inverse() * view.direction))).normal() * view.direction.length();
    view.target = eye - view.direction;
}

void points(Editor& ed, View& view)
{
    const VcGePoint3d eye = view.target + view.direction;
    const Answer first = ed.askPoint(
        fmt::format("Specify target point <{}>", typedPointText(fromWorld(ed, view.target))), {.enterEnds = true});
    const VcGePoint3d to = first.status == Answer::Status::Value ? toWorld(ed, first.point) : view.target;
    const Answer second = ed.askPoint(fmt::format("Specify camera point <{}>", typedPointText(fromWorld(ed, eye))),
                                      {.from = fromWorld(ed, to), .enterEnds = true});
    const VcGeVector3d direction = (second.status == Answer::Status::Value ? toWorld(ed, second.point) : eye) - to;
    if (!(direction.length() > 0))
        throw CommandError{"Target and camera must be apart."};
    view.target = to;
    view.direction = direction;
    view.center = {};
}

void pan(Editor& ed, View& view)
{
    const VcGePoint3d base = ed.point("Specify displacement base point");
    const VcGePoint3d second = ed.point("Specify second point", {.from = base});
    view.center = view.center - worldToDisplay(view) * (ucsToWorld(ed) * (second - base));
    view.center.z = 0;
}

void zoom(Editor& ed, View& view)
{
    view.height /= ed.real("Specify zoom scale factor", 1, {.bits = InitGet::NoZero | InitGet::NoNegative});
}

void twist(Editor& ed, View& view)
{
    const Answer a =
        ed.askAngle(fmt::format("Specify view twist angle <{}>", turnText(ed, view.twist)), {.enterEnds = true});
    if (a.status != Answer::Status::Value)
        return;
    const double turn = a.real - view.twist;
    view.center = VcGeMatrix3d::rotation(turn, VcGeVector3d::zAxis()) * view.center;
    view.twist = std::fmod(std::fmod(a.real, 2 * M_PI) + 2 * M_PI, 2 * M_PI);
}

void setMode(View& view, std::int16_t bit, bool on)
{
    view.mode = std::int16_t(on ? view.mode | bit : view.mode & ~bit);
}

void clipPlane(Editor& ed, View& view, bool front)
{
    double& distance = front ? view.frontClip : view.backClip;
    const Answer a = ed.askDistance(
        fmt::format("Specify distance from target or [{}ON/OFF] <{}>", front ? "Eye/" : "", lengthText(distance)),
        {.keywords = front ? "Eye ON OFF" : "ON OFF", .enterEnds = true});
    const std::int16_t bit = front ? kFrontClipOn : kBackClipOn;
    setMode(view, bit, a.text != "OFF");
    if (a.status == Answer::Status::Value)
        distance = a.real;
    else if (a.text == "Eye")
        distance = view.direction.length();
    if (front)
        setMode(view, kFrontClipNotAtEye, a.text != "Eye");
}

void clip(Editor& ed, View& view)
{
    const std::string what = ed.keyword("Enter clipping option [Back/Front/Off] <Off>", "Back Front Off", "Off");
    if (what != "Off")
        return clipPlane(ed, view, what == "Front");
    setMode(view, kFrontClipOn, false);
    setMode(view, kBackClipOn, false);
}

void distance(Editor&, View&) { throw CommandError{"DVIEW makes no views in perspective; the view stays parallel."}; }
void hide(Editor& ed, View&) { ed.printLine("Hidden lines are not taken out here."); }
void off(Editor&, View& view) { setMode(view, kPerspectiveView, false); }

struct Option {
    const char* keyword;
    void (*run)(Editor&, View&);
};
constexpr Option kOptions[] = {
    {"CAmera", camera}, {"TArget", target}, {"Distance", distance}, {"POints", points}, {"PAn", pan},
    {"Zoom", zoom},     {"TWist", twist},   {"CLip", clip},         {"Hide", hide},     {"Off", off},
};

// The chosen objects only stand in for the drawing while the view is dragged.
void dynamicView(Editor& ed)
{
    ed.select({.prompt = "Select objects or <use all>: ", .allowLocked = true});
    std::vector<View> before;
    Question question;
    question.kind = Question::Kind::Keyword;
    question.prompt = "Enter option\n[CAmera/TArget/Distance/POints/PAn/Zoom/TWist/CLip/Hide/Off/Undo]: ";
    question.init.keywords = parseKeywords("CAmera TArget Distance POints PAn Zoom TWist CLip Hide Off Undo");
    question.hasDefault = true;
    for (;;) {
        const Answer a = ed.ask(question);
        if (a.status != Answer::Status::Keyword)
            return;
        if (a.text == "Undo") {
            if (before.empty())
                ed.printLine("Nothing to undo.");
            else {
                setCurrentView(ed, before.back());
                before.pop_back();
            }
            continue;
        }
        View view = currentView(ed);
        before.push_back(view);
        for (const Option& option : kOptions)
            if (a.text == option.keyword)
                option.run(ed, view);
        setCurrentView(ed, view);
    }
}

void lookFrom(Editor& ed, const VcGeVector3d& direction)
{
    if (!(direction.length() > 0))
        throw CommandError{"The view point must not be the origin."};
    View view = currentView(ed);
    view.direction = answersToWorld(ed) * direction;
    view.target = {};
    view.twist = 0;
    const VcDbExtents drawn = displayExtents(ed, view);
    setCurrentView(ed, drawn.isEmpty() ? view : viewOf(ed, view, drawn));
}

void viewPoint(Editor& ed)
{
    const VcGeVector3d now = answersToWorld(ed).inverse() * currentView(ed).direction;
    const Answer a =
        ed.askPoint(fmt::format("Specify a view point or [Rotate] <{}>", typedPointText(VcGePoint3d() + now)),
                    {.keywords = "Rotate", .enterEnds = true});
    if (a.status == Answer::Status::Value)
        return lookFrom(ed, a.point.asVector());
    if (a.status != Answer::Status::Keyword)
        return;
    const double around = askAround(ed, now);
    lookFrom(ed, directionOf(around, askAbove(ed, now)));
}

const HostCommand kCommands[] = {
    {"DVIEW", "DV", kPlain, "Turns and clips the view.", dynamicView},
    {"VPOINT", "-VP", kPlain, "Looks at the drawing from a direction.", viewPoint},
};

}

std::span<const HostCommand> dynamicViewCommands() { return kCommands; }

}
