// vekad render: a drawing as a picture.
#pragma once

#include "host/app/options.h"

namespace vk::app {

int render(const RenderOptions& options);

}  // namespace vk::app
