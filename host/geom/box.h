// An axis-aligned box. A fresh box is empty: it contains nothing and adding a point makes it that point.
#pragma once

#include "vcge.h"

#include <algorithm>
#include <limits>

namespace vk::geom {

struct Box3d {
    VcGePoint3d min{kInfinite, kInfinite, kInfinite};
    VcGePoint3d max{-kInfinite, -kInfinite, -kInfinite};

    static constexpr double kInfinite = std::numeric_limits<double>::infinity();

    static Box3d around(const VcGePoint3d& p, double reach)
    {
        const VcGeVector3d r(reach, reach, reach);
        return {p - r, p + r};
    }

    bool isEmpty() const { return !(min.x <= max.x && min.y <= max.y && min.z <= max.z); }
    bool isFinite() const { return !isEmpty() && std::isfinite((max - min).lengthSqrd()); }

    void add(const VcGePoint3d& p)
    {
        min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
        max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
    }
    void add(const Box3d& b)
    {
        min = {std::min(min.x, b.min.x), std::min(min.y, b.min.y), std::min(min.z, b.min.z)};
        max = {std::max(max.x, b.max.x), std::max(max.y, b.max.y), std::max(max.z, b.max.z)};
    }
    // An empty box stays empty.
    Box3d grown(double by) const
    {
        const VcGeVector3d r(by, by, by);
        return isEmpty() ? *this : Box3d{min - r, max + r};
    }

    bool contains(const VcGePoint3d& p) const
    {
        return min.x <= p.x && p.x <= max.x && min.y <= p.y && p.y <= max.y && min.z <= p.z && p.z <= max.z;
    }
    bool contains(const Box3d& b) const { return !b.isEmpty() && contains(b.min) && contains(b.max); }
    bool touches(const Box3d& b) const
    {
        return min.x <= b.max.x && b.min.x <= max.x && min.y <= b.max.y && b.min.y <= max.y && min.z <= b.max.z &&
               b.min.z <= max.z;
    }

    VcGePoint3d center() const { return min + (max - min) * 0.5; }
    double diagonal() const { return isEmpty() ? 0 : (max - min).length(); }
    // The largest coordinate there is, by its absolute value: what rounding errors grow with.
    double magnitude() const
    {
        if (isEmpty())
            return 0;
        const double low = std::max({std::fabs(min.x), std::fabs(min.y), std::fabs(min.z)});
        return std::max({low, std::fabs(max.x), std::fabs(max.y), std::fabs(max.z)});
    }
    bool operator==(const Box3d&) const = default;
};

}  // namespace vk::geom
