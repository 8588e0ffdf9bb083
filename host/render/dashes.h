// Lines broken into the dashes of a linetype.
#pragma once

#include "host/base/api.h"
#include "sdk/vcge.h"

#include <functional>
#include <span>
#include <vector>

class VcDbLinetypeTableRecord;

namespace vk::render {

// A dash pattern in drawing units: positive dashes, negative gaps, dots of 0.
struct DashPattern {
    std::vector<double> dashes;
    double length = 0;
    bool fits = true;  // stretched at both ends so that a line ends in dashes

    static DashPattern of(const VcDbLinetypeTableRecord& linetype, double scale);
};

// Stretches of a line of a given length that are drawn, from start to end; equal ends are a dot. Only those that may lie
// between the two lengths are told. Marks are told where the pattern element with the given index ends.
class VKHOST_API DashWalk {
public:
    using Drawn = std::function<void(double from, double to)>;
    using Mark = std::function<void(std::size_t element, double at)>;
    DashWalk(const DashPattern& pattern, double length) : m_pattern(pattern), m_length(length) {}
    void run(double seenFrom, double seenTo, const Drawn& drawn, const Mark& mark = {}) const;

private:
    const DashPattern& m_pattern;
    double m_length;
};

// A line through points, and places along it.
class VKHOST_API MeasuredLine {
public:
    explicit MeasuredLine(std::span<const VcGePoint3d> points);
    double length() const { return m_lengths.back(); }
    VcGePoint3d at(double along) const;
    VcGeVector3d directionAt(double along) const;
    // Appends the stretch between two places.
    void add(std::vector<VcGePoint3d>& to, double from, double until) const;
    double lengthUpTo(std::size_t point) const { return m_lengths[point]; }

private:
    std::size_t pieceAt(double along) const;
    std::span<const VcGePoint3d> m_points;
    std::vector<double> m_lengths;
};

}  // namespace vk::render
