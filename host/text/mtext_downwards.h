// The layout of an MTEXT whose lines run downwards.
#pragma once

#include "host/text/mtext_layout.h"

namespace vktext {

// Every letter is a fragment of its own, centred on its line; the lines follow each other from right to left. Stacks
// are written out; paragraph formats and columns have no part in it.
MTextLayout layoutDownwards(const MTextSpec& spec, const CharFormat& base);

}  // namespace vktext
