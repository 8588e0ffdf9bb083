// The coordinate system that an object defines.
#pragma once

#include "host/db/coordinate_system.h"

#include <optional>

class VcDbEntity;

namespace vk::commands {

// The Z axis is the object's normal; where its origin and its X axis lie is the class's. The pick, in the world, tells which
// end of a line or an arc is meant; without it, the first. Nothing for classes that have no place and direction.
std::optional<CoordinateSystem> planeOfObject(const VcDbEntity& entity, const std::optional<VcGePoint3d>& pick);

}  // namespace vk::commands
