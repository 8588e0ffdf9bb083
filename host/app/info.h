// vekad info: what is in a drawing.
#pragma once

#include "host/app/options.h"

namespace vk::app {

int info(const InfoOptions& options);

}  // namespace vk::app
