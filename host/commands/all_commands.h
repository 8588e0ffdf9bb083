// The host's own commands.
#pragma once

#include "host/base/api.h"

namespace vk::commands {

// Puts every command of the host into the table of commands, once.
VKHOST_API void registerHostCommands();

}  // namespace vk::commands
