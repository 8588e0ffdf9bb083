// The one heap of everything that the host hands to a module to release, whichever of the releasing calls it uses.
#pragma once

#include "host/base/api.h"

#include <cstddef>
#include <string_view>

// Zeroed memory, null when there is none left.
VKHOST_API void* heapAllocate(std::size_t bytes);
VKHOST_API void heapRelease(void* memory);

// A terminated copy, null when there is no memory left.
VKHOST_API wchar_t* heapString(std::wstring_view text);
VKHOST_API wchar_t* heapStringFromUtf8(std::string_view text);
