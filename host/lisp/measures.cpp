#include "host/lisp/measures.h"

#include "host/base/numbers.h"
#include "host/base/unicode.h"

#include <cmath>
#include <string>
#include <unordered_map>

namespace vk::lisp {

namespace {

using Powers = std::array<int, 5>;

constexpr Powers kNone{}, kLength{1}, kArea{2}, kVolume{3}, kMass{0, 1}, kTime{0, 0, 1}, kTemperature{0, 0, 0, 1},
    kAngle{0, 0, 0, 0, 1};
constexpr Powers kForce{1, 1, -2}, kPressure{-1, 1, -2}, kEnergy{2, 1, -2}, kPower{2, 1, -3}, kSpeed{1, 0, -1},
    kFrequency{0, 0, -1};

constexpr double kInch = 0.0254, kFoot = 0.3048, kMile = 1609.344, kPound = 0.45359237, kGravity = 9.80665;

struct Row {
    const char* names;  // parted by blanks; a "+" behind a name takes metric prefixes before it
    Powers powers;
    double size;
    double zero = 0;
};

constexpr Row kUnits[] = {
    {"meter+ metre+ m+", kLength, 1},
    {"inch inches in \"", kLength, kInch},
    {"foot feet ft '", kLength, kFoot},
    {"yard yd", kLength, 3 * kFoot},
    {"mile statute_mile mi", kLength, kMile},
    {"nautical_mile nautical_miles nm", kLength, 1852},
    {"mil thou", kLength, kInch / 1000},
    {"micron micrometer um", kLength, 1e-6},
    {"angstrom", kLength, 1e-10},
    {"point pt", kLength, kInch / 72},
    {"pica", kLength, kInch / 6},
    {"hand", kLength, 4 * kInch},
    {"fathom", kLength, 6 * kFoot},
    {"rod pole perch", kLength, 16.5 * kFoot},
    {"chain", kLength, 66 * kFoot},
    {"link", kLength, 0.66 * kFoot},
    {"furlong", kLength, 660 * kFoot},
    {"league", kLength, 3 * kMile},
    {"survey_foot survey_feet", kLength, 1200.0 / 3937},
    {"astronomical_unit au", kLength, 149597870700.0},
    {"light_year light_years lightyear", kLength, 9460730472580800.0},
    {"parsec", kLength, 3.0856775814913673e16},
    {"are", kArea, 100},
    {"hectare ha", kArea, 1e4},
    {"acre", kArea, 43560 * kFoot* kFoot},
    {"liter+ litre+ l", kVolume, 1e-3},
    {"gallon gal", kVolume, 231 * kInch* kInch* kInch},
    {"quart qt", kVolume, 57.75 * kInch* kInch* kInch},
    {"pint", kVolume, 28.875 * kInch* kInch* kInch},
    {"cup", kVolume, 14.4375 * kInch* kInch* kInch},
    {"fluid_ounce fl_oz", kVolume, 1.8046875 * kInch* kInch* kInch},
    {"barrel bbl", kVolume, 42 * 231 * kInch* kInch* kInch},
    {"bushel", kVolume, 2150.42 * kInch* kInch* kInch},
    {"board_foot board_feet fbm", kVolume, 144 * kInch* kInch* kInch},
    {"gram+ g kg", kMass, 1e-3},
    {"pound lb lbm", kMass, kPound},
    {"ounce oz", kMass, kPound / 16},
    {"grain", kMass, kPound / 7000},
    {"stone", kMass, 14 * kPound},
    {"ton short_ton", kMass, 2000 * kPound},
    {"long_ton", kMass, 2240 * kPound},
    {"tonne metric_ton", kMass, 1000},
    {"slug", kMass, kPound* kGravity / kFoot},
    {"carat", kMass, 2e-4},
    {"second+ sec s", kTime, 1},
    {"minute min", kTime, 60},
    {"hour hr h", kTime, 3600},
    {"day", kTime, 86400},
    {"week", kTime, 604800},
    {"fortnight", kTime, 1209600},
    {"year yr", kTime, 31557600},
    {"kelvin k", kTemperature, 1},
    {"celsius centigrade c", kTemperature, 1, 273.15},
    {"fahrenheit f", kTemperature, 5.0 / 9, 459.67 * 5 / 9},
    {"rankine", kTemperature, 5.0 / 9},
    {"radian", kAngle, 1},
    {"degree deg", kAngle, M_PI / 180},
    {"grad gradian gon", kAngle, M_PI / 200},
    {"circle revolution turn", kAngle, 2 * M_PI},
    {"quadrant", kAngle, M_PI / 2},
    {"newton+ n", kForce, 1},
    {"dyne", kForce, 1e-5},
    {"pound_force lbf", kForce, kPound* kGravity},
    {"kilogram_force kgf kilopond", kForce, kGravity},
    {"kip", kForce, 1000 * kPound* kGravity},
    {"pascal+ pa", kPressure, 1},
    {"bar+", kPressure, 1e5},
    {"atmosphere atm", kPressure, 101325},
    {"psi", kPressure, kPound* kGravity / (kInch * kInch)},
    {"torr mmhg", kPressure, 101325.0 / 760},
    {"joule+ j", kEnergy, 1},
    {"erg", kEnergy, 1e-7},
    {"calorie+ cal", kEnergy, 4.184},
    {"btu", kEnergy, 1055.05585262},
    {"kilowatt_hour kwh", kEnergy, 3.6e6},
    {"watt+ w", kPower, 1},
    {"horsepower hp", kPower, 550 * kFoot* kPound* kGravity},
    {"knot", kSpeed, 1852.0 / 3600},
    {"mph", kSpeed, kMile / 3600},
    {"hertz+ hz", kFrequency, 1},
    {"dozen", kNone, 12},
    {"percent", kNone, 0.01},
};

constexpr struct {
    const char* name;
    const char* letter;
    double factor;
} kPrefixes[] = {{"pico", "p", 1e-12}, {"nano", "n", 1e-9}, {"micro", "u", 1e-6}, {"milli", "m", 1e-3},
                 {"centi", "c", 1e-2}, {"deci", "d", 1e-1}, {"deka", "da", 1e1},  {"hecto", "h", 1e2},
                 {"kilo", "k", 1e3},   {"mega", "", 1e6},   {"giga", "", 1e9},    {"tera", "", 1e12}};

using Names = std::unordered_map<std::string, Measure>;

void addPrefixed(Names& names, const std::string& name, const Measure& unit)
{
    for (const auto& prefix : kPrefixes) {
        const std::string_view before = name.size() > 2 ? prefix.name : prefix.letter;
        Measure scaled = unit;
        scaled.size *= prefix.factor;
        if (!before.empty())
            names.emplace(std::string(before) + name, scaled);
    }
}

Names readNames()
{
    Names names;
    for (const Row& row : kUnits) {
        const std::string_view all = row.names;
        for (std::size_t at = 0; at < all.size();) {
            const std::size_t end = std::min(all.find(' ', at), all.size());
            std::string name(all.substr(at, end - at));
            const bool takesPrefixes = name.back() == '+';
            if (takesPrefixes)
                name.pop_back();
            const Measure unit{row.powers, name == "kg" ? 1.0 : row.size, row.zero};
            names.emplace(name, unit);
            if (takesPrefixes)
                addPrefixed(names, name, unit);
            at = end + 1;
        }
    }
    return names;
}

std::optional<Measure> simple(std::string name)
{
    static const Names names = readNames();
    auto found = names.find(name);
    if (found == names.end() && name.size() > 2 && name.back() == 's') {
        name.pop_back();
        found = names.find(name);
    }
    return found == names.end() ? std::nullopt : std::optional(found->second);
}

Measure raised(Measure unit, int power)
{
    for (int& p : unit.powers)
        p *= power;
    unit.size = std::pow(unit.size, power);
    if (power != 1)
        unit.zero = 0;
    return unit;
}

// One factor: a name, "sq" or "cubic" before it, "^2" behind it.
std::optional<Measure> factor(std::string text)
{
    int power = 1;
    if (const std::size_t caret = text.find('^'); caret != std::string::npos) {
        const auto typed = parseInteger(std::string_view(text).substr(caret + 1));
        if (!typed || *typed < -9 || *typed > 9)
            return std::nullopt;
        power = int(*typed);
        text.resize(caret);
    }
    static constexpr std::pair<std::string_view, int> kWords[] = {{"square", 2}, {"sq", 2}, {"cubic", 3}, {"cu", 3}};
    for (const auto& [word, wordPower] : kWords)
        if (text.size() > word.size() + 1 && text.starts_with(word) &&
            (text[word.size()] == ' ' || text[word.size()] == '_' || text[word.size()] == '.')) {
            power *= wordPower;
            text = trimBlanks(std::string_view(text).substr(word.size() + 1));
            break;
        }
    text = trimBlanks(text);
    for (char& c : text)
        c = c == ' ' ? '_' : c;
    const auto unit = simple(text);
    return unit ? std::optional(raised(*unit, power)) : std::nullopt;
}

Measure product(const Measure& a, const Measure& b)
{
    Measure result{a.powers, a.size * b.size};
    for (std::size_t i = 0; i < result.powers.size(); ++i)
        result.powers[i] += b.powers[i];
    return result;
}

}

std::optional<Measure> measureNamed(std::string_view name)
{
    const std::string folded = toLower(trimBlanks(name));
    std::optional<Measure> whole;
    int sign = 1;
    for (std::size_t at = 0; at <= folded.size();) {
        const std::size_t end = std::min(folded.find_first_of("*/", at), folded.size());
        const auto part = factor(std::string(trimBlanks(std::string_view(folded).substr(at, end - at))));
        if (!part)
            return std::nullopt;
        whole = whole ? product(*whole, raised(*part, sign)) : *part;
        sign = end < folded.size() && folded[end] == '/' ? -1 : 1;
        at = end + 1;
    }
    return whole;
}

std::optional<double> converted(double value, const Measure& from, const Measure& to)
{
    if (from.powers != to.powers)
        return std::nullopt;
    return (value * from.size + from.zero - to.zero) / to.size;
}

}  // namespace vk::lisp
