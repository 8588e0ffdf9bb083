// What drawings keep of a layer in extended data: its transparency and its description.
#pragma once

#include <cstdint>
#include <string>

class VcDbLayerTableRecord;

namespace vk::commands {

// 0 is opaque; up to 90.
void setTransparency(VcDbLayerTableRecord& layer, int percent);
// As it stands in the data: 0x02000000 and the opacity, or 0 where there is none.
std::int64_t transparencyOf(const VcDbLayerTableRecord& layer);
void setTransparencyValue(VcDbLayerTableRecord& layer, std::int64_t value);
void setDescription(VcDbLayerTableRecord& layer, const std::string& description);

}  // namespace vk::commands
