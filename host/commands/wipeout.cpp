// WIPEOUT, DRAWORDER - what hides what.
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/db/draw_order.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_images.h"
#include "sdk/vcdb_objects.h"

namespace vk::commands {

namespace {

using namespace edit;

// A square of one pixel over the outline, clipped by it. Points and axes are in the world.
void addWipeout(Editor& ed, const std::vector<VcGePoint3d>& outline, const VcGeVector3d& x, const VcGeVector3d& y)
{
    const VcGeVector3d z = x.crossProduct(y);
    const VcGePoint3d base = outline.front();
    double lowX = 0, lowY = 0, highX = 0, highY = 0;
    for (const VcGePoint3d& p : outline) {
        const VcGeVector3d v = p - base;
        if (std::abs(v.dotProduct(z)) > 1e-6 * std::max(1.0, v.length()))
            throw CommandError{"The outline of a wipeout must lie in one plane, parallel to that of the UCS."};
        lowX = std::min(lowX, v.dotProduct(x));
        highX = std::max(highX, v.dotProduct(x));
        lowY = std::min(lowY, v.dotProduct(y));
        highY = std::max(highY, v.dotProduct(y));
    }
    const double side = std::max(highX - lowX, highY - lowY);
    if (!(side > 0))
        throw CommandError{"The outline of a wipeout has no size."};
    const VcGePoint3d origin = base + x * lowX + y * lowY;
    std::vector<VcGePoint2d> boundary;
    for (const VcGePoint3d& p : outline)
        boundary.push_back({(p - origin).dotProduct(x) / side - 0.5, 0.5 - (p - origin).dotProduct(y) / side});
    if (boundary.front() != boundary.back())
        boundary.push_back(boundary.front());
    auto wipeout = std::make_unique<VcDbWipeout>();
    wipeout->setOrientation(origin, x * side, y * side);
    wipeout->setClipBoundary(VcDbRasterImage::kPoly, boundary);
    addToSpace(ed, std::move(wipeout));
}

void addInUcs(Editor& ed, const std::vector<VcGePoint3d>& points)
{
    const VcGeMatrix3d m = ucsToWorld(ed);
    std::vector<VcGePoint3d> outline;
    for (const VcGePoint3d& p : points)
        outline.push_back(m * p);
    addWipeout(ed, outline, m * VcGeVector3d::xAxis(), m * VcGeVector3d::yAxis());
}

void byPoints(Editor& ed, const VcGePoint3d& first)
{
    std::vector<VcGePoint3d> points{first};
    for (;;) {
        const bool canClose = points.size() >= 3;
        const Answer a = ed.askPoint(canClose            ? "Specify next point or [Close/Undo]"
                                     : points.size() > 1 ? "Specify next point or [Undo]"
                                                         : "Specify next point",
                                     {.keywords = canClose            ? "Close Undo"
                                                  : points.size() > 1 ? "Undo"
                                                                      : "",
                                      .from = points.back(),
                                      .enterEnds = true});
        if (a.status == Answer::Status::Value)
            points.push_back(a.point);
        else if (a.status == Answer::Status::Keyword && a.text == "Undo")
            points.pop_back();
        else if (canClose)
            return addInUcs(ed, points);
        else
            ed.printLine("At least three points are needed.");
    }
}

// The straight outline of a closed polyline, in the world.
std::optional<std::vector<VcGePoint3d>> outlineOf(const VcDbEntity* entity)
{
    std::vector<VcGePoint3d> points;
    if (const auto* polyline = VcDbPolyline::cast(entity); polyline && polyline->isClosed() && !polyline->hasBulges())
        for (unsigned i = 0; i < polyline->numVerts(); ++i)
            polyline->getPointAt(i, points.emplace_back());
    if (const auto* polyline = VcDb2dPolyline::cast(entity); polyline && polyline->isClosed())
        for (const VcDbEntity* part : polyline->vertices())
            if (const auto* vertex = VcDb2dVertex::cast(part)) {
                if (vertex->bulge() != 0)
                    return std::nullopt;
                points.push_back(polyline->vertexPosition(*vertex));
            }
    return points.size() >= 3 ? std::optional(points) : std::nullopt;
}

void byPolyline(Editor& ed)
{
    for (;;) {
        const Answer a = ed.askEntity("Select a closed polyline");
        if (a.status == Answer::Status::Enter)
            return;
        auto* entity = ed.db().liveAs<VcDbEntity>(a.entity);
        const auto outline = outlineOf(entity);
        if (!outline) {
            ed.printLine("A closed polyline of straight segments is needed.");
            continue;
        }
        const bool erases = ed.keyword("Erase polyline? [Yes/No] <No>", "Yes No", "No") == "Yes";
        const VcGeVector3d normal = entity->isKindOf(VcDbPolyline::desc())
                                        ? static_cast<VcDbPolyline*>(entity)->normal()
                                        : static_cast<VcDb2dPolyline*>(entity)->normal();
        const VcGeMatrix3d plane = VcGeMatrix3d::planeToWorld(normal);
        addWipeout(ed, *outline, plane * VcGeVector3d::xAxis(), plane * VcGeVector3d::yAxis());
        if (erases && isOnLockedLayer(*entity))
            ed.printLine("The polyline is on a locked layer and stays.");
        else if (erases)
            entity->erase();
        return;
    }
}

VcDbWipeoutVariables& wipeoutVariables(DatabaseCore& db)
{
    constexpr const char* kName = "ACAD_WIPEOUT_VARS";
    auto* root = db.objectAs<VcDbDictionary>(db.rootDictionary());
    if (auto* known = db.liveAs<VcDbWipeoutVariables>(root->find(kName)))
        return *known;
    auto made = std::make_unique<VcDbWipeoutVariables>();
    VcDbWipeoutVariables& variables = *made;
    root->setAtUtf8(kName, db.add(std::move(made), root->objectId()));
    return variables;
}

void frames(Editor& ed)
{
    const int now = wipeoutVariables(ed.db()).showFrame();
    static constexpr const char* kModes[] = {"OFF", "ON", "Display"};
    const std::string mode =
        ed.keyword(fmt::format("Enter mode [ON/OFF/Display but not plot] <{}>", kModes[std::clamp(now, 0, 2)]),
                   "ON OFF Display", kModes[std::clamp(now, 0, 2)]);
    const std::int16_t frame = mode == "ON" ? 1 : mode == "OFF" ? 0 : 2;
    wipeoutVariables(ed.db()).setShowFrame(frame);
    ed.vars().set("WIPEOUTFRAME", std::int32_t(frame));
}

void wipeout(Editor& ed)
{
    const Answer a = ed.askPoint("Specify first point or [Frames/Polyline] <Polyline>",
                                 {.keywords = "Frames Polyline", .enterEnds = true});
    if (a.status == Answer::Status::Value)
        return byPoints(ed, a.point);
    a.text == "Frames" ? frames(ed) : byPolyline(ed);
}

// Draw order

VcDbObjectIdArray inOrder(const VcDbSortentsTable& table, const SelectionSet& objects)
{
    VcDbObjectIdArray order;
    table.getFullDrawOrder(order);
    std::erase_if(order, [&](VcDbObjectId id) { return !objects.has(id); });
    return order;
}

void drawOrder(Editor& ed)
{
    const auto objects = ed.select();
    if (objects->empty())
        return;
    const std::string how = ed.keyword("Enter object ordering option [Above objects/Under objects/Front/Back] <Back>",
                                       "Above Under Front Back", "Back");
    std::shared_ptr<SelectionSet> references;
    if (how == "Above" || how == "Under") {
        references = ed.select({.prompt = "Select reference objects: ", .allowLocked = true});
        if (references->empty())
            return;
    }
    VcDbSortentsTable* table = drawOrderOf(ed.db(), ed.db().currentSpace());
    if (!table)
        throw CommandError{"The draw order of this space cannot be changed."};
    const VcDbObjectIdArray moving = inOrder(*table, *objects);
    if (how == "Front" || how == "Back") {
        how == "Front" ? table->moveToTop(moving) : table->moveToBottom(moving);
        return;
    }
    for (const VcDbObjectId id : moving)
        references->remove(id);
    const VcDbObjectIdArray beside = inOrder(*table, *references);
    if (beside.empty())
        throw CommandError{"The reference objects must be others than those that move."};
    how == "Above" ? table->moveAbove(moving, beside.back()) : table->moveBelow(moving, beside.front());
}

const HostCommand kCommands[] = {
    {"WIPEOUT", nullptr, kPlain, "Hides what lies beneath an outline.", wipeout},
    {"DRAWORDER", "DR", kUsesPickSet, "Changes what is drawn above what.", drawOrder},
};

}

std::span<const HostCommand> wipeoutCommands() { return kCommands; }

}
