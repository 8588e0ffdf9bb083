// vekad convert: a drawing in another version or form.
#pragma once

#include "host/app/options.h"

namespace vk::app {

int convert(const ConvertOptions& options);

}  // namespace vk::app
