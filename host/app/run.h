// vekad run: commands on drawings, without a window.
#pragma once

#include "host/app/options.h"

namespace vk::app {

// Checks what belongs together, then runs the drawing here, or each of several in a process of its own.
int run(RunOptions options);

}  // namespace vk::app
