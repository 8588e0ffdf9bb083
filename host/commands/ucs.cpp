// UCS - sets, saves and restores the coordinate system that is worked in.
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/object_plane.h"
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "host/edit/sysvars.h"
#include "host/edit/ucs.h"
#include "host/edit/view.h"
#include "sdk/vcdb_records.h"

namespace vk::commands {

namespace {

using namespace edit;
using Record = VcDbUCSTableRecord;

constexpr double kSmallest = 1e-9;

Record* recordNamed(Editor& ed, std::string_view name) { return ed.db().liveAs<Record>(ed.db().findRecord(NameTable::Ucs, name)); }

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
    const auto onX = pointOrDefault(ed, fmt::format("Specify point on positive portion of X-axis <{:.4f},{:.4f},{:.4f}>", origin.x + 1, origin.y, origin.z),
                                    origin);
    const auto onPlane = pointOrDefault(
        ed, fmt::format("Specify point on positive-Y portion of the UCS XY plane <{:.4f},{:.4f},{:.4f}>", origin.x, origin.y + 1, origin.z), origin);
    const VcGeVector3d x = onX ? *onX - origin : VcGeVector3d::xAxis();
    changeUcs(ed, fromUcs(ed, origin, x, onPlane ? *onPlane - origin : VcGeVector3d::yAxis()));
}

// The X axis follows from the Z axis as that of a planar object does, seen from the present UCS.
void zAxis(Editor& ed)
{
    const VcGePoint3d origin = pointOrDefault(ed, "Specify new origin point <0,0,0>", {}).value_or(VcGePoint3d());
    const auto onZ = pointOrDefault(ed, fmt::format("Specify point on positive portion of Z-axis <{:.4f},{:.4f},{:.4f}>", origin.x, origin.y, origin.z + 1),
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
    const Answer a = ed.askAngle(fmt::format("Specify rotation angle about {} axis <{}>", name, angleText(byDefault)), {.from = VcGePoint3d(), .enterEnds = true});
    const double angle = a.status == Answer::Status::Value ? a.real : byDefault;
    changeUcs(ed, CoordinateSystem::of(ucsToWorld(ed) * VcGeMatrix3d::rotation(angle, axis)));
}

void list(Editor& ed, const std::string& names)
{
    const Wildcard pattern(names.empty() ? "*" : names);
    const CoordinateSystem now = currentUcs(ed.db());
    const std::string name = ed.vars().text("UCSNAME");
    ed.printLine(fmt::format("Current UCS name:  {}", !name.empty() ? "\"" + name + "\"" : now.isWorld() ? "*WORLD*" : "*NO NAME*"));
    for (const VcDbObjectId id : ed.db().table(NameTable::Ucs).records()) {
        const auto* record = ed.db().objectAs<Record>(id);
        if (!pattern.matches(record->nameUtf8()))
            continue;
        const auto three = [](const VcGeVector3d& v) { return fmt::format("<{}, {}, {}>", lengthText(v.x), lengthText(v.y), lengthText(v.z)); };
        ed.printLine(fmt::format("\"{}\"  Origin = {}, X Axis = {}, Y Axis = {}", record->nameUtf8(), three(record->origin().asVector()),
                                 three(record->xAxis()), three(record->yAxis())));
    }
}

void askAndList(Editor& ed) { list(ed, ed.text("Enter UCS name(s) to list <*>")); }

void restore(Editor& ed)
{
    for (;;) {
        const std::string name = ed.text("Enter name of UCS to restore or [?]");
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
        return changeUcs(ed, {record->origin(), record->xAxis(), record->yAxis()}, record->nameUtf8());
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
        const std::string name = ed.text("Enter name to save current UCS or [?]");
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
            ed.keyword(fmt::format("UCS \"{}\" already exists. Replace it? [Yes/No] <N>", name), "Yes No", "No") == "No")
            return;
        const CoordinateSystem now = currentUcs(ed.db());
        Record& record = recordFor(ed, name);
        record.setOrigin(now.origin);
        record.setAxes(now.x, now.y);
        return ed.vars().force("UCSNAME", record.nameUtf8());
    }
}

void erase(Editor& ed)
{
    const std::string names = ed.text("Enter UCS name(s) to delete <none>");
    if (names.empty())
        return;
    const Wildcard pattern(names);
    std::size_t count = 0;
    for (const VcDbObjectId id : ed.db().table(NameTable::Ucs).records()) {
        auto* record = ed.db().objectAs<Record>(id);
        if (!pattern.matches(record->nameUtf8()))
            continue;
        const std::string name = record->nameUtf8();
        if (record->erase() != Vcad::eOk) {
            ed.printLine(fmt::format("UCS \"{}\" is in use and cannot be deleted.", name));
            continue;
        }
        ++count;
        if (equalNoCase(name, ed.vars().text("UCSNAME")))
            ed.vars().force("UCSNAME", std::string());
    }
    ed.printLine(count > 0 ? fmt::format("Deleted {} UCS name(s).", count) : fmt::format("No UCS matches \"{}\".", names));
}

void named(Editor& ed)
{
    const std::string what = ed.keyword("Enter an option [Restore/Save/Delete/?]", "Restore Save Delete ?");
    what == "Restore" ? restore(ed) : what == "Save" ? save(ed) : what == "Delete" ? erase(ed) : askAndList(ed);
}

struct Option {
    const char* keyword;
    void (*run)(Editor&);
};
constexpr Option kOptions[] = {
    {"World", world},       {"Previous", previous}, {"Restore", restore},  {"Save", save},       {"Delete", erase},
    {"?", askAndList},      {"OBject", object},     {"Entity", object},    {"View", view},       {"NAmed", named},
    {"3", threePoints},    {"3Point", threePoints}, {"ZAxis", zAxis},
    {"X", [](Editor& ed) { turn(ed, "X", VcGeVector3d::xAxis()); }},
    {"Y", [](Editor& ed) { turn(ed, "Y", VcGeVector3d::yAxis()); }},
    {"Z", [](Editor& ed) { turn(ed, "Z", VcGeVector3d::zAxis()); }},
};

// An origin is the question; the options that older scripts use are understood beside those that are shown.
void ucs(Editor& ed)
{
    const std::string name = ed.vars().text("UCSNAME");
    ed.printLine(fmt::format("Current UCS name:  {}", !name.empty() ? name : currentUcs(ed.db()).isWorld() ? "*WORLD*" : "*NO NAME*"));
    const Answer a = ed.askPoint("Specify origin of UCS or [NAmed/OBject/Previous/Restore/Save/Delete/?/View/World/X/Y/Z/ZAxis/3point] <World>",
                                 {.keywords = "World Previous Restore Save Delete ? OBject Entity View NAmed 3 3Point ZAxis X Y Z", .enterEnds = true});
    if (a.status == Answer::Status::Enter)
        return world(ed);
    if (a.status == Answer::Status::Value)
        return fromOrigin(ed, a.point);
    for (const Option& option : kOptions)
        if (a.text == option.keyword)
            return option.run(ed);
}

const HostCommand kCommands[] = {
    {"UCS", nullptr, kPlain, "Sets, saves and restores coordinate systems.", ucs},
};

}

std::span<const HostCommand> ucsCommands() { return kCommands; }

}
