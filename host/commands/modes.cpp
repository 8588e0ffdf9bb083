// ORTHO, SNAP, GRID, LIMITS, -UNITS, ELEV - how points are asked for and numbers are shown.
#include "host/base/numbers.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"

namespace vk::commands {

namespace {

using namespace edit;

void setFlag(Editor& ed, const char* name, bool on) { ed.vars().set(name, std::int32_t(on)); }

void ortho(Editor& ed)
{
    const bool now = ed.vars().integer("ORTHOMODE") != 0;
    setFlag(ed, "ORTHOMODE",
            ed.keyword(fmt::format("Enter mode [ON/OFF] <{}>", now ? "ON" : "OFF"), "ON OFF", now ? "ON" : "OFF") ==
                "ON");
}

void setSpacing(Editor& ed, const char* variable, const char* mode, double x, double y)
{
    ed.vars().set(variable, VcGePoint2d(x, y));
    setFlag(ed, mode, true);
}

double positive(Editor& ed, std::string_view prompt, double byDefault)
{
    return ed.distance(prompt, byDefault, {.bits = InitGet::NoZero | InitGet::NoNegative});
}

void snapAspect(Editor& ed)
{
    const VcGePoint3d now = ed.vars().point("SNAPUNIT");
    const double x = positive(ed, "Specify horizontal spacing", now.x);
    const double y = positive(ed, "Specify vertical spacing", now.y);
    setSpacing(ed, "SNAPUNIT", "SNAPMODE", x, y);
}

void snapRotate(Editor& ed)
{
    const VcGePoint3d base = ed.vars().point("SNAPBASE");
    const Answer p =
        ed.askPoint(fmt::format("Specify base point <{:.4f},{:.4f}>", base.x, base.y), {.enterEnds = true});
    const Answer a =
        askDirection(ed, fmt::format("Specify rotation angle <{}>", directionText(ed, ed.vars().real("SNAPANG"))),
                     {.enterEnds = true});
    if (p.status == Answer::Status::Value)
        ed.vars().set("SNAPBASE", VcGePoint2d(p.point.x, p.point.y));
    if (a.status == Answer::Status::Value)
        ed.vars().set("SNAPANG", a.real);
}

void snapStyle(Editor& ed)
{
    const bool isometric = ed.vars().integer("SNAPSTYL") != 0;
    const std::string style =
        ed.keyword(fmt::format("Enter snap grid style [Standard/Isometric] <{}>", isometric ? "I" : "S"),
                   "Standard Isometric", isometric ? "Isometric" : "Standard");
    setFlag(ed, "SNAPSTYL", style == "Isometric");
    const double y = positive(ed, style == "Isometric" ? "Specify vertical spacing" : "Specify snap spacing",
                              ed.vars().point("SNAPUNIT").y);
    ed.vars().set("SNAPUNIT", VcGePoint2d(y, y));
}

void snapType(Editor& ed)
{
    const char* now = ed.vars().integer("SNAPTYPE") != 0 ? "Polar" : "Grid";
    setFlag(ed, "SNAPTYPE",
            ed.keyword(fmt::format("Enter snap type [Polar/Grid] <{}>", now), "Polar Grid", now) == "Polar");
}

void snap(Editor& ed)
{
    const VcGePoint3d now = ed.vars().point("SNAPUNIT");
    const Answer a =
        ed.askDistance(fmt::format("Specify snap spacing or [ON/OFF/Aspect/Rotate/Style/Type] <{}>", lengthText(now.x)),
                       {.keywords = "ON OFF Aspect Rotate Style Type",
                        .bits = InitGet::NoZero | InitGet::NoNegative,
                        .enterEnds = true});
    if (a.status != Answer::Status::Keyword) {
        const double spacing = a.status == Answer::Status::Value ? a.real : now.x;
        return setSpacing(ed, "SNAPUNIT", "SNAPMODE", spacing, a.status == Answer::Status::Value ? spacing : now.y);
    }
    if (a.text == "ON" || a.text == "OFF")
        return setFlag(ed, "SNAPMODE", a.text == "ON");
    a.text == "Aspect"   ? snapAspect(ed)
    : a.text == "Rotate" ? snapRotate(ed)
    : a.text == "Style"  ? snapStyle(ed)
                         : snapType(ed);
}

// A spacing may be said as a multiple of the snap: 2X.
double gridSpacing(Editor& ed, std::string_view prompt, double byDefault, double snap)
{
    for (;;) {
        const Answer a = ed.askDistance(fmt::format("{} <{}>", prompt, lengthText(byDefault)),
                                        {.bits = InitGet::NoNegative | InitGet::Arbitrary, .enterEnds = true});
        if (a.status != Answer::Status::Arbitrary)
            return a.status == Answer::Status::Value ? a.real : byDefault;
        const bool times = a.text.ends_with('X') || a.text.ends_with('x');
        const auto factor = times ? parseReal(std::string_view(a.text).substr(0, a.text.size() - 1)) : std::nullopt;
        if (factor && *factor > 0)
            return *factor * snap;
        ed.printLine("Requires a distance, or a multiple of the snap such as 2X.");
    }
}

void gridAspect(Editor& ed)
{
    const VcGePoint3d now = ed.vars().point("GRIDUNIT"), snap = ed.vars().point("SNAPUNIT");
    const double x = gridSpacing(ed, "Specify the horizontal spacing(X)", now.x, snap.x);
    const double y = gridSpacing(ed, "Specify the vertical spacing(Y)", now.y, snap.y);
    setSpacing(ed, "GRIDUNIT", "GRIDMODE", x, y);
}

enum GridBit : std::int32_t { kBeyondLimits = 1, kAdaptive = 2, kGrowsFiner = 4, kFollowsUcs = 8 };

void askGridBit(Editor& ed, std::string_view what, GridBit bit)
{
    const auto now = std::int32_t(ed.vars().integer("GRIDDISPLAY"));
    const char* known = (now & bit) != 0 ? "Yes" : "No";
    const bool on = ed.keyword(fmt::format("{}? [Yes/No] <{}>", what, known), "Yes No", known) == "Yes";
    ed.vars().set("GRIDDISPLAY", on ? now | bit : now & ~bit);
}

void gridAdapts(Editor& ed)
{
    askGridBit(ed, "Turn adaptive behavior on", kAdaptive);
    askGridBit(ed, "Allow subdivision below grid spacing", kGrowsFiner);
}

void grid(Editor& ed)
{
    const VcGePoint3d now = ed.vars().point("GRIDUNIT"), snap = ed.vars().point("SNAPUNIT");
    for (;;) {
        const Answer a = ed.askDistance(
            fmt::format("Specify grid spacing(X) or\n[ON/OFF/Snap/Major/aDaptive/Limits/Follow/Aspect] <{}>",
                        lengthText(now.x)),
            {.keywords = "ON OFF Snap Major aDaptive Limits Follow Aspect",
             .bits = InitGet::NoNegative | InitGet::Arbitrary,
             .enterEnds = true});
        if (a.status == Answer::Status::Enter)
            return setSpacing(ed, "GRIDUNIT", "GRIDMODE", now.x, now.y);
        if (a.status == Answer::Status::Value)
            return setSpacing(ed, "GRIDUNIT", "GRIDMODE", a.real, a.real);
        if (a.status == Answer::Status::Arbitrary) {
            const bool times = a.text.ends_with('X') || a.text.ends_with('x');
            const auto factor = times ? parseReal(std::string_view(a.text).substr(0, a.text.size() - 1)) : std::nullopt;
            if (factor && *factor > 0)
                return setSpacing(ed, "GRIDUNIT", "GRIDMODE", *factor * snap.x, *factor * snap.y);
            ed.printLine("Requires a distance, or a multiple of the snap such as 2X.");
            continue;
        }
        if (a.text == "ON" || a.text == "OFF")
            return setFlag(ed, "GRIDMODE", a.text == "ON");
        if (a.text == "Snap")
            return setSpacing(ed, "GRIDUNIT", "GRIDMODE", snap.x, snap.y);
        if (a.text == "Aspect")
            return gridAspect(ed);
        if (a.text == "aDaptive")
            return gridAdapts(ed);
        if (a.text == "Limits")
            return askGridBit(ed, "Display grid beyond Limits", kBeyondLimits);
        if (a.text == "Follow")
            return askGridBit(ed, "Follow dynamic UCS", kFollowsUcs);
        const auto major =
            ed.integer("Enter the number of grid divisions per major grid line", ed.vars().integer("GRIDMAJOR"));
        if (ed.vars().set("GRIDMAJOR", std::int32_t(major)) == SetVarResult::Done)
            return;
        ed.printLine("Requires a whole number from 1 to 100.");
    }
}

void limits(Editor& ed)
{
    const VcGePoint3d low = ed.vars().point("LIMMIN"), high = ed.vars().point("LIMMAX");
    const bool paper = ed.db().currentSpace() == ed.db().paperSpace();
    ed.printLine(paper ? "Reset Paper space limits:" : "Reset Model space limits:");
    const Answer a =
        ed.askPoint(fmt::format("Specify lower left corner or [ON/OFF] <{},{}>", lengthText(low.x), lengthText(low.y)),
                    {.keywords = "ON OFF", .enterEnds = true});
    if (a.status == Answer::Status::Keyword)
        return setFlag(ed, "LIMCHECK", a.text == "ON");
    const VcGePoint3d corner = a.status == Answer::Status::Value ? a.point : low;
    const Answer b = ed.askPoint(
        fmt::format("Specify upper right corner <{},{}>", lengthText(high.x), lengthText(high.y)), {.enterEnds = true});
    const VcGePoint3d opposite = b.status == Answer::Status::Value ? b.point : high;
    if (!(opposite.x > corner.x) || !(opposite.y > corner.y))
        throw CommandError{"The upper right corner must lie above and to the right of the lower left one."};
    ed.vars().set("LIMMIN", VcGePoint2d(corner.x, corner.y));
    ed.vars().set("LIMMAX", VcGePoint2d(opposite.x, opposite.y));
}

// Asked again until it lies within the bounds.
std::int32_t choice(Editor& ed, const std::string& prompt, std::int64_t low, std::int64_t high, std::int64_t now)
{
    for (;;) {
        const std::int64_t value = ed.integer(prompt, now);
        if (value >= low && value <= high)
            return std::int32_t(value);
        ed.printLine(fmt::format("Requires a whole number from {} to {}.", low, high));
    }
}

std::int32_t linearPrecision(Editor& ed, int units)
{
    const std::int64_t now = ed.vars().integer("LUPREC");
    if (units != 4 && units != 5)
        return choice(ed, "Enter number of digits to right of decimal point (0 to 8)", 0, 8, now);
    for (;;) {
        const std::int64_t denominator = ed.integer(
            "Enter denominator of smallest fraction to display\n(1, 2, 4, 8, 16, 32, 64, 128, or 256)", 1 << now);
        for (int precision = 0; precision <= 8; ++precision)
            if (denominator == 1 << precision)
                return precision;
        ed.printLine("Requires 1, 2, 4, 8, 16, 32, 64, 128 or 256.");
    }
}

void units(Editor& ed)
{
    SysVars& vars = ed.vars();
    ed.printLine("Report formats:      (Examples)\n  1.  Scientific      1.55E+01\n  2.  Decimal         15.50\n"
                 "  3.  Engineering     1'-3.50\"\n  4.  Architectural   1'-3 1/2\"\n  5.  Fractional      15 1/2");
    const std::int32_t linear = choice(ed, "Enter choice, 1 to 5", 1, 5, vars.integer("LUNITS"));
    const std::int32_t places = linearPrecision(ed, linear);
    ed.printLine("Systems of angle measure:\n  1.  Decimal degrees\n  2.  Degrees/minutes/seconds\n  3.  Grads\n  4.  "
                 "Radians\n  5.  Surveyor's units");
    const std::int32_t angular = choice(ed, "Enter choice, 1 to 5", 1, 5, vars.integer("AUNITS") + 1);
    const std::int32_t angularPlaces =
        choice(ed, "Enter number of fractional places for display of angles (0 to 8)", 0, 8, vars.integer("AUPREC"));
    const Answer base = ed.ask([&] {
        Question q;
        q.kind = Question::Kind::Angle;
        q.prompt = fmt::format("Enter direction for angle 0 <{}>: ", angleText(vars.real("ANGBASE")));
        q.hasDefault = true;
        return q;
    }());
    const bool clockwise =
        ed.keyword(fmt::format("Measure angles clockwise? [Yes/No] <{}>", vars.integer("ANGDIR") ? "Y" : "N"), "Yes No",
                   vars.integer("ANGDIR") ? "Yes" : "No") == "Yes";
    vars.set("LUNITS", linear);
    vars.set("LUPREC", places);
    vars.set("AUNITS", angular - 1);
    vars.set("AUPREC", angularPlaces);
    if (base.status == Answer::Status::Value)
        vars.set("ANGBASE", base.real);
    setFlag(ed, "ANGDIR", clockwise);
}

void elevation(Editor& ed)
{
    const double height = ed.distance("Specify new default elevation", ed.vars().real("ELEVATION"));
    const double thickness = ed.distance("Specify new default thickness", ed.vars().real("THICKNESS"));
    ed.vars().set("ELEVATION", height);
    ed.vars().set("THICKNESS", thickness);
}

const HostCommand kCommands[] = {
    {"ORTHO", nullptr, kTransparent, "Holds the pointer to the directions of the axes.", ortho},
    {"SNAP", "SN", kTransparent, "Holds the pointer to points of a grid.", snap},
    {"GRID", nullptr, kTransparent, "Shows a grid.", grid},
    {"LIMITS", nullptr, kTransparent, "Sets the area that the drawing is meant for.", limits},
    {"-UNITS", "-UN", kPlain, "Sets how lengths and angles are written.", units},
    {"UNITS", "UN", kPlain, "Sets how lengths and angles are written.", units},
    {"ELEV", nullptr, kTransparent, "Sets elevation and thickness of new objects.", elevation},
};

}

std::span<const HostCommand> modeCommands() { return kCommands; }

}
