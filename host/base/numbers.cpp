#include "host/base/numbers.h"

#include "host/base/unicode.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fast_float/fast_float.h>
#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view withoutPlus(std::string_view text)
{
    if (text.size() > 1 && text.front() == '+' && text[1] != '-' && text[1] != '+')
        text.remove_prefix(1);
    return text;
}

struct SpecialReal {
    std::string_view text;
    double value;
};

// What C libraries have printed over the years.
constexpr SpecialReal kSpecialReals[] = {
    {"inf", kInfinity}, {"infinity", kInfinity}, {"1.#inf", kInfinity}, {"1.#inf00", kInfinity},
    {"nan", kNan},      {"-nan(ind)", kNan},     {"nan(ind)", kNan},    {"1.#ind", kNan},
    {"1.#ind00", kNan}, {"1.#qnan", kNan},       {"1.#qnan0", kNan},    {"1.#snan", kNan},
};

std::optional<double> specialReal(std::string_view text)
{
    const bool negative = !text.empty() && text.front() == '-';
    if (negative)
        text.remove_prefix(1);
    for (const SpecialReal& special : kSpecialReals)
        if (equalNoCase(text, special.text))
            return negative ? -special.value : special.value;
    return std::nullopt;
}

std::optional<double> pointReal(std::string_view text)
{
    double value = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = fast_float::from_chars(text.data(), end, value);
    const bool number = stopped == end && error != std::errc::invalid_argument;
    return number ? std::optional(value) : specialReal(text);
}

std::string shortest(double value, std::chars_format format)
{
    char buffer[400];  // the longest fixed form is a sign, 308 digits and a point
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, format);
    return {buffer, result.ptr};
}

// Adds one to the last digit of a decimal text, carrying leftwards; digits and at most one point.
void incrementDecimal(std::string& digits)
{
    for (std::size_t i = digits.size(); i-- > 0;) {
        if (digits[i] == '.')
            continue;
        if (digits[i] != '9') {
            ++digits[i];
            return;
        }
        digits[i] = '0';
    }
    digits.insert(digits.begin(), '1');
}

// Rounds digits (no sign) to that many places, padding with zeros.
void roundDecimal(std::string& digits, int places)
{
    std::size_t point = digits.find('.');
    if (point == digits.npos) {
        point = digits.size();
        digits += '.';
    }
    const std::size_t keep = point + 1 + static_cast<std::size_t>(places);
    const bool up = keep < digits.size() && digits[keep] >= '5';
    digits.resize(keep, '0');
    if (up)
        incrementDecimal(digits);
    if (places == 0)
        digits.pop_back();
}

bool isZeroText(std::string_view digits) { return digits.find_first_of("123456789") == digits.npos; }

constexpr int kMostPlaces = 340;

}  // namespace

// A value of few decimals, as most coordinates are, in fixed notation: null for any other. A quotient is rounded to the
// nearest, and no two decimals of up to 15 digits are read as the same value, so what divides back is the shortest form.
static char* printFewDecimals(char* to, double value)
{
    constexpr double kScale = 1e6;
    const double size = std::fabs(value);
    if (!(size >= 1e-3 && size < 1e9))
        return nullptr;
    const auto scaled = static_cast<std::int64_t>(size * kScale + 0.5);
    auto decimals = static_cast<std::int32_t>(scaled % 1000000);
    if (decimals == 0 || static_cast<double>(scaled) / kScale != size)
        return nullptr;
    if (value < 0)
        *to++ = '-';
    to = std::to_chars(to, to + 16, scaled / 1000000).ptr;
    *to++ = '.';
    int digits = 6;
    for (; digits > 1 && decimals % 10 == 0; --digits)
        decimals /= 10;
    for (int i = digits; i-- > 0; decimals /= 10)
        to[i] = static_cast<char>('0' + decimals % 10);
    return to + digits;
}

char* printReal(char* to, double value)
{
    if (char* end = printFewDecimals(to, value))
        return end;
    char* end = std::to_chars(to, to + kLongestReal - 2, value).ptr;
    const bool looksInteger = std::all_of(to, end, [](char c) { return isDigit(c) || c == '-'; });
    return looksInteger ? std::copy_n(".0", 2, end) : end;
}

void appendReal(std::string& out, double value)
{
    char buffer[kLongestReal];
    out.append(buffer, printReal(buffer, value));
}

std::string realText(double value)
{
    std::string text;
    appendReal(text, value);
    return text;
}

void appendInteger(std::string& out, std::int64_t value)
{
    char buffer[24];
    out.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

std::optional<double> parseReal(std::string_view text, DecimalSign sign)
{
    text = withoutPlus(trimBlanks(text));
    if (text.empty())
        return std::nullopt;
    if (sign == DecimalSign::Point || text.find(',') == text.npos)
        return pointReal(text);
    std::string pointed(text);
    pointed[pointed.find(',')] = '.';
    return pointReal(pointed);
}

std::optional<std::int64_t> parseInteger(std::string_view text)
{
    text = withoutPlus(trimBlanks(text));
    std::int64_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stopped == end ? std::optional(value) : std::nullopt;
}

std::optional<std::int64_t> parseIntegerLoosely(std::string_view text)
{
    if (const auto value = parseInteger(text))
        return value;
    const auto real = parseReal(text);
    constexpr double kLimit = 9007199254740992.0;
    if (!real || !(std::abs(*real) <= kLimit) || *real != std::floor(*real))
        return std::nullopt;
    return static_cast<std::int64_t>(*real);
}

std::optional<std::uint64_t> parseHandle(std::string_view text)
{
    text = trimBlanks(text);
    std::uint64_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, value, 16);
    return error == std::errc() && stopped == end ? std::optional(value) : std::nullopt;
}

char* printHandle(char* to, std::uint64_t handle)
{
    const int digits = std::max(1, (static_cast<int>(std::bit_width(handle)) + 3) / 4);
    for (int i = digits; i-- > 0; handle >>= 4)
        to[i] = "0123456789ABCDEF"[handle & 15];
    return to + digits;
}

void appendHandle(std::string& out, std::uint64_t handle)
{
    char buffer[kLongestHandle];
    out.append(buffer, printHandle(buffer, handle));
}

std::string handleText(std::uint64_t handle)
{
    std::string text;
    appendHandle(text, handle);
    return text;
}

std::string fixedText(double value, int places)
{
    if (!std::isfinite(value))
        return realText(value);
    std::string digits = shortest(std::abs(value), std::chars_format::fixed);
    roundDecimal(digits, std::clamp(places, 0, kMostPlaces));
    return value < 0 && !isZeroText(digits) ? "-" + digits : digits;
}

std::string scientificText(double value, int places)
{
    if (!std::isfinite(value))
        return realText(value);
    std::string text = shortest(std::abs(value), std::chars_format::scientific);
    const std::size_t e = text.find('e');
    int exponent = static_cast<int>(leadingInteger(std::string_view(text).substr(e + 1)));
    std::string digits = text.substr(0, e);
    roundDecimal(digits, std::clamp(places, 0, kMostPlaces));
    if (digits.size() > 1 && digits[0] == '1' && digits[1] == '0') {  // 9.99 went up to 10.0
        digits = fixedText(1, places);
        ++exponent;
    }
    const std::string size = std::to_string(std::abs(exponent));
    return (value < 0 ? "-" : "") + digits + (exponent < 0 ? "E-" : "E+") + (size.size() < 2 ? "0" : "") + size;
}

double leadingReal(std::string_view text, std::size_t* used)
{
    std::string_view rest = text;
    while (!rest.empty() && isBlank(rest.front()))
        rest.remove_prefix(1);
    rest = withoutPlus(rest);
    const std::size_t first = rest.find_first_not_of('-');
    const bool begins = first < 2 && (isDigit(rest[first]) || rest[first] == '.');  // no "inf", no "nan"
    double value = 0;
    const auto result = fast_float::from_chars(rest.data(), rest.data() + rest.size(), value);
    const bool any = begins && result.ec != std::errc::invalid_argument;
    if (used)
        *used = any ? static_cast<std::size_t>(result.ptr - text.data()) : 0;
    return any ? value : 0;
}

std::int64_t leadingInteger(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    text = withoutPlus(text);
    std::int64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range)
        return text.front() == '-' ? std::numeric_limits<std::int64_t>::min()
                                   : std::numeric_limits<std::int64_t>::max();
    return result.ec == std::errc() ? value : 0;
}
