// Values of system variables as text, and which of them are allowed.
#include "host/edit/sysvar_table.h"

#include "host/base/numbers.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

namespace vk::edit {

static std::optional<double> parseFinite(std::string_view text)
{
    const auto value = parseReal(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

template <typename Int>
static std::optional<SysVarValue> parseWhole(std::string_view text)
{
    const auto value = parseInteger(text);
    if (!value || *value != Int(*value))
        return std::nullopt;
    return SysVarValue(std::int32_t(*value));
}

// The coordinates between commas: `fewest` to three of them, what is missing is 0.
static std::optional<VcGePoint3d> parsePoint(std::string_view text, std::size_t fewest, std::size_t most)
{
    double xyz[3] = {};
    std::size_t count = 0;
    for (bool more = true; more; ++count) {
        const auto comma = text.find(',');
        const auto coordinate = parseFinite(text.substr(0, comma));
        if (!coordinate || count == most)
            return std::nullopt;
        xyz[count] = *coordinate;
        more = comma != std::string_view::npos;
        text.remove_prefix(more ? comma + 1 : text.size());
    }
    if (count < fewest)
        return std::nullopt;
    return VcGePoint3d(xyz[0], xyz[1], xyz[2]);
}

std::optional<SysVarValue> parseSysVar(const SysVarDef& def, std::string_view text)
{
    switch (def.type) {
    case SysVarType::Short:
        return parseWhole<std::int16_t>(text);
    case SysVarType::Long:
        return parseWhole<std::int32_t>(text);
    case SysVarType::Real:
        return parseFinite(text);
    case SysVarType::String:
        return std::string(text);
    case SysVarType::Point2d:
        if (const auto point = parsePoint(text, 2, 2))
            return VcGePoint2d(point->x, point->y);
        return std::nullopt;
    case SysVarType::Point3d:
        return parsePoint(text, 2, 3);
    }
    return std::nullopt;
}

SysVarValue initialValue(const SysVarDef& def) { return parseSysVar(def, def.initial).value(); }

namespace {

struct Printer {
    std::string operator()(std::int32_t whole) const { return std::to_string(whole); }
    std::string operator()(double real) const
    {
        char text[32];
        return {text, std::to_chars(text, text + sizeof text, real + 0.0).ptr};  // no minus before zero
    }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(const VcGePoint2d& p) const { return (*this)(p.x) + ',' + (*this)(p.y); }
    std::string operator()(const VcGePoint3d& p) const
    {
        return (*this)(p.x) + ',' + (*this)(p.y) + ',' + (*this)(p.z);
    }
};

std::size_t lengthInCharacters(std::string_view utf8)
{
    return std::size_t(std::ranges::count_if(utf8, [](char c) { return (c & 0xC0) != 0x80; }));
}

// The numbers that a range is asked about.
struct Numbers {
    std::vector<double> operator()(std::int32_t whole) const { return {double(whole)}; }
    std::vector<double> operator()(double real) const { return {real}; }
    std::vector<double> operator()(const std::string& text) const { return {double(lengthInCharacters(text))}; }
    std::vector<double> operator()(const VcGePoint2d& p) const { return {p.x, p.y}; }
    std::vector<double> operator()(const VcGePoint3d& p) const { return {p.x, p.y, p.z}; }
};

bool isAllowed(const SysVarRange& range, double number)
{
    switch (range.kind) {
    case SysVarRange::Any:
    case SysVarRange::NotZero:
        return true;
    case SysVarRange::Between:
        return number >= range.min && number <= range.max;
    case SysVarRange::Above:
        return number > range.min;
    case SysVarRange::OneOf:
        return std::ranges::find(range.values, number) != range.values.end();
    case SysVarRange::Bits:
        return number >= 0 && (std::int64_t(number) & ~std::int64_t(range.max)) == 0;
    }
    return false;
}

bool hasTypeOf(const SysVarDef& def, const SysVarValue& value)
{
    switch (def.type) {
    case SysVarType::Short:
        if (const auto* whole = std::get_if<std::int32_t>(&value))
            return *whole == std::int16_t(*whole);
        return false;
    case SysVarType::Long:
        return std::holds_alternative<std::int32_t>(value);
    case SysVarType::Real:
        return std::holds_alternative<double>(value);
    case SysVarType::String:
        return std::holds_alternative<std::string>(value);
    case SysVarType::Point2d:
        return std::holds_alternative<VcGePoint2d>(value);
    case SysVarType::Point3d:
        return std::holds_alternative<VcGePoint3d>(value);
    }
    return false;
}

const char* kindOfValue(SysVarType type)
{
    switch (type) {
    case SysVarType::Short:
    case SysVarType::Long:
        return "a whole number";
    case SysVarType::Real:
        return "a number";
    case SysVarType::String:
        return "a text";
    case SysVarType::Point2d:
    case SysVarType::Point3d:
        return "a point";
    }
    return "";
}

// Of what the bounds speak, where it is not the value itself.
const char* measuredPart(SysVarType type)
{
    if (type == SysVarType::String)
        return " of length";
    return type == SysVarType::Point2d || type == SysVarType::Point3d ? " with coordinates" : "";
}

std::string describeBounds(const SysVarRange& range)
{
    const Printer print;
    if (range.max >= SysVarRange::kNoLimit)
        return fmt::format(" of {} or more", print(range.min));
    if (range.min == range.max)
        return ' ' + print(range.min);
    return range.max == range.min + 1 ? fmt::format(" {} or {}", print(range.min), print(range.max))
                                      : fmt::format(" from {} to {}", print(range.min), print(range.max));
}

}  // namespace

std::string printSysVar(const SysVarValue& value) { return std::visit(Printer(), value); }

bool inRange(const SysVarDef& def, const SysVarValue& value)
{
    if (!hasTypeOf(def, value))
        return false;
    const auto numbers = std::visit(Numbers(), value);
    const bool allFinite = std::ranges::all_of(numbers, [](double n) { return std::isfinite(n); });
    const bool allZero = std::ranges::all_of(numbers, [](double n) { return n == 0; });
    if (!allFinite || (def.range.kind == SysVarRange::NotZero && allZero))
        return false;
    return std::ranges::all_of(numbers, [&](double n) { return isAllowed(def.range, n); });
}

std::string describeRange(const SysVarDef& def)
{
    const std::string what = std::string(kindOfValue(def.type)) + measuredPart(def.type);
    switch (def.range.kind) {
    case SysVarRange::Any:
        return kindOfValue(def.type);
    case SysVarRange::NotZero:
        return fmt::format("{} other than zero", kindOfValue(def.type));
    case SysVarRange::Between:
        return what + describeBounds(def.range);
    case SysVarRange::Above:
        return fmt::format("{} greater than {}", what, Printer()(def.range.min));
    case SysVarRange::OneOf:
        return fmt::format("one of {}", fmt::join(def.range.values, ", "));
    case SysVarRange::Bits:
        return fmt::format("a sum of bits from 0 to {}", def.range.max);
    }
    return what;
}

}  // namespace vk::edit
