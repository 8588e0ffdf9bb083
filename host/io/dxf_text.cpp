#include "host/io/dxf_text.h"

#include "host/base/code_page.h"

#include <algorithm>
#include <cstring>

namespace {

bool isControlMark(char c) { return c >= '@' && c <= '_'; }

// "^J" is a line feed, "^ " a caret; any other caret stands for itself.
void undoCarets(std::string& text)
{
    std::size_t to = text.find('^');
    if (to == text.npos)
        return;
    for (std::size_t from = to; from < text.size(); ++from, ++to) {
        const char next = from + 1 < text.size() ? text[from + 1] : '\0';
        if (text[from] != '^' || !(next == ' ' || isControlMark(next))) {
            text[to] = text[from];
            continue;
        }
        text[to] = next == ' ' ? '^' : static_cast<char>(next - '@');
        ++from;
    }
    text.resize(to);
}

std::string withCarets(std::string_view text)
{
    std::string marked;
    for (const char c : text) {
        if (c == '^')
            marked += "^ ";
        else if (static_cast<unsigned char>(c) < 32)
            marked += {'^', static_cast<char>(c + '@')};
        else
            marked += c;
    }
    return marked;
}

}

const CodePage& codePageOfFile(DxfVersion version, std::string_view pageName)
{
    if (version >= DxfVersion::R2007)
        return *CodePage::byNumber(65001);
    const CodePage* named = CodePage::byName(pageName);
    return named && !named->isUtf8() ? *named : *CodePage::byNumber(1252);
}

void DxfTextDecoder::decode(std::string_view raw, std::string& out) const
{
    bool isAscii = true, hasEscape = false, hasCaret = false;
    for (const char c : raw) {
        isAscii &= static_cast<unsigned char>(c) < 128;
        hasEscape |= c == '\\';
        hasCaret |= c == '^';
    }
    if (isAscii || m_page.isUtf8())
        out.assign(raw);
    else
        out = m_page.toUtf8(raw);
    if (hasEscape)
        out = decodeEscapes(out);
    if (hasCaret)
        undoCarets(out);
}

namespace {

constexpr std::uint64_t everyByte(unsigned char byte) { return byte * std::uint64_t(0x0101010101010101); }

// Whether any of eight bytes is below 32, above 127 or a caret. The differences borrow only out of bytes that are found.
bool hasSpecialByte(std::uint64_t eight)
{
    const std::uint64_t carets = eight ^ everyByte('^');
    const std::uint64_t found = (eight - everyByte(32)) | (carets - everyByte(1)) | eight;
    return (found & everyByte(128)) != 0;
}

bool isSpecialByte(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < 32 || byte > 127 || c == '^';
}

}

bool DxfTextEncoder::isPlain(std::string_view utf8) const
{
    for (; utf8.size() >= sizeof(std::uint64_t); utf8.remove_prefix(sizeof(std::uint64_t))) {
        std::uint64_t eight;
        std::memcpy(&eight, utf8.data(), sizeof eight);
        if (hasSpecialByte(eight))
            return false;
    }
    return std::none_of(utf8.begin(), utf8.end(), isSpecialByte);
}

std::string DxfTextEncoder::encode(std::string_view utf8) const
{
    std::string marked = withCarets(utf8);
    return m_page.isUtf8() ? escapeSurrogates(marked) : m_page.fromUtf8(marked);
}
