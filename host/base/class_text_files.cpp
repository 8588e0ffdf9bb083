// Text files: marks, character formats, escapes, newlines.
#include "sdk/classlib_files.h"

#include "host/base/code_page.h"
#include "host/base/unicode.h"

#include <algorithm>
#include <array>

namespace {

struct Mark {
    CStdioFile::CharFormat format;
    std::string_view bytes;
};

constexpr std::array<Mark, 3> kMarks = {{
    {CStdioFile::kUtf8, "\xEF\xBB\xBF"},
    {CStdioFile::kUtf16LE, "\xFF\xFE"},
    {CStdioFile::kUtf16BE, "\xFE\xFF"},
}};

std::wstring decodeUtf16(std::string_view bytes, bool bigEndian)
{
    std::wstring text;
    char16_t high = 0;
    const auto flush = [&] {
        if (high)
            text += static_cast<wchar_t>(high);
        high = 0;
    };
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto a = static_cast<unsigned char>(bytes[i]), b = static_cast<unsigned char>(bytes[i + 1]);
        const auto unit = static_cast<char16_t>(bigEndian ? a << 8 | b : b << 8 | a);
        if (high && unit >= 0xDC00 && unit <= 0xDFFF) {
            text += static_cast<wchar_t>(0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00));
            high = 0;
            continue;
        }
        flush();
        if (unit >= 0xD800 && unit <= 0xDBFF)
            high = unit;
        else
            text += static_cast<wchar_t>(unit);
    }
    flush();
    return text;
}

std::string encodeUtf16(std::wstring_view text, bool bigEndian)
{
    std::string bytes;
    const auto unit = [&](unsigned value) {
        const char low = static_cast<char>(value & 0xFF), high = static_cast<char>(value >> 8 & 0xFF);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    };
    for (const wchar_t wide : text) {
        const auto c = static_cast<unsigned>(wide) > 0x10FFFF ? 0xFFFD : static_cast<unsigned>(wide);
        if (c > 0xFFFF) {
            unit(0xD800 + ((c - 0x10000) >> 10));
            unit(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else
            unit(c);
    }
    return bytes;
}

std::wstring decode(const std::string& bytes, CStdioFile::CharFormat format, bool escapes)
{
    switch (format) {
    case CStdioFile::kUtf16LE:
        return decodeUtf16(bytes, false);
    case CStdioFile::kUtf16BE:
        return decodeUtf16(bytes, true);
    case CStdioFile::kUtf8:
        return utf8ToWide(escapes ? decodeEscapes(bytes) : bytes);
    default:
        break;
    }
    const std::string utf8 = CodePage::host().toUtf8(bytes);
    return utf8ToWide(escapes ? decodeEscapes(utf8) : utf8);
}

std::string encode(std::wstring_view text, CStdioFile::CharFormat format, bool escapes)
{
    switch (format) {
    case CStdioFile::kUtf16LE:
        return encodeUtf16(text, false);
    case CStdioFile::kUtf16BE:
        return encodeUtf16(text, true);
    case CStdioFile::kUtf8:
        return wideToUtf8(text);
    default:
        break;
    }
    return CodePage::host().fromUtf8(wideToUtf8(text),
                                     escapes ? CodePage::Unknown::Escape : CodePage::Unknown::QuestionMark);
}

void foldNewlines(std::wstring& text)
{
    std::size_t to = 0;
    for (std::size_t from = 0; from < text.size(); ++from) {
        const bool pair = text[from] == L'\r' && from + 1 < text.size() && text[from + 1] == L'\n';
        if (!pair)
            text[to++] = text[from];
    }
    text.resize(to);
}

std::wstring expandNewlines(std::wstring_view text)
{
    std::wstring expanded;
    wchar_t before = 0;
    for (const wchar_t c : text) {
        if (c == L'\n' && before != L'\r')
            expanded += L'\r';
        expanded += before = c;
    }
    return expanded;
}

}  // namespace

bool CStdioFile::Open(const wchar_t* path, UINT flags, CFileException* error)
{
    forgetText();
    m_format = kAnsi;
    m_escapes = true;
    m_foldNewlines = !(flags & typeBinary);
    const bool opened = CFile::Open(path, flags, error);
    const bool reads = (flags & 3) != modeWrite;
    if (opened && reads && takeMark())
        m_escapes = false;
    return opened;
}

void CStdioFile::Close()
{
    forgetText();
    CFile::Close();
}

long long CStdioFile::Seek(long long offset, UINT from)
{
    forgetText();
    return CFile::Seek(offset, from);
}

// Looks for a mark at the place, which must be the beginning, and stands behind it.
bool CStdioFile::takeMark()
{
    char head[3] = {};
    if (GetPosition() != 0)
        return false;
    const std::string_view got(head, Read(head, sizeof head));
    for (const Mark& mark : kMarks)
        if (got.starts_with(mark.bytes)) {
            m_format = mark.format;
            Seek(static_cast<long long>(mark.bytes.size()), begin);
            return true;
        }
    Seek(0, begin);
    return false;
}

void CStdioFile::forgetText()
{
    m_text.clear();
    m_next = 0;
    m_loaded = false;
}

void CStdioFile::load()
{
    if (m_loaded || !m_file)
        return;
    std::string bytes;
    char buffer[1 << 14];
    while (const UINT got = Read(buffer, sizeof buffer))
        bytes.append(buffer, got);
    m_text = decode(bytes, m_format, m_escapes);
    if (m_foldNewlines)
        foldNewlines(m_text);
    m_next = 0;
    m_loaded = true;
}

wchar_t* CStdioFile::ReadString(wchar_t* buffer, UINT size)
{
    load();
    if (!buffer || size < 2 || m_next >= m_text.size())
        return nullptr;
    const std::size_t lineEnd = std::min(m_text.find(L'\n', m_next), m_text.size() - 1) + 1;
    const std::size_t length = std::min<std::size_t>(lineEnd - m_next, size - 1);
    m_text.copy(buffer, length, m_next);
    buffer[length] = 0;
    m_next += length;
    return buffer;
}

bool CStdioFile::ReadString(CStdStrW& line)
{
    load();
    if (m_next >= m_text.size()) {
        line.Empty();
        return false;
    }
    const std::size_t lineEnd = std::min(m_text.find(L'\n', m_next), m_text.size());
    line = CStdStrW(m_text.substr(m_next, lineEnd - m_next));
    m_next = lineEnd + 1;
    return true;
}

void CStdioFile::WriteString(const wchar_t* text)
{
    if (!text)
        return;
    const std::string bytes = encode(m_expandNewlines ? expandNewlines(text) : std::wstring(text), m_format, m_escapes);
    constexpr std::size_t kMost = 1u << 30;
    for (std::size_t at = 0; at < bytes.size(); at += kMost)
        Write(bytes.data() + at, static_cast<UINT>(std::min(kMost, bytes.size() - at)));
}

VcCStdioFile::VcCStdioFile() { m_foldNewlines = false; }

bool VcCStdioFile::Open(const wchar_t* path, UINT flags, CFileException* error)
{
    forgetText();
    return CFile::Open(path, flags, error);
}

bool VcCStdioFile::readBOM()
{
    forgetText();
    return takeMark();
}

bool VcCStdioFile::writeBOM()
{
    for (const Mark& mark : kMarks)
        if (mark.format == m_format) {
            Write(mark.bytes.data(), static_cast<UINT>(mark.bytes.size()));
            return true;
        }
    return false;
}

void VcCStdioFile::setCharFormat(int format)
{
    m_format = format >= kAnsi && format <= kUtf8 ? static_cast<CharFormat>(format) : kAnsi;
}
