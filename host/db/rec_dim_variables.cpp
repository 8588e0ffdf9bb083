#include "host/db/rec_dim_variables.h"

#include "host/base/unicode.h"
#include "host/db/database.h"
#include "sdk/vcdb_tables.h"

namespace {

using Kind = DimVariable::Kind;
using V = VcDbDimVars;
using enum DxfVersion;

constexpr double kQuarterHalf = 0.78539816339744830962;

const DimVariable kVariables[] = {
    {"DIMPOST", 3, Kind::Text, &V::dimpost},
    {"DIMAPOST", 4, Kind::Text, &V::dimapost},
    {"DIMBLK", 342, Kind::Arrow, &V::dimblk, 0, 0, R2000, Newest, 5},
    {"DIMBLK1", 343, Kind::Arrow, &V::dimblk1, 0, 0, R2000, Newest, 6},
    {"DIMBLK2", 344, Kind::Arrow, &V::dimblk2, 0, 0, R2000, Newest, 7},
    {"DIMSCALE", 40, Kind::Real, &V::dimscale, 1, 1},
    {"DIMASZ", 41, Kind::Length, &V::dimasz, 0.18, 2.5},
    {"DIMEXO", 42, Kind::Length, &V::dimexo, 0.0625, 0.625},
    {"DIMDLI", 43, Kind::Length, &V::dimdli, 0.38, 3.75},
    {"DIMEXE", 44, Kind::Length, &V::dimexe, 0.18, 1.25},
    {"DIMRND", 45, Kind::Length, &V::dimrnd},
    {"DIMDLE", 46, Kind::Length, &V::dimdle},
    {"DIMTP", 47, Kind::Length, &V::dimtp},
    {"DIMTM", 48, Kind::Length, &V::dimtm},
    {"DIMFXL", 49, Kind::Length, &V::dimfxl, 1, 1, R2007},
    {"DIMJOGANG", 50, Kind::Angle, &V::dimjogang, kQuarterHalf, kQuarterHalf, R2007},
    {"DIMTXT", 140, Kind::Length, &V::dimtxt, 0.18, 2.5},
    {"DIMCEN", 141, Kind::Length, &V::dimcen, 0.09, 2.5},
    {"DIMTSZ", 142, Kind::Length, &V::dimtsz},
    {"DIMALTF", 143, Kind::Real, &V::dimaltf, 25.4, 0.03937007874016},
    {"DIMLFAC", 144, Kind::Real, &V::dimlfac, 1, 1},
    {"DIMTVP", 145, Kind::Real, &V::dimtvp},
    {"DIMTFAC", 146, Kind::Real, &V::dimtfac, 1, 1},
    {"DIMGAP", 147, Kind::Length, &V::dimgap, 0.09, 0.625},
    {"DIMALTRND", 148, Kind::Length, &V::dimaltrnd, 0, 0, R2000},
    {"DIMTFILL", 69, Kind::Number, &V::dimtfill, 0, 0, R2007},
    {"DIMTFILLCLR", 70, Kind::Number, &V::dimtfillclr, 0, 0, R2007},
    {"DIMTOL", 71, Kind::Number, &V::dimtol},
    {"DIMLIM", 72, Kind::Number, &V::dimlim},
    {"DIMTIH", 73, Kind::Number, &V::dimtih, 1, 0},
    {"DIMTOH", 74, Kind::Number, &V::dimtoh, 1, 0},
    {"DIMSE1", 75, Kind::Number, &V::dimse1},
    {"DIMSE2", 76, Kind::Number, &V::dimse2},
    {"DIMTAD", 77, Kind::Number, &V::dimtad, 0, 1},
    {"DIMZIN", 78, Kind::Number, &V::dimzin, 0, 8},
    {"DIMAZIN", 79, Kind::Number, &V::dimazin, 0, 0, R2000},
    {"DIMARCSYM", 90, Kind::Number, &V::dimarcsym, 0, 0, R2007},
    {"DIMALT", 170, Kind::Number, &V::dimalt},
    {"DIMALTD", 171, Kind::Number, &V::dimaltd, 2, 3},
    {"DIMTOFL", 172, Kind::Number, &V::dimtofl, 0, 1},
    {"DIMSAH", 173, Kind::Number, &V::dimsah},
    {"DIMTIX", 174, Kind::Number, &V::dimtix},
    {"DIMSOXD", 175, Kind::Number, &V::dimsoxd},
    {"DIMCLRD", 176, Kind::Number, &V::dimclrd},
    {"DIMCLRE", 177, Kind::Number, &V::dimclre},
    {"DIMCLRT", 178, Kind::Number, &V::dimclrt},
    {"DIMADEC", 179, Kind::Number, &V::dimadec, 0, 0, R2000},
    {"DIMUNIT", 270, Kind::Number, &V::dimunit, 2, 2, R13, R14},
    {"DIMDEC", 271, Kind::Number, &V::dimdec, 4, 2, R13},
    {"DIMTDEC", 272, Kind::Number, &V::dimtdec, 4, 2, R13},
    {"DIMALTU", 273, Kind::Number, &V::dimaltu, 2, 2, R13},
    {"DIMALTTD", 274, Kind::Number, &V::dimalttd, 2, 3, R13},
    {"DIMTXSTY", 340, Kind::TextStyle, &V::dimtxsty, 0, 0, R13},
    {"DIMAUNIT", 275, Kind::Number, &V::dimaunit, 0, 0, R13},
    {"DIMFRAC", 276, Kind::Number, &V::dimfrac, 0, 0, R2000},
    {"DIMLUNIT", 277, Kind::Number, &V::dimlunit, 2, 2, R2000},
    {"DIMDSEP", 278, Kind::Number, &V::dimdsep, '.', ',', R2000},
    {"DIMTMOVE", 279, Kind::Number, &V::dimtmove, 0, 0, R2000},
    {"DIMJUST", 280, Kind::Number, &V::dimjust, 0, 0, R13},
    {"DIMSD1", 281, Kind::Number, &V::dimsd1, 0, 0, R13},
    {"DIMSD2", 282, Kind::Number, &V::dimsd2, 0, 0, R13},
    {"DIMTOLJ", 283, Kind::Number, &V::dimtolj, 1, 0, R13},
    {"DIMTZIN", 284, Kind::Number, &V::dimtzin, 0, 8, R13},
    {"DIMALTZ", 285, Kind::Number, &V::dimaltz, 0, 0, R13},
    {"DIMALTTZ", 286, Kind::Number, &V::dimalttz, 0, 0, R13},
    {"DIMFIT", 287, Kind::Number, &V::dimfit, 3, 3, R13, R14},
    {"DIMUPT", 288, Kind::Number, &V::dimupt, 0, 0, R13},
    {"DIMATFIT", 289, Kind::Number, &V::dimatfit, 3, 3, R2000},
    {"DIMFXLON", 290, Kind::Number, &V::dimfxlon, 0, 0, R2007},
    {"DIMTXTDIRECTION", 294, Kind::Number, &V::dimtxtdirection, 0, 0, R2010},
    {"DIMLDRBLK", 341, Kind::Arrow, &V::dimldrblk, 0, 0, R2000},
    {"DIMLTYPE", 345, Kind::Linetype, &V::dimltype, 0, 0, R2007},
    {"DIMLTEX1", 346, Kind::Linetype, &V::dimltex1, 0, 0, R2007},
    {"DIMLTEX2", 347, Kind::Linetype, &V::dimltex2, 0, 0, R2007},
    {"DIMLWD", 371, Kind::Number, &V::dimlwd, -2, -2, R2000},
    {"DIMLWE", 372, Kind::Number, &V::dimlwe, -2, -2, R2000},
    {"DIMMZF", 400, Kind::Real, &V::dimmzf, 100, 100, R2010},
    {"DIMMZS", 401, Kind::Text, &V::dimmzs, 0, 0, R2010},
    {"DIMALTMZF", 402, Kind::Real, &V::dimaltmzf, 100, 100, R2010},
    {"DIMALTMZS", 403, Kind::Text, &V::dimaltmzs, 0, 0, R2010},
};

std::vector<const DimVariable*> sortedByCode()
{
    std::vector<const DimVariable*> rows;
    for (const DimVariable& v : kVariables)
        rows.push_back(&v);
    std::sort(rows.begin(), rows.end(), [](const DimVariable* a, const DimVariable* b) { return a->code < b->code; });
    return rows;
}

}

std::span<const DimVariable> dimVariables() { return kVariables; }

std::span<const DimVariable* const> dimVariablesByCode()
{
    static const std::vector<const DimVariable*> rows = sortedByCode();
    return rows;
}

const DimVariable* findDimVariable(std::string_view name)
{
    for (const DimVariable& v : kVariables)
        if (equalNoCase(v.name, name))
            return &v;
    return nullptr;
}

const DimVariable* findDimVariable(int code)
{
    for (const DimVariable& v : kVariables)
        if (v.code == code || (v.oldCode == code && code != 0))
            return &v;
    return nullptr;
}

int DimVariable::headerCode() const
{
    switch (kind) {
    case Kind::Real:
    case Kind::Length:
    case Kind::Angle:
        return 40;
    case Kind::Number:
        return 70;
    case Kind::Text:
    case Kind::Arrow:
        return 1;
    case Kind::TextStyle:
        return 7;
    case Kind::Linetype:
        return 6;
    }
    return 0;
}

NameTable DimVariable::recordTable() const
{
    if (kind == Kind::TextStyle)
        return NameTable::TextStyle;
    return kind == Kind::Linetype ? NameTable::Linetype : NameTable::Block;
}

double dimNumber(const VcDbDimVars& vars, const DimVariable& variable)
{
    if (const auto* real = std::get_if<double V::*>(&variable.member))
        return vars.**real;
    if (const auto* number = std::get_if<std::int16_t V::*>(&variable.member))
        return vars.**number;
    return 0;
}

void setDimNumber(VcDbDimVars& vars, const DimVariable& variable, double value)
{
    if (const auto* real = std::get_if<double V::*>(&variable.member))
        vars.** real = value;
    else if (const auto* number = std::get_if<std::int16_t V::*>(&variable.member))
        vars.** number = std::int16_t(std::clamp(value, -32768.0, 32767.0));
}

VcDbDimVars initialDimVars(bool metric)
{
    VcDbDimVars vars;
    for (const DimVariable& v : kVariables)
        if (v.isNumber() && v.isIn(Newest))
            setDimNumber(vars, v, metric ? v.metric : v.imperial);
    return vars;
}

// DIMUNIT 4 and 5 stack the fraction, 6 and 7 do not; 8 goes by the desktop's settings.
std::int16_t olderDimUnit(const VcDbDimVars& vars)
{
    const bool stacked = vars.dimfrac != 2;
    switch (vars.dimlunit) {
    case 4:
        return stacked ? 4 : 6;
    case 5:
        return stacked ? 5 : 7;
    case 6:
        return 8;
    default:
        return vars.dimlunit;
    }
}

void takeOlderDimUnit(VcDbDimVars& vars, std::int16_t dimunit)
{
    const bool unstacked = dimunit == 6 || dimunit == 7;
    vars.dimlunit = std::int16_t(unstacked || dimunit == 8 ? dimunit - 2 : dimunit);
    if (dimunit >= 4 && dimunit <= 7)
        vars.dimfrac = unstacked ? 2 : 0;
}

// DIMFIT 4 and 5 move the text away, with and without a leader, what DIMTMOVE says now.
std::int16_t olderDimFit(const VcDbDimVars& vars)
{
    return std::int16_t(vars.dimtmove == 1 || vars.dimtmove == 2 ? vars.dimtmove + 3 : vars.dimatfit);
}

void takeOlderDimFit(VcDbDimVars& vars, std::int16_t dimfit)
{
    const bool moves = dimfit == 4 || dimfit == 5;
    vars.dimatfit = moves ? std::int16_t(3) : dimfit;
    vars.dimtmove = std::int16_t(moves ? dimfit - 3 : 0);
}

namespace {

std::string headerName(const DimVariable& v) { return std::string("$") + v.name; }

std::string recordName(const DatabaseCore& db, VcDbObjectId id)
{
    const auto* record = db.objectAs<VcDbSymbolTableRecord>(id);
    return record ? record->nameUtf8() : std::string();
}

void takeFromHeader(const DatabaseCore& db, const DimVariable& v, VcDbDimVars& vars)
{
    const HeaderVars& header = db.header();
    const std::string name = headerName(v);
    if (!header.has(name))
        return;
    if (v.kind == Kind::Number)
        setDimNumber(vars, v, double(header.integer(name, std::int64_t(dimNumber(vars, v)))));
    else if (v.isNumber())
        setDimNumber(vars, v, header.real(name, dimNumber(vars, v)));
    else if (v.kind == Kind::Text)
        vars.*std::get<std::string V::*>(v.member) = header.text(name, "");
    else if (const std::string record = header.text(name, ""); !record.empty())
        vars.*std::get<VcDbObjectId V::*>(v.member) = db.findRecord(v.recordTable(), record);
}

bool isAtItsDefault(const DimVariable& v, const VcDbDimVars& vars)
{
    return v.kind == Kind::Text ? (vars.*std::get<std::string V::*>(v.member)).empty()
                                : dimNumber(vars, v) == v.imperial;
}

void putIntoHeader(DatabaseCore& db, const DimVariable& v, const VcDbDimVars& vars)
{
    HeaderVars& header = db.header();
    const std::string name = headerName(v);
    if (v.isInExtendedData() && isAtItsDefault(v, vars)) {
        if (header.has(name))
            header.remove(name);
    } else if (v.kind == Kind::Number)
        header.setInteger(name, 70, std::int64_t(dimNumber(vars, v)));
    else if (v.isNumber())
        header.setReal(name, 40, dimNumber(vars, v));
    else if (v.kind == Kind::Text)
        header.setText(name, 1, vars.*std::get<std::string V::*>(v.member));
    else if (const VcDbObjectId id = vars.*std::get<VcDbObjectId V::*>(v.member);
             !id.isNull() || v.kind != Kind::TextStyle)
        header.setText(name, v.headerCode(), recordName(db, id));
}

}

// Older files have DIMUNIT and DIMFIT in the header, in place of the newer variables.
VcDbDimVars headerDimVars(const DatabaseCore& db)
{
    VcDbDimVars vars;
    for (const DimVariable& v : kVariables)
        takeFromHeader(db, v, vars);
    if (vars.dimunit >= 0 && !db.header().has("$DIMLUNIT"))
        takeOlderDimUnit(vars, vars.dimunit);
    if (vars.dimfit >= 0 && !db.header().has("$DIMATFIT"))
        takeOlderDimFit(vars, vars.dimfit);
    vars.dimunit = vars.dimfit = -1;
    return vars;
}

void setHeaderDimVars(DatabaseCore& db, const VcDbDimVars& vars, bool onlyMissing)
{
    for (const DimVariable& v : kVariables)
        if (v.isIn(Newest) && !(onlyMissing && db.header().has(headerName(v))))
            putIntoHeader(db, v, vars);
}
