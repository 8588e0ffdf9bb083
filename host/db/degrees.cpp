#include "host/db/degrees.h"

#include <charconv>
#include <cmath>

namespace {

constexpr long double kPi = 3.141592653589793238462643383279502884L;

double rounded(double value, int digits)
{
    char text[40];
    const auto printed = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, digits - 1);
    double result = value;
    std::from_chars(text, printed.ptr, result);
    return result;
}

// The simplest degrees near the exact ones that read back as these radians, or the nearest when none do.
double nearestDegrees(double radians)
{
    const double nearest = static_cast<double>(static_cast<long double>(radians) * 180.0L / kPi);
    for (const int digits : {15, 16})
        if (const double simple = rounded(nearest, digits); radiansOfDegrees(simple) == radians)
            return simple;
    for (double candidate : {nearest, std::nextafter(nearest, 0.0), std::nextafter(nearest, HUGE_VAL * nearest)})
        if (radiansOfDegrees(candidate) == radians)
            return candidate;
    return nearest;
}

}

double radiansOfDegrees(double degrees)
{
    return static_cast<double>(static_cast<long double>(degrees) * kPi / 180.0L);
}

double degreesOfRadians(double radians)
{
    if (radians == 0.0 || !std::isfinite(radians))
        return radians;
    const double degrees = nearestDegrees(radians);
    const double back = radiansOfDegrees(degrees);
    return back == radians ? degrees : nearestDegrees(back);
}
