// Lines of a dimension style file, and the records that they name.
#include "core/PublicFunction.h"
#include "dim/DimStyleFile.h"
#include "dim/DimVariables.h"
#include "dim/OwnedChain.h"
#include "system.h"
#include "vcdb_chains.h"
#include "vcdb_tables.h"
#include "vced.h"
#include "vchost.h"

#include <cwchar>

int GetNameValueFromTxt(CStdStrW& name, CStdStrW& value, const wchar_t* line)
{
    const CStdStrW text = line;
    const int blank = text.Find(L' ');
    if (blank < 0)
        return RTERROR;
    name = text.Left(blank).Trim();
    value = text.Mid(blank + 1).Trim();
    return RTNORM;
}

int GetIndex(const CStringArray& lines, const wchar_t* text)
{
    for (int i = 0; i < lines.GetSize(); ++i)
        if (std::wcsstr(lines.GetAt(i), text))
            return i;
    return -1;
}

int GetValueFromName(CStdStrW& value, const wchar_t* name, const CStringArray& lines)
{
    const int index = GetIndex(lines, name);
    if (index < 0)
        return RTERROR;
    CStdStrW found;
    GetNameValueFromTxt(found, value, lines.GetAt(index));
    return RTNORM;
}

resbuf* MakeBuffer(const wchar_t* line, int selector)
{
    CStdStrW name, value;
    if (GetNameValueFromTxt(name, value, line) != RTNORM || value == L".")
        return nullptr;
    const int code = GetCodeFromName(name, selector);
    // A reference to a record is no text, whatever type the code is counted as.
    const bool isReference = code >= 340 && code <= 344;
    if (vds_Code_Invalid(code) || isReference)
        return nullptr;
    switch (dxf2rbtype(code)) {
    case RTSHORT:
        return vcutBuildList(code, _wtoi(value), RTNONE);
    case RTREAL:
    case RTANG:
        return vcutBuildList(code, _wtof(value), RTNONE);
    case RTSTR:
        return vcutBuildList(code, value.GetString(), RTNONE);
    default:
        return nullptr;
    }
}

namespace {

int recordName(const wchar_t* table, const wchar_t* name, vds_name nameOut)
{
    const OwnedChain record(vcdbTblSearch(table, name, 0));
    return record ? GetBufName(record.get(), -1, nameOut) : RTERROR;
}

}  // namespace

int GetEntnameFromName(vds_name nameOut, const wchar_t* textStyle) { return recordName(L"STYLE", textStyle, nameOut); }

int GetEntnameFromBlockName(vds_name nameOut, const wchar_t* block) { return recordName(L"BLOCK", block, nameOut); }

namespace {

template <class Table>
bool recordInTable(const wchar_t* name, vds_name nameOut)
{
    Table* table = nullptr;
    VcDbDatabase* database = vcdbHostApplicationServices()->workingDatabase();
    if (!database || database->getSymbolTable(table, VcDb::kForRead) != Vcad::eOk)
        return false;
    VcDbObjectId id;
    const Vcad::ErrorStatus status = table->getAt(name, id);
    table->close();
    return status == Vcad::eOk && vcdbGetVdsName(nameOut, id) == Vcad::eOk;
}

}  // namespace

bool dimStyTblsearch(const wchar_t* name, vds_name nameOut) { return recordInTable<VcDbDimStyleTable>(name, nameOut); }

bool txtStyTblsearch(const wchar_t* name, vds_name nameOut) { return recordInTable<VcDbTextStyleTable>(name, nameOut); }
