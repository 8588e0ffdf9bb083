// Texts by number, from resource libraries, through the current resource handle.
#pragma once

#include "host/base/api.h"

// The text of a library, valid while it is loaded; null when the handle is no loaded library, it has no table, or
// the table lacks the number.
VKHOST_API const wchar_t* resourceText(void* library, unsigned id);

// A stack of handles, null at its foot. A pop at the foot does nothing.
VKHOST_API void pushResourceHandle(void* library);
VKHOST_API void popResourceHandle();
VKHOST_API void* currentResourceHandle();
VKHOST_API void setCurrentResourceHandle(void* library);
