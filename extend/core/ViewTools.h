// The current space and view.
#pragma once

#include "vkdefs.h"

// RTERROR, with a message, on a sheet outside its viewports.
int IsCmdInPsSpace();
// Shows a window about a point of the UCS, a little more than it unless exact.
void vrxZoom(const vds_point center, double width, double height, bool exact);
