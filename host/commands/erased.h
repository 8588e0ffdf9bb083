// What OOPS brings back: the objects that ERASE, BLOCK or WBLOCK took out of the drawing last.
#pragma once

#include "sdk/vcdb_object.h"

#include <vector>

namespace vk::edit {
class Editor;
}

namespace vk::commands {

// Erases them and remembers them in place of those before.
void eraseForOops(edit::Editor& ed, const std::vector<VcDbObjectId>& ids);

}  // namespace vk::commands
