// Where the lines and arcs of dimensions stand, and how they are moved. World coordinates.
#pragma once

#include "sdk/vcdb_dims.h"

#include <optional>

namespace vk::commands {

// A line is told across its direction, an arc by its radius.
struct DimStand {
    bool isArc = false;
    VcGePoint3d origin;  // of an arc: its vertex
    VcGeVector3d across;
    double at = 0;

    double of(const VcGePoint3d& p) const { return isArc ? p.distanceTo(origin) : p.asVector().dotProduct(across); }
};

// Nothing for classes that have neither a line nor an arc between extension lines.
std::optional<DimStand> dimStandOf(const VcDbDimension& dimension);
// The line or the arc alone; the picture is still to be made anew.
void moveLine(VcDbDimension& dimension, const VcGeVector3d& by);

}  // namespace vk::commands
