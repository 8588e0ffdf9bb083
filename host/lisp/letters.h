// UTF-8 texts by character.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vk::lisp {

std::size_t countCharacters(std::string_view text);
// The byte at which a character begins, the end of the text if it has fewer.
std::size_t byteOfCharacter(std::string_view text, std::size_t character);
std::vector<std::string_view> splitCharacters(std::string_view text);
// The code of the first character, 0 of an empty text.
char32_t firstCharacter(std::string_view text);

}  // namespace vk::lisp
