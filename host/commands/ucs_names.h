// Coordinate systems that have names, as several commands ask for and list them.
#pragma once

#include "host/db/coordinate_system.h"
#include "host/edit/editor.h"

namespace vk::commands {

// One of the six that look straight along an axis of the world.
CoordinateSystem askOrthographicSystem(edit::Editor& ed);
// The present one, and the saved ones that match.
void listUcs(edit::Editor& ed, const std::string& names);

}  // namespace vk::commands
