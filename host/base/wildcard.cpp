#include "host/base/wildcard.h"

#include "host/base/unicode.h"

#include <unicode/uchar.h>

namespace {

std::u32string characters(std::string_view text)
{
    std::u32string out;
    out.reserve(text.size());
    while (!text.empty())
        out.push_back(takeCharacter(text));
    return out;
}

std::u32string characters(std::wstring_view text) { return {text.begin(), text.end()}; }

bool isLetter(char32_t c) { return u_isalpha(static_cast<UChar32>(c)); }

bool isDigit(char32_t c) { return c >= U'0' && c <= U'9'; }

}  // namespace

Wildcard::Wildcard(std::string_view pattern, Case letterCase) : m_case(letterCase) { parse(characters(pattern)); }

Wildcard::Wildcard(std::wstring_view pattern, Case letterCase) : m_case(letterCase) { parse(characters(pattern)); }

char32_t Wildcard::folded(char32_t c) const { return m_case == Case::DoesNotCount ? foldCharacter(c) : c; }

void Wildcard::parse(std::u32string_view pattern)
{
    m_alternatives.push_back(takeAlternative(pattern));
    while (!pattern.empty()) {  // stands at a comma
        m_plain = false;
        pattern.remove_prefix(1);
        m_alternatives.push_back(takeAlternative(pattern));
    }
}

Wildcard::Alternative Wildcard::takeAlternative(std::u32string_view& rest)
{
    Alternative alternative;
    if (!rest.empty() && rest.front() == U'~') {
        alternative.negated = true;
        m_plain = false;
        rest.remove_prefix(1);
    }
    while (!rest.empty() && rest.front() != U',')
        alternative.elements.push_back(takeElement(rest));
    return alternative;
}

Wildcard::Element Wildcard::takeElement(std::u32string_view& rest)
{
    char32_t c = rest.front();
    if (c == U'[' && rest.find(U']', 2) != rest.npos)
        return takeSet(rest);
    rest.remove_prefix(1);
    Element element;
    switch (c) {
    case U'#':
        element.kind = Kind::Digit;
        break;
    case U'@':
        element.kind = Kind::Letter;
        break;
    case U'.':
        element.kind = Kind::Other;
        break;
    case U'?':
        element.kind = Kind::Any;
        break;
    case U'*':
        element.kind = Kind::Run;
        break;
    case U'`':
        m_plain = false;
        if (!rest.empty()) {
            c = rest.front();
            rest.remove_prefix(1);
        }
        break;
    default:
        break;
    }
    m_plain = m_plain && element.kind == Kind::Literal;
    element.character = folded(c);
    return element;
}

// "[...]" with its closing bracket known to be there; the first character after the bracket may be a bracket itself.
Wildcard::Element Wildcard::takeSet(std::u32string_view& rest)
{
    m_plain = false;
    Element element;
    element.kind = Kind::Set;
    rest.remove_prefix(1);
    if (rest.front() == U'~' && rest.find(U']', 1) != rest.npos) {
        element.negated = true;
        rest.remove_prefix(1);
    }
    const std::size_t close = std::min(rest.find(U']', 1), rest.size());
    std::u32string_view set = rest.substr(0, close);
    rest.remove_prefix(std::min(close + 1, rest.size()));
    while (!set.empty()) {
        if (set.front() == U'`' && set.size() > 1)
            set.remove_prefix(1);
        const bool range = set.size() > 2 && set[1] == U'-';
        element.ranges.emplace_back(folded(set[0]), folded(set[range ? 2 : 0]));
        set.remove_prefix(range ? 3 : 1);
    }
    return element;
}

bool Wildcard::matchesOne(const Element& element, char32_t c) const
{
    switch (element.kind) {
    case Kind::Literal:
        return element.character == c;
    case Kind::Digit:
        return isDigit(c);
    case Kind::Letter:
        return isLetter(c);
    case Kind::Other:
        return !isDigit(c) && !isLetter(c);
    case Kind::Any:
    case Kind::Run:
        return true;
    case Kind::Set:
        break;
    }
    const bool within = std::any_of(element.ranges.begin(), element.ranges.end(),
                                    [c](const auto& range) { return c >= range.first && c <= range.second; });
    return within != element.negated;
}

// Goes back to the last run only: an earlier one can gain nothing by growing.
bool Wildcard::matchesAlternative(const Alternative& alternative, std::u32string_view text) const
{
    const auto& elements = alternative.elements;
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::size_t e = 0, t = 0, run = kNone, runText = 0;
    while (t < text.size()) {
        if (e < elements.size() && elements[e].kind == Kind::Run) {
            run = e++;
            runText = t;
        } else if (e < elements.size() && matchesOne(elements[e], text[t])) {
            ++e;
            ++t;
        } else if (run != kNone) {
            e = run + 1;
            t = ++runText;
        } else
            return false;
    }
    while (e < elements.size() && elements[e].kind == Kind::Run)
        ++e;
    return e == elements.size();
}

bool Wildcard::matchesAny(std::u32string_view text) const
{
    for (const Alternative& alternative : m_alternatives)
        if (matchesAlternative(alternative, text) != alternative.negated)
            return true;
    return false;
}

bool Wildcard::matches(std::string_view text) const
{
    std::u32string all = characters(text);
    for (char32_t& c : all)
        c = folded(c);
    return matchesAny(all);
}

bool Wildcard::matches(std::wstring_view text) const
{
    std::u32string all = characters(text);
    for (char32_t& c : all)
        c = folded(c);
    return matchesAny(all);
}
