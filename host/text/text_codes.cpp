#include "host/text/text_codes.h"

#include <unicode/ucnv.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <array>
#include <memory>

namespace vktext {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// Negative when the text does not begin with four hexadecimal digits.
int hex4(std::string_view text)
{
    int value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const int digit = i < text.size() ? hexDigit(text[i]) : -1;
        if (digit < 0)
            return -1;
        value = value * 16 + digit;
    }
    return value;
}

bool startsNoCase(std::string_view text, char a, char b)
{
    return text.size() >= 3 && text[0] == a && (text[1] == b || text[1] == b + ('a' - 'A')) && text[2] == '+';
}

// From 128 on, the characters of code page 1252, but for those that stroke fonts keep there by custom.
char32_t fontCode(int code)
{
    static constexpr std::array<char16_t, 32> k1252 = {
        0xB1, 0xD8, 0x201A, 0x192, 0x201E, 0x2026, 0x2020, 0x2021, 0x2C6, 0x2030, 0x160, 0x2039, 0x152, 0x8D, 0x17D, 0x8F,
        0x90, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x2DC, 0x2122, 0x161, 0x203A, 0x153, 0x9D, 0x17E, 0x178};
    if (code == 127)
        return 0xB0;
    return code >= 128 && code < 160 ? k1252[code - 128] : code > 255 ? kReplacement : static_cast<char32_t>(code);
}

CharCode numberedCode(std::string_view text)
{
    int code = 0;
    std::size_t digits = 0;
    while (digits < 3 && 2 + digits < text.size() && text[2 + digits] >= '0' && text[2 + digits] <= '9')
        code = code * 10 + (text[2 + digits++] - '0');
    return digits == 0 ? CharCode{} : CharCode{2 + digits, std::u32string(1, fontCode(code)), 0};
}

struct ConverterDeleter {
    void operator()(UConverter* c) const { ucnv_close(c); }
};
using Converter = std::unique_ptr<UConverter, ConverterDeleter>;

// By the digit of "\M+n". Null for other digits.
UConverter* multibyteConverter(char digit)
{
    static constexpr std::array<const char*, 5> kNames = {"windows-932", "windows-950", "windows-949", "ibm-1363",
                                                          "windows-936"};
    thread_local std::array<Converter, kNames.size()> opened;
    if (digit < '1' || digit > '5')
        return nullptr;
    auto& converter = opened[digit - '1'];
    if (!converter) {
        UErrorCode status = U_ZERO_ERROR;
        converter.reset(ucnv_open(kNames[digit - '1'], &status));
    }
    return converter.get();
}

class Decoder {
public:
    explicit Decoder(std::string_view text) : m_text(text) { m_out.chars.reserve(text.size()); }

    DecodedText run()
    {
        while (m_at < m_text.size())
            if (!takeCode())
                m_out.chars += nextChar(m_text, m_at);
        return std::move(m_out);
    }

private:
    bool takeCode()
    {
        const std::string_view rest = m_text.substr(m_at);
        if (rest[0] == '%')
            return take(percentCode(rest));
        return rest[0] == '\\' && (take(unicodeCode(rest)) || take(multibyteCode(rest)));
    }

    bool take(const CharCode& code)
    {
        if (code.length == 0)
            return false;
        m_at += code.length;
        m_out.chars += code.chars;
        if (code.toggles != 0)
            decorate(code.toggles);
        return true;
    }

    void decorate(std::uint8_t toggles)
    {
        m_decorations ^= toggles;
        if (!m_out.spans.empty() && m_out.spans.back().begin == m_out.chars.size())
            m_out.spans.back().decorations = m_decorations;
        else
            m_out.spans.push_back({m_out.chars.size(), m_decorations});
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::uint8_t m_decorations = 0;
    DecodedText m_out;
};

} // namespace

char32_t nextChar(std::string_view utf8, std::size_t& at)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(utf8.data());
    UChar32 c;
    U8_NEXT(bytes, at, utf8.size(), c);
    return c < 0 ? kReplacement : static_cast<char32_t>(c);
}

std::u32string fromUtf8(std::string_view utf8)
{
    std::u32string text;
    text.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();)
        text += nextChar(utf8, at);
    return text;
}

void appendUtf8(std::string& to, char32_t c)
{
    if (c < 0x80) {
        to += static_cast<char>(c);
        return;
    }
    std::uint8_t bytes[4];
    int length = 0;
    UBool failed = false;
    U8_APPEND(bytes, length, 4, static_cast<UChar32>(c), failed);
    if (failed)
        return appendUtf8(to, kReplacement);
    to.append(reinterpret_cast<const char*>(bytes), length);
}

std::string toUtf8(std::u32string_view text)
{
    std::string utf8;
    utf8.reserve(text.size());
    for (const char32_t c : text)
        appendUtf8(utf8, c);
    return utf8;
}

CharCode percentCode(std::string_view text)
{
    if (text.size() < 3 || text[0] != '%' || text[1] != '%')
        return {};
    switch (text[2]) {
    case 'd': case 'D': return {3, U"\u00B0", 0};
    case 'p': case 'P': return {3, U"\u00B1", 0};
    case 'c': case 'C': return {3, U"\u00D8", 0};
    case '%': return {3, U"%", 0};
    case 'u': case 'U': return {3, {}, kUnderline};
    case 'o': case 'O': return {3, {}, kOverline};
    case 'k': case 'K': return {3, {}, kStrike};
    default: return numberedCode(text);
    }
}

CharCode unicodeCode(std::string_view text)
{
    const int unit = startsNoCase(text, '\\', 'U') ? hex4(text.substr(3)) : -1;
    if (unit < 0)
        return {};
    const char32_t c = static_cast<char32_t>(unit);
    if (!U16_IS_SURROGATE(c))
        return {7, std::u32string(1, c), 0};
    if (U16_IS_LEAD(c) && text.size() >= 14 && startsNoCase(text.substr(7), '\\', 'U')) {
        const int trail = hex4(text.substr(10));
        if (trail >= 0 && U16_IS_TRAIL(trail))
            return {14, std::u32string(1, U16_GET_SUPPLEMENTARY(c, trail)), 0};
    }
    return {7, std::u32string(1, kReplacement), 0};
}

CharCode multibyteCode(std::string_view text)
{
    if (!startsNoCase(text, '\\', 'M') || text.size() < 8)
        return {};
    UConverter* converter = multibyteConverter(text[3]);
    const int code = hex4(text.substr(4));
    if (!converter || code < 0)
        return {};
    const char bytes[2] = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
    UErrorCode status = U_ZERO_ERROR;
    UChar units[8];
    const bool single = bytes[0] == 0;
    const int length = ucnv_toUChars(converter, units, 8, bytes + single, 2 - single, &status);
    CharCode result{8, {}, 0};
    for (int i = 0; U_SUCCESS(status) && i < std::min(length, 8);) {
        UChar32 c;
        U16_NEXT(units, i, length, c);
        result.chars += static_cast<char32_t>(c);
    }
    return result;
}

DecodedText decodeText(std::string_view utf8)
{
    return Decoder(utf8).run();
}

std::string plainText(std::string_view utf8)
{
    return toUtf8(decodeText(utf8).chars);
}

} // namespace vktext
