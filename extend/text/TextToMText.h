// Many texts as one mtext.
#pragma once

#include "vkdefs.h"

// Makes an mtext of the texts of a selection, which stay: the first gives place, height, style and layer, each later one
// adds its string, with codes for what it has of its own. In the order of selection, or from the top down; joined by
// blanks for word wrap, or by line breaks. The status of vcdbEntMake.
int CreateMTextFromTxtSet(bool selectionOrder, bool wordWrap, const vds_name selection);
