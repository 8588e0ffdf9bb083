// Comparisons with zero under a tolerance of the caller's.
#pragma once

#include <cmath>

namespace VkMath {

inline bool isZero(double value, double tolerance) { return std::abs(value) <= tolerance; }
inline bool isPositive(double value, double tolerance) { return value > tolerance; }

}  // namespace VkMath
