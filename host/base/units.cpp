// Writing of distances and angles.
#include "host/base/units.h"

#include "host/base/numbers.h"

#include <cmath>
#include <numbers>

namespace {

constexpr int kDropLeadingZero = 4;
constexpr int kDropTrailingZeros = 8;
constexpr int kMostFractionPrecision = 8;   // 1/256
constexpr double kLargestCounted = 9.0e15;  // beyond it fractions of a double mean nothing

void dropTrailingZeros(std::string& number)
{
    const std::size_t e = std::min(number.find('E'), number.size());
    const std::size_t point = number.find('.');
    if (point == number.npos)
        return;
    std::size_t end = e;
    while (number[end - 1] == '0')
        --end;
    if (end - 1 == point)
        --end;
    number.erase(end, e - end);
}

std::string withZeroRules(std::string number, int zeros)
{
    if (zeros & kDropTrailingZeros)
        dropTrailingZeros(number);
    const std::size_t first = number.starts_with('-') ? 1 : 0;
    if (zeros & kDropLeadingZero && number.size() > first + 1 && number[first] == '0' && number[first + 1] == '.')
        number.erase(first, 1);
    return number;
}

std::string decimalText(double value, int places, int zeros) { return withZeroRules(fixedText(value, places), zeros); }

// What to do with feet and inches that are zero.
struct ZeroRule {
    bool feet;
    bool inches;
};

ZeroRule zeroRule(int zeros)
{
    constexpr ZeroRule kRules[] = {{false, false}, {true, true}, {true, false}, {false, true}};
    return kRules[zeros & 3];
}

std::string joinFeetAndInches(const std::string& feet, bool feetAreZero, const std::string& inches, bool inchesAreZero,
                              const LinearFormat& format)
{
    const ZeroRule rule = zeroRule(format.zeros);
    const bool showFeet = !feetAreZero || rule.feet;
    const bool showInches = !inchesAreZero || rule.inches || !showFeet;
    std::string text;
    if (showFeet)
        text += feet + "'";
    if (showFeet && showInches && !format.asTyped)
        text += "-";
    if (showInches)
        text += inches + "\"";
    return text;
}

std::string engineeringText(double value, const LinearFormat& format)
{
    const double size = std::abs(value);
    double feet = std::floor(size / 12);
    double inches = size - feet * 12;
    if (leadingReal(fixedText(inches, format.precision)) >= 12) {  // 11.99 rounds up to the next foot
        feet += 1;
        inches = 0;
    }
    const std::string inchText = decimalText(inches, format.precision, format.zeros);
    return joinFeetAndInches(fixedText(feet, 0), feet == 0, inchText, leadingReal(inchText) == 0, format);
}

// A count of whole units and a fraction in lowest terms.
struct Fraction {
    double whole;
    long numerator;
    long denominator;
};

Fraction toFraction(double size, int precision)
{
    const long denominator = 1L << std::clamp(precision, 0, kMostFractionPrecision);
    const double parts = std::floor(size * static_cast<double>(denominator) + 0.5);
    const double whole = std::floor(parts / static_cast<double>(denominator));
    Fraction fraction{whole, static_cast<long>(parts - whole * static_cast<double>(denominator)), denominator};
    while (fraction.numerator && fraction.numerator % 2 == 0) {
        fraction.numerator /= 2;
        fraction.denominator /= 2;
    }
    return fraction;
}

std::string fractionText(double whole, const Fraction& fraction, bool wholeZero, bool asTyped)
{
    std::string text;
    if (whole != 0 || fraction.numerator == 0 || wholeZero)
        text = fixedText(whole, 0);
    if (fraction.numerator == 0)
        return text;
    if (!text.empty())
        text += asTyped ? '-' : ' ';
    return text + std::to_string(fraction.numerator) + "/" + std::to_string(fraction.denominator);
}

std::string architecturalText(double value, const LinearFormat& format)
{
    const Fraction fraction = toFraction(std::abs(value), format.precision);
    const double feet = std::floor(fraction.whole / 12);
    const double inches = fraction.whole - feet * 12;
    const bool feetShown = feet != 0 || zeroRule(format.zeros).feet;
    const std::string inchText = fractionText(inches, fraction, feetShown, format.asTyped);
    return joinFeetAndInches(fixedText(feet, 0), feet == 0, inchText, inches == 0 && fraction.numerator == 0, format);
}

std::string unsignedText(double value, const LinearFormat& format)
{
    switch (format.notation) {
    case LinearNotation::Engineering:
        return engineeringText(value, format);
    case LinearNotation::Architectural:
        return architecturalText(value, format);
    default: {
        const Fraction fraction = toFraction(std::abs(value), format.precision);
        return fractionText(fraction.whole, fraction, false, format.asTyped);
    }
    }
}

bool isZero(std::string_view text) { return text.find_first_of("123456789") == text.npos; }

}  // namespace

std::string distanceText(double value, const LinearFormat& format)
{
    if (format.notation == LinearNotation::Scientific)
        return withZeroRules(scientificText(value, format.precision), format.zeros & kDropTrailingZeros);
    if (format.notation == LinearNotation::Decimal || !(std::abs(value) < kLargestCounted / 256))
        return decimalText(value, format.precision, format.zeros);
    const std::string text = unsignedText(value, format);
    return value < 0 && !isZero(text) ? "-" + text : text;
}

namespace {

constexpr double kDegree = std::numbers::pi / 180;
constexpr double kFullTurn = 2 * std::numbers::pi;

double withinOneTurn(double radians)
{
    const double rest = std::fmod(radians, kFullTurn);
    return rest < 0 ? rest + kFullTurn : rest;
}

// A number of some unit, where the full turn is written as zero.
std::string turnText(double value, double fullTurn, const AngularFormat& format)
{
    std::string text = fixedText(value, format.precision);
    if (leadingReal(text) >= leadingReal(fixedText(fullTurn, format.precision)))
        text = fixedText(0, format.precision);
    return withZeroRules(text, format.zeros);
}

struct Sexagesimal {
    double degrees;
    double minutes;
    std::string seconds;  // empty when not asked for
    bool showMinutes;
};

// Rounds to the smallest part shown and carries upwards.
Sexagesimal splitDegrees(double degrees, int precision)
{
    const bool showSeconds = precision >= 3;
    const bool showMinutes = precision >= 1;
    const int places = std::max(0, precision - 4);
    const double unit = showSeconds ? 3600 : showMinutes ? 60 : 1;
    const double parts = leadingReal(fixedText(degrees * unit, places));
    Sexagesimal split{std::floor(parts / unit), 0, "", showMinutes};
    const double rest = parts - split.degrees * unit;
    split.minutes = showSeconds ? std::floor(rest / 60) : showMinutes ? rest : 0;
    if (showSeconds)
        split.seconds = fixedText(rest - split.minutes * 60, places);
    return split;
}

std::string sexagesimalText(const Sexagesimal& split, int zeros)
{
    std::string text = fixedText(split.degrees, 0) + "d";
    if (split.showMinutes)
        text += fixedText(split.minutes, 0) + "'";
    if (!split.seconds.empty())
        text += withZeroRules(split.seconds, zeros) + "\"";
    return text;
}

std::string degreesMinutesText(double degrees, const AngularFormat& format)
{
    Sexagesimal split = splitDegrees(degrees, format.precision);
    if (split.degrees >= 360)
        split = splitDegrees(0, format.precision);
    return sexagesimalText(split, format.zeros);
}

// A bearing: how far from north or south towards east or west. The four main directions are one letter.
std::string bearingText(double degrees, const AngularFormat& format)
{
    const bool north = degrees <= 180;
    const bool east = degrees <= 90 || degrees >= 270;
    const double fromMeridian = std::abs(90 - (north ? degrees : degrees - 180));
    const Sexagesimal split = splitDegrees(fromMeridian, format.precision);
    const bool whole = split.minutes == 0 && isZero(split.seconds);
    if (whole && split.degrees == 0)
        return north ? "N" : "S";
    if (whole && split.degrees == 90)
        return east ? "E" : "W";
    const char* gap = format.asTyped ? "" : " ";
    return std::string(north ? "N" : "S") + gap + sexagesimalText(split, format.zeros) + gap + (east ? "E" : "W");
}

}  // namespace

std::string angleText(double radians, const AngularFormat& format)
{
    if (!std::isfinite(radians))
        return realText(radians);
    const double angle = withinOneTurn(radians);
    const double degrees = angle / kDegree;
    switch (format.notation) {
    case AngularNotation::DegreesMinutesSeconds:
        return degreesMinutesText(degrees, format);
    case AngularNotation::Grads:
        return turnText(degrees / 0.9, 400, format) + "g";
    case AngularNotation::Radians:
        return turnText(angle, kFullTurn, format) + "r";
    case AngularNotation::Surveyor:
        return bearingText(degrees, format);
    case AngularNotation::Degrees:
        break;
    }
    return turnText(degrees, 360, format);
}
