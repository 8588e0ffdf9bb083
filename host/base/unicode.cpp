#include "host/base/unicode.h"

namespace {

constexpr char32_t kEscapeBase = 0xDC00;  // plus the stray byte
constexpr char32_t kReplacement = 0xFFFD;

bool isEscapedByte(char32_t c) { return c >= 0xDC80 && c <= 0xDCFF; }

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// Length of the sequence that a leading byte announces, 1 for a byte that leads none.
std::size_t announcedLength(unsigned char lead)
{
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    return lead >= 0xF0 && lead <= 0xF4 ? 4 : 1;
}

// Overlong forms, characters past the last one, and the surrogates that stand for stray bytes.
bool isForbidden(char32_t c, std::size_t length)
{
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    return c < kLeast[length] || c > 0x10FFFF || isEscapedByte(c);
}

// A character of more than one byte at the front; 0 bytes if the front is no such character.
std::size_t decodeSequence(std::string_view text, char32_t& c)
{
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = announcedLength(lead);
    if (length == 1 || text.size() < length)
        return 0;
    c = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text[i]))
            return 0;
        c = c << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
    }
    return isForbidden(c, length) ? 0 : length;
}

bool isAscii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

template <class Take>
void eachCharacter(std::string_view text, Take take)
{
    while (!text.empty()) {
        if (isAscii(text.front())) {
            take(static_cast<char32_t>(text.front()));
            text.remove_prefix(1);
        } else
            take(takeCharacter(text));
    }
}

}  // namespace

char32_t takeCharacter(std::string_view& text)
{
    char32_t c = static_cast<unsigned char>(text.front());
    std::size_t length = 1;
    if (c >= 0x80) {
        length = decodeSequence(text, c);
        if (!length) {
            c = kEscapeBase + static_cast<unsigned char>(text.front());
            length = 1;
        }
    }
    text.remove_prefix(length);
    return c;
}

std::size_t wideLength(std::string_view utf8)
{
    std::size_t count = 0;
    eachCharacter(utf8, [&](char32_t) { ++count; });
    return count;
}

void utf8ToWide(std::string_view utf8, wchar_t* out)
{
    eachCharacter(utf8, [&](char32_t c) { *out++ = static_cast<wchar_t>(c); });
}

std::wstring utf8ToWide(std::string_view text)
{
    std::wstring wide;
    wide.reserve(text.size());
    eachCharacter(text, [&](char32_t c) { wide.push_back(static_cast<wchar_t>(c)); });
    return wide;
}

void appendUtf8(std::string& out, char32_t c)
{
    const auto tail = [&](int shift) { out.push_back(static_cast<char>(0x80 | (c >> shift & 0x3F))); };
    if (c > 0x10FFFF)
        c = kReplacement;
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | c >> 6));
        tail(0);
    } else if (isEscapedByte(c)) {
        out.push_back(static_cast<char>(c - kEscapeBase));
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | c >> 12));
        tail(6);
        tail(0);
    } else {
        out.push_back(static_cast<char>(0xF0 | c >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

std::string wideToUtf8(std::wstring_view text)
{
    std::string out;
    out.reserve(text.size());
    for (const wchar_t c : text)
        appendUtf8(out, static_cast<char32_t>(c));
    return out;
}

bool isValidUtf8(std::string_view text)
{
    while (!text.empty()) {
        const char32_t c = takeCharacter(text);
        if (c >= 0xD800 && c <= 0xDFFF)
            return false;
    }
    return true;
}
