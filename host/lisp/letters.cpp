#include "host/lisp/letters.h"

#include "host/base/unicode.h"

namespace vk::lisp {

std::size_t countCharacters(std::string_view text) { return wideLength(text); }

std::size_t byteOfCharacter(std::string_view text, std::size_t character)
{
    std::string_view rest = text;
    for (; character > 0 && !rest.empty(); --character)
        takeCharacter(rest);
    return text.size() - rest.size();
}

std::vector<std::string_view> splitCharacters(std::string_view text)
{
    std::vector<std::string_view> characters;
    while (!text.empty()) {
        std::string_view rest = text;
        takeCharacter(rest);
        characters.push_back(text.substr(0, text.size() - rest.size()));
        text = rest;
    }
    return characters;
}

char32_t firstCharacter(std::string_view text) { return text.empty() ? 0 : takeCharacter(text); }

}  // namespace vk::lisp
