// What a dimension says: a measured value in the notation of its style, with prefix, suffix, alternate units, tolerances
// and the text that a person has put over it. Texts are MTEXT contents in UTF-8.
#pragma once

#include "sdk/vcdb_dimvars.h"

#include "host/base/api.h"

#include <string>
#include <string_view>

struct DimMeasure {
    enum class Kind : std::uint8_t { Length, Radius, Diameter, Angle };
    double value = 0;  // drawing units before DIMLFAC, or radians
    Kind kind = Kind::Length;
};

// The halves above and below the dimension line; the second is empty where nothing asks for it.
struct DimText {
    std::string above, below;
    bool isEmpty() const { return above.empty() && below.empty(); }
};

// The factor of DIMLFAC: a negative one counts in paper space only.
VKHOST_API double linearFactor(const VcDbDimVars& vars, bool inPaperSpace);

// One number in primary units, without prefix or tolerance.
VKHOST_API std::string dimNumberText(double value, DimMeasure::Kind kind, const VcDbDimVars& vars);

// The whole text. In the override, "<>" stands for the measurement and "[]" for the alternate units, "\X" begins the part
// below the line; an empty override is "<>", a single blank or point writes nothing.
VKHOST_API DimText dimText(const DimMeasure& measure, const VcDbDimVars& vars, std::string_view override,
                           bool inPaperSpace);
