// The contents of an MTEXT, taken apart into characters and what they are to look like.
#pragma once

#include "host/base/api.h"
#include "host/text/mtext_format.h"

#include <string>
#include <string_view>
#include <vector>

namespace vktext {

enum class StackKind : char { Horizontal = '/', Diagonal = '#', Tolerance = '^' };

struct MTextToken {
    enum class Kind : std::uint8_t { Text, Tab, Stack, Paragraph, Column };
    Kind kind = Kind::Text;
    StackKind stack = StackKind::Horizontal;
    std::uint32_t format = 0;        // into formats
    std::uint32_t paragraph = 0;     // into paragraphs: the format that holds at this token
    std::size_t begin = 0, end = 0;  // into chars
    std::size_t middle = 0;          // a stack: where the lower part begins
};

struct MTextContent {
    std::u32string chars;
    std::vector<MTextToken> tokens;
    std::vector<CharFormat> formats;
    std::vector<FontRequest> fonts;
    std::vector<ParagraphFormat> paragraphs;
    ParagraphFormat finalParagraph;  // of the last paragraph, which no token ends
    std::uint32_t finalFormat = 0;
};

// `base` is what holds before the first code; its font index is of no account, since `font` is the font.
// Text that looks like a code but is none stands as text. Time and memory grow with the length of the contents.
VKHOST_API MTextContent parseMText(std::string_view contents, const CharFormat& base, const FontRequest& font);

// The characters alone: paragraphs end with "\n", columns too, a tab is "\t", a stack is "1/2".
VKHOST_API std::string plainMText(std::string_view contents);

}  // namespace vktext
