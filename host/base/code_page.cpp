#include "host/base/code_page.h"

#include "host/base/code_page_table.h"
#include "host/base/unicode.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <memory>
#include <mutex>
#include <optional>

namespace {

// Where a number stands twice, the first row is the one that a number finds.
constexpr CodePage kPages[] = {
    {"ANSI_1252", 1252, 30, "windows-1252"}, {"UTF-8", 65001, -1, ""},
    {"ANSI_874", 874, 37, "windows-874"},    {"ANSI_932", 932, 38, "windows-932"},
    {"ANSI_936", 936, 39, "windows-936"},    {"ANSI_949", 949, 40, "windows-949"},
    {"ANSI_950", 950, 41, "windows-950"},    {"ANSI_1250", 1250, 28, "windows-1250"},
    {"ANSI_1251", 1251, 29, "windows-1251"}, {"ANSI_1253", 1253, 32, "windows-1253"},
    {"ANSI_1254", 1254, 33, "windows-1254"}, {"ANSI_1255", 1255, 34, "windows-1255"},
    {"ANSI_1256", 1256, 35, "windows-1256"}, {"ANSI_1257", 1257, 36, "windows-1257"},
    {"ANSI_1258", 1258, 44, "windows-1258"}, {"ANSI_1361", 1361, 42, "JOHAB"},
    {"ASCII", 20127, 1, "windows-1252"},     {"ISO8859-1", 28591, 2, "ISO-8859-1"},
    {"ISO8859-2", 28592, 3, "ISO-8859-2"},   {"ISO8859-3", 28593, 4, "ISO-8859-3"},
    {"ISO8859-4", 28594, 5, "ISO-8859-4"},   {"ISO8859-5", 28595, 6, "ISO-8859-5"},
    {"ISO8859-6", 28596, 7, "ISO-8859-6"},   {"ISO8859-7", 28597, 8, "ISO-8859-7"},
    {"ISO8859-8", 28598, 9, "ISO-8859-8"},   {"ISO8859-9", 28599, 10, "ISO-8859-9"},
    {"DOS437", 437, 11, "ibm-437"},          {"DOS850", 850, 12, "ibm-850"},
    {"DOS852", 852, 13, "ibm-852"},          {"DOS855", 855, 14, "ibm-855"},
    {"DOS857", 857, 15, "ibm-857"},          {"DOS860", 860, 16, "ibm-860"},
    {"DOS861", 861, 17, "ibm-861"},          {"DOS863", 863, 18, "ibm-863"},
    {"DOS864", 864, 19, "ibm-864"},          {"DOS865", 865, 20, "ibm-865"},
    {"DOS869", 869, 21, "ibm-869"},          {"DOS932", 932, 22, "windows-932"},
    {"MACINTOSH", 10000, 23, "macintosh"},   {"BIG5", 950, 24, "windows-950"},
    {"KSC5601", 949, 25, "windows-949"},     {"JOHAB", 1361, 26, "JOHAB"},
    {"DOS866", 866, 27, "ibm-866"},          {"GB2312", 936, 31, "windows-936"},
};
constexpr std::size_t kPageCount = sizeof kPages / sizeof kPages[0];

struct OtherName {
    const char* other;
    const char* name;
};
constexpr OtherName kOtherNames[] = {
    {"UTF8", "UTF-8"},      {"US-ASCII", "ASCII"}, {"MAC-ROMAN", "MACINTOSH"}, {"ISO-8859-1", "ISO8859-1"},
    {"ANSI_1200", "UTF-8"}, {"GBK", "ANSI_936"},   {"ANSI_65001", "UTF-8"},
};

template <class Matches>
const CodePage* findPage(Matches matches)
{
    for (const CodePage& page : kPages)
        if (matches(page))
            return &page;
    return nullptr;
}

std::atomic<const CodePage*> hostPage = &kPages[0];

// The pages of the escapes \M+1 to \M+5.
const CodePage* multibytePage(char digit)
{
    constexpr int kNumbers[] = {932, 950, 949, 1361, 936};
    return digit >= '1' && digit <= '5' ? CodePage::byNumber(kNumbers[digit - '1']) : nullptr;
}

std::optional<unsigned> fourHexDigits(std::string_view text)
{
    if (text.size() < 4)
        return std::nullopt;
    unsigned value = 0;
    for (const char c : text.substr(0, 4)) {
        const char lower = static_cast<char>(c | 0x20);
        if (c >= '0' && c <= '9')
            value = value * 16 + static_cast<unsigned>(c - '0');
        else if (lower >= 'a' && lower <= 'f')
            value = value * 16 + static_cast<unsigned>(lower - 'a' + 10);
        else
            return std::nullopt;
    }
    return value;
}

bool beginsWithEscape(std::string_view text, char letter)
{
    return text.size() >= 7 && text[0] == '\\' && (text[1] | 0x20) == (letter | 0x20) && text[2] == '+';
}

constexpr std::size_t kUnicodeEscapeSize = 7;    // \U+XXXX
constexpr std::size_t kMultibyteEscapeSize = 8;  // \M+nXXXX

struct Decoded {
    char32_t character = 0;
    std::size_t size = 0;  // 0 when there is no escape that may be decoded
};

Decoded unicodeEscape(std::string_view text)
{
    if (!beginsWithEscape(text, 'U'))
        return {};
    const auto unit = fourHexDigits(text.substr(3));
    if (!unit || *unit < 0x80)
        return {};
    if (*unit < 0xD800 || *unit > 0xDFFF)
        return {*unit, kUnicodeEscapeSize};
    const std::string_view rest = text.substr(kUnicodeEscapeSize);
    const auto low = beginsWithEscape(rest, 'U') ? fourHexDigits(rest.substr(3)) : std::nullopt;
    if (*unit > 0xDBFF || !low || *low < 0xDC00 || *low > 0xDFFF)
        return {};
    return {0x10000 + ((*unit - 0xD800) << 10) + (*low - 0xDC00), 2 * kUnicodeEscapeSize};
}

Decoded multibyteEscape(std::string_view text)
{
    if (!beginsWithEscape(text, 'M') || text.size() < kMultibyteEscapeSize)
        return {};
    const CodePage* page = multibytePage(text[3]);
    const auto code = fourHexDigits(text.substr(4));
    if (!page || !code)
        return {};
    const char32_t c = *code > 0xFF ? page->character(*code >> 8, *code & 0xFF) : page->character(*code, 0);
    return c >= 0x80 ? Decoded{c, kMultibyteEscapeSize} : Decoded{};
}

bool isAsciiOnly(std::string_view text)
{
    return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

bool isStrayByte(char32_t c) { return c >= 0xDC80 && c <= 0xDCFF; }

void appendBytes(std::string& out, unsigned code)
{
    if (code > 0xFF)
        out += static_cast<char>(code >> 8);
    out += static_cast<char>(code & 0xFF);
}

}  // namespace

const CodePage* CodePage::byName(std::string_view name)
{
    for (const OtherName& other : kOtherNames)
        if (equalNoCase(name, std::string_view(other.other)))
            name = other.name;
    return findPage([&](const CodePage& page) { return equalNoCase(name, std::string_view(page.m_name)); });
}

const CodePage* CodePage::byNumber(int number)
{
    return findPage([&](const CodePage& page) { return page.m_number == number; });
}

const CodePage* CodePage::byDrawingIndex(int index)
{
    return index < 0 ? nullptr : findPage([&](const CodePage& page) { return page.m_index == index; });
}

const CodePage& CodePage::host() { return *hostPage; }

bool CodePage::setHost(int number)
{
    const CodePage* page = byNumber(number);
    if (page)
        hostPage = page;
    return page != nullptr;
}

const CodePageTable& CodePage::table() const
{
    static std::array<std::once_flag, kPageCount> built;
    static std::array<std::unique_ptr<CodePageTable>, kPageCount> tables;
    const auto i = static_cast<std::size_t>(this - kPages);
    std::call_once(built[i], [&] { tables[i] = std::make_unique<CodePageTable>(m_converter); });
    return *tables[i];
}

bool CodePage::isLeadByte(unsigned char byte) const { return !isUtf8() && byte >= 0x80 && table().isLead(byte); }

char32_t CodePage::character(unsigned first, unsigned second) const
{
    if (isUtf8() || first > 0xFF || second > 0xFF)
        return first < 0x80 ? first : 0;
    return table().isLead(first) ? table().pair(first, second) : table().single(first);
}

std::string CodePage::toUtf8(std::string_view bytes) const
{
    if (isUtf8() || isAsciiOnly(bytes))
        return std::string(bytes);
    const CodePageTable& page = table();
    std::string out;
    out.reserve(bytes.size() * 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        const unsigned next = i + 1 < bytes.size() ? static_cast<unsigned char>(bytes[i + 1]) : 0;
        const char32_t pair = page.pair(byte, next);
        const char32_t single = page.single(byte);
        if (pair) {
            appendUtf8(out, pair);
            ++i;
        } else if (single || byte == 0)
            appendUtf8(out, single);
        else
            out += bytes[i];
    }
    return out;
}

std::string CodePage::fromUtf8(std::string_view utf8, Unknown how, std::size_t* replaced) const
{
    if (isUtf8() || isAsciiOnly(utf8))
        return std::string(utf8);
    const CodePageTable& page = table();
    std::string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        const char32_t c = takeCharacter(utf8);
        const unsigned code = page.bytes(c);
        if (c < 0x80 || code)
            appendBytes(out, code);
        else if (isStrayByte(c))
            out += static_cast<char>(c - 0xDC00);
        else if (how == Unknown::Escape)
            appendEscape(out, c);
        else {
            out += '?';
            if (replaced)
                ++*replaced;
        }
    }
    return out;
}

std::string decodeEscapes(std::string_view text)
{
    std::string out;
    for (;;) {
        const std::size_t slash = text.find('\\');
        out += text.substr(0, slash);
        if (slash == text.npos)
            return out;
        text.remove_prefix(slash);
        Decoded escape = unicodeEscape(text);
        if (!escape.size)
            escape = multibyteEscape(text);
        if (escape.size)
            appendUtf8(out, escape.character);
        else
            out += '\\';
        text.remove_prefix(std::max<std::size_t>(escape.size, 1));
    }
}

std::string escapeSurrogates(std::string_view utf8)
{
    std::string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        const char32_t c = takeCharacter(utf8);
        c >= 0xD800 && c <= 0xDFFF && !isStrayByte(c) ? appendEscape(out, c) : appendUtf8(out, c);
    }
    return out;
}

void appendEscape(std::string& out, char32_t c)
{
    const auto unit = [&](unsigned value) {
        char buffer[8];
        std::snprintf(buffer, sizeof buffer, "\\U+%04X", value);
        out += buffer;
    };
    if (c > 0xFFFF && c <= 0x10FFFF) {
        unit(0xD800 + ((c - 0x10000) >> 10));
        unit(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else
        unit(std::min<char32_t>(c, 0xFFFF));
}

std::string utf8OfTextFile(std::string bytes)
{
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(kMark))
        bytes.erase(0, kMark.size());
    return isValidUtf8(bytes) ? bytes : CodePage::host().toUtf8(bytes);
}
