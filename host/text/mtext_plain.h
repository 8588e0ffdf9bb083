// Most MTEXTs are words and paragraph ends. What is drawn of those is known without taking them apart.
#pragma once

#include "host/text/text_line.h"

namespace vktext {

// The fields are those of MTextSpec.
struct PlainMText {
    std::string_view contents;
    LineLooks looks;  // mirroring is of no account
    double height = 1;
    double width = 0;
    int attachment = 1;
    bool exactSpacing = false;
    double spacingFactor = 1;
};

// The drawn box of the layout, when the text has no code but \P, runs along its lines and draws something.
VKHOST_API std::optional<Box> plainDrawnBox(const PlainMText& text);

}  // namespace vktext
