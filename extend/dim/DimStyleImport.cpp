// Dimension styles from a file to the drawing.
#include "classlib_files.h"
#include "core/PublicFunction.h"
#include "dim/ArrowBlocks.h"
#include "dim/DimStyleFile.h"
#include "dim/DimVariables.h"
#include "dim/OwnedChain.h"
#include "vcdb_chains.h"

#include <cwchar>
#include <iterator>

namespace {

bool contains(const wchar_t* line, const wchar_t* text) { return std::wcsstr(line, text) != nullptr; }

class LineReader {
public:
    explicit LineReader(VcCStdioFile& file) : m_file(file) {}

    // The line in hand, null behind the last. One that is too long comes in pieces.
    const wchar_t* line() const { return m_line; }
    void step() { m_line = m_file.ReadString(m_buffer, UINT(std::size(m_buffer))); }
    void stepTo(const wchar_t* text)
    {
        while (m_line && !contains(m_line, text))
            step();
    }

private:
    VcCStdioFile& m_file;
    wchar_t m_buffer[2049];
    const wchar_t* m_line = nullptr;
};

// From the header, which is in hand, to before the line that ends the style; false when the file ends first.
bool readStyle(LineReader& reader, CStringArray2& style)
{
    do {
        style.Add(reader.line());
        reader.step();
    } while (reader.line() && !contains(reader.line(), kStyleEnd));
    return reader.line() != nullptr;
}

}  // namespace

int ReadDimStyleFile(std::vector<CStringArray2>& styles, const wchar_t* path)
{
    VcCStdioFile file;
    if (!file.Open(path, CFile::modeRead))
        return RTERROR;
    if (file.readBOM())
        file.setUseCIF(false);
    LineReader reader(file);
    for (reader.step(); reader.line(); reader.step()) {
        CStringArray2 style;
        reader.stepTo(kStyleHeader);
        if (!reader.line() || !readStyle(reader, style))
            break;
        styles.push_back(std::move(style));
    }
    return RTNORM;
}

namespace {

CStdStrW valueOfLineWith(const CStringArray& lines, const wchar_t* text)
{
    CStdStrW value;
    GetValueFromName(value, text, lines);
    return value;
}

// The chain of a style as the lines give it. What is added first takes the place of all that stood behind the head, so
// that a style which exists keeps nothing but what the file carries.
class StyleChain {
public:
    StyleChain(OwnedChain head, const vds_name textStyle) : m_chain(std::move(head)), m_tail(m_chain.get())
    {
        m_textStyle[0] = textStyle[0];
        m_textStyle[1] = textStyle[1];
    }

    const resbuf* get() const { return m_chain.get(); }

    void addLine(const wchar_t* line)
    {
        if (isTextStyleLine(line) || addedTextStyle(line) || addedBlock(line))
            return;
        add(MakeBuffer(line, kDimStyleTable));
    }

private:
    static bool beginsWith(const wchar_t* line, const wchar_t* text)
    {
        return std::wcsncmp(line, text, std::wcslen(text)) == 0;
    }
    static bool isTextStyleLine(const wchar_t* line)
    {
        return beginsWith(line, L"DIMTXT_") || beginsWith(line, kTextStyleEnd);
    }

    void add(resbuf* node)
    {
        if (!node)
            return;
        vcutRelRb(m_tail->rbnext);
        m_tail = m_tail->rbnext = node;
    }
    void addName(int code, const vds_name name) { add(vcutBuildList(code, name, RTNONE)); }
    void addText(int code, const wchar_t* text) { add(vcutBuildList(code, text, RTNONE)); }

    // Whether the line has been dealt with.
    bool addedTextStyle(const wchar_t* line)
    {
        if (!contains(line, kTextStyleName))
            return false;
        CStdStrW name, value;
        GetNameValueFromTxt(name, value, line);
        if (value == L".")
            return true;
        if (GetCodeFromName(name, kDimStyleTable) != 340)
            return false;
        addName(340, m_textStyle);
        return true;
    }

    bool addedBlock(const wchar_t* line)
    {
        if (!contains(line, L"BLK"))
            return false;
        CStdStrW name, value;
        GetNameValueFromTxt(name, value, line);
        const int code = GetCodeFromName(name, kDimStyleTable);
        if (code == 341)
            addLeaderArrow(value);
        else if (code >= 342 && code <= 344)
            addArrowReference(code, value);
        else if (code >= 5 && code <= 7)
            addArrow(code, value);
        else
            return false;
        return true;
    }

    void addLeaderArrow(const CStdStrW& block)
    {
        vds_name name = {};
        if (block == L".")
            return;
        vds_checkArrowheadBlock(block, nullptr);
        if (GetEntnameFromBlockName(name, block) == RTNORM)
            addName(341, name);
    }

    // The names that stand at these codes also stand at 5 to 7, which come first: a file never leads here.
    void addArrowReference(int code, const CStdStrW& block)
    {
        constexpr int kFromReferenceToName = 337;
        vds_name name = {};
        if (GetEntnameFromBlockName(name, block) == RTNORM)
            addName(code, name);
        else
            addText(code - kFromReferenceToName, block);
    }

    void addArrow(int code, const CStdStrW& block)
    {
        vds_name name = {};
        if (block == L".")
            return;
        if (GetEntnameFromBlockName(name, block) == RTNORM)
            addText(code, block);
        else if (IsInternalArrow(block))
            addText(code, internalArrowName(block));
    }

    OwnedChain m_chain;
    resbuf* m_tail;
    vds_name m_textStyle;
};

}  // namespace

int MakeDimStyle(const CStringArray& lines, int importOption)
{
    const CStdStrW name = valueOfLineWith(lines, kStyleHeader);
    if (importOption == kKeepExisting && OwnedChain(vcdbTblSearch(L"DIMSTYLE", name, 0)))
        return RTNORM;

    CStdStrW textStyle;
    vds_name textStyleName = {};
    MakeNewTxtStyle(lines, textStyle);
    txtStyTblsearch(textStyle, textStyleName);

    OwnedChain head(vcdbTblSearch(L"DIMSTYLE", name, 0));
    const bool exists = head != nullptr;
    if (!exists)
        head.reset(vcutBuildList(RTDXF0, L"DIMSTYLE", RTNONE));
    StyleChain style(std::move(head), textStyleName);
    for (int i = 0; i < lines.GetSize(); ++i)
        style.addLine(lines.GetAt(i));
    const int status = exists ? vcdbEntMod(style.get()) : vcdbEntMake(style.get());
    return status == RTNORM ? RTNORM : RTERROR;
}

int MakeAllDimStyle(const std::vector<CStringArray2>& styles, int importOption)
{
    for (const CStringArray2& style : styles)
        if (const int status = MakeDimStyle(style, importOption); status != RTNORM)
            return status;
    return RTNORM;
}

int InDimStyle(const wchar_t* path, int& importOption)
{
    std::vector<CStringArray2> styles;
    const int status = ReadDimStyleFile(styles, path);
    return status == RTNORM ? MakeAllDimStyle(styles, importOption) : status;
}
