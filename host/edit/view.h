// The view of the drawing: what part of the plane is seen, which picks and display coordinates depend on.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_entity.h"

namespace vk::edit {

class Editor;

struct View {
    VcGePoint3d center;       // in the UCS of the display: the plane through the target across the line of sight
    double height = 1;
    VcGePoint3d target;
    VcGeVector3d direction{0, 0, 1};
    double twist = 0;
};

// Pixels of the screen that the runner stands for.
constexpr double kScreenWidth = 1920, kScreenHeight = 1080;

// The view starts as the drawing's extents, whatever view its file holds.
VKHOST_API View& currentView(Editor& editor);
VKHOST_API void resetView(Editor& editor);
// Extents of all that is in the current space; empty where there is nothing with extents.
VKHOST_API VcDbExtents spaceExtents(const Editor& editor);
// Half the side of the pick box, in drawing units.
VKHOST_API double pickAperture(Editor& editor);
// From world to display coordinates.
VKHOST_API VcGeMatrix3d worldToDisplay(Editor& editor);

}  // namespace vk::edit
