// What a text style says, as a plain value. Lengths are drawing units, angles radians.
#pragma once

#include <string>

namespace vktext {

// Names a font the way drawings do: a file ("arial.ttf", "simplex.shx", "txt") or a typeface ("Arial Narrow").
struct FontRequest {
    std::string font;
    std::string bigFont;  // asked for what the first font lacks
    bool bold = false;
    bool italic = false;
    bool operator==(const FontRequest&) const = default;
};

// For a text entity the caller fills in the entity's own width factor, oblique angle and mirroring, which replace
// those of its style.
struct TextStyleSpec : FontRequest {
    double fixedHeight = 0;  // 0: the height is each text's own
    double widthFactor = 1;
    double oblique = 0;
    bool backwards = false;
    bool upsideDown = false;
    bool vertical = false;
    bool operator==(const TextStyleSpec&) const = default;
};

}  // namespace vktext
