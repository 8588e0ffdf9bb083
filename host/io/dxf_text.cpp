#include "host/io/dxf_text.h"

#include "host/base/code_page.h"

namespace {

bool isControlMark(char c)
{
    return c >= '@' && c <= '_';
}

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

bool DxfTextEncoder::isPlain(std::string_view utf8) const
{
    bool plain = true;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        plain &= byte >= 32 && byte < 128 && c != '^';
    }
    return plain;
}

std::string DxfTextEncoder::encode(std::string_view utf8) const
{
    std::string marked = withCarets(utf8);
    return m_page.isUtf8() ? escapeSurrogates(marked) : m_page.fromUtf8(marked);
}
