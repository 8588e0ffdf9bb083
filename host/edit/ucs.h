// Changing the coordinate system as people do: what was before is remembered, for each space and viewport of its own.
#pragma once

#include "host/base/api.h"
#include "host/db/coordinate_system.h"

namespace vk::edit {

class Editor;

// The record is the one that it was restored from, or null.
VKHOST_API void changeUcs(Editor& editor, const CoordinateSystem& ucs, VcDbObjectId record = {});
// The present system has become, or is no longer, that of a record.
VKHOST_API void nameUcs(Editor& editor, VcDbObjectId record);
// False when there is nothing to go back to.
VKHOST_API bool restorePreviousUcs(Editor& editor);
// Looks straight at the XY plane, and at all that there is.
VKHOST_API void showPlan(Editor& editor, const CoordinateSystem& ucs);

}  // namespace vk::edit
