// A polyline as foreign objects' pictures hold it: bits without gaps, of which the numbers that are often 0 or 1, or the
// same as the one before, take two.
#pragma once

#include "host/render/build_parts.h"

#include <optional>
#include <string_view>

namespace vk::render {

// Nothing where the bits are too few for what they promise.
std::optional<PlanePolyline> unpackPolyline(std::string_view bytes);

}  // namespace vk::render
