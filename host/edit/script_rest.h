// What was left of a script that was interrupted.
#pragma once

#include "host/base/api.h"

#include <optional>
#include <string>

namespace vk::edit {

struct ScriptRest {
    std::string name, text;
};
// Nothing when the last script came to its end; it is given once.
VKHOST_API std::optional<ScriptRest> takeScriptRest();

}  // namespace vk::edit
