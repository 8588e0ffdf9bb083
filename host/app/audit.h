// vekad audit: what is wrong with a drawing.
#pragma once

#include "host/app/options.h"

namespace vk::app {

int audit(const AuditOptions& options);

}  // namespace vk::app
