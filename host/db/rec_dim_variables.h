// The table of dimension variables: one row each, for dimension styles, header variables, overrides and exchange files.
#pragma once

#include "host/db/field_visitor.h"
#include "sdk/vcdb_dimvars.h"

#include <span>
#include <string_view>
#include <variant>

class DatabaseCore;

struct DimVariable {
    enum class Kind : std::uint8_t { Real, Length, Angle, Number, Text, Arrow, TextStyle, Linetype };
    using Member = std::variant<double VcDbDimVars::*, std::int16_t VcDbDimVars::*, std::string VcDbDimVars::*,
                                VcDbObjectId VcDbDimVars::*>;

    const char* name;
    std::int16_t code;  // in a dimension style's record, in overrides and in chains
    Kind kind;
    Member member;
    double imperial = 0, metric = 0;  // initial values of a new drawing; texts and references are empty
    DxfVersion since = DxfVersion::R10, until = DxfVersion::Newest;
    std::int16_t oldCode = 0;  // of an arrow: its name in older files and in chains

    bool isNumber() const { return kind <= Kind::Number; }
    bool isReference() const { return kind >= Kind::Arrow; }
    // Files have no group for the sub-units: a style keeps them in its extended data, under codes of their own, and a
    // drawing's header only where they are set.
    bool isInExtendedData() const { return code >= 400; }
    bool isIn(DxfVersion version) const { return version >= since && version <= until; }
    // Of the header variable: names stand there where a style has handles.
    int headerCode() const;
    NameTable recordTable() const;  // of a reference
};

// In the order of a chain and of files up to R14; later files have them by group code.
VKHOST_API std::span<const DimVariable> dimVariables();
VKHOST_API std::span<const DimVariable* const> dimVariablesByCode();
// Names without "$", without regard to case. Arrows are found by both of their codes. Null if there is none.
VKHOST_API const DimVariable* findDimVariable(std::string_view name);
VKHOST_API const DimVariable* findDimVariable(int code);

// A value as a number: a whole one for Kind::Number.
VKHOST_API double dimNumber(const VcDbDimVars& vars, const DimVariable& variable);
VKHOST_API void setDimNumber(VcDbDimVars& vars, const DimVariable& variable, double value);

// Values of a new drawing. Those of imperial units are also what a file means that leaves a group out.
VKHOST_API VcDbDimVars initialDimVars(bool metric);

// DIMUNIT and DIMFIT say in one number what newer files have in two.
VKHOST_API std::int16_t olderDimUnit(const VcDbDimVars& vars);
VKHOST_API std::int16_t olderDimFit(const VcDbDimVars& vars);
VKHOST_API void takeOlderDimUnit(VcDbDimVars& vars, std::int16_t dimunit);
VKHOST_API void takeOlderDimFit(VcDbDimVars& vars, std::int16_t dimfit);

// The variables as the drawing's header has them: the current style with what has been set over it.
VKHOST_API VcDbDimVars headerDimVars(const DatabaseCore& db);
// Sets the header variables; with onlyMissing those that the header does not have.
VKHOST_API void setHeaderDimVars(DatabaseCore& db, const VcDbDimVars& vars, bool onlyMissing = false);
