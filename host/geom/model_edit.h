// Moving what the modeller's data describes: the transform of each body is changed, or added where there is none.
#pragma once

#include "host/geom/model_records.h"

#include <optional>

class VcGeMatrix3d;

namespace vk::geom {

// The data for what the matrix makes of the bodies. Nothing when it does not keep all proportions, or when the data has no
// body that could be moved.
VKHOST_API std::optional<std::string> transformedModel(const ModelRecords& records, const VcGeMatrix3d& m);

}  // namespace vk::geom
