// The host's services as modules see them, over the editor's drawing and the user's settings.
#pragma once

#include "host/base/api.h"

namespace vk::edit {

class Editor;

// Puts the services in place: working database, registry root, folders, resource handles, the registry of services.
VKHOST_API void startHostApplication();

}  // namespace vk::edit
