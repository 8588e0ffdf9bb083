// One drawing: read, run the commands, save, report.
#pragma once

#include "host/app/options.h"

namespace vk::app {

int runOne(const RunOptions& options);

}  // namespace vk::app
