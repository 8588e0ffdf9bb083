// Finding objects under the cursor. What a pick hits depends on the view: the pick box is PICKBOX pixels either way.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"
#include "sdk/vcge.h"

namespace vk::edit {

class Editor;

// The object that a pick at a world point hits: the nearest within the pick box, of equals the one drawn last. With nested, the
// object within a block, else the main entity. Null when it hits nothing.
VKHOST_API VcDbObjectId pickEntity(Editor& editor, const VcGePoint3d& world, bool nested);
// Whether that object lies within the pick box of the point.
VKHOST_API bool entityIsAt(Editor& editor, VcDbObjectId id, const VcGePoint3d& world);

// Where an object that was given by name is taken to be picked: a point on it, in the UCS.
VKHOST_API VcGePoint3d pointOnEntity(Editor& editor, VcDbObjectId id);

}  // namespace vk::edit
