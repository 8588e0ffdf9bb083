// Distances and angles as people write them, in each notation of a drawing.
#pragma once

#include "host/base/api.h"

#include <optional>
#include <string>
#include <string_view>

enum class LinearNotation { Scientific = 1, Decimal, Engineering, Architectural, Fractional };
enum class AngularNotation { Degrees, DegreesMinutesSeconds, Grads, Radians, Surveyor };

struct LinearFormat {
    LinearNotation notation = LinearNotation::Decimal;
    int precision = 4;  // decimal places, or the power of two of the smallest fraction
    // Bits 1 and 2 tell which zero feet and inches are written (0 neither, 1 both, 2 feet, 3 inches);
    // 4 drops the zero before the point, 8 the zeros at the end.
    int zeros = 0;
    bool asTyped = false;  // without the blanks and dashes that would end an answer: 1'6-1/2"
};

struct AngularFormat {
    AngularNotation notation = AngularNotation::Degrees;
    int precision = 0;  // decimal places; of degrees and minutes: 0 degrees, to 2 minutes, to 4 seconds, then places
    int zeros = 0;      // bits 4 and 8, as above
    bool asTyped = false;
};

VKHOST_API std::string distanceText(double value, const LinearFormat& format);
// The angle is in radians anticlockwise from east; it is brought into one turn.
VKHOST_API std::string angleText(double radians, const AngularFormat& format);

// Every notation is understood in every mode, but feet and inches only with Engineering and Architectural:
// elsewhere their marks are an error. The whole text must be the distance.
VKHOST_API std::optional<double> parseDistance(std::string_view text, LinearNotation notation);

// Marks in the text (d ' " g r, N..E) count before the notation; a bare number is in the unit of the notation.
// In radians, not brought into one turn.
VKHOST_API std::optional<double> parseAngle(std::string_view text, AngularNotation notation);
