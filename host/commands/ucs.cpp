// UCS - sets, saves and restores the coordinate system that is worked in.
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/object_plane.h"
#include "host/commands/ucs_names.h"
#include "host/db/database.h"
#include "host/db/layouts.h"
#include "host/db/record_names.h"
#include "host/edit/sysvars.h"
#include "host/edit/ucs.h"
#include "host/edit/view.h"
#include "host/edit/viewports.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_viewport.h"

namespace vk::commands {

namespace {

using namespace edit;
using Record = VcDbUCSTableRecord;

constexpr double kSmallest = 1e-9;

Record* recordNamed(Editor& ed, std::string_view name)
{
    return ed.db().liveAs<Record>(ed.db().findRecord(NameTable::Ucs, name));
}

// Vectors and points of questions are in the present UCS.
CoordinateSystem fromUcs(Editor& ed, const VcGePoint3d& origin, const VcGeVector3d& x, const VcGeVector3d& towardsY)
{
    const VcGeVector3d z = x.crossProduct(towardsY);
    if (!(x.length() > kSmallest) || !(z.length() > kSmallest * x.length() * towardsY.length()))
        throw CommandError{"These points do not make a coordinate system: they coincide or lie on a line."};
    const VcGeMatrix3d m = ucsToWorld(ed);
    return {m * origin, (m * x).normal(), (m * z.crossProduct(x)).normal()};
}

std::optional<VcGePoint3d> pointOrDefault(Editor& ed, std::string_view prompt, const VcGePoint3d& from)
{
    const Answer a = ed.askPoint(prompt, {.from = from, .enterEnds = true});
    return a.status == Answer::Status::Value ? std::optional(a.point) : std::nullopt;
}

void world(Editor& ed) { changeUcs(ed, {}); }

void previous(Editor& ed)
{
    if (!restorePreviousUcs(ed))
        ed.printLine("There is no previous UCS.");
}

// Without an axis point the axes stay as they are.
void fromOrigin(Editor& ed, const VcGePoint3d& origin)
{
    const auto onX = pointOrDefault(ed, "Specify point on X-axis or <accept>", origin);
    if (!onX)
        return changeUcs(ed, CoordinateSystem{toWorld(ed, origin), currentUcs(ed.db()).x, currentUcs(ed.db()).y});
    const VcGeVector3d x = *onX - origin;
    const auto onPlane = pointOrDefault(ed, "Specify point on the XY plane or <accept>", origin);
    const VcGeVector3d up = std::hypot(x.x, x.y) > kSmallest ? VcGeVector3d(-x.y, x.x, 0) : VcGeVector3d::yAxis();
    changeUcs(ed, fromUcs(ed, origin, x, onPlane ? *onPlane - origin : up));
}

void threePoints(Editor& ed)
{
    const VcGePoint3d origin = pointOrDefault(ed, "Specify new origin point <0,0,0>", {}).value_or(VcGePoint3d());
    const auto axisPoint = [&](std::string_view prompt, const VcGeVector3d& axis) {
        return pointOrDefault(ed, fmt::format("{} <{}>", prompt, typedPointText(origin + axis)), origin);
    };
    const auto onX = axisPoint("Specify point on positive portion of X-axis", VcGeVector3d::xAxis());
    const auto onPlane = axisPoint("Specify point on positive-Y portion of the UCS XY plane", VcGeVector3d::yAxis());
    const VcGeVector3d x = onX ? *onX - origin : VcGeVector3d::xAxis();
    changeUcs(ed, fromUcs(ed, origin, x, onPlane ? *onPlane - origin : VcGeVector3d::yAxis()));
}

// The X axis follows from the Z axis as that of a planar object does, seen from the present UCS.
void zAxis(Editor& ed)
{
    const VcGePoint3d origin = pointOrDefault(ed, "Specify new origin point <0,0,0>", {}).value_or(VcGePoint3d());
    const auto onZ = pointOrDefault(
        ed,
        fmt::format("Specify point on positive portion of Z-axis <{}>", typedPointText(origin + VcGeVector3d::zAxis())),
        origin);
    const VcGeVector3d z = onZ ? *onZ - origin : VcGeVector3d::zAxis();
    if (!(z.length() > kSmallest))
        throw CommandError{"The Z axis has no direction: the two points coincide."};
    const VcGeVector3d x = z.normal().perpVector();
    changeUcs(ed, fromUcs(ed, origin, x, z.crossProduct(x)));
}

void object(Editor& ed)
{
    const Answer a = ed.askEntity("Select object to align UCS");
    const auto* entity = ed.db().liveAs<VcDbEntity>(a.entity);
    if (!entity)
        return;
    const auto plane = planeOfObject(*entity, a.hasPoint ? std::optional(toWorld(ed, a.point)) : std::nullopt);
    if (!plane)
        throw CommandError{"That object does not define a coordinate system."};
    changeUcs(ed, *plane);
}

void view(Editor& ed)
{
    const VcGeMatrix3d display = worldToDisplay(ed).inverse();
    changeUcs(ed, {currentUcs(ed.db()).origin, display * VcGeVector3d::xAxis(), display * VcGeVector3d::yAxis()});
}

void turn(Editor& ed, const char* name, const VcGeVector3d& axis)
{
    const double byDefault = ed.vars().real("UCSAXISANG");
    const Answer a =
        ed.askAngle(fmt::format("Specify rotation angle about {} axis <{}>", name, turnText(ed, byDefault)),
                    {.from = VcGePoint3d(), .enterEnds = true});
    const double angle = a.status == Answer::Status::Value ? a.real : byDefault;
    changeUcs(ed, CoordinateSystem::of(ucsToWorld(ed) * VcGeMatrix3d::rotation(angle, axis)));
}

void askAndList(Editor& ed) { listUcs(ed, ed.word("Enter UCS name(s) to list", "*")); }

void restore(Editor& ed)
{
    for (;;) {
        const std::string name = ed.word("Enter name of UCS to restore or [?]");
        if (name.empty())
            return;
        if (name == "?") {
            askAndList(ed);
            continue;
        }
        const Record* record = recordNamed(ed, name);
        if (!record) {
            ed.printLine(fmt::format("Cannot find UCS \"{}\".", name));
            continue;
        }
        return changeUcs(ed, {record->origin(), record->xAxis(), record->yAxis()}, record->objectId());
    }
}

Record& recordFor(Editor& ed, const std::string& name)
{
    if (Record* known = recordNamed(ed, name))
        return *known;
    auto made = std::make_unique<Record>();
    made->setNameUtf8(name);
    Record* added = made.get();
    if (ed.db().table(NameTable::Ucs).add(made.get()))
        throw CommandError{"The UCS cannot be saved."};
    made.release();
    added->close();
    return *added;
}

void save(Editor& ed)
{
    for (;;) {
        const std::string name = ed.word("Enter name to save current UCS or [?]");
        if (name.empty())
            return;
        if (name == "?") {
            askAndList(ed);
            continue;
        }
        if (!isLegalRecordName(name) || name.front() == '*') {
            ed.printLine(fmt::format("\"{}\" is no name for a UCS.", name));
            continue;
        }
        if (recordNamed(ed, name) && ed.vars().integer("EXPERT") < 4 &&
            ed.keyword(fmt::format("UCS \"{}\" already exists. Replace it? [Yes/No] <N>", name), "Yes No", "No") ==
                "No")
            return;
        const CoordinateSystem now = currentUcs(ed.db());
        Record& record = recordFor(ed, name);
        record.setOrigin(now.origin);
        record.setAxes(now.x, now.y);
        return nameUcs(ed, record.objectId());
    }
}

void erase(Editor& ed)
{
    const std::string names = ed.word("Enter UCS name(s) to delete <none>");
    if (names.empty())
        return;
    const Wildcard pattern(names);
    std::size_t count = 0;
    for (const VcDbObjectId id : ed.db().table(NameTable::Ucs).records()) {
        auto* record = ed.db().objectAs<Record>(id);
        if (!pattern.matches(record->nameUtf8()))
            continue;
        const std::string name = record->nameUtf8();
        if (currentUcsRecord(ed.db()) == id)
            nameUcs(ed, {});
        if (record->erase() != Vcad::eOk) {
            ed.printLine(fmt::format("UCS \"{}\" is in use and cannot be deleted.", name));
            continue;
        }
        ++count;
    }
    ed.printLine(count > 0 ? fmt::format("Deleted {} UCS name(s).", count)
                           : fmt::format("No UCS matches \"{}\".", names));
}

void named(Editor& ed)
{
    const std::string what = ed.keyword("Enter an option [Restore/Save/Delete/?]", "Restore Save Delete ?");
    what == "Restore" ? restore(ed) : what == "Save" ? save(ed) : what == "Delete" ? erase(ed) : askAndList(ed);
}

// The plane of a flat object with corners, turned about on request.
void face(Editor& ed)
{
    const Answer a = ed.askEntity("Select a face");
    const auto* entity = ed.db().liveAs<VcDbEntity>(a.entity);
    if (!entity)
        return;
    const bool isFace = entity->isKindOf(VcDbFace::desc()) || entity->isKindOf(VcDbSolid::desc()) ||
                        entity->isKindOf(VcDbTrace::desc()) ||
                        (entity->isKindOf(VcDbPolyline::desc()) && VcDbCurve::cast(entity)->isClosed());
    const auto plane =
        isFace ? planeOfObject(*entity, a.hasPoint ? std::optional(toWorld(ed, a.point)) : std::nullopt) : std::nullopt;
    if (!plane)
        throw CommandError{"A 3D face, a solid area or a closed polyline is needed."};
    CoordinateSystem ucs = *plane;
    for (std::string what; what != "Accept";) {
        what = ed.keyword("Enter an option [Xflip/Yflip] <accept>", "Xflip Yflip Accept", "Accept");
        if (what != "Yflip")
            ucs.y = what == "Xflip" ? -ucs.y : ucs.y;
        else
            ucs = {ucs.origin, -ucs.x, ucs.y};
    }
    changeUcs(ed, ucs);
}

// The axes stay.
void move(Editor& ed)
{
    const CoordinateSystem now = currentUcs(ed.db());
    const Answer a =
        ed.askPoint("Specify new origin point or [Zdepth] <0,0,0>", {.keywords = "Zdepth", .enterEnds = true});
    VcGePoint3d origin = a.status == Answer::Status::Value ? a.point : VcGePoint3d();
    if (a.status == Answer::Status::Keyword)
        origin.z = ed.distance("Specify Zdepth", 0.0);
    changeUcs(ed, {toWorld(ed, origin), now.x, now.y});
}

void orthographic(Editor& ed) { changeUcs(ed, askOrthographicSystem(ed)); }

// Viewports that keep a system of their own get the present one.
void applyToViewports(Editor& ed)
{
    if (!isOnSheet(ed))
        throw CommandError{"The model's own tab shows one viewport; Apply is of use on a layout."};
    const CoordinateSystem now = currentUcs(ed.db());
    const VcDbObjectId record = currentUcsRecord(ed.db());
    const Answer a =
        ed.askEntity("Pick viewport to apply current UCS or [All] <current>", {.keywords = "All", .enterEnds = true});
    std::vector<VcDbViewport*> chosen;
    if (a.status == Answer::Status::Keyword)
        chosen = viewportsOf(ed.db(), ed.db().paperSpace());
    else if (auto* picked = ed.db().liveAs<VcDbViewport>(a.entity))
        chosen = {picked};
    else if (a.status == Answer::Status::Value)
        throw CommandError{"That is not a viewport."};
    for (VcDbViewport* viewport : chosen)
        if (viewport->number() != 1) {
            viewport->setUcs(now.origin, now.x, now.y);
            viewport->setUcsName(record);
        }
}

struct Option {
    const char* keyword;
    void (*run)(Editor&);
};
constexpr Option kOptions[] = {
    {"World", world},
    {"Previous", previous},
    {"Restore", restore},
    {"Save", save},
    {"Delete", erase},
    {"?", askAndList},
    {"OBject", object},
    {"Entity", object},
    {"View", view},
    {"NAmed", named},
    {"3", threePoints},
    {"3Point", threePoints},
    {"ZAxis", zAxis},
    {"Face", face},
    {"Move", move},
    {"Origin", move},
    {"Apply", applyToViewports},
    {"orthoGraphic", orthographic},
    {"X", [](Editor& ed) { turn(ed, "X", VcGeVector3d::xAxis()); }},
    {"Y", [](Editor& ed) { turn(ed, "Y", VcGeVector3d::yAxis()); }},
    {"Z", [](Editor& ed) { turn(ed, "Z", VcGeVector3d::zAxis()); }},
};

void runOption(Editor& ed, const std::string& keyword)
{
    for (const Option& option : kOptions)
        if (keyword == option.keyword)
            return option.run(ed);
}

// The options of older scripts that only make a system.
void makeNew(Editor& ed)
{
    const Answer a = ed.askPoint("Specify origin of new UCS or [ZAxis/3point/OBject/Face/View/X/Y/Z] <0,0,0>",
                                 {.keywords = "ZAxis 3 3Point OBject Entity Face View X Y Z", .enterEnds = true});
    if (a.status == Answer::Status::Keyword)
        return runOption(ed, a.text);
    const CoordinateSystem now = currentUcs(ed.db());
    changeUcs(ed, {toWorld(ed, a.status == Answer::Status::Value ? a.point : VcGePoint3d()), now.x, now.y});
}

// An origin is the question; the options that older scripts use are understood beside those that are shown.
void ucs(Editor& ed)
{
    const std::string name = ed.vars().text("UCSNAME");
    ed.printLine(fmt::format("Current UCS name:  {}", !name.empty()                   ? name
                                                      : currentUcs(ed.db()).isWorld() ? "*WORLD*"
                                                                                      : "*NO NAME*"));
    const Answer a = ed.askPoint(
        "Specify origin of UCS or [Face/NAmed/OBject/Previous/Restore/Save/Delete/?/View/World/X/Y/Z/ZAxis/3point] "
        "<World>",
        {.keywords =
             "World Previous Restore Save Delete ? OBject Entity Face View NAmed New Move Origin Apply orthoGraphic "
             "3 3Point ZAxis X Y Z",
         .enterEnds = true});
    if (a.status == Answer::Status::Enter)
        return world(ed);
    if (a.status == Answer::Status::Value)
        return fromOrigin(ed, a.point);
    a.text == "New" ? makeNew(ed) : runOption(ed, a.text);
}

const HostCommand kCommands[] = {
    {"UCS", nullptr, kPlain, "Sets, saves and restores coordinate systems.", ucs},
};

}

void listUcs(Editor& ed, const std::string& names)
{
    const Wildcard pattern(names.empty() ? "*" : names);
    const CoordinateSystem now = currentUcs(ed.db());
    const std::string name = ed.vars().text("UCSNAME");
    ed.printLine(fmt::format("Current UCS name:  {}", !name.empty()   ? "\"" + name + "\""
                                                      : now.isWorld() ? "*WORLD*"
                                                                      : "*NO NAME*"));
    for (const VcDbObjectId id : ed.db().table(NameTable::Ucs).records()) {
        const auto* record = ed.db().objectAs<Record>(id);
        if (!pattern.matches(record->nameUtf8()))
            continue;
        const auto three = [](const VcGeVector3d& v) {
            return fmt::format("<{}, {}, {}>", lengthText(v.x), lengthText(v.y), lengthText(v.z));
        };
        ed.printLine(fmt::format("\"{}\"  Origin = {}, X Axis = {}, Y Axis = {}", record->nameUtf8(),
                                 three(record->origin().asVector()), three(record->xAxis()), three(record->yAxis())));
    }
}

CoordinateSystem askOrthographicSystem(Editor& ed)
{
    struct Side {
        const char* keyword;
        VcGeVector3d x, y;
    };
    static const Side kSides[] = {{"Top", {1, 0, 0}, {0, 1, 0}},   {"Bottom", {-1, 0, 0}, {0, 1, 0}},
                                  {"Front", {1, 0, 0}, {0, 0, 1}}, {"BAck", {-1, 0, 0}, {0, 0, 1}},
                                  {"Left", {0, -1, 0}, {0, 0, 1}}, {"Right", {0, 1, 0}, {0, 0, 1}}};
    const std::string side = ed.keyword("Enter an option [Top/Bottom/Front/BAck/Left/Right] <Top>",
                                        "Top Bottom Front BAck Left Right", "Top");
    const Side* chosen =
        std::find_if(std::begin(kSides), std::end(kSides), [&](const Side& s) { return side == s.keyword; });
    return {{}, chosen->x, chosen->y};
}

std::span<const HostCommand> ucsCommands() { return kCommands; }

}
