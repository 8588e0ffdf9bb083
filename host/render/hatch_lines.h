// The lines of a hatch pattern within its boundary.
#pragma once

#include "host/render/canvas.h"
#include "host/base/api.h"
#include "sdk/vcdb_hatch.h"

#include <functional>

namespace vk::render {

// Calls drawn with the ends of each dash; equal ends are a dot. The rings are in the pattern's plane, what is inside changes
// at each. False, with nothing told, when the lines lie closer than the spacing or would be more than can be told apart.
VKHOST_API bool hatchLines(const Rings& rings, const VcDbHatch::PatternLine& line, double closest,
                           const std::function<void(const Point2&, const Point2&)>& drawn);

// The rings that a hatch style fills, to be filled by even and odd: all, the outermost areas, or no islands at all.
VKHOST_API Rings ringsOfStyle(const Rings& rings, VcDbHatch::HatchStyle style);

}  // namespace vk::render
