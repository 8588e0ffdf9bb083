// How far a pick is from what is drawn plainly: lines, round curves and light polylines without widths, upright texts.
#pragma once

#include "host/edit/select_view.h"
#include "sdk/vcdb_entity.h"

#include <optional>

namespace vk::edit {

// Whether the outline is the box of the extents, seen from above: a text or attribute that is not turned.
bool fillsItsBox(const VcDbEntity& entity);

// The distance on the picture to the outline that ShapeWalk shows, found without making it. Nothing where it must be made:
// for other classes, for what is tilted, and in views that are not level. The extents, where they are at hand, are those
// of the entity.
std::optional<double> plainDistance(const VcDbEntity& entity, const VcDbExtents* extents, const VcGePoint3d& at,
                                    const PickView& view);
// The same for a part of a block that a matrix takes to the world; nothing where that is stretched or tilted.
std::optional<double> plainDistance(const VcDbEntity& part, const VcGeMatrix3d& toWorld, const VcGePoint3d& at,
                                    const PickView& view);

}  // namespace vk::edit
