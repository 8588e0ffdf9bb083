// Settings of the user's profile that programs read by name.
#pragma once

#include "host/base/api.h"

#include <optional>
#include <string>
#include <string_view>

namespace vk::edit {

VKHOST_API std::optional<std::string> readEnvironment(std::string_view name);
VKHOST_API bool writeEnvironment(std::string_view name, std::string_view value);

}  // namespace vk::edit
