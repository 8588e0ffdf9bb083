// What drawings keep of a layer in extended data: its transparency and its description.
#pragma once

#include <string>

class VcDbLayerTableRecord;

namespace vk::commands {

// 0 is opaque; up to 90.
void setTransparency(VcDbLayerTableRecord& layer, int percent);
void setDescription(VcDbLayerTableRecord& layer, const std::string& description);

}  // namespace vk::commands
