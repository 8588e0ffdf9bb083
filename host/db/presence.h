// Which optional groups a file carried although they stood at their default, so that a copy carries them too.
//
// The objects of one program share a few such profiles; an object holds the number of its own. Number 0 is the empty one.
#pragma once

#include "host/base/api.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

// A group of a class: the number of the subclass call in fields() that it belongs to, and its code.
using PresenceKey = std::uint32_t;

inline PresenceKey presenceKey(int subclassCall, int code)
{
    return static_cast<PresenceKey>(subclassCall) << 16 | static_cast<std::uint16_t>(code);
}

// A record and the group that names it, by subclass and code.
inline std::uint64_t spellingKey(std::uint32_t slot, std::string_view subclass, int code)
{
    return std::uint64_t(slot) << 32 | presenceKey(static_cast<int>(std::hash<std::string_view>{}(subclass) & 0xFFFF), code);
}

// The number of the profile with these keys, in any order and repeated at will; 0 when there are too many profiles.
VKHOST_API std::uint16_t internPresence(std::vector<PresenceKey>& keys);
VKHOST_API bool presenceHas(std::uint16_t profile, PresenceKey key);
