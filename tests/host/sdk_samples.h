// One entity of each class with hardly a value at its default, for tests that hold for every class.
#pragma once

#include "tests/host/sdk_drawing.h"

#include <span>

struct EntitySample {
    const char* name;
    // Makes the entity with what it refers to and puts it into the model.
    VcDbObjectId (*add)(SdkDrawing& drawing);
    DxfVersion oldest = DxfVersion::R2000;  // whose files have such entities
};

std::span<const EntitySample> entitySamples();
// The one of that name, in the drawing.
VcDbObjectId addSample(SdkDrawing& drawing, const std::string& name);

inline std::string sampleName(const testing::TestParamInfo<EntitySample>& info) { return info.param.name; }
