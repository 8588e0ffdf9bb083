// How far to go, as MOVE, COPY and STRETCH ask it.
#pragma once

#include "host/edit/editor.h"

namespace vk::commands {

// From a base to a second point, the base alone, or a displacement; in the UCS.
VcGeVector3d askDisplacement(edit::Editor& ed);
// As one vector, with the last one offered again.
VcGeVector3d askWholeDisplacement(edit::Editor& ed);

}  // namespace vk::commands
