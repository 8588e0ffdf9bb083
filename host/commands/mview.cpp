// MVIEW, -VPORTS - viewports of a layout: making them, turning them on and off.
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/viewport_prompts.h"
#include "host/db/database.h"
#include "host/db/layouts.h"
#include "host/db/scale_list.h"
#include "host/edit/sysvars.h"
#include "host/edit/view.h"
#include "host/edit/viewports.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"

namespace vk::commands {

namespace {

using namespace edit;
using Layer = VcDbLayerTableRecord;

constexpr double kMargin = 1.02, kMillimetresPerInch = 25.4;

std::int16_t nextNumber(Editor& ed)
{
    std::int16_t last = 1;
    for (const VcDbViewport* viewport : viewportsOf(ed.db(), ed.db().paperSpace()))
        last = std::max(last, viewport->number());
    return std::int16_t(last + 1);
}

// Shows all of the model, seen from above.
void lookAtModel(Editor& ed, VcDbViewport& viewport)
{
    const VcDbExtents box = extentsOfSpace(ed.db(), ed.db().modelSpace());
    const VcGePoint3d low = box.isEmpty() ? VcGePoint3d(0, 0, 0) : box.minPoint(),
                      high = box.isEmpty() ? VcGePoint3d(12, 9, 0) : box.maxPoint();
    const VcGeVector3d size = high - low;
    viewport.setViewCenter({low.x + size.x / 2, low.y + size.y / 2});
    viewport.setViewHeight(std::max({size.y, size.x * viewport.height() / viewport.width(), 1e-9}) * kMargin);
}

VcDbViewport& addViewport(Editor& ed, const VcDbExtents& on)
{
    sheetViewport(ed.db(), ed.db().paperSpace());
    const VcGeVector3d size = on.maxPoint() - on.minPoint();
    if (!(size.x > 0) || !(size.y > 0))
        throw CommandError{"The viewport has no size: its corners must differ in X and in Y."};
    auto made = std::make_unique<VcDbViewport>();
    made->setCenterPoint(on.minPoint() + size * 0.5);
    made->setWidth(size.x);
    made->setHeight(size.y);
    made->setNumber(nextNumber(ed));
    lookAtModel(ed, *made);
    VcDbObjectIdArray frozen;
    for (const VcDbObjectId id : ed.db().table(NameTable::Layer).records())
        if (ed.db().objectAs<Layer>(id)->VPDFLT())
            frozen.push_back(id);
    made->freezeLayersInViewport(frozen);
    VcDbViewport& added = *made;
    addToSpace(ed, std::move(made));
    if (const VcDbScale* one = scaleNamed(ed.db(), "1:1"))
        assignAnnotationScale(added, *one);
    // MSPACE goes to the newest one first.
    preferViewport(ed, added);
    return added;
}

// What the printer reaches of the paper, in the layout's units; its limits where no paper is chosen. The printable area's
// corner is the layout's origin.
VcDbExtents printableArea(Editor& ed)
{
    double width = 0, height = 0, left = 0, bottom = 0, right = 0, top = 0, paper = 1, drawing = 1;
    const VcDbLayout* layout = currentLayout(ed);
    if (layout) {
        layout->getPlotPaperSize(width, height);
        layout->getPlotPaperMargins(left, bottom, right, top);
        layout->getCustomPrintScale(paper, drawing);
    }
    width -= left + right;
    height -= bottom + top;
    if (!(width > 0) || !(height > 0) || !(paper > 0) || !(drawing > 0))
        return VcDbExtents(ed.vars().point("LIMMIN"), ed.vars().point("LIMMAX"));
    if (layout->plotRotation() % 2 != 0)
        std::swap(width, height);
    const double unit =
        drawing / paper / (layout->plotPaperUnits() == VcDbPlotSettings::kInches ? kMillimetresPerInch : 1);
    const VcGeVector2d origin = layout->plotOrigin() * unit;
    const VcGePoint3d low(-origin.x, -origin.y, 0);
    return VcDbExtents(low, low + VcGeVector3d(width * unit, height * unit, 0));
}

VcDbExtents rectangleFrom(Editor& ed, const VcGePoint3d& corner)
{
    return {toWorld(ed, corner), toWorld(ed, ed.point("Specify opposite corner", {.from = corner}))};
}

VcDbExtents askRectangle(Editor& ed)
{
    const Answer a = ed.askPoint("Specify first corner or [Fit] <Fit>", {.keywords = "Fit", .enterEnds = true});
    return a.status == Answer::Status::Value ? rectangleFrom(ed, a.point) : printableArea(ed);
}

// The part of a box between fractions of its sides.
VcDbExtents part(const VcDbExtents& box, double x0, double y0, double x1, double y1)
{
    const VcGePoint3d low = box.minPoint();
    const VcGeVector3d size = box.maxPoint() - low;
    return {low + VcGeVector3d(size.x * x0, size.y * y0, 0), low + VcGeVector3d(size.x * x1, size.y * y1, 0)};
}

struct Quarter {
    double x0, y0, x1, y1;
};

void addParts(Editor& ed, std::initializer_list<Quarter> parts)
{
    const VcDbExtents box = askRectangle(ed);
    for (const Quarter& q : parts)
        addViewport(ed, part(box, q.x0, q.y0, q.x1, q.y1));
}

void two(Editor& ed)
{
    if (ed.keyword("Enter viewport arrangement [Horizontal/Vertical] <Vertical>", "Horizontal Vertical", "Vertical") ==
        "Vertical")
        return addParts(ed, {{0, 0, 0.5, 1}, {0.5, 0, 1, 1}});
    addParts(ed, {{0, 0.5, 1, 1}, {0, 0, 1, 0.5}});
}

void three(Editor& ed)
{
    constexpr double k = 1.0 / 3;
    const std::string how =
        ed.keyword("Enter viewport arrangement [Horizontal/Vertical/Above/Below/Left/Right] <Right>",
                   "Horizontal Vertical Above Below Left Right", "Right");
    if (how == "Horizontal")
        return addParts(ed, {{0, 2 * k, 1, 1}, {0, k, 1, 2 * k}, {0, 0, 1, k}});
    if (how == "Vertical")
        return addParts(ed, {{0, 0, k, 1}, {k, 0, 2 * k, 1}, {2 * k, 0, 1, 1}});
    if (how == "Above")
        return addParts(ed, {{0, 0.5, 1, 1}, {0, 0, 0.5, 0.5}, {0.5, 0, 1, 0.5}});
    if (how == "Below")
        return addParts(ed, {{0, 0, 1, 0.5}, {0, 0.5, 0.5, 1}, {0.5, 0.5, 1, 1}});
    if (how == "Left")
        return addParts(ed, {{0, 0, 0.5, 1}, {0.5, 0.5, 1, 1}, {0.5, 0, 1, 0.5}});
    addParts(ed, {{0.5, 0, 1, 1}, {0, 0.5, 0.5, 1}, {0, 0, 0.5, 0.5}});
}

void four(Editor& ed) { addParts(ed, {{0, 0.5, 0.5, 1}, {0.5, 0.5, 1, 1}, {0, 0, 0.5, 0.5}, {0.5, 0, 1, 0.5}}); }

void turn(Editor& ed, bool on)
{
    for (VcDbViewport* viewport : selectViewports(ed))
        viewport->setOn(on);
}

void lock(Editor& ed)
{
    const bool locks = ed.keyword("Viewport View Locking [ON/OFF]", "ON OFF") == "ON";
    for (VcDbViewport* viewport : selectViewports(ed))
        viewport->setLocked(locks);
}

void shadePlot(Editor& ed)
{
    static constexpr std::string_view kModes[] = {"As", "Wireframe", "Hidden", "Rendered"};
    const std::string how = ed.keyword("Shade plot? [As displayed/Wireframe/Hidden/Rendered] <As displayed>",
                                       "As Wireframe Hidden Rendered", "As");
    const auto mode = std::int16_t(std::find(std::begin(kModes), std::end(kModes), how) - std::begin(kModes));
    for (VcDbViewport* viewport : selectViewports(ed))
        viewport->setShadePlot(mode);
}

void resetLayers(Editor& ed)
{
    if (ed.keyword("Reset viewport layer property overrides back to global properties? [Yes/No] <Y>", "Yes No",
                   "Yes") == "Yes")
        ed.printLine(fmt::format("{} overrides taken away.", dropLayerOverrides(ed, selectViewports(ed))));
}

// Saved arrangements of the screen

using Tile = VcDbViewportTableRecord;

std::vector<const Tile*> tilesNamed(Editor& ed, std::string_view name)
{
    std::vector<const Tile*> tiles;
    for (const VcDbObjectId id : ed.db().table(NameTable::Viewport).records())
        if (const auto* tile = ed.db().objectAs<Tile>(id); equalNoCase(tile->nameUtf8(), name))
            tiles.push_back(tile);
    return tiles;
}

// The parts of the screen become viewports that look as those do.
void restore(Editor& ed)
{
    for (;;) {
        const std::string name = ed.word("Enter viewport configuration name or [?]", "*Active");
        if (name == "?") {
            for (const VcDbObjectId id : ed.db().table(NameTable::Viewport).records())
                ed.printLine("  " + ed.db().objectAs<Tile>(id)->nameUtf8());
            continue;
        }
        const std::vector<const Tile*> tiles = tilesNamed(ed, name);
        if (tiles.empty()) {
            ed.printLine(fmt::format("Cannot find viewport configuration \"{}\".", name));
            continue;
        }
        const VcDbExtents box = askRectangle(ed);
        for (const Tile* tile : tiles) {
            const VcGePoint2d low = tile->lowerLeftCorner(), high = tile->upperRightCorner();
            VcDbViewport& viewport = addViewport(ed, part(box, low.x, low.y, high.x, high.y));
            viewport.setViewDirection(tile->viewDirection());
            viewport.setViewTarget(tile->target());
            viewport.setTwistAngle(tile->viewTwist());
            viewport.setViewCenter(tile->centerPoint());
            viewport.setViewHeight(tile->height());
        }
        return;
    }
}

bool canClip(const VcDbEntity* entity)
{
    const auto* curve = VcDbCurve::cast(entity);
    return curve && curve->isClosed() &&
           (entity->isKindOf(VcDbCircle::desc()) || entity->isKindOf(VcDbEllipse::desc()) ||
            entity->isKindOf(VcDbPolyline::desc()) || entity->isKindOf(VcDb2dPolyline::desc()) ||
            entity->isKindOf(VcDbSpline::desc()));
}

void clipBy(Editor& ed, VcDbEntity& entity)
{
    VcDbExtents box;
    if (entity.getGeomExtents(box) != Vcad::eOk)
        throw CommandError{"That object has no extents."};
    VcDbViewport& viewport = addViewport(ed, box);
    viewport.setNonRectClipEntityId(entity.objectId());
    viewport.setNonRectClipOn(true);
    entity.addPersistentReactor(viewport.objectId());
}

void byObject(Editor& ed)
{
    for (;;) {
        const Answer a = ed.askEntity("Select object to clip viewport");
        if (a.status == Answer::Status::Enter)
            return;
        if (auto* entity = ed.db().liveAs<VcDbEntity>(a.entity); canClip(entity))
            return clipBy(ed, *entity);
        ed.printLine("A closed polyline, a circle, an ellipse or a closed spline is needed.");
    }
}

void polygonal(Editor& ed)
{
    std::vector<VcGePoint3d> points{ed.point("Specify start point")};
    for (;;) {
        const Answer a = ed.askPoint(
            points.size() > 2 ? "Specify next point or [Close/Undo]" : "Specify next point or [Undo]",
            {.keywords = points.size() > 2 ? "Close Undo" : "Undo", .from = points.back(), .enterEnds = true});
        if (a.status == Answer::Status::Value)
            points.push_back(a.point);
        else if (a.status == Answer::Status::Keyword && a.text == "Undo") {
            if (points.size() > 1)
                points.pop_back();
        } else if (points.size() > 2)
            break;
        else
            ed.printLine("At least three points are needed.");
    }
    auto outline = std::make_unique<VcDbPolyline>();
    for (const VcGePoint3d& p : points) {
        const VcGePoint3d world = toWorld(ed, p);
        outline->addVertexAt(outline->numVerts(), {world.x, world.y});
    }
    outline->setClosed(true);
    VcDbPolyline& added = *outline;
    addToSpace(ed, std::move(outline));
    clipBy(ed, added);
}

void mview(Editor& ed)
{
    requireSheet(ed);
    const Answer a = ed.askPoint(
        "Specify corner of viewport or\n[ON/OFF/Fit/Shadeplot/Lock/Object/Polygonal/Restore/LAyer/2/3/4] <Fit>",
        {.keywords = "ON OFF Fit Shadeplot Lock Object Polygonal Restore LAyer 2 3 4", .enterEnds = true});
    if (a.status == Answer::Status::Value) {
        addViewport(ed, rectangleFrom(ed, a.point));
        return;
    }
    const std::string what = a.status == Answer::Status::Enter ? "Fit" : a.text;
    if (what == "Fit")
        addViewport(ed, printableArea(ed));
    else
        what == "ON"          ? turn(ed, true)
        : what == "OFF"       ? turn(ed, false)
        : what == "Lock"      ? lock(ed)
        : what == "Object"    ? byObject(ed)
        : what == "Polygonal" ? polygonal(ed)
        : what == "Shadeplot" ? shadePlot(ed)
        : what == "Restore"   ? restore(ed)
        : what == "LAyer"     ? resetLayers(ed)
        : what == "2"         ? two(ed)
        : what == "3"         ? three(ed)
                              : four(ed);
}

void vports(Editor& ed)
{
    if (!isOnSheet(ed))
        throw CommandError{
            "The model's own tab shows one viewport. On a layout -VPORTS makes viewports as MVIEW does."};
    mview(ed);
}

const HostCommand kCommands[] = {
    {"MVIEW", "MV", kPlain, "Makes viewports on a layout, and turns them on and off.", mview},
    {"-VPORTS", nullptr, kPlain, "Makes viewports on a layout.", vports},
};

}

void requireSheet(Editor& ed)
{
    if (!isOnSheet(ed))
        throw CommandError{"Viewports stand on layouts; the model's own tab is shown. Set TILEMODE to 0 first."};
    if (activeViewport(ed)) {
        leaveViewport(ed);
        ed.printLine("Switching to paper space.");
    }
}

std::vector<VcDbViewport*> selectViewports(Editor& ed)
{
    std::vector<VcDbViewport*> viewports;
    const auto set = ed.select({.prompt = "Select viewports: "});
    std::size_t others = 0;
    for (const VcDbObjectId id : set->ids()) {
        auto* viewport = ed.db().liveAs<VcDbViewport>(id);
        if (viewport && viewport->number() != 1)
            viewports.push_back(viewport);
        else
            ++others;
    }
    if (others > 0)
        ed.printLine(fmt::format("{} not a viewport.", others));
    return viewports;
}

std::vector<VcDbViewport*> allViewports(Editor& ed)
{
    std::vector<VcDbViewport*> viewports = viewportsOf(ed.db(), ed.db().paperSpace());
    std::erase_if(viewports, [](const VcDbViewport* viewport) { return viewport->number() == 1; });
    return viewports;
}

std::span<const HostCommand> viewportCommands() { return kCommands; }

}
