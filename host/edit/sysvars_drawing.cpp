#include "host/edit/sysvars_drawing.h"

#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_records.h"

#include <cmath>

namespace vk::edit {

namespace {

constexpr double kDegree = M_PI / 180;

// On a sheet these stand under names of their own.
std::string headerNameFor(const DatabaseCore& db, const SysVarDef& def)
{
    static constexpr std::string_view kOfSpace[] = {"$EXTMIN",   "$EXTMAX",  "$LIMMIN",    "$LIMMAX",
                                                    "$LIMCHECK", "$INSBASE", "$ELEVATION", "$UCSNAME",
                                                    "$UCSORG",   "$UCSXDIR", "$UCSYDIR",   "$UCSBASE"};
    const std::string name = def.headerName;
    const bool onSheet = db.currentSpace() == db.paperSpace();
    if (onSheet && std::find(std::begin(kOfSpace), std::end(kOfSpace), name) != std::end(kOfSpace))
        return "$P" + name.substr(1);
    return name;
}

std::string colourText(std::int64_t index)
{
    return index == 256 ? "BYLAYER" : index == 0 ? "BYBLOCK" : std::to_string(index);
}

std::optional<std::int64_t> colourIndex(std::string_view text)
{
    if (equalNoCase(text, "BYLAYER"))
        return 256;
    if (equalNoCase(text, "BYBLOCK"))
        return 0;
    static constexpr std::string_view kNames[] = {"red", "yellow", "green", "cyan", "blue", "magenta", "white"};
    for (std::size_t i = 0; i < std::size(kNames); ++i)
        if (equalNoCase(text, kNames[i]))
            return std::int64_t(i) + 1;
    const auto index = parseInteger(text);
    return index && *index >= 0 && *index <= 256 ? index : std::nullopt;
}

constexpr int kPlotStyleCode = 380;
constexpr const char* kPlotStyles[] = {"ByLayer", "ByBlock", "Normal"};

// Where plot styles go by colour there is but one.
std::string plotStyleText(const DatabaseCore& db, const std::string& name)
{
    if (db.header().integer("$PSTYLEMODE", 1) != 0)
        return "ByColor";
    const std::int64_t type = db.header().integer(name, 0);
    return kPlotStyles[type >= 0 && type < std::ssize(kPlotStyles) ? type : 2];
}

bool setPlotStyle(DatabaseCore& db, const std::string& name, const std::string& text)
{
    if (equalNoCase(text, plotStyleText(db, name)))
        return true;
    const auto style = std::ranges::find_if(kPlotStyles, [&](const char* each) { return equalNoCase(text, each); });
    if (db.header().integer("$PSTYLEMODE", 1) != 0 || style == std::end(kPlotStyles))
        return false;
    db.header().setInteger(name, kPlotStyleCode, style - kPlotStyles);
    return true;
}

// A name that the file gives as a handle.
std::string recordNameOf(const DatabaseCore& db, std::uint64_t handle)
{
    const VcDbObjectId id = db.findHandle(handle);
    const auto* object = db.objectAs<VcDbObject>(id);
    if (const auto* record = VcDbSymbolTableRecord::cast(object))
        return record->nameUtf8();
    const auto* dictionary = object ? db.liveAs<VcDbDictionary>(object->ownerId()) : nullptr;
    return dictionary ? dictionary->nameOf(id) : std::string();
}

bool isHandleCode(int code) { return code >= 320 && code <= 369; }
bool isIntegerCode(int code)
{
    return (code >= 60 && code <= 99) || (code >= 160 && code <= 179) || (code >= 270 && code <= 299) ||
           (code >= 370 && code <= 389);
}

std::optional<SysVarValue> headerText(const DatabaseCore& db, const SysVarDef& def, const std::string& name)
{
    if (def.headerCode == 62)
        return colourText(db.header().integer(name, 256));
    if (def.headerCode == kPlotStyleCode)
        return plotStyleText(db, name);
    if (isHandleCode(def.headerCode))
        return recordNameOf(db, db.header().handle(name));
    if (isIntegerCode(def.headerCode)) {
        const std::int64_t code = db.header().integer(name, 0);
        if (code <= 0)
            return std::nullopt;
        std::string text;
        appendUtf8(text, char32_t(code));
        return text;
    }
    return db.header().text(name, "");
}

std::optional<SysVarValue> headerValue(const DatabaseCore& db, const SysVarDef& def)
{
    const std::string name = headerNameFor(db, def);
    if (!db.header().has(name))
        return std::nullopt;
    switch (def.type) {
    case SysVarType::Short:
    case SysVarType::Long:
        return std::int32_t(db.header().integer(name, 0));
    case SysVarType::Real:
        return db.header().real(name, 0) * (def.headerCode >= 50 && def.headerCode <= 58 ? kDegree : 1);
    case SysVarType::String:
        return headerText(db, def, name);
    case SysVarType::Point2d: {
        const auto p = db.header().point(name);
        return VcGePoint2d(p->x, p->y);
    }
    case SysVarType::Point3d: {
        const auto p = db.header().point(name);
        return VcGePoint3d(p->x, p->y, p->z);
    }
    }
    return std::nullopt;
}

bool setHeaderText(DatabaseCore& db, const SysVarDef& def, const std::string& name, const std::string& text)
{
    if (def.headerCode == 62) {
        const auto index = colourIndex(text);
        if (index)
            db.header().setInteger(name, 62, *index);
        return index.has_value();
    }
    if (def.headerCode == kPlotStyleCode)
        return setPlotStyle(db, name, text);
    if (isHandleCode(def.headerCode))
        return false;
    if (isIntegerCode(def.headerCode)) {
        std::string_view rest = text;
        db.header().setInteger(name, def.headerCode, rest.empty() ? 0 : std::int64_t(takeCharacter(rest)));
        return true;
    }
    db.header().setText(name, def.headerCode, text);
    return true;
}

// The one that the file has: some variables were yes and no before they had more values.
int integerCode(const DatabaseCore& db, const SysVarDef& def, const std::string& name, std::int32_t value)
{
    const TagList* tags = db.header().find(name);
    if (!tags || tags->empty())
        return def.headerCode;
    const int code = (*tags->begin()).code;
    const bool isFlag = code >= 290 && code <= 299;
    return isIntegerCode(code) && (!isFlag || value == 0 || value == 1) ? code : def.headerCode;
}

bool setHeaderValue(DatabaseCore& db, const SysVarDef& def, const SysVarValue& value)
{
    const std::string name = headerNameFor(db, def);
    if (const auto* i = std::get_if<std::int32_t>(&value))
        db.header().setInteger(name, integerCode(db, def, name, *i), *i);
    else if (const auto* d = std::get_if<double>(&value))
        db.header().setReal(name, def.headerCode, *d / (def.headerCode >= 50 && def.headerCode <= 58 ? kDegree : 1));
    else if (const auto* p2 = std::get_if<VcGePoint2d>(&value))
        db.header().setPoint(name, p2->x, p2->y);
    else if (const auto* p3 = std::get_if<VcGePoint3d>(&value))
        db.header().setPoint(name, p3->x, p3->y, p3->z);
    else
        return setHeaderText(db, def, name, std::get<std::string>(value));
    return true;
}

// The active viewport

VcDbViewportTableRecord* activeViewport(const DatabaseCore& db)
{
    return db.liveAs<VcDbViewportTableRecord>(db.findRecord(NameTable::Viewport, "*Active"));
}

struct ViewportVariable {
    std::string_view name;
    SysVarValue (*get)(const VcDbViewportTableRecord&);
    Vcad::ErrorStatus (*set)(VcDbViewportTableRecord&, const SysVarValue&);
};

double realOf(const SysVarValue& v) { return std::get<double>(v); }
bool flagOf(const SysVarValue& v) { return std::get<std::int32_t>(v) != 0; }
const VcGePoint2d& point2Of(const SysVarValue& v) { return std::get<VcGePoint2d>(v); }

using Record = VcDbViewportTableRecord;
const ViewportVariable kViewport[] = {
    {"SNAPMODE", [](const Record& r) -> SysVarValue { return std::int32_t(r.snapEnabled()); },
     [](Record& r, const SysVarValue& v) { return r.setSnapEnabled(flagOf(v)); }},
    {"GRIDMODE", [](const Record& r) -> SysVarValue { return std::int32_t(r.gridEnabled()); },
     [](Record& r, const SysVarValue& v) { return r.setGridEnabled(flagOf(v)); }},
    {"SNAPUNIT", [](const Record& r) -> SysVarValue { return r.snapIncrements(); },
     [](Record& r, const SysVarValue& v) { return r.setSnapIncrements(point2Of(v)); }},
    {"GRIDUNIT", [](const Record& r) -> SysVarValue { return r.gridIncrements(); },
     [](Record& r, const SysVarValue& v) { return r.setGridIncrements(point2Of(v)); }},
    {"SNAPBASE", [](const Record& r) -> SysVarValue { return r.snapBase(); },
     [](Record& r, const SysVarValue& v) { return r.setSnapBase(point2Of(v)); }},
    {"SNAPANG", [](const Record& r) -> SysVarValue { return r.snapAngle(); },
     [](Record& r, const SysVarValue& v) { return r.setSnapAngle(realOf(v)); }},
    {"SNAPSTYL", [](const Record& r) -> SysVarValue { return std::int32_t(r.isometricSnapEnabled()); },
     [](Record& r, const SysVarValue& v) { return r.setIsometricSnapEnabled(flagOf(v)); }},
    {"LENSLENGTH", [](const Record& r) -> SysVarValue { return r.lensLength(); }, nullptr},
    {"VIEWTWIST", [](const Record& r) -> SysVarValue { return r.viewTwist(); }, nullptr},
    {"TARGET", [](const Record& r) -> SysVarValue { return r.target(); }, nullptr},
    {"VIEWDIR", [](const Record& r) -> SysVarValue { return VcGePoint3d() + r.viewDirection(); }, nullptr},
    {"FRONTZ", [](const Record& r) -> SysVarValue { return r.frontClipDistance(); }, nullptr},
    {"BACKZ", [](const Record& r) -> SysVarValue { return r.backClipDistance(); }, nullptr},
};

const ViewportVariable* viewportVariable(const SysVarDef& def)
{
    for (const ViewportVariable& v : kViewport)
        if (v.name == def.name)
            return &v;
    return nullptr;
}

// The dictionary of variables

constexpr const char* kVariableDictionary = "AcDbVariableDictionary";

VcDbDictionaryVar* variableObject(const DatabaseCore& db, std::string_view name)
{
    const auto* root = db.objectAs<VcDbDictionary>(db.rootDictionary());
    const auto* dictionary = root ? db.liveAs<VcDbDictionary>(root->find(kVariableDictionary)) : nullptr;
    return dictionary ? db.liveAs<VcDbDictionaryVar>(dictionary->find(name)) : nullptr;
}

bool setVariableObject(DatabaseCore& db, const SysVarDef& def, const SysVarValue& value)
{
    auto* root = db.objectAs<VcDbDictionary>(db.rootDictionary());
    if (!root)
        return false;
    auto* dictionary = db.liveAs<VcDbDictionary>(root->find(kVariableDictionary));
    if (!dictionary) {
        auto made = std::make_unique<VcDbDictionary>();
        dictionary = made.get();
        dictionary->setTreatElementsAsHard(true);
        root->setAtUtf8(kVariableDictionary, db.add(std::move(made), root->objectId()));
    }
    auto* variable = db.liveAs<VcDbDictionaryVar>(dictionary->find(def.name));
    if (!variable) {
        auto made = std::make_unique<VcDbDictionaryVar>();
        variable = made.get();
        dictionary->setAtUtf8(def.name, db.add(std::move(made), dictionary->objectId()));
    }
    variable->setValueUtf8(printSysVar(value));
    return true;
}

}

std::optional<SysVarValue> drawingSysVar(const DatabaseCore& db, const SysVarDef& def)
{
    if (def.home == SysVarHome::Dictionary) {
        const VcDbDictionaryVar* variable = variableObject(db, def.name);
        return variable ? parseSysVar(def, variable->valueUtf8()) : std::nullopt;
    }
    if (def.home == SysVarHome::Viewport)
        if (const ViewportVariable* variable = viewportVariable(def))
            if (const VcDbViewportTableRecord* record = activeViewport(db))
                return variable->get(*record);
    return def.headerName ? headerValue(db, def) : std::nullopt;
}

bool setDrawingSysVar(DatabaseCore& db, const SysVarDef& def, const SysVarValue& value)
{
    if (def.home == SysVarHome::Dictionary)
        return setVariableObject(db, def, value);
    if (def.home == SysVarHome::Viewport)
        if (const ViewportVariable* variable = viewportVariable(def); variable && variable->set)
            if (VcDbViewportTableRecord* record = activeViewport(db))
                return variable->set(*record, value) == Vcad::eOk;
    return def.headerName && setHeaderValue(db, def, value);
}

}
