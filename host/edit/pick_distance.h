// How far a pick is from what is drawn plainly: lines, round curves and light polylines without widths, upright texts.
#pragma once

#include "host/edit/select_view.h"
#include "sdk/vcdb_entity.h"

#include <optional>

namespace vk::edit {

// The distance on the picture to the outline that ShapeWalk shows, found without making it. Nothing where it must be made:
// for other classes, for what is tilted, and in views that are not level. The extents are those of the entity.
std::optional<double> plainDistance(const VcDbEntity& entity, const VcDbExtents& extents, const VcGePoint3d& at, const PickView& view);

}  // namespace vk::edit
