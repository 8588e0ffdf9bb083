// Wild-card patterns of names: # @ . * ? ~ [..] [~..] ` and the comma. A pattern is taken apart once and then
// matched many times; matching takes time proportional to text times pattern at worst.
#pragma once

#include "host/base/api.h"

#include <string>
#include <string_view>
#include <vector>

class VKHOST_API Wildcard {
public:
    enum class Case { Counts, DoesNotCount };
    explicit Wildcard(std::string_view pattern, Case letterCase = Case::DoesNotCount);
    explicit Wildcard(std::wstring_view pattern, Case letterCase = Case::DoesNotCount);

    bool matches(std::string_view text) const;
    bool matches(std::wstring_view text) const;

    // No special character at all: an ordinary name, which can be looked up instead.
    bool isPlain() const { return m_plain; }

private:
    enum class Kind : unsigned char { Literal, Digit, Letter, Other, Any, Run, Set };
    struct Element {
        Kind kind = Kind::Literal;
        bool negated = false;
        char32_t character = 0;
        std::vector<std::pair<char32_t, char32_t>> ranges;
    };
    struct Alternative {
        bool negated = false;
        std::vector<Element> elements;
    };
    std::vector<Alternative> m_alternatives;
    Case m_case;
    bool m_plain = true;

    void parse(std::u32string_view pattern);
    Alternative takeAlternative(std::u32string_view& rest);
    Element takeElement(std::u32string_view& rest);
    Element takeSet(std::u32string_view& rest);
    char32_t folded(char32_t c) const;
    bool matchesOne(const Element& element, char32_t c) const;
    bool matchesAlternative(const Alternative& alternative, std::u32string_view text) const;
    bool matchesAny(std::u32string_view text) const;
};
