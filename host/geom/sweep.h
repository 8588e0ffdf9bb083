// Pairs of boxes that touch, by a sweep along X.
#pragma once

#include "host/geom/box.h"

#include <vector>

namespace vk::geom {

// visit(i, j) for each touching pair, i < j.
template <class Visit>
void eachTouchingPair(const std::vector<Box3d>& boxes, Visit visit)
{
    std::vector<size_t> order(boxes.size()), open;
    for (size_t i = 0; i < boxes.size(); ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(), [&](size_t i, size_t j) { return boxes[i].min.x < boxes[j].min.x; });
    for (size_t i : order) {
        std::erase_if(open, [&](size_t j) { return boxes[j].max.x < boxes[i].min.x; });
        for (size_t j : open)
            if (boxes[i].touches(boxes[j]))
                visit(std::min(i, j), std::max(i, j));
        open.push_back(i);
    }
}

// visit(i, j) for each box of a that touches one of b.
template <class Visit>
void eachTouchingPair(const std::vector<Box3d>& a, const std::vector<Box3d>& b, Visit visit)
{
    std::vector<size_t> order(a.size() + b.size()), open[2];
    for (size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    const auto box = [&](size_t i) -> const Box3d& { return i < a.size() ? a[i] : b[i - a.size()]; };
    std::sort(order.begin(), order.end(), [&](size_t i, size_t j) { return box(i).min.x < box(j).min.x; });
    for (size_t i : order) {
        const bool first = i < a.size();
        auto& others = open[first ? 1 : 0];
        std::erase_if(others, [&](size_t j) { return box(j).max.x < box(i).min.x; });
        for (size_t j : others)
            if (box(i).touches(box(j)))
                first ? visit(i, j - a.size()) : visit(j, i - a.size());
        open[first ? 0 : 1].push_back(i);
    }
}

}  // namespace vk::geom
