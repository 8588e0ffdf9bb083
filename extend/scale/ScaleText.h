// Scales as they are typed and shown.
#pragma once

#include "classlib_string.h"
#include "vcstring.h"

// Nearer to zero than this, units are none.
inline constexpr double kScaleTolerance = 1e-10;

// Blanks alone are trimmed.
void TrimLeft(VcString& text);
void TrimRight(VcString& text);

// Digits, with at most one point that does not stand first. An empty text passes.
bool isNumber(const VcString& text);
// "paper:drawing"; a side that is zero or left out behind the colon becomes 1.
bool isValidScale(const VcString& text, double& paper, double& drawing);

// Takes zeros off the end of a text with a point, and then the point.
void removeTrailingZero(CStdStrW& text);
// Up to four decimals.
CStdStrW unitsText(double units);
