// Codes inside the texts of drawings, turned into plain characters: "%%d" and its kin, "\U+XXXX", "\M+nXXXX".
// Stray bytes and lone surrogates go through as base/unicode.h says, and are drawn as boxes.
#pragma once

#include "host/base/api.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vktext {

enum Decoration : std::uint8_t {
    kUnderline = 1,
    kOverline = 2,
    kStrike = 4,
};

// A single line as it is drawn. A span reaches to the next one's begin; without spans nothing is decorated.
struct DecodedText {
    struct Span {
        std::size_t begin = 0;
        std::uint8_t decorations = 0;
    };
    std::u32string chars;
    std::vector<Span> spans;
};

VKHOST_API DecodedText decodeText(std::string_view utf8);

// The characters alone.
VKHOST_API std::string plainText(std::string_view utf8);

VKHOST_API std::string toUtf8(std::u32string_view text);

// The next character, which is stepped over.
char32_t nextChar(std::string_view utf8, std::size_t& at);

// What stands at the beginning of a text, if it is a code.
struct CharCode {
    std::size_t length = 0;  // 0: no code
    std::u32string chars;
    std::uint8_t toggles = 0;  // decorations to be switched
};
CharCode percentCode(std::string_view text);    // at "%%"
CharCode unicodeCode(std::string_view text);    // at "\U+"; two halves of a pair are taken together
CharCode multibyteCode(std::string_view text);  // at "\M+"

}  // namespace vktext
