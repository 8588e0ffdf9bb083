// Colours packed into one number, as groups of newer classes hold them.
#pragma once

#include "sdk/vccm.h"

#include <cstdint>
#include <optional>

// Of a number whose highest byte says by layer, by block, true or an index; nothing where it is none of these.
std::optional<VcCmColor> colourOfPacked(std::uint32_t bits);
