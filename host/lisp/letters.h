// UTF-8 texts by character. Bytes that are no UTF-8 count as one character each and come through unchanged.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vk::lisp {

std::string toUpper(std::string_view text);
std::string toLower(std::string_view text);

std::size_t countCharacters(std::string_view text);
// The byte at which a character begins, the end of the text if it has fewer.
std::size_t byteOfCharacter(std::string_view text, std::size_t character);
std::vector<std::string_view> splitCharacters(std::string_view text);
void appendCodePoint(std::string& text, std::uint32_t codePoint);
// The first character, 0 of an empty text.
std::uint32_t firstCodePoint(std::string_view text);

}  // namespace vk::lisp
