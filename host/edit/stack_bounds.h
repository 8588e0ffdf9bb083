// Which stack runs, told to the address sanitizer; without it there is nothing to tell.
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

namespace vk::edit {

struct StackBounds {
    const void* bottom = nullptr;
    std::size_t size = 0;
};

#if defined(__SANITIZE_ADDRESS__)

constexpr bool kStacksAreWatched = true;

// What the sanitizer keeps of the stack that is left; null when that stack ends with the switch.
inline void leaveStack(void** kept, const StackBounds& next)
{
    __sanitizer_start_switch_fiber(kept, next.bottom, next.size);
}

// On the stack that runs now, with what was kept of it. Gives the bounds of the one that was left.
inline StackBounds enterStack(void* kept)
{
    StackBounds left;
    __sanitizer_finish_switch_fiber(kept, &left.bottom, &left.size);
    return left;
}

#else

constexpr bool kStacksAreWatched = false;

inline void leaveStack(void**, const StackBounds&) {}
inline StackBounds enterStack(void*) { return {}; }

#endif

}  // namespace vk::edit
