// What pictures are drawn on. Coordinates are pixels of the page, y down; colours are 0xAARRGGBB.
#pragma once

#include "sdk/vcge.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vk::render {

using Point2 = VcGePoint2d;

struct Pen {
    std::uint32_t argb = 0xff000000;
    double width = 1;
    bool operator==(const Pen&) const = default;
};

// Rings one behind the other: each ends where the next begins.
struct Rings {
    std::vector<Point2> points;
    std::vector<std::size_t> ends;

    void clear()
    {
        points.clear();
        ends.clear();
    }
    void endRing()
    {
        const std::size_t begin = ends.empty() ? 0 : ends.back();
        if (points.size() - begin >= 3)
            ends.push_back(points.size());
        else
            points.resize(begin);
    }
    template <class Each>
    void forEach(Each&& each) const
    {
        std::size_t begin = 0;
        for (const std::size_t end : ends) {
            each(std::span<const Point2>(points.data() + begin, end - begin));
            begin = end;
        }
    }
    bool empty() const { return ends.empty(); }
};

// Colours at places from 0 to 1 along a line, or outward from a centre.
struct Gradient {
    bool radial = false;
    Point2 from, to;  // radial: the centre and a point on the rim
    Point2 focus;     // of a radial one
    std::vector<std::pair<double, std::uint32_t>> stops;
};

struct ImageAdjustment {
    int brightness = 50, contrast = 50, fade = 0;
    bool transparent = false;
};

class Canvas {
public:
    virtual ~Canvas() = default;
    virtual void stroke(std::span<const Point2> points, bool closed, const Pen& pen) = 0;
    virtual void fill(const Rings& rings, bool nonZero, std::uint32_t argb) = 0;
    virtual void fillGradient(const Rings& rings, const Gradient& gradient) = 0;
    // Takes away what has been drawn, down to the page.
    virtual void erase(const Rings& rings) = 0;
    // The image over the parallelogram at the lower left corner with its sides; false when it cannot be loaded.
    virtual bool image(const std::string& file, Point2 corner, VcGeVector2d width, VcGeVector2d height,
                       const Rings& outline, const ImageAdjustment& adjustment) = 0;
    // Until popClip nothing is drawn outside (with inverted: inside) the rings. Clips nest.
    virtual void pushClip(const Rings& rings, bool inverted) = 0;
    virtual void popClip() = 0;
};

}  // namespace vk::render
