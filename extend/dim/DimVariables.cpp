#include "dim/DimVariables.h"

#include "core/PublicFunction.h"

#include <algorithm>

const VariableRow variableDim[68] = {
    {L"DIMPOST", 3},   {L"DIMAPOST", 4},   {L"DIMBLK", 5},      {L"DIMBLK1", 6},    {L"DIMBLK2", 7},
    {L"DIMSCALE", 40}, {L"DIMASZ", 41},    {L"DIMEXO", 42},     {L"DIMDLI", 43},    {L"DIMEXE", 44},
    {L"DIMRND", 45},   {L"DIMDLE", 46},    {L"DIMTP", 47},      {L"DIMTM", 48},     {L"DIMTXT", 140},
    {L"DIMCEN", 141},  {L"DIMTSZ", 142},   {L"DIMALTF", 143},   {L"DIMLFAC", 144},  {L"DIMTVP", 145},
    {L"DIMTFAC", 146}, {L"DIMGAP", 147},   {L"DIMALTRND", 148}, {L"DIMTOL", 71},    {L"DIMLIM", 72},
    {L"DIMTIH", 73},   {L"DIMTOH", 74},    {L"DIMSE1", 75},     {L"DIMSE2", 76},    {L"DIMTAD", 77},
    {L"DIMZIN", 78},   {L"DIMAZIN", 79},   {L"DIMALT", 170},    {L"DIMALTD", 171},  {L"DIMTOFL", 172},
    {L"DIMSAH", 173},  {L"DIMTIX", 174},   {L"DIMSOXD", 175},   {L"DIMCLRD", 176},  {L"DIMCLRE", 177},
    {L"DIMCLRT", 178}, {L"DIMADEC", 179},  {L"DIMUNIT", 270},   {L"DIMDEC", 271},   {L"DIMTDEC", 272},
    {L"DIMALTU", 273}, {L"DIMALTTD", 274}, {L"DIMAUNIT", 275},  {L"DIMKFRAC", 276}, {L"DIMLUNIT", 277},
    {L"DIMDSEP", 278}, {L"DIMTMOVE", 279}, {L"DIMJUST", 280},   {L"DIMSD1", 281},   {L"DIMSD2", 282},
    {L"DIMTOLJ", 283}, {L"DIMTZIN", 284},  {L"DIMALTZ", 285},   {L"DIMALTTZ", 286}, {L"DIMFIT", 287},
    {L"DIMUPT", 288},  {L"DIMTXSTY", 340}, {L"DIMLDRBLK", 341}, {L"DIMBLK", 342},   {L"DIMBLK1", 343},
    {L"DIMBLK2", 344}, {L"DIMLWD", 371},   {L"DIMLWE", 372},
};

const VariableRow varTxtStyle[7] = {
    {L"DIMTXT_TXTSIZE", 40},   {L"DIMTXT_XSCALE", 41},  {L"DIMTXT_OANGLE", 50}, {L"DIMTXT_FLAGS", 71},
    {L"DIMTXT_PRIORSIZE", 42}, {L"DIMTXT_FILENAME", 3}, {L"DIMTXT_BIGFILE", 4},
};

std::span<const VariableRow> variableTable(int selector)
{
    return selector == kDimStyleTable ? std::span<const VariableRow>(variableDim) : varTxtStyle;
}

bool vds_Code_Invalid(int code) { return code == VALIDCODE; }

int GetCodeFromName(const wchar_t* name, int selector)
{
    constexpr int kRecordName = 2;
    for (const VariableRow& row : variableTable(selector))
        if (strings_i_compare(row.name, name) == 0)
            return row.code;
    return strings_i_compare(name, kStyleHeader) == 0 ? kRecordName : VALIDCODE;
}

namespace {

const VariableRow* rowOf(int code, int selector)
{
    const auto rows = variableTable(selector);
    const auto found = std::ranges::find(rows, code, &VariableRow::code);
    return found == rows.end() ? nullptr : &*found;
}

}  // namespace

CStdStrW GetNameFromCode(int code, int selector)
{
    const VariableRow* row = rowOf(code, selector);
    return row ? row->name : L"";
}

bool ExistCode(int code, int selector) { return rowOf(code, selector) != nullptr; }
