// Where everything of an MTEXT stands. Lengths are drawing units; points are in the MTEXT's own axes, from its
// insertion point, x along the lines and y up.
#pragma once

#include "host/base/api.h"
#include "host/text/mtext_format.h"
#include "host/text/text_line.h"
#include "host/text/text_style.h"

#include <string>
#include <vector>

namespace vktext {

struct MTextColumns {
    int count = 0;  // 0: no columns
    double width = 0;
    double gutter = 0;
    std::vector<double> heights;  // of each column; what is missing takes the last; 0 is as long as need be
};

struct MTextSpec {
    std::string contents;
    TextStyleSpec style;  // its mirroring and its fixed height are of no account
    double height = 1;
    double width = 0;           // lines are broken at this width; 0 or nonsense: only where the contents say so
    int attachment = 1;         // 1 to 9, top left to bottom right
    int flow = 1;               // 1 in lines; 3 downwards, in columns from right to left; 5 as the style says
    bool exactSpacing = false;  // every line at the same distance; else lines that stand out get more room
    double spacingFactor = 1;   // of five thirds of the text height
    MTextColumns columns;
};

// A stretch of one line that looks alike throughout. `text` is plain characters without any codes.
struct MTextFragment {
    std::string text;
    std::uint32_t font = 0;  // into the layout's fonts
    std::uint32_t line = 0;
    double height = 1, widthFactor = 1;
    double oblique = 0;   // radians
    double tracking = 1;  // of each advance
    TextColor color;
    std::uint8_t decorations = 0;
    double x = 0, y = 0;  // left end of the baseline
    double width = 0;     // sum of the advances
};

// A fraction's line.
struct MTextRule {
    VcGePoint2d from, to;
    TextColor color;
};

struct MTextLayout {
    std::vector<FontRequest> fonts;
    std::vector<MTextFragment> fragments;  // in reading order
    std::vector<MTextRule> rules;
    // The actual size: with the attachment's corner on the insertion point, a box of this size holds all that is drawn,
    // but for strokes of the first line that rise above its capitals.
    double width = 0, height = 0;
    Box box;  // that box
    std::size_t lines = 0;
};

// Time and memory grow with the length of the contents.
VKHOST_API MTextLayout layoutMText(const MTextSpec& spec);

// A fragment as the string and the style of a single text that looks the same, but for its tracking.
VKHOST_API std::string fragmentText(const MTextFragment& fragment);
VKHOST_API TextStyleSpec fragmentStyle(const MTextLayout& layout, const MTextFragment& fragment);

// The box of what is drawn, letters, decorations and rules; that of the layout when nothing is.
VKHOST_API Box drawnBox(const MTextLayout& layout);

}  // namespace vktext
