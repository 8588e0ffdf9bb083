// Units of measure by name, as CVUNIT takes them.
#pragma once

#include "host/base/api.h"

#include <array>
#include <optional>
#include <string_view>

namespace vk::lisp {

// A unit: its powers of metre, kilogram, second, kelvin and radian, its size in these, and for a scale of temperature where
// its zero lies.
struct Measure {
    std::array<int, 5> powers{};
    double size = 1, zero = 0;
};

// "inch", "feet", "km", "sq ft", "cubic meters", "meter/second^2". Case does not count, a plural s may follow, and metric
// prefixes may stand before. Nothing for what is no unit.
VKHOST_API std::optional<Measure> measureNamed(std::string_view name);
// Nothing when the two measure different things.
VKHOST_API std::optional<double> converted(double value, const Measure& from, const Measure& to);

}  // namespace vk::lisp
