// What drawings keep of a layer beside its own groups: transparency and description in extended data, and its plot style.
#pragma once

#include <cstdint>
#include <string>

class DatabaseCore;
class VcDbLayerTableRecord;

namespace vk::commands {

// 0 is opaque; up to 90.
void setTransparency(VcDbLayerTableRecord& layer, int percent);
// As it stands in the data: 0x02000000 and the opacity, or 0 where there is none.
std::int64_t transparencyOf(const VcDbLayerTableRecord& layer);
void setTransparencyValue(VcDbLayerTableRecord& layer, std::int64_t value);
// The name that the drawing's plot styles have it under; empty where the layer has none.
std::string plotStyleOf(const DatabaseCore& db, const VcDbLayerTableRecord& layer);
// False when the drawing has no such plot style.
bool setPlotStyleOf(const DatabaseCore& db, VcDbLayerTableRecord& layer, const std::string& name);
void setDescription(VcDbLayerTableRecord& layer, const std::string& description);

}  // namespace vk::commands
