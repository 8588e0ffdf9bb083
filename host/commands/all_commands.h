// The host's own commands.
#pragma once

#include "host/base/api.h"

namespace vk::commands {

// Puts them into the table, once.
VKHOST_API void registerHostCommands();

}  // namespace vk::commands
