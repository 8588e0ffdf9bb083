// Lineweights as they are typed.
#pragma once

#include "sdk/vcdb_entity.h"

#include <optional>
#include <string>
#include <string_view>

namespace vk::commands {

// Millimetres, of which the nearest that there is is taken, or one of the three names.
std::optional<VcDb::LineWeight> lineWeightOf(std::string_view text);
// "ByLayer", "0.25 mm".
std::string lineWeightText(int weight);

}  // namespace vk::commands
