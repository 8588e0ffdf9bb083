// The figures that the customary linetypes with shapes draw between their dashes. Drawings name them by file and number and
// do not bring the file along.
#pragma once

#include "sdk/vcge.h"

#include <string_view>
#include <vector>

namespace vk::render {

using ShapeLines = std::vector<std::vector<VcGePoint2d>>;

// Lines in units of the shape's scale from its origin along the linetype; null for figures that are not known.
const ShapeLines* linetypeShape(std::string_view file, int number);
// By the name that shapes of their own go by.
const ShapeLines* namedShape(std::string_view file, std::string_view name);

}  // namespace vk::render
