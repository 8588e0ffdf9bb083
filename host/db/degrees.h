// Angles are radians in memory and degrees in files.
#pragma once

#include "host/base/api.h"

VKHOST_API double radiansOfDegrees(double degrees);

// The degrees to write for an angle: they read back as the same radians where any number of degrees does, and writing what
// was read gives them again. Short decimals come first, so that 45 degrees stay 45.
VKHOST_API double degreesOfRadians(double radians);
