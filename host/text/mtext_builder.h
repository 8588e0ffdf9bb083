// Gathers the characters and tokens of an MTEXT while its codes are read.
#pragma once

#include "host/text/mtext_parser.h"

#include <optional>

namespace vktext {

class MTextBuilder {
public:
    MTextBuilder(const CharFormat& base, const FontRequest& font, std::size_t expectedLength);

    void addChar(char32_t c) { m_out.chars += c; }
    void addChars(const std::u32string& chars) { m_out.chars += chars; }
    void addToken(MTextToken::Kind kind);

    // The characters added since beginStack become a stack, parted at `middle`, or mere text when they are not parted.
    std::size_t length() const { return m_out.chars.size(); }
    void beginStack() { endText(); }
    void endStack(std::optional<StackKind> kind, std::size_t middle);

    const CharFormat& format() const { return m_format; }
    // What was added so far keeps the format that it had.
    CharFormat& changeFormat();
    const FontRequest& font() const { return m_out.fonts[m_format.font]; }
    void changeFont(const FontRequest& font);
    ParagraphFormat& changeParagraph();

    // The formats that hold now, to be brought back.
    struct Mark {
        std::uint32_t format, paragraph;
    };
    Mark mark() { return {formatIndex(), paragraphIndex()}; }
    void restore(Mark mark);

    MTextContent finish();

private:
    void endText();
    void push(MTextToken token);
    std::uint32_t formatIndex();
    std::uint32_t paragraphIndex();
    std::uint32_t fontIndex(const FontRequest& font);

    MTextContent m_out;
    CharFormat m_format;
    ParagraphFormat m_paragraph;
    std::size_t m_textBegin = 0;  // characters from here on belong to no token yet
};

}  // namespace vktext
