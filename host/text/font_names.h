// What font names in drawings mean: the tables behind the font library.
#pragma once

#include "host/text/stroke_font.h"
#include "host/text/text_style.h"

#include <string>
#include <string_view>

namespace vktext {

struct StrokeSet {
    std::string_view name;  // as drawings write it, without its ending
    std::string_view file;  // of the Hershey sets, without its ending
    StrokeSpacing spacing;
    bool exact;  // false: the set only resembles the font
};

// A typeface, and the member of its family that the file name or the name stands for.
struct TypefaceName {
    std::string family;
    bool bold = false;
    bool italic = false;
};

// The last part of a path, in lower case, whichever slash it uses; and that without its ending.
std::string baseName(std::string_view font);
std::string stem(std::string_view baseName);
bool hasEnding(std::string_view baseName, std::string_view ending);

// Null when no stroke font goes by that stem.
const StrokeSet* strokeSet(std::string_view stem);
const StrokeSet& defaultStrokeSet();

TypefaceName typefaceOf(const FontRequest& request);

// Height of a capital in ems of typefaces whose widths others copy while drawing other capitals; 0 for the rest.
double publishedCapHeight(std::string_view family);
// Whether texts in `taken` are as long as in `asked`.
bool sameWidths(std::string_view asked, std::string_view taken);

}  // namespace vktext
