#include "host/text/mtext_builder.h"

#include <algorithm>

namespace vktext {

MTextBuilder::MTextBuilder(const CharFormat& base, const FontRequest& font, std::size_t expectedLength) : m_format(base)
{
    m_format.font = 0;
    m_out.fonts.push_back(font);
    m_out.formats.push_back(m_format);
    m_out.paragraphs.emplace_back();
    m_out.chars.reserve(expectedLength);
}

void MTextBuilder::addToken(MTextToken::Kind kind)
{
    endText();
    push({.kind = kind, .begin = length(), .end = length()});
}

void MTextBuilder::endStack(std::optional<StackKind> kind, std::size_t middle)
{
    if (!kind)
        return endText();
    MTextToken token{.kind = MTextToken::Kind::Stack, .stack = *kind, .begin = m_textBegin, .end = length()};
    token.middle = middle;
    m_textBegin = length();
    if (token.begin < token.end)
        push(token);
}

CharFormat& MTextBuilder::changeFormat()
{
    endText();
    return m_format;
}

ParagraphFormat& MTextBuilder::changeParagraph()
{
    endText();
    return m_paragraph;
}

void MTextBuilder::changeFont(const FontRequest& font) { changeFormat().font = fontIndex(font); }

void MTextBuilder::restore(Mark mark)
{
    endText();
    m_format = m_out.formats[mark.format];
    m_paragraph = m_out.paragraphs[mark.paragraph];
}

MTextContent MTextBuilder::finish()
{
    endText();
    m_out.finalParagraph = m_paragraph;
    m_out.finalFormat = formatIndex();
    return std::move(m_out);
}

void MTextBuilder::endText()
{
    if (m_textBegin < length())
        push({.kind = MTextToken::Kind::Text, .begin = m_textBegin, .end = length()});
    m_textBegin = length();
}

void MTextBuilder::push(MTextToken token)
{
    token.format = formatIndex();
    token.paragraph = paragraphIndex();
    m_out.tokens.push_back(token);
}

// Texts go back and forth between a few formats, so the latest ones are looked through.
std::uint32_t MTextBuilder::formatIndex()
{
    const std::size_t count = m_out.formats.size();
    for (std::size_t back = 1; back <= std::min<std::size_t>(count, 8); ++back)
        if (m_out.formats[count - back] == m_format)
            return static_cast<std::uint32_t>(count - back);
    m_out.formats.push_back(m_format);
    return static_cast<std::uint32_t>(count);
}

std::uint32_t MTextBuilder::paragraphIndex()
{
    if (!(m_out.paragraphs.back() == m_paragraph))
        m_out.paragraphs.push_back(m_paragraph);
    return static_cast<std::uint32_t>(m_out.paragraphs.size() - 1);
}

// Texts use few fonts; those of one that does not are looked for among the first only.
std::uint32_t MTextBuilder::fontIndex(const FontRequest& font)
{
    const std::size_t known = std::min<std::size_t>(m_out.fonts.size(), 16);
    for (std::size_t i = 0; i < known; ++i)
        if (m_out.fonts[i] == font)
            return static_cast<std::uint32_t>(i);
    if (m_out.fonts.back() != font)
        m_out.fonts.push_back(font);
    return static_cast<std::uint32_t>(m_out.fonts.size() - 1);
}

}  // namespace vktext
