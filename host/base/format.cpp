#include "sdk/vkformat.h"

#include "host/base/unicode.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <string>

namespace {

constexpr int kMostWidth = 4096;  // also of precisions; what a text asks beyond is cut, not obeyed

struct Conversion {
    bool left = false, plus = false, space = false, alternate = false, zero = false;
    int width = 0;
    int precision = -1;
    wchar_t letter = 0;
};

bool isDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

int takeNumber(std::wstring_view& rest)
{
    int value = 0;
    for (; !rest.empty() && isDigit(rest.front()); rest.remove_prefix(1))
        value = std::min(kMostWidth, value * 10 + (rest.front() - L'0'));
    return value;
}

bool takeIf(std::wstring_view& rest, wchar_t c)
{
    const bool found = !rest.empty() && rest.front() == c;
    if (found)
        rest.remove_prefix(1);
    return found;
}

// Walks the arguments in order, or by positions where the format names them.
class ArgumentList {
public:
    ArgumentList(const VkFormatArg* arguments, std::size_t count) : m_arguments(arguments), m_count(count) {}

    const VkFormatArg* take() { return m_next < m_count ? m_arguments + m_next++ : nullptr; }
    void seek(int position) { m_next = position > 0 ? static_cast<std::size_t>(position - 1) : m_count; }
    std::size_t place() const { return m_next; }
    void restore(std::size_t place) { m_next = place; }

private:
    const VkFormatArg* m_arguments;
    std::size_t m_count;
    std::size_t m_next = 0;
};

std::int64_t integerOf(const VkFormatArg& argument)
{
    constexpr double kLimit = 9.2233720368547748e18;
    switch (argument.kind) {
    case VkFormatArg::Kind::Real:
        return std::isnan(argument.real) ? 0 : static_cast<std::int64_t>(std::clamp(argument.real, -kLimit, kLimit));
    default:
        return argument.integer;
    }
}

std::uint64_t unsignedOf(const VkFormatArg& argument)
{
    const auto value = static_cast<std::uint64_t>(integerOf(argument));
    return argument.size >= 8 ? value : value & ((std::uint64_t{1} << argument.size * 8) - 1);
}

double realOf(const VkFormatArg& argument)
{
    switch (argument.kind) {
    case VkFormatArg::Kind::Real:
        return argument.real;
    case VkFormatArg::Kind::Unsigned:
        return static_cast<double>(argument.number);
    default:
        return static_cast<double>(integerOf(argument));
    }
}

// Digits of a number with its sign apart, so that zeros can be padded in between.
struct NumberText {
    std::string sign;
    std::string digits;
};

template <class Number, class... Style>
std::string digitsOf(Number value, Style... style)
{
    std::string buffer(64, '\0');
    for (;;) {
        const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, style...);
        if (result.ec == std::errc())
            return {buffer.data(), result.ptr};
        buffer.resize(buffer.size() * 4);
    }
}

std::string signOf(bool negative, const Conversion& c) { return negative ? "-" : c.plus ? "+" : c.space ? " " : ""; }

std::string widenDigits(std::string digits, int precision)
{
    if (precision == 0 && digits == "0")
        return "";
    const auto wanted = static_cast<std::size_t>(std::max(precision, 0));
    return digits.size() < wanted ? std::string(wanted - digits.size(), '0') + digits : digits;
}

NumberText signedText(const VkFormatArg& argument, const Conversion& c)
{
    if (argument.kind == VkFormatArg::Kind::Unsigned)
        return {signOf(false, c), widenDigits(digitsOf(argument.number), c.precision)};
    const std::int64_t value = integerOf(argument);
    const std::uint64_t size = value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    return {signOf(value < 0, c), widenDigits(digitsOf(size), c.precision)};
}

std::string upperAscii(std::string text) { return toUpper(std::string_view(text)); }

NumberText unsignedText(const VkFormatArg& argument, const Conversion& c)
{
    const std::uint64_t value = unsignedOf(argument);
    switch (c.letter) {
    case L'o':
        return {"", widenDigits((c.alternate ? "0" : "") + digitsOf(value, 8), c.precision)};
    case L'x':
        return {c.alternate && value ? "0x" : "", widenDigits(digitsOf(value, 16), c.precision)};
    case L'X':
        return {c.alternate && value ? "0X" : "", upperAscii(widenDigits(digitsOf(value, 16), c.precision))};
    default:
        return {"", widenDigits(digitsOf(value), c.precision)};
    }
}

NumberText realText(const VkFormatArg& argument, const Conversion& c)
{
    const double value = realOf(argument);
    const double size = std::abs(value);
    const int precision = c.precision < 0 ? 6 : c.precision;
    const bool upper = c.letter < L'a';
    std::string digits;
    switch (upper ? c.letter + 32 : c.letter) {
    case L'e':
        digits = digitsOf(size, std::chars_format::scientific, precision);
        break;
    case L'g':
        digits = digitsOf(size, std::chars_format::general, precision);
        break;
    case L'a':
        digits = "0x" + digitsOf(size, std::chars_format::hex);
        break;
    default:
        digits = digitsOf(size, std::chars_format::fixed, precision);
    }
    return {signOf(std::signbit(value), c), upper ? upperAscii(digits) : digits};
}

void appendPadded(std::wstring& out, std::wstring_view text, const Conversion& c)
{
    const auto width = static_cast<std::size_t>(c.width);
    const std::size_t missing = width > text.size() ? width - text.size() : 0;
    if (!c.left)
        out.append(missing, L' ');
    out += text;
    if (c.left)
        out.append(missing, L' ');
}

void appendNumber(std::wstring& out, NumberText number, const Conversion& c, bool zeros)
{
    const std::size_t length = number.sign.size() + number.digits.size();
    const auto width = static_cast<std::size_t>(c.width);
    if (zeros && !c.left && width > length)
        number.digits.insert(0, width - length, '0');
    appendPadded(out, utf8ToWide(number.sign + number.digits), c);
}

std::wstring textOf(const VkFormatArg& argument)
{
    switch (argument.kind) {
    case VkFormatArg::Kind::Wide:
        return argument.wide ? argument.wide : L"(null)";
    case VkFormatArg::Kind::Narrow:
        return argument.narrow ? utf8ToWide(argument.narrow) : L"(null)";
    case VkFormatArg::Kind::Pointer:
        return argument.pointer ? L"(pointer)" : L"(null)";
    case VkFormatArg::Kind::Real:
        return utf8ToWide(digitsOf(argument.real));
    case VkFormatArg::Kind::Unsigned:
        return utf8ToWide(digitsOf(argument.number));
    case VkFormatArg::Kind::Integer:
        break;
    }
    return utf8ToWide(digitsOf(argument.integer));
}

void appendText(std::wstring& out, const VkFormatArg& argument, const Conversion& c)
{
    const std::wstring text = textOf(argument);
    const std::wstring_view view(text);
    appendPadded(out, c.precision < 0 ? view : view.substr(0, static_cast<std::size_t>(c.precision)), c);
}

void appendCharacter(std::wstring& out, const VkFormatArg& argument, const Conversion& c)
{
    const wchar_t character = static_cast<wchar_t>(integerOf(argument));
    appendPadded(out, std::wstring_view(&character, 1), c);
}

void appendPointer(std::wstring& out, const VkFormatArg& argument, const Conversion& c)
{
    appendPadded(out, utf8ToWide("0x" + digitsOf(argument.number, 16)), c);
}

bool isText(const VkFormatArg& argument)
{
    return argument.kind == VkFormatArg::Kind::Wide || argument.kind == VkFormatArg::Kind::Narrow;
}

// False when the letter is no conversion.
bool appendConversion(std::wstring& out, const VkFormatArg& argument, const Conversion& c)
{
    const bool finite = argument.kind != VkFormatArg::Kind::Real || std::isfinite(argument.real);
    switch (c.letter) {
    case L's':
    case L'S':
        appendText(out, argument, c);
        return true;
    case L'd':
    case L'i':
    case L'u':
    case L'o':
    case L'x':
    case L'X':
        if (isText(argument))
            appendText(out, argument, c);
        else
            appendNumber(out,
                         c.letter == L'd' || c.letter == L'i' ? signedText(argument, c) : unsignedText(argument, c), c,
                         c.zero && c.precision < 0);
        return true;
    case L'f':
    case L'F':
    case L'e':
    case L'E':
    case L'g':
    case L'G':
    case L'a':
    case L'A':
        isText(argument) ? appendText(out, argument, c) : appendNumber(out, realText(argument, c), c, c.zero && finite);
        return true;
    case L'c':
    case L'C':
        isText(argument) ? appendText(out, argument, c) : appendCharacter(out, argument, c);
        return true;
    case L'p':
        appendPointer(out, argument, c);
        return true;
    default:
        return false;
    }
}

void takeFlags(std::wstring_view& rest, Conversion& c)
{
    for (;; rest.remove_prefix(1)) {
        switch (rest.empty() ? 0 : rest.front()) {
        case L'-':
            c.left = true;
            break;
        case L'+':
            c.plus = true;
            break;
        case L' ':
            c.space = true;
            break;
        case L'#':
            c.alternate = true;
            break;
        case L'0':
            c.zero = true;
            break;
        default:
            return;
        }
    }
}

int takeSize(std::wstring_view& rest, ArgumentList& arguments)
{
    if (!takeIf(rest, L'*'))
        return takeNumber(rest);
    const VkFormatArg* argument = arguments.take();
    return argument ? static_cast<int>(std::clamp<std::int64_t>(integerOf(*argument), -kMostWidth, kMostWidth)) : 0;
}

void takePosition(std::wstring_view& rest, ArgumentList& arguments)
{
    std::wstring_view ahead = rest;
    const int position = takeNumber(ahead);
    if (position > 0 && takeIf(ahead, L'$')) {
        arguments.seek(position);
        rest = ahead;
    }
}

void skipLength(std::wstring_view& rest)
{
    for (;; rest.remove_prefix(1)) {
        switch (rest.empty() ? 0 : rest.front()) {
        case L'h':
        case L'l':
        case L'L':
        case L'q':
        case L'j':
        case L'z':
        case L't':
            break;
        case L'I':
            if (rest.starts_with(L"I64") || rest.starts_with(L"I32"))
                rest.remove_prefix(2);
            break;
        default:
            return;
        }
    }
}

Conversion takeConversion(std::wstring_view& rest, ArgumentList& arguments)
{
    Conversion c;
    takePosition(rest, arguments);
    takeFlags(rest, c);
    c.width = takeSize(rest, arguments);
    if (c.width < 0) {
        c.left = true;
        c.width = -c.width;
    }
    if (takeIf(rest, L'.'))
        c.precision = std::max(-1, takeSize(rest, arguments));
    skipLength(rest);
    if (!rest.empty()) {
        c.letter = rest.front();
        rest.remove_prefix(1);
    }
    return c;
}

// One conversion, the percent sign already taken; printed as it stands when nothing fits it.
void formatConversion(std::wstring& out, std::wstring_view& rest, ArgumentList& arguments)
{
    if (takeIf(rest, L'%')) {
        out += L'%';
        return;
    }
    std::wstring_view ahead = rest;
    const std::size_t place = arguments.place();
    const Conversion c = takeConversion(ahead, arguments);
    const VkFormatArg* argument = arguments.take();
    if (argument && appendConversion(out, *argument, c)) {
        rest = ahead;
        return;
    }
    arguments.restore(place);
    out += L'%';
}

}  // namespace

std::wstring vkFormat(const wchar_t* format, const VkFormatArg* arguments, std::size_t count)
{
    std::wstring out;
    ArgumentList list(arguments, count);
    std::wstring_view rest = format ? std::wstring_view(format) : std::wstring_view();
    while (!rest.empty()) {
        const std::size_t plain = std::min(rest.find(L'%'), rest.size());
        out += rest.substr(0, plain);
        rest.remove_prefix(plain);
        if (takeIf(rest, L'%'))
            formatConversion(out, rest, list);
    }
    return out;
}
