// Outlines of single entities in their own coordinates.
#pragma once

#include "host/edit/select_shape.h"

namespace vk::edit {

class OutlineBuilder {
public:
    explicit OutlineBuilder(double tolerance) : m_tolerance(tolerance) {}

    void chain(std::vector<VcGePoint3d> points, bool closed = false);
    void filled(std::vector<VcGePoint3d> points);
    // center + u cos t + v sin t; the ends included.
    void arc(std::vector<VcGePoint3d>& points, const VcGePoint3d& center, const VcGeVector3d& u, const VcGeVector3d& v,
             double from, double sweep) const;
    // A line from the base on, or both ways.
    void infinite(const VcGePoint3d& base, const VcGeVector3d& direction, bool bothWays);
    double tolerance() const { return m_tolerance; }

    struct Infinite {
        VcGePoint3d base;
        VcGeVector3d direction;
        bool bothWays;
    };
    std::vector<Outline> outlines;
    std::vector<Infinite> lines;

private:
    double m_tolerance;
};

// False for a class that is not known here.
bool buildOutline(const VcDbEntity& entity, OutlineBuilder& builder);

}  // namespace vk::edit
