// What layers look like in single viewports.
#pragma once

#include "host/render/looks.h"

namespace vk::render {

std::unordered_map<VcDbObjectId, LayerOverride> layerOverrides(const DatabaseCore& db, VcDbObjectId viewport);

}  // namespace vk::render
