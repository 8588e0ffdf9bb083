#include "host/edit/sysvars_computed.h"

#include "host/base/files.h"
#include "host/base/settings.h"
#include "host/base/unicode.h"
#include "host/db/coordinate_system.h"
#include "host/db/database.h"
#include "host/db/layouts.h"
#include "host/db/scale_list.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars_drawing.h"
#include "host/edit/view.h"
#include "host/edit/viewports.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"

#include <chrono>
#include <ctime>
#include <unistd.h>

namespace vk::edit {

namespace {

using Get = SysVarValue (*)(const Editor&);

Editor& mutableEditor(const Editor& ed) { return const_cast<Editor&>(ed); }

std::tm localTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local;
}

double secondsOfDay(const std::tm& t) { return t.tm_hour * 3600 + t.tm_min * 60 + t.tm_sec; }

// Days since noon of 1 January 4713 B.C., with the fraction of the local day.
SysVarValue julianDate(const Editor&)
{
    const std::tm t = localTime();
    const int a = (13 - t.tm_mon) / 12, y = t.tm_year + 6700 - a, m = t.tm_mon + 1 + 12 * a - 3;
    const int day = t.tm_mday + (153 * m + 2) / 5 + 365 * y + y / 4 - y / 100 + y / 400 - 32045;
    return day + secondsOfDay(t) / 86400.0;
}

// YYYYMMDD.HHMMSS
SysVarValue calendarDate(const Editor&)
{
    const std::tm t = localTime();
    return (t.tm_year + 1900) * 10000.0 + (t.tm_mon + 1) * 100 + t.tm_mday + t.tm_hour / 1e2 + t.tm_min / 1e4 +
           t.tm_sec / 1e6;
}

SysVarValue commandNames(const Editor& ed)
{
    std::string names;
    for (const std::string& name : ed.runningCommands())
        names += (names.empty() ? "" : "'") + (name.starts_with('\'') ? name.substr(1) : name);
    return names;
}

// Views count in the world; their variables in the UCS.
VcGeMatrix3d worldToUcs(const Editor& ed) { return currentUcs(ed.db()).toWorld().inverse(); }

SysVarValue viewCenter(const Editor& ed)
{
    const View& view = currentView(mutableEditor(ed));
    return worldToUcs(ed) * (worldToDisplay(view).inverse() * view.center);
}

constexpr const char* kFullSize = "1:1";

// The name that the model works with. A viewport may have one of its own; a sheet is of full size.
std::string currentAnnotationScale(const Editor& ed)
{
    if (isOnSheet(ed)) {
        const VcDbViewport* viewport = activeViewport(ed);
        const std::string named = viewport ? annotationScaleOf(*viewport) : std::string();
        return named.empty() ? kFullSize : named;
    }
    const auto stored = drawingSysVar(ed.db(), *findSysVar("CANNOSCALE"));
    return stored ? std::get<std::string>(*stored) : kFullSize;
}

double annotationScaleValue(const Editor& ed)
{
    const VcDbScale* scale = scaleNamed(ed.db(), currentAnnotationScale(ed));
    return scale ? scale->scale() : 1.0;
}

struct Computed {
    std::string_view name;
    bool needsDrawing;
    Get get;
};

const Computed kComputed[] = {
    {"DATE", false, julianDate},
    {"CDATE", false, calendarDate},
    {"MILLISECS", false,
     [](const Editor&) -> SysVarValue {
         const auto now = std::chrono::steady_clock::now().time_since_epoch();
         return std::int32_t(std::chrono::duration_cast<std::chrono::milliseconds>(now).count() & 0x7fffffff);
     }},
    {"CMDNAMES", false, commandNames},
    {"CMDACTIVE", false,
     [](const Editor& ed) -> SysVarValue { return std::int32_t(ed.runningCommands().empty() ? 0 : 1); }},
    {"CPROFILE", false, [](const Editor&) -> SysVarValue { return std::string("Default"); }},
    {"LASTPOINT", true, [](const Editor& ed) -> SysVarValue { return ed.lastPoint; }},
    {"LASTANGLE", true, [](const Editor& ed) -> SysVarValue { return ed.lastAngle; }},
    {"DWGPREFIX", true, [](const Editor& ed) -> SysVarValue { return std::string(folderOf(ed.db().origin.path)); }},
    {"DWGNAME", true,
     [](const Editor& ed) -> SysVarValue {
         const std::string& path = ed.db().origin.path;
         return path.empty() ? std::string("Drawing1.dxf") : std::string(fileNameOf(path));
     }},
    {"DWGTITLED", true, [](const Editor& ed) -> SysVarValue { return std::int32_t(!ed.db().origin.path.empty()); }},
    {"DBMOD", true, [](const Editor& ed) -> SysVarValue { return std::int32_t(ed.db().undo().size() > 0 ? 1 : 0); }},
    {"SCREENSIZE", false,
     [](const Editor& ed) -> SysVarValue {
         return ed.hasDrawing() ? viewportPixels(mutableEditor(ed)) : VcGePoint2d(kScreenWidth, kScreenHeight);
     }},
    {"VIEWSIZE", true, [](const Editor& ed) -> SysVarValue { return currentView(mutableEditor(ed)).height; }},
    {"VIEWCTR", true, viewCenter},
    {"VIEWDIR", true,
     [](const Editor& ed) -> SysVarValue {
         return VcGePoint3d() + worldToUcs(ed) * currentView(mutableEditor(ed)).direction;
     }},
    {"TARGET", true,
     [](const Editor& ed) -> SysVarValue { return worldToUcs(ed) * currentView(mutableEditor(ed)).target; }},
    {"VIEWTWIST", true, [](const Editor& ed) -> SysVarValue { return currentView(mutableEditor(ed)).twist; }},
    {"LENSLENGTH", true, [](const Editor& ed) -> SysVarValue { return currentView(mutableEditor(ed)).lensLength; }},
    {"FRONTZ", true, [](const Editor& ed) -> SysVarValue { return currentView(mutableEditor(ed)).frontClip; }},
    {"BACKZ", true, [](const Editor& ed) -> SysVarValue { return currentView(mutableEditor(ed)).backClip; }},
    {"VIEWMODE", true,
     [](const Editor& ed) -> SysVarValue {
         return std::int32_t(currentView(mutableEditor(ed)).mode |
                             (ed.vars().integer("UCSFOLLOW") != 0 ? kUcsFollowOn : 0));
     }},
    {"UCSVP", true,
     [](const Editor& ed) -> SysVarValue {
         const VcDbViewport* viewport = activeViewport(ed);
         return std::int32_t(!viewport || viewport->isUcsSavedWithViewport());
     }},
    {"UCSNAME", true,
     [](const Editor& ed) -> SysVarValue {
         const auto* record = ed.db().liveAs<VcDbSymbolTableRecord>(currentUcsRecord(ed.db()));
         return record ? record->nameUtf8() : std::string();
     }},
    {"UCSORG", true, [](const Editor& ed) -> SysVarValue { return currentUcs(ed.db()).origin; }},
    {"UCSXDIR", true, [](const Editor& ed) -> SysVarValue { return VcGePoint3d() + currentUcs(ed.db()).x; }},
    {"UCSYDIR", true, [](const Editor& ed) -> SysVarValue { return VcGePoint3d() + currentUcs(ed.db()).y; }},
    {"WORLDUCS", true, [](const Editor& ed) -> SysVarValue { return std::int32_t(currentUcs(ed.db()).isWorld()); }},
    {"CVPORT", true, [](const Editor& ed) -> SysVarValue { return std::int32_t(currentViewportNumber(ed)); }},
    {"CTAB", true,
     [](const Editor& ed) -> SysVarValue {
         const VcDbLayout* layout = currentLayout(ed);
         return layout ? layout->nameUtf8() : std::string();
     }},
    {"CANNOSCALE", true, [](const Editor& ed) -> SysVarValue { return currentAnnotationScale(ed); }},
    {"CANNOSCALEVALUE", true, [](const Editor& ed) -> SysVarValue { return annotationScaleValue(ed); }},
    {"TEMPPREFIX", false, [](const Editor&) -> SysVarValue { return temporaryFolder(); }},
    {"LOGINNAME", false,
     [](const Editor&) -> SysVarValue {
         const char* user = std::getenv("USER");
         return std::string(user ? user : "");
     }},
    {"EXTMIN", true,
     [](const Editor& ed) -> SysVarValue {
         const VcDbExtents e = spaceExtents(ed);
         return e.isEmpty() ? VcGePoint3d(1e20, 1e20, 1e20) : e.minPoint();
     }},
    {"EXTMAX", true,
     [](const Editor& ed) -> SysVarValue {
         const VcDbExtents e = spaceExtents(ed);
         return e.isEmpty() ? VcGePoint3d(-1e20, -1e20, -1e20) : e.maxPoint();
     }},
};

// Names of records that must be there; the record's own spelling is what is stored.
struct NamesRecord {
    std::string_view variable;
    NameTable table;
};
constexpr NamesRecord kNamesRecord[] = {
    {"CLAYER", NameTable::Layer},
    {"TEXTSTYLE", NameTable::TextStyle},
    {"CELTYPE", NameTable::Linetype},
    {"DIMSTYLE", NameTable::DimStyle},
};

SetVarResult setRecordName(Editor& ed, const SysVarDef& def, NameTable table, const std::string& name)
{
    const DatabaseCore& db = ed.db();
    const auto* record = db.liveAs<VcDbSymbolTableRecord>(db.findRecord(table, name));
    const auto* layer = VcDbLayerTableRecord::cast(record);
    if (!record || record->isDependent() || (layer && layer->isFrozen()))
        return SetVarResult::Refused;
    ed.vars().force(def.name, record->nameUtf8());
    return SetVarResult::Done;
}

// What stands already may always be set, by a script that puts all variables back for one.
SetVarResult setAnnotationScale(Editor& ed, const SysVarDef& def, const std::string& name)
{
    if (equalNoCase(name, currentAnnotationScale(ed)))
        return SetVarResult::Done;
    const VcDbScale* scale = scaleNamed(ed.db(), name);
    VcDbViewport* viewport = activeViewport(ed);
    if (!scale || (isOnSheet(ed) && !viewport))
        return SetVarResult::Refused;
    if (viewport)
        return assignAnnotationScale(*viewport, *scale) ? SetVarResult::Done : SetVarResult::Refused;
    ed.vars().force(def.name, scale->nameUtf8());
    return SetVarResult::Done;
}

SetVarResult setTileMode(Editor& ed, std::int32_t value)
{
    const DatabaseCore& db = ed.db();
    VcDbLayout* layout = layoutOfBlock(db, value ? db.modelSpace() : db.paperSpace());
    return layout && showLayout(ed, *layout) ? SetVarResult::Done : SetVarResult::Refused;
}

// A viewport without a system of its own works in the model's.
SetVarResult setUcsOfViewport(Editor& ed, bool own)
{
    VcDbViewport* viewport = activeViewport(ed);
    if (!viewport)
        return own ? SetVarResult::Done : SetVarResult::Refused;
    const CoordinateSystem now = currentUcs(ed.db());
    const VcDbObjectId record = currentUcsRecord(ed.db());
    viewport->setUcsSavedWithViewport(own);
    if (own)
        setCurrentUcs(ed.db(), now, record);
    return SetVarResult::Done;
}

SetVarResult setTab(Editor& ed, const std::string& name)
{
    VcDbLayout* layout = layoutNamed(ed.db(), name);
    return layout && showLayout(ed, *layout) ? SetVarResult::Done : SetVarResult::Refused;
}

}

// Every look at a variable asks: by its place in the table, so that those which nothing computes cost no comparing.
static const Computed* computedOf(const SysVarDef& def)
{
    static const std::vector<const Computed*> byPlace = [] {
        std::vector<const Computed*> places;
        for (const SysVarDef& each : sysVarTable()) {
            const auto found = std::find_if(std::begin(kComputed), std::end(kComputed),
                                            [&each](const Computed& c) { return c.name == each.name; });
            places.push_back(found == std::end(kComputed) ? nullptr : &*found);
        }
        return places;
    }();
    return byPlace[std::size_t(&def - sysVarTable().data())];
}

std::optional<SysVarValue> computedSysVar(const Editor& ed, const SysVarDef& def)
{
    const Computed* computed = computedOf(def);
    if (!computed || (computed->needsDrawing && !ed.hasDrawing()))
        return std::nullopt;
    return computed->get(ed);
}

std::optional<SetVarResult> setSpecialSysVar(Editor& ed, const SysVarDef& def, const SysVarValue& value)
{
    for (const NamesRecord& n : kNamesRecord)
        if (n.variable == def.name)
            return setRecordName(ed, def, n.table, std::get<std::string>(value));
    const std::string_view name = def.name;
    if (name == "LASTPOINT") {
        ed.lastPoint = std::get<VcGePoint3d>(value);
        return SetVarResult::Done;
    }
    if (name == "TILEMODE")
        return setTileMode(ed, std::get<std::int32_t>(value));
    if (name == "CECOLOR" || name == "CPLOTSTYLE")
        return setDrawingSysVar(ed.db(), def, value) ? SetVarResult::Done : SetVarResult::OutOfRange;
    if (name == "CANNOSCALE")
        return setAnnotationScale(ed, def, std::get<std::string>(value));
    if (name == "UCSVP")
        return setUcsOfViewport(ed, std::get<std::int32_t>(value) != 0);
    if (name == "CTAB")
        return setTab(ed, std::get<std::string>(value));
    if (name == "CVPORT")
        return setCurrentViewport(ed, std::get<std::int32_t>(value)) ? SetVarResult::Done : SetVarResult::Refused;
    return std::nullopt;
}

}
