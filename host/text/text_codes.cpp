#include "host/text/text_codes.h"

#include "host/base/code_page.h"
#include "host/base/unicode.h"

namespace vktext {

namespace {

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

// Three places behind ASCII are those of stroke fonts by custom, the rest those of code page 1252. 0 for none.
char32_t fontCode(int code)
{
    switch (code) {
    case 127:
        return 0xB0;
    case 128:
        return 0xB1;
    case 129:
        return 0xD8;
    default:
        return code > 255 ? 0 : CodePage::byNumber(1252)->character(static_cast<unsigned>(code), 0);
    }
}

CharCode numberedCode(std::string_view text)
{
    int code = 0;
    std::size_t digits = 0;
    while (digits < 3 && 2 + digits < text.size() && text[2 + digits] >= '0' && text[2 + digits] <= '9')
        code = code * 10 + (text[2 + digits++] - '0');
    const char32_t c = digits == 0 ? 0 : fontCode(code);
    return c == 0 ? CharCode{} : CharCode{2 + digits, std::u32string(1, c), 0};
}

// By the digit of "\M+n". Null for other digits.
const CodePage* multibytePage(char digit)
{
    static constexpr int kNumbers[] = {932, 950, 949, 1361, 936};
    return digit >= '1' && digit <= '5' ? CodePage::byNumber(kNumbers[digit - '1']) : nullptr;
}

bool isLeadSurrogate(int unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

bool isTrailSurrogate(int unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

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

}  // namespace

char32_t nextChar(std::string_view utf8, std::size_t& at)
{
    if (const auto byte = static_cast<unsigned char>(utf8[at]); byte < 0x80) {
        ++at;
        return byte;
    }
    std::string_view rest = utf8.substr(at);
    const char32_t c = takeCharacter(rest);
    at = utf8.size() - rest.size();
    return c;
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
    case 'd':
    case 'D':
        return {3, U"\u00B0", 0};
    case 'p':
    case 'P':
        return {3, U"\u00B1", 0};
    case 'c':
    case 'C':
        return {3, U"\u00D8", 0};
    case '%':
        return {3, U"%", 0};
    case 'u':
    case 'U':
        return {3, {}, kUnderline};
    case 'o':
    case 'O':
        return {3, {}, kOverline};
    case 'k':
    case 'K':
        return {3, {}, kStrike};
    default:
        return numberedCode(text);
    }
}

CharCode unicodeCode(std::string_view text)
{
    const int unit = startsNoCase(text, '\\', 'U') ? hex4(text.substr(3)) : -1;
    if (unit < 0)
        return {};
    if (isLeadSurrogate(unit) && text.size() >= 14 && startsNoCase(text.substr(7), '\\', 'U')) {
        const int trail = hex4(text.substr(10));
        if (isTrailSurrogate(trail))
            return {14, std::u32string(1, 0x10000 + ((unit - 0xD800) << 10) + (trail - 0xDC00)), 0};
    }
    return {7, std::u32string(1, static_cast<char32_t>(unit)), 0};
}

CharCode multibyteCode(std::string_view text)
{
    if (!startsNoCase(text, '\\', 'M') || text.size() < 8)
        return {};
    const CodePage* page = multibytePage(text[3]);
    const int code = hex4(text.substr(4));
    const unsigned first = static_cast<unsigned>(code) >> 8, second = code & 0xFF;
    const char32_t c = page && code >= 0 ? page->character(first == 0 ? second : first, first == 0 ? 0 : second) : 0;
    return c == 0 ? CharCode{} : CharCode{8, std::u32string(1, c), 0};
}

DecodedText decodeText(std::string_view utf8) { return Decoder(utf8).run(); }

std::string plainText(std::string_view utf8) { return toUtf8(decodeText(utf8).chars); }

}  // namespace vktext
