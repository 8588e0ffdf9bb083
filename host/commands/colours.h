// Colours as people type them.
#pragma once

#include "host/edit/editor.h"
#include "sdk/vccm.h"

#include <optional>
#include <string>

namespace vk::commands {

// A number from 1 to 255, a name, BYLAYER, BYBLOCK, or three numbers from 0 to 255 with commas.
std::optional<VcCmColor> colourOf(std::string_view text);
std::string colourText(const VcCmColor& colour);
// Asked again until it is a colour; Enter takes the default.
VcCmColor askColour(edit::Editor& ed, std::string_view prompt, const VcCmColor& byDefault);

}  // namespace vk::commands
