// The text style of a dimension style that is read from a file.
#include "core/PublicFunction.h"
#include "dim/DimStyleFile.h"
#include "dim/DimVariables.h"
#include "dim/OwnedChain.h"
#include "system.h"
#include "vcdb_chains.h"

#include <algorithm>

namespace {

constexpr int kShapeFile = 1, kVertical = 4;

void setString(resbuf& node, const CStdStrW& value)
{
    if (value != L"." && value.CompareNoCase(node.resval.rstring) != 0)
        vcutUpdString(value, node.resval.rstring);
}

void setValue(resbuf& node, const CStdStrW& value)
{
    switch (dxf2rbtype(node.restype)) {
    case RTSHORT:
        node.resval.rint = short(_wtoi(value));
        break;
    case RTREAL:
    case RTANG:
        node.resval.rreal = _wtof(value);
        break;
    case RTSTR:
        setString(node, value);
        break;
    default:
        break;
    }
}

}  // namespace

int modifyDimVariable(resbuf* node, const CStringArray& lines, int selector)
{
    if (!node)
        return RTERROR;
    const int code = node->restype;
    CStdStrW value;
    if (ExistCode(code, selector))
        GetValueFromName(value, GetNameFromCode(code, selector), lines);
    if (value.IsEmpty())
        return RTNORM;
    vds_name name = {};
    if (code == 340 || (code >= 341 && code <= 344)) {
        if ((code == 340 ? GetEntnameFromName(name, value) : GetEntnameFromBlockName(name, value)) == RTNORM)
            std::copy_n(name, 2, node->resval.rlname);
    } else
        setValue(*node, value);
    return RTNORM;
}

int ModiftyTxtStyle(const wchar_t* textStyle, const CStringArray& lines)
{
    const OwnedChain record(vcdbTblSearch(L"STYLE", textStyle, 0));
    for (resbuf* node = record.get(); node; node = node->rbnext)
        modifyDimVariable(node, lines, kTextStyleTable);
    if (record)
        vcdbEntMod(record.get());
    return RTNORM;
}

namespace {

// The current text style under another name; null when it cannot be had.
OwnedChain copyOfCurrentStyle(const wchar_t* name)
{
    constexpr std::size_t kSize = 1024;
    wchar_t current[kSize] = {};
    get_acad_str_var(L"TEXTSTYLE", current, kSize);
    OwnedChain record(vcdbTblSearch(L"STYLE", current, 0));
    if (record && SetBufString(record.get(), 2, name) != RTNORM)
        record.reset();
    return record;
}

int flagBit(const wchar_t* name)
{
    if (strings_i_compare(name, kIsShape) == 0)
        return kShapeFile;
    return strings_i_compare(name, kIsVertical) == 0 ? kVertical : 0;
}

// What the lines between DIMTXT_FULLINFO and END_DIMTXT say, put into a record. A name that stands twice counts once, by
// the first line of the style that contains it.
class TextStyleSection {
public:
    TextStyleSection(resbuf* record, const CStringArray& lines) : m_record(record), m_lines(lines) {}

    int apply(int first, int last)
    {
        for (int i = first + 1; i < last; ++i)
            applyLine(m_lines.GetAt(i));
        return SetBufInt(m_record, 70, m_flags);
    }

private:
    void applyLine(const wchar_t* line)
    {
        CStdStrW name, value;
        GetNameValueFromTxt(name, value, line);
        if (value == L".")
            return;
        if (const int bit = flagBit(name))
            m_flags |= value == L"0" ? 0 : bit;
        else if (const int code = GetCodeFromName(name, kTextStyleTable);
                 ExistCode(code, kTextStyleTable) && isNew(code))
            modifyDimVariable(dxf(m_record, short(code)), m_lines, kTextStyleTable);
    }

    bool isNew(int code)
    {
        const bool found = std::ranges::find(m_done, code) != m_done.end();
        if (!found)
            m_done.push_back(code);
        return !found;
    }

    resbuf* m_record;
    const CStringArray& m_lines;
    std::vector<int> m_done;
    int m_flags = 0;
};

}  // namespace

int MakeNewTxtStyle(const CStringArray& lines, CStdStrW& nameOut)
{
    if (GetValueFromName(nameOut, kTextStyleName, lines) != RTNORM)
        return RTERROR;
    if (OwnedChain(vcdbTblSearch(L"STYLE", nameOut, 0)))
        return ModiftyTxtStyle(nameOut, lines);

    const int info = GetIndex(lines, kFullInfo);
    CStdStrW fullInfo;
    if (info < 0 || GetValueFromName(fullInfo, kFullInfo, lines) != RTNORM)
        return RTERROR;
    const OwnedChain record = copyOfCurrentStyle(nameOut);
    if (!record)
        return RTERROR;
    if (_wtoi(fullInfo) != kTextStyleNameOnly) {
        const int end = GetIndex(lines, kTextStyleEnd);
        if (end < 0 || TextStyleSection(record.get(), lines).apply(info, end) != RTNORM)
            return RTERROR;
    }
    return vcdbEntMake(record.get()) == RTNORM ? RTNORM : RTERROR;
}
