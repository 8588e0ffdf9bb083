#include "host/lisp/letters.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace vk::lisp {

namespace {

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Decodes at `at` and steps over the character; a negative code stands for a byte that is no UTF-8.
UChar32 decode(std::string_view text, std::size_t& at)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    auto index = static_cast<std::int64_t>(at);
    UChar32 code;
    U8_NEXT(bytes, index, static_cast<std::int64_t>(text.size()), code);
    at = code < 0 ? at + 1 : static_cast<std::size_t>(index);
    return code;
}

template <class Convert>
std::string convertCase(std::string_view text, Convert convert)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        const UChar32 code = decode(text, at);
        if (code < 0)
            out += text[start];
        else
            appendCodePoint(out, static_cast<std::uint32_t>(convert(code)));
    }
    return out;
}

}  // namespace

std::string toUpper(std::string_view text)
{
    return convertCase(text, u_toupper);
}

std::string toLower(std::string_view text)
{
    return convertCase(text, u_tolower);
}

std::size_t countCharacters(std::string_view text)
{
    if (isAscii(text))
        return text.size();
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count)
        decode(text, at);
    return count;
}

std::size_t byteOfCharacter(std::string_view text, std::size_t character)
{
    std::size_t at = 0;
    while (character > 0 && at < text.size()) {
        decode(text, at);
        --character;
    }
    return at;
}

std::vector<std::string_view> splitCharacters(std::string_view text)
{
    std::vector<std::string_view> characters;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        decode(text, at);
        characters.push_back(text.substr(start, at - start));
    }
    return characters;
}

void appendCodePoint(std::string& text, std::uint32_t codePoint)
{
    char bytes[U8_MAX_LENGTH];
    std::int32_t length = 0;
    UBool isError = false;
    U8_APPEND(reinterpret_cast<std::uint8_t*>(bytes), length, U8_MAX_LENGTH, static_cast<UChar32>(codePoint), isError);
    if (!isError)
        text.append(bytes, static_cast<std::size_t>(length));
}

std::uint32_t firstCodePoint(std::string_view text)
{
    if (text.empty())
        return 0;
    std::size_t at = 0;
    const UChar32 code = decode(text, at);
    return code < 0 ? static_cast<unsigned char>(text[0]) : static_cast<std::uint32_t>(code);
}

}  // namespace vk::lisp
