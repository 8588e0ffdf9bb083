// Changing the coordinate system as people do: what was before is remembered, for each space of its own.
#pragma once

#include "host/base/api.h"
#include "host/db/coordinate_system.h"

#include <string>
#include <string_view>

namespace vk::edit {

class Editor;

// The name is that of the table's record which it was restored from, or empty.
VKHOST_API void changeUcs(Editor& editor, const CoordinateSystem& ucs, std::string_view name = {});
// False when there is nothing to go back to.
VKHOST_API bool restorePreviousUcs(Editor& editor);
// Looks straight at the XY plane, and at all that there is.
VKHOST_API void showPlan(Editor& editor, const CoordinateSystem& ucs);

}  // namespace vk::edit
