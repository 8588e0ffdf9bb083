// Cutting off what lies far outside the page, where pixels would no longer fit the painter's numbers.
#pragma once

#include "host/render/canvas.h"

#include <functional>
#include <optional>

namespace vk::render {

struct PageRect {
    Point2 low, high;
    bool holds(const Point2& p) const { return p.x >= low.x && p.x <= high.x && p.y >= low.y && p.y <= high.y; }
};

std::optional<std::pair<Point2, Point2>> clippedSegment(const PageRect& rect, const Point2& a, const Point2& b);
// Calls each with the stretches of a line that lie in the rectangle.
void clipLine(const PageRect& rect, std::span<const Point2> points,
              const std::function<void(std::span<const Point2>)>& each);
// Rings whose part inside the rectangle is that of the given ones; outside they run along its border.
Rings clipRings(const PageRect& rect, const Rings& rings);

}  // namespace vk::render
