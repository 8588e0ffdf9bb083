// Letter case and order, by ICU; the ASCII range is answered without it.
#include "host/base/unicode.h"

#include <memory>
#include <unicode/uchar.h>
#include <unicode/ucol.h>

namespace {

bool isAscii(char32_t c) { return c < 0x80; }

bool isAsciiUpper(char32_t c) { return c - U'A' < 26; }

bool isAsciiLower(char32_t c) { return c - U'a' < 26; }

template <char32_t (*Map)(char32_t)>
std::string mapUtf8(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    while (!text.empty())
        appendUtf8(out, Map(takeCharacter(text)));
    return out;
}

template <char32_t (*Map)(char32_t)>
std::wstring mapWide(std::wstring_view text)
{
    std::wstring out(text);
    for (wchar_t& c : out)
        c = static_cast<wchar_t>(Map(static_cast<char32_t>(c)));
    return out;
}

char32_t nextCharacter(std::string_view& text) { return takeCharacter(text); }

char32_t nextCharacter(std::wstring_view& text)
{
    const auto c = static_cast<char32_t>(text.front());
    text.remove_prefix(1);
    return c;
}

template <class View>
int compareFolded(View a, View b)
{
    while (!a.empty() && !b.empty()) {
        const char32_t x = foldCharacter(nextCharacter(a));
        const char32_t y = foldCharacter(nextCharacter(b));
        if (x != y)
            return x < y ? -1 : 1;
    }
    return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
}

struct CollatorClose {
    void operator()(UCollator* collator) const { ucol_close(collator); }
};

// The root order; null when ICU's data is missing.
UCollator* collator()
{
    thread_local const std::unique_ptr<UCollator, CollatorClose> instance = [] {
        UErrorCode status = U_ZERO_ERROR;
        return std::unique_ptr<UCollator, CollatorClose>(ucol_open("", &status));
    }();
    return instance.get();
}

}  // namespace

char32_t toUpper(char32_t c)
{
    if (isAscii(c))
        return isAsciiLower(c) ? c - 32 : c;
    return static_cast<char32_t>(u_toupper(static_cast<UChar32>(c)));
}

char32_t toLower(char32_t c)
{
    if (isAscii(c))
        return isAsciiUpper(c) ? c + 32 : c;
    return static_cast<char32_t>(u_tolower(static_cast<UChar32>(c)));
}

char32_t foldCharacter(char32_t c)
{
    if (isAscii(c))
        return isAsciiUpper(c) ? c + 32 : c;
    return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(c), U_FOLD_CASE_DEFAULT));
}

std::string toUpper(std::string_view utf8) { return mapUtf8<toUpper>(utf8); }

std::string toLower(std::string_view utf8) { return mapUtf8<toLower>(utf8); }

std::wstring toUpper(std::wstring_view text) { return mapWide<toUpper>(text); }

std::wstring toLower(std::wstring_view text) { return mapWide<toLower>(text); }

std::string foldKey(std::string_view utf8) { return mapUtf8<foldCharacter>(utf8); }

bool equalNoCase(std::string_view a, std::string_view b) { return a == b || compareFolded(a, b) == 0; }

bool equalNoCase(std::wstring_view a, std::wstring_view b) { return a.size() == b.size() && compareFolded(a, b) == 0; }

int compareNoCase(std::string_view a, std::string_view b) { return compareFolded(a, b); }

int compareNoCase(std::wstring_view a, std::wstring_view b) { return compareFolded(a, b); }

std::size_t hashNoCase(std::string_view utf8)
{
    std::uint64_t hash = 0xcbf29ce484222325;
    while (!utf8.empty())
        hash = (hash ^ foldCharacter(takeCharacter(utf8))) * 0x100000001b3;
    return static_cast<std::size_t>(hash ^ hash >> 29);
}

int collate(std::string_view a, std::string_view b)
{
    UCollator* order = collator();
    if (!order)
        return compareFolded(a, b);
    UErrorCode status = U_ZERO_ERROR;
    const auto result = ucol_strcollUTF8(order, a.data(), static_cast<int32_t>(a.size()), b.data(),
                                         static_cast<int32_t>(b.size()), &status);
    if (U_FAILURE(status))
        return compareFolded(a, b);
    return result != UCOL_EQUAL ? static_cast<int>(result) : a.compare(b);
}

int collate(std::wstring_view a, std::wstring_view b)
{
    return collate(std::string_view(wideToUtf8(a)), std::string_view(wideToUtf8(b)));
}
