// What commands show for a moment over the drawing: temporary vectors and highlighted objects.
#pragma once

#include "host/render/list_builder.h"

namespace vk::edit {
class Display;
}

namespace vk::render {

// Appends to the list, in world coordinates; vectors are in the given UCS.
VKHOST_API void addOverlay(ListBuilder& builder, const edit::Display& display, const VcGeMatrix3d& ucsToWorld = {});

}  // namespace vk::render
