// How the module marks what the host finds in it by name.
#pragma once

#include "vkdefs.h"

#define VK_MODULE_EXPORT __attribute__((visibility("default")))

// A function that is found under its own name. INVOKE calls any of these, so they take nothing and give nothing.
#define VK_ENTRY_POINT extern "C" VK_MODULE_EXPORT
