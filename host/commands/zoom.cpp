// ZOOM, PAN, PLAN - which part of the drawing is seen.
#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/ucs_names.h"
#include "host/db/coordinate_system.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "host/edit/ucs.h"
#include "host/edit/view.h"
#include "host/edit/viewports.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_viewport.h"

namespace vk::commands {

namespace {

using namespace edit;

VcGePoint3d toDisplay(Editor& ed, const VcGePoint3d& ucs) { return worldToDisplay(ed) * toWorld(ed, ucs); }

VcDbExtents limits(Editor& ed)
{
    const VcGePoint3d low = ed.vars().point("LIMMIN"), high = ed.vars().point("LIMMAX");
    VcDbExtents box(low, high);
    box.transformBy(worldToDisplay(ed));
    return box;
}

void show(Editor& ed, const VcDbExtents& box) { setCurrentView(ed, viewOf(ed, currentView(ed), box)); }

void all(Editor& ed)
{
    VcDbExtents box = limits(ed);
    if (const VcDbExtents drawn = displayExtents(ed, currentView(ed)); !drawn.isEmpty())
        box.addExt(drawn);
    show(ed, box);
}

void extents(Editor& ed)
{
    const VcDbExtents drawn = displayExtents(ed, currentView(ed));
    show(ed, drawn.isEmpty() ? limits(ed) : drawn);
}

void previous(Editor& ed)
{
    if (!restorePreviousView(ed))
        ed.printLine("No previous view saved.");
}

// What "2", "2X" and "2XP" make the height of the view.
std::optional<double> scaledHeight(Editor& ed, std::string_view typed)
{
    std::string text = toUpper(typed);
    const bool ofPaper = text.ends_with("XP"), ofView = !ofPaper && text.ends_with('X');
    text.resize(text.size() - (ofPaper ? 2 : ofView ? 1 : 0));
    const auto factor = parseReal(text);
    if (!factor || !(*factor > 0) || !std::isfinite(*factor))
        return std::nullopt;
    if (ofView)
        return currentView(ed).height / *factor;
    if (!ofPaper)
        return viewOf(ed, currentView(ed), limits(ed)).height / *factor;
    const VcDbViewport* viewport = activeViewport(ed);
    if (!viewport)
        throw CommandError{"A scale of the paper needs a viewport of a layout."};
    return viewport->height() / *factor;
}

bool scaleBy(Editor& ed, std::string_view typed)
{
    const auto height = scaledHeight(ed, typed);
    if (!height) {
        ed.printLine("Requires a scale above 0, such as 2, 0.5X or 0.01XP.");
        return false;
    }
    View view = currentView(ed);
    view.height = *height;
    setCurrentView(ed, view);
    return true;
}

void scale(Editor& ed)
{
    for (;;)
        if (const std::string typed = ed.word("Enter a scale factor (nX or nXP)"); typed.empty() || scaleBy(ed, typed))
            return;
}

void windowFrom(Editor& ed, const VcGePoint3d& corner)
{
    const VcGePoint3d opposite = ed.point("Specify opposite corner", {.from = corner});
    const VcDbExtents box(toDisplay(ed, corner), toDisplay(ed, opposite));
    const VcGeVector3d size = box.maxPoint() - box.minPoint();
    if (!(std::max(size.x, size.y) > 0))
        throw CommandError{"The window has no size."};
    show(ed, box);
}

void window(Editor& ed) { windowFrom(ed, ed.point("Specify first corner")); }

void center(Editor& ed)
{
    View view = currentView(ed);
    const Answer at = ed.askPoint("Specify center point", {.enterEnds = true});
    const VcGePoint3d center = at.status == Answer::Status::Value ? toDisplay(ed, at.point) : view.center;
    for (;;) {
        const Answer a =
            ed.askDistance(fmt::format("Enter magnification or height <{}>", lengthText(view.height)),
                           {.bits = InitGet::NoZero | InitGet::NoNegative | InitGet::Arbitrary, .enterEnds = true});
        if (a.status == Answer::Status::Value)
            view.height = a.real;
        const auto scaled =
            a.status == Answer::Status::Arbitrary ? scaledHeight(ed, a.text) : std::optional(view.height);
        if (!scaled) {
            ed.printLine("Requires a height, or a scale such as 2X.");
            continue;
        }
        view.center = {center.x, center.y, 0};
        view.height = *scaled;
        return setCurrentView(ed, view);
    }
}

void objects(Editor& ed)
{
    const auto set = ed.select({.allowLocked = true});
    const VcGeMatrix3d m = worldToDisplay(ed);
    VcDbExtents box;
    for (const VcDbObjectId id : set->ids())
        if (const auto* entity = ed.db().liveAs<VcDbEntity>(id))
            if (VcDbExtents one; entity->getGeomExtents(one) == Vcad::eOk) {
                one.transformBy(m);
                box.addExt(one);
            }
    if (box.isEmpty())
        return ed.printLine("Nothing with extents was selected.");
    show(ed, box);
}

// A box of the view's shape is put where the view goes.
void dynamic(Editor& ed)
{
    View view = currentView(ed);
    for (;;) {
        const Answer a =
            ed.askPoint("Specify center of view box or [Size] <show>", {.keywords = "Size", .enterEnds = true});
        if (a.status == Answer::Status::Enter)
            return setCurrentView(ed, view);
        if (a.status == Answer::Status::Keyword) {
            view.height =
                ed.distance("Specify height of view box", view.height, {.bits = InitGet::NoZero | InitGet::NoNegative});
            continue;
        }
        view.center = toDisplay(ed, a.point);
        view.center.z = 0;
    }
}

// By its lower left corner, as older scripts have it.
void left(Editor& ed)
{
    const VcGePoint3d corner = toDisplay(ed, ed.point("Specify lower left corner point"));
    View view = currentView(ed);
    view.height =
        ed.distance("Enter magnification or height", view.height, {.bits = InitGet::NoZero | InitGet::NoNegative});
    const VcGePoint2d pixels = viewportPixels(ed);
    view.center = {corner.x + view.height * pixels.x / pixels.y / 2, corner.y + view.height / 2, 0};
    setCurrentView(ed, view);
}

struct Option {
    const char* keyword;
    void (*run)(Editor&);
};
constexpr Option kOptions[] = {
    {"All", all},       {"Center", center},  {"Extents", extents}, {"Previous", previous}, {"Scale", scale},
    {"Window", window}, {"Object", objects}, {"Dynamic", dynamic}, {"Left", left},
};

void zoom(Editor& ed)
{
    for (;;) {
        const Answer a = ed.askPoint("Specify corner of window, enter a scale factor (nX or nXP), "
                                     "or\n[All/Center/Dynamic/Extents/Previous/Scale/Window/Object] <exit>",
                                     {.keywords = "All Center Dynamic Extents Previous Scale Window Object Left",
                                      .bits = InitGet::Arbitrary,
                                      .enterEnds = true});
        if (a.status == Answer::Status::Enter)
            return;
        if (a.status == Answer::Status::Value)
            return windowFrom(ed, a.point);
        if (a.status == Answer::Status::Arbitrary) {
            if (scaleBy(ed, a.text))
                return;
            continue;
        }
        for (const Option& option : kOptions)
            if (a.text == option.keyword)
                return option.run(ed);
    }
}

void pan(Editor& ed)
{
    const VcGePoint3d base = ed.point("Specify base point or displacement");
    const Answer second =
        ed.askPoint("Specify second point or <use as displacement>", {.from = base, .enterEnds = true});
    const VcGeVector3d displacement = second.status == Answer::Status::Value ? second.point - base : base.asVector();
    View view = currentView(ed);
    view.center = view.center - worldToDisplay(view) * (ucsToWorld(ed) * displacement);
    view.center.z = 0;
    setCurrentView(ed, view);
}

void plan(Editor& ed)
{
    const std::string what =
        ed.keyword("Enter an option [Current ucs/Ucs/World] <Current>", "Current Ucs World", "Current");
    if (what != "Ucs")
        return showPlan(ed, what == "World" ? CoordinateSystem() : currentUcs(ed.db()));
    for (;;) {
        const std::string name = ed.word("Enter name of UCS or [?]");
        if (name.empty())
            return;
        const auto* record = ed.db().liveAs<VcDbUCSTableRecord>(ed.db().findRecord(NameTable::Ucs, name));
        if (record)
            return showPlan(ed, {record->origin(), record->xAxis(), record->yAxis()});
        if (name == "?")
            listUcs(ed, ed.word("Enter UCS name(s) to list", "*"));
        else
            ed.printLine(fmt::format("Cannot find UCS \"{}\".", name));
    }
}

const HostCommand kCommands[] = {
    {"ZOOM", "Z", kTransparent, "Enlarges or reduces what is seen.", zoom},
    {"PAN", "P", kTransparent, "Moves what is seen.", pan},
    {"-PAN", "-P", kTransparent, "Moves what is seen.", pan},
    {"PLAN", nullptr, kPlain, "Looks straight at the plane of a coordinate system.", plan},
};

}

std::span<const HostCommand> zoomCommands() { return kCommands; }

}
