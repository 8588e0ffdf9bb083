// Several drawings, each in a process of its own, so that nothing a module remembers leaks from one to the next.
#pragma once

#include "host/app/options.h"

namespace vk::app {

// The worst status of all.
int runEach(const RunOptions& options);

}  // namespace vk::app
