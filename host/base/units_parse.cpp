// Reading of distances and angles.
#include "host/base/units.h"

#include "host/base/numbers.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double kDegree = std::numbers::pi / 180;

// Walks a text from the front; each take leaves it as it was when it finds nothing.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_rest(text) {}

    bool atEnd() const { return m_rest.empty(); }
    std::string_view rest() const { return m_rest; }

    bool take(std::string_view mark)
    {
        const bool found = m_rest.starts_with(mark);
        if (found)
            m_rest.remove_prefix(mark.size());
        return found;
    }
    bool takeLetter(char upper) { return take({&upper, 1}) || take(std::string{static_cast<char>(upper + 32)}); }
    void skipBlanks()
    {
        while (take(" "))
            ;
    }
    // A number without a sign; an exponent only where asked, since "1e" may begin a bearing's letter.
    std::optional<double> takeNumber(bool exponent)
    {
        std::size_t end = 0;
        bool digits = takeDigits(end);
        if (end < m_rest.size() && m_rest[end] == '.') {
            ++end;
            digits = takeDigits(end) || digits;
        }
        if (!digits)
            return std::nullopt;
        if (exponent)
            takeExponent(end);
        const auto value = parseReal(m_rest.substr(0, end));
        m_rest.remove_prefix(end);
        return value;
    }

private:
    std::string_view m_rest;

    bool takeDigits(std::size_t& at) const
    {
        const std::size_t begin = at;
        while (at < m_rest.size() && m_rest[at] >= '0' && m_rest[at] <= '9')
            ++at;
        return at > begin;
    }
    void takeExponent(std::size_t& end) const
    {
        std::size_t at = end;
        if (at >= m_rest.size() || (m_rest[at] != 'e' && m_rest[at] != 'E'))
            return;
        ++at;
        if (at < m_rest.size() && (m_rest[at] == '+' || m_rest[at] == '-'))
            ++at;
        if (takeDigits(at))
            end = at;
    }
};

// +1, -1, as the sign at the front says.
double takeSign(Scanner& scanner)
{
    if (scanner.take("-"))
        return -1;
    scanner.take("+");
    return 1;
}

std::optional<double> takeDenominator(Scanner& scanner)
{
    const auto denominator = scanner.takeNumber(false);
    return denominator && *denominator != 0 ? denominator : std::nullopt;
}

// "6", "6.5", "1/2", "6-1/2", "6 1/2", with the first number already taken.
std::optional<double> takeMixedNumber(Scanner& scanner, double first)
{
    if (scanner.take("/")) {
        const auto denominator = takeDenominator(scanner);
        return denominator ? std::optional(first / *denominator) : std::nullopt;
    }
    const bool joined = scanner.take("-") || scanner.take(" ");
    if (!joined)
        return first;
    const auto numerator = scanner.takeNumber(false);
    if (!numerator || !scanner.take("/"))
        return std::nullopt;
    const auto denominator = takeDenominator(scanner);
    return denominator ? std::optional(first + *numerator / *denominator) : std::nullopt;
}

std::optional<double> takeInches(Scanner& scanner)
{
    const auto first = scanner.takeNumber(true);
    const auto inches = first ? takeMixedNumber(scanner, *first) : std::nullopt;
    if (inches)
        scanner.take("\"");
    return inches;
}

// What follows the feet mark; nothing at all is no inches.
std::optional<double> takeInchesBehindFeet(Scanner& scanner)
{
    if (scanner.atEnd())
        return 0;
    if (!scanner.take("-"))
        scanner.take(" ");
    return takeInches(scanner);
}

std::optional<double> takeFeetAndInches(Scanner& scanner)
{
    Scanner ahead = scanner;
    const auto feet = ahead.takeNumber(true);
    if (!feet || !ahead.take("'"))
        return takeInches(scanner);
    scanner = ahead;
    const auto inches = takeInchesBehindFeet(scanner);
    return inches ? std::optional(*feet * 12 + *inches) : std::nullopt;
}

std::optional<double> takePlainDistance(Scanner& scanner)
{
    const auto first = scanner.takeNumber(true);
    return first ? takeMixedNumber(scanner, *first) : std::nullopt;
}

bool hasFeet(LinearNotation notation)
{
    return notation == LinearNotation::Engineering || notation == LinearNotation::Architectural;
}

bool takeDegreeMark(Scanner& scanner) { return scanner.take("d") || scanner.take("D") || scanner.take("\xC2\xB0"); }

// "12d30'15.5"" with any of its parts at the end left out, the first number already taken; degrees.
std::optional<double> takeMinutesAndSeconds(Scanner& scanner, double degrees)
{
    double unit = 60;
    for (const char* mark : {"'", "\""}) {
        const auto part = scanner.takeNumber(false);
        if (!part)
            break;
        degrees += *part / unit;
        unit *= 60;
        if (!scanner.take(mark) && !scanner.atEnd())
            return std::nullopt;
    }
    return degrees;
}

double bareAngle(double number, AngularNotation notation)
{
    switch (notation) {
    case AngularNotation::Grads:
        return number * 0.9 * kDegree;
    case AngularNotation::Radians:
        return number;
    default:
        return number * kDegree;
    }
}

std::optional<double> takeMeasuredAngle(Scanner& scanner, AngularNotation notation)
{
    const auto number = scanner.takeNumber(true);
    if (!number)
        return std::nullopt;
    if (scanner.takeLetter('G'))
        return *number * 0.9 * kDegree;
    if (scanner.takeLetter('R'))
        return *number;
    if (takeDegreeMark(scanner)) {
        const auto degrees = takeMinutesAndSeconds(scanner, *number);
        return degrees ? std::optional(*degrees * kDegree) : std::nullopt;
    }
    if (scanner.take("'"))
        return *number / 60 * kDegree;
    if (scanner.take("\""))
        return *number / 3600 * kDegree;
    return bareAngle(*number, notation);
}

// The part of a bearing between its letters; none at all is zero.
std::optional<double> takeBearingDegrees(Scanner& scanner)
{
    const auto number = scanner.takeNumber(false);
    if (!number)
        return std::nullopt;
    return takeDegreeMark(scanner) ? takeMinutesAndSeconds(scanner, *number) : number;
}

// "N45d30'E", "S", "W"; the letters of east and west alone are main directions too.
std::optional<double> takeBearing(Scanner& scanner)
{
    if (scanner.takeLetter('E'))
        return 0;
    if (scanner.takeLetter('W'))
        return 180 * kDegree;
    const bool north = scanner.takeLetter('N');
    if (!north && !scanner.takeLetter('S'))
        return std::nullopt;
    const double meridian = north ? 90 : 270;
    scanner.skipBlanks();
    if (scanner.atEnd())
        return meridian * kDegree;
    const auto degrees = takeBearingDegrees(scanner);
    scanner.skipBlanks();
    const bool east = scanner.takeLetter('E');
    if (!degrees || *degrees > 90 || (!east && !scanner.takeLetter('W')))
        return std::nullopt;
    return (north == east ? meridian - *degrees : meridian + *degrees) * kDegree;
}

}  // namespace

std::optional<double> parseDistance(std::string_view text, LinearNotation notation)
{
    Scanner scanner(trimBlanks(text));
    const double sign = takeSign(scanner);
    const auto size = hasFeet(notation) ? takeFeetAndInches(scanner) : takePlainDistance(scanner);
    return size && scanner.atEnd() && std::isfinite(*size) ? std::optional(sign * *size) : std::nullopt;
}

std::optional<double> parseAngle(std::string_view text, AngularNotation notation)
{
    const std::string_view trimmed = trimBlanks(text);
    Scanner bearing(trimmed);
    if (const auto angle = takeBearing(bearing); angle && bearing.atEnd())
        return angle;
    Scanner scanner(trimmed);
    const double sign = takeSign(scanner);
    const auto angle = takeMeasuredAngle(scanner, notation);
    return angle && scanner.atEnd() && std::isfinite(*angle) ? std::optional(sign * *angle) : std::nullopt;
}
