// Dimension styles of the drawing to a file.
#include "classlib_files.h"
#include "core/PublicFunction.h"
#include "dim/DimStyleFile.h"
#include "dim/DimVariables.h"
#include "dim/OwnedChain.h"
#include "vcdb_chains.h"
#include "vced.h"

#include <iterator>

namespace {

constexpr int kNameSize = 256;

CStdStrW textLine(const wchar_t* name, const wchar_t* value)
{
    CStdStrW line;
    line.Format(L"%ls %ls\n", name, value);
    return line;
}

CStdStrW numberLine(const wchar_t* name, int value)
{
    CStdStrW line;
    line.Format(L"%ls %d\n", name, value);
    return line;
}

CStdStrW realLine(const wchar_t* name, double value)
{
    CStdStrW line;
    line.Format(L"%ls %f\n", name, value);
    return line;
}

// An empty text drags a line with it that is a format left as it was. Files have always had that line.
CStdStrW stringLine(const wchar_t* name, const wchar_t* value, bool isFirst)
{
    if (!*value)
        return L"\n" + textLine(name, L".\n%ls %ls\n");
    return isFirst ? L"\n" + textLine(name, value) : textLine(name, value);
}

// The lines of one style. A number that the record lacks repeats the last one of its kind.
class StyleLines {
public:
    StyleLines(CStringArray& lines, resbuf* record, int textStyleOption)
        : m_lines(lines), m_record(record), m_textStyleOption(textStyleOption)
    {
    }

    int addRow(const VariableRow& row)
    {
        if (row.code == 340)
            return addTextStyle(row);
        if (row.code >= 341 && row.code <= 344)
            return addBlock(row);
        switch (dxf2rbtype(row.code)) {
        case RTSHORT:
            getrbshort(&m_number, m_record, short(row.code));
            return add(numberLine(row.name, m_number));
        case RTREAL:
        case RTANG:
            getrbreal(&m_real, m_record, short(row.code));
            return add(realLine(row.name, m_real));
        case RTSTR:
            return addString(row);
        default:
            return RTNORM;
        }
    }

private:
    // The line is data, which may hold a "%".
    int add(const CStdStrW& line)
    {
        vcutPrintf(L"%ls", line);
        m_lines.Add(line);
        return RTNORM;
    }

    int addString(const VariableRow& row)
    {
        wchar_t value[kNameSize] = {};
        if (getrbstring(value, std::size(value), m_record, short(row.code)) != RTNORM)
            return RTERROR;
        return add(stringLine(row.name, value, &row == variableDim));
    }

    int addTextStyle(const VariableRow& row)
    {
        vds_name handle = {};
        if (GetBufName(m_record, row.code, handle) != RTNORM)
            return RTNORM;
        const OwnedChain textStyle(vcdbEntGet(handle));
        if (!textStyle)
            return RTERROR;
        wchar_t name[kNameSize] = {};
        if (GetBufString(textStyle.get(), 2, name, std::size(name)) != RTNORM)
            return RTNORM;
        add(textLine(row.name, name));
        return InsertTxtVariable(m_lines, 0, name, m_textStyleOption);
    }

    int addBlock(const VariableRow& row)
    {
        vds_name handle = {};
        if (GetBufName(m_record, row.code, handle) != RTNORM)
            return RTNORM;
        wchar_t name[kNameSize] = L".";
        if (const OwnedChain block{vcdbEntGet(handle)})
            GetBufString(block.get(), 2, name, std::size(name));
        return add(textLine(row.name, name));
    }

    CStringArray& m_lines;
    resbuf* m_record;
    int m_textStyleOption;
    int m_number = 0;
    double m_real = 0;
};

// The section on a text style, as long as its record has the groups.
class TextStyleLines {
public:
    TextStyleLines(CStringArray& lines, resbuf* record) : m_lines(lines), m_record(record) {}

    bool addNumber(const wchar_t* name, short code, int (*written)(int))
    {
        int value = 0;
        return getrbshort(&value, m_record, code) == RTNORM && add(numberLine(name, written(value)));
    }
    bool addReal(const wchar_t* name, short code)
    {
        double value = 0;
        return GetBufReal(m_record, code, value) == RTNORM && add(realLine(name, value));
    }
    bool addString(const wchar_t* name, short code, const wchar_t* ifEmpty)
    {
        wchar_t value[kNameSize] = {};
        return getrbstring(value, std::size(value), m_record, code) == RTNORM &&
               add(textLine(name, *value ? value : ifEmpty));
    }
    bool add(const CStdStrW& line)
    {
        m_lines.Add(line);
        return true;
    }

private:
    CStringArray& m_lines;
    resbuf* m_record;
};

int shapeFlag(int flags) { return flags == 1; }

int generation(int value)
{
    switch (value) {
    case 2:
        return 0;
    case 4:
        return 1;
    default:
        return value;
    }
}

}  // namespace

int GetTxtVariableFromStyle(CStringArray& lines, resbuf* textStyle)
{
    // The vertical bit has always been looked for in the shape flag, where it never is.
    constexpr int kNotVertical = 0;
    TextStyleLines out(lines, textStyle);
    const bool whole = out.addNumber(kIsShape, 70, shapeFlag) && out.add(numberLine(kIsVertical, kNotVertical)) &&
                       out.addReal(L"DIMTXT_TXTSIZE", 40) && out.addReal(L"DIMTXT_XSCALE", 41) &&
                       out.addReal(L"DIMTXT_OANGLE", 50) && out.addNumber(L"DIMTXT_FLAGS", 71, generation) &&
                       out.addReal(L"DIMTXT_PRIORSIZE", 42) && out.addString(L"DIMTXT_FILENAME", 3, L"") &&
                       out.addString(L"DIMTXT_BIGFILE", 4, L".");
    return whole ? RTNORM : RTERROR;
}

int InsertTxtVariable(CStringArray& lines, int, const wchar_t* textStyle, int textStyleOption)
{
    lines.Add(numberLine(kFullInfo, textStyleOption));
    if (textStyleOption != kTextStyleNameOnly)
        if (const OwnedChain record{vcdbTblSearch(L"STYLE", textStyle, 0)})
            GetTxtVariableFromStyle(lines, record.get());
    lines.Add(CStdStrW(kTextStyleEnd) + L"\n");
    return RTNORM;
}

int GetNameValueFromStyle(CStringArray& lines, const wchar_t* name, int textStyleOption)
{
    const OwnedChain record(vcdbTblSearch(L"DIMSTYLE", name, 0));
    if (!record)
        return RTERROR;
    StyleLines style(lines, record.get(), textStyleOption);
    for (const VariableRow& row : variableDim)
        if (style.addRow(row) != RTNORM)
            return RTERROR;
    return RTNORM;
}

int WriteDimStyle(const CStringArray& lines, const wchar_t* path)
{
    VcCStdioFile file;
    if (!file.Open(path, CFile::modeCreate | CFile::modeWrite))
        return 0;
    for (int i = 0; i < lines.GetSize(); ++i)
        file.WriteString(lines.GetAt(i));
    file.Close();
    return 1;
}

int OutDimStyle(const CStringArray& names, const wchar_t* path, int textStyleOption)
{
    CStringArray lines;
    for (int i = 0; i < names.GetSize(); ++i) {
        lines.Add(textLine(kStyleHeader, names.GetAt(i)));
        GetNameValueFromStyle(lines, names.GetAt(i), textStyleOption);
        lines.Add(textLine(kStyleEnd, names.GetAt(i)) + L"\n");
    }
    WriteDimStyle(lines, path);
    return RTNORM;
}
