// Where files are looked for that a command names without a folder.
#pragma once

#include "host/base/api.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vk::edit {

// The working folder, the drawing's, Support/ beside the program, then what the profile lists under "SupportPath".
VKHOST_API std::vector<std::string> supportFolders();
// The file of that name, without regard to case where there is no exact one; a path with a folder is taken as it stands.
VKHOST_API std::optional<std::string> findSupportFile(std::string_view name);

}  // namespace vk::edit
