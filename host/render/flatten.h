// From curves to chords that stray no further than a tolerance.
#pragma once

#include "host/render/display_list.h"

namespace vk::render {

class VKHOST_API Flattener {
public:
    explicit Flattener(double tolerance) : m_tolerance(tolerance) {}
    double tolerance() const { return m_tolerance; }

    // Appends the figure's points; corners, where they are wanted, gets the places of the ends of its straight pieces
    // and curves.
    void add(std::vector<VcGePoint3d>& to, const DisplayList& list, const Figure& figure,
             std::vector<std::size_t>* corners = nullptr) const;

private:
    void addArc(std::vector<VcGePoint3d>& to, const EllipseArc& arc) const;
    void addSpline(std::vector<VcGePoint3d>& to, const geom::Nurbs& nurbs) const;
    double m_tolerance;
};

}  // namespace vk::render
