// The names that stand in a dimension style file and the group codes that they mean.
//
// There are two tables, chosen by a selector: 0 is that of dimension styles, anything else that of text styles. The first
// row that fits counts, so DIMBLK, DIMBLK1 and DIMBLK2 mean the codes 5, 6 and 7 although they also stand at 342 to 344.
#pragma once

#include "classlib_string.h"

#include <cstdint>
#include <span>

struct VariableRow {
    wchar_t name[64];
    std::int32_t code;
};

extern const VariableRow variableDim[68];
extern const VariableRow varTxtStyle[7];

enum TableSelector : int {
    kDimStyleTable = 0,
    kTextStyleTable = 1,
};
std::span<const VariableRow> variableTable(int selector);

// The code of names that have none.
inline constexpr int VALIDCODE = 11111111;
bool vds_Code_Invalid(int code);

inline constexpr const wchar_t* kStyleHeader = L"DIMENSION_STYLE_NAME";
inline constexpr const wchar_t* kStyleEnd = L"END_OF_STYLE";
inline constexpr const wchar_t* kTextStyleName = L"DIMTXSTY";
inline constexpr const wchar_t* kFullInfo = L"DIMTXT_FULLINFO";
inline constexpr const wchar_t* kTextStyleEnd = L"END_DIMTXT";
inline constexpr const wchar_t* kIsShape = L"DIMTXT_ISSHAPE";
inline constexpr const wchar_t* kIsVertical = L"DIMTXT_ISVERTICAL";

// Whole names, without regard to case. The header of a style is the name of the record, 2.
int GetCodeFromName(const wchar_t* name, int selector);
// Empty for a code that the table lacks.
CStdStrW GetNameFromCode(int code, int selector);
bool ExistCode(int code, int selector);
