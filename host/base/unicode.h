// UTF-8, wide strings, letter case and order.
//
// Texts that are no valid UTF-8 survive every round trip: a stray byte 0x80..0xFF is the wide character
// U+DC80..U+DCFF and comes back as that byte; any other lone surrogate is three bytes of UTF-8 form.
#pragma once

#include "host/base/api.h"

#include <cstddef>
#include <string>
#include <string_view>

VKHOST_API std::wstring utf8ToWide(std::string_view text);
VKHOST_API std::string wideToUtf8(std::wstring_view text);
VKHOST_API std::size_t wideLength(std::string_view utf8);
// Writes wideLength(utf8) characters.
VKHOST_API void utf8ToWide(std::string_view utf8, wchar_t* out);
VKHOST_API void appendUtf8(std::string& out, char32_t character);
VKHOST_API bool isValidUtf8(std::string_view text);

// Takes one character off the front of a text that is not empty; a stray byte b comes as U+DC00 + b.
VKHOST_API char32_t takeCharacter(std::string_view& utf8);

// Case is changed character by character, so the length in characters stays.
VKHOST_API char32_t toUpper(char32_t character);
VKHOST_API char32_t toLower(char32_t character);
VKHOST_API std::string toUpper(std::string_view utf8);
VKHOST_API std::string toLower(std::string_view utf8);
VKHOST_API std::wstring toUpper(std::wstring_view text);
VKHOST_API std::wstring toLower(std::wstring_view text);

// Comparison of names: by folded characters.
VKHOST_API char32_t foldCharacter(char32_t character);
VKHOST_API std::string foldKey(std::string_view utf8);
VKHOST_API bool equalNoCase(std::string_view a, std::string_view b);
VKHOST_API bool equalNoCase(std::wstring_view a, std::wstring_view b);
VKHOST_API int compareNoCase(std::string_view a, std::string_view b);
VKHOST_API int compareNoCase(std::wstring_view a, std::wstring_view b);
VKHOST_API std::size_t hashNoCase(std::string_view utf8);

// The order in which people expect names in a list.
VKHOST_API int collate(std::string_view a, std::string_view b);
VKHOST_API int collate(std::wstring_view a, std::wstring_view b);

// For containers keyed by name.
struct NoCaseHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return hashNoCase(text); }
};
struct NoCaseEqual {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const { return equalNoCase(a, b); }
};
struct NoCaseLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const { return compareNoCase(a, b) < 0; }
};
