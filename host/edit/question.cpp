#include "host/edit/question.h"

#include "host/base/unicode.h"

namespace vk::edit {

namespace {

bool isUpperOrDigit(char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); }

// A run of capitals, with the digits that stand before it: "3P" of "3Points", "LA" of "LAyer", "P" of "oPtion".
std::string capitalsOf(std::string_view word)
{
    std::size_t begin = 0;
    while (begin < word.size() && !isUpperOrDigit(word[begin]))
        ++begin;
    std::size_t end = begin;
    while (end < word.size() && isUpperOrDigit(word[end]))
        ++end;
    return begin == end ? std::string(word) : std::string(word.substr(begin, end - begin));
}

struct Word {
    std::string text, abbreviation;
};

Word wordOf(std::string_view part)
{
    const std::size_t comma = part.find(',');
    if (comma == std::string_view::npos)
        return {std::string(part), {}};
    return {std::string(part.substr(0, comma)), std::string(part.substr(comma + 1))};
}

std::vector<Word> splitWords(std::string_view text)
{
    std::vector<Word> words;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        if (end > at)
            words.push_back(wordOf(text.substr(at, end - at)));
        at = end + 1;
    }
    return words;
}

}

std::string Keyword::abbreviation() const
{
    const std::size_t comma = local.find(',');
    return comma == std::string::npos ? capitalsOf(local) : local.substr(comma + 1);
}

std::vector<Keyword> parseKeywords(std::string_view text)
{
    const std::size_t split = text.starts_with('_') ? 0 : text.find(" _");
    const std::vector<Word> locals = splitWords(split == std::string_view::npos ? text : text.substr(0, split));
    const std::size_t globalsAt = split == std::string_view::npos ? text.size() : text.find('_', split) + 1;
    const std::vector<Word> globals = splitWords(text.substr(globalsAt));
    std::vector<Keyword> keywords;
    for (std::size_t i = 0; i < std::max(locals.size(), globals.size()); ++i) {
        const Word& local = i < locals.size() ? locals[i] : globals[i];
        const Word& global = i < globals.size() ? globals[i] : local;
        std::string shown = local.text;
        if (!local.abbreviation.empty())
            shown += "," + local.abbreviation;
        keywords.push_back({global.text, std::move(shown)});
    }
    return keywords;
}

namespace {

std::string wholeOf(const std::string& local) { return local.substr(0, local.find(',')); }

bool isBeginning(std::string_view typed, std::string_view word)
{
    return typed.size() <= word.size() && equalNoCase(typed, word.substr(0, typed.size()));
}

KeywordMatch matchBy(const std::vector<Keyword>& keywords, const std::function<bool(const Keyword&)>& fits)
{
    KeywordMatch match;
    for (std::size_t i = 0; i < keywords.size(); ++i) {
        if (!fits(keywords[i]))
            continue;
        if (match.result == KeywordMatch::One)
            return {KeywordMatch::Ambiguous, i};
        match = {KeywordMatch::One, i};
    }
    return match;
}

}

KeywordMatch matchKeyword(const std::vector<Keyword>& keywords, std::string_view typed)
{
    const bool global = typed.starts_with('_');
    if (global)
        typed.remove_prefix(1);
    if (typed.empty())
        return {};
    const auto word = [&](const Keyword& k) { return global ? k.global : wholeOf(k.local); };
    const auto abbreviation = [&](const Keyword& k) { return global ? capitalsOf(k.global) : k.abbreviation(); };

    if (const auto m = matchBy(keywords, [&](const Keyword& k) { return equalNoCase(typed, abbreviation(k)); });
        m.result == KeywordMatch::One)
        return m;
    if (const auto m = matchBy(keywords, [&](const Keyword& k) { return equalNoCase(typed, word(k)); });
        m.result != KeywordMatch::None)
        return m;
    return matchBy(keywords, [&](const Keyword& k) {
        const std::string shortest = abbreviation(k);
        // The capitals of "oPtion" do not begin it; there a beginning of any length counts from the front.
        const bool leads = isBeginning(shortest, word(k));
        return isBeginning(typed, word(k)) && (!leads || typed.size() >= shortest.size());
    });
}

}
