// What the parts of the list painter share about the page.
#pragma once

#include "host/render/list_painter.h"
#include "host/render/page_clip.h"

#include <algorithm>
#include <cmath>

namespace vk::render {

// Nothing nearer to the camera is seen, as a part of the way to the target.
inline constexpr double kNearest = 0.05;

inline bool isPerspectiveMatrix(const VcGeMatrix3d& m)
{
    return m.entry[3][0] != 0 || m.entry[3][1] != 0 || m.entry[3][2] != 0;
}

inline bool isFinite(const Point2& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

// The page and as far beyond it as coordinates may reach, in pixels.
inline PageRect farAround(const PageView& view)
{
    constexpr double kFarOutside = 4000;
    const VcGeVector2d far(kFarOutside, kFarOutside);
    return {view.low - far, view.high + far};
}

struct Bounds2 {
    Point2 low{1e300, 1e300}, high{-1e300, -1e300};
    void add(const Point2& p)
    {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    explicit Bounds2(std::span<const Point2> points)
    {
        for (const Point2& p : points)
            add(p);
    }
};

}  // namespace vk::render
