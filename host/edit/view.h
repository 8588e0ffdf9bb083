// The view of the drawing: what part of the plane is seen, which picks and display coordinates depend on. The model, each
// sheet and each viewport of a sheet has one of its own.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_entity.h"

class VcDbViewTableRecord;

namespace vk::edit {

class Editor;

struct View {
    VcGePoint3d center;  // in display coordinates: the plane through the target across the line of sight
    double height = 1;
    VcGePoint3d target;
    VcGeVector3d direction{0, 0, 1};
    double twist = 0;
    double lensLength = 50;
    double frontClip = 0, backClip = 0;
    std::int16_t mode = 0;  // as VIEWMODE has it, without UCSFOLLOW
};

enum ViewMode : std::int16_t {
    kPerspectiveView = 1,
    kFrontClipOn = 2,
    kBackClipOn = 4,
    kUcsFollowOn = 8,
    kFrontClipNotAtEye = 16
};

// Pixels of the screen that the runner stands for.
constexpr double kScreenWidth = 1920, kScreenHeight = 1080;

// That of the current viewport. Of the model and of a sheet it starts as the extents, whatever view the file holds.
VKHOST_API View& currentView(Editor& editor);
// The view that a named view stands for, from one that gives what the record does not hold.
VKHOST_API View viewOf(const VcDbViewTableRecord& record, View from);
// What a named view keeps of a view.
VKHOST_API void fillViewRecord(Editor& editor, VcDbViewTableRecord& record, const View& view);
VKHOST_API void resetView(Editor& editor);
// Changes it as a person does: under undo, remembered for what goes back to it, and kept with the drawing. A viewport
// that is locked refuses with an error of the command.
VKHOST_API void setCurrentView(Editor& editor, const View& view);
// The view before the last change; false when there is none.
VKHOST_API bool restorePreviousView(Editor& editor);

// From world to display coordinates.
VKHOST_API VcGeMatrix3d worldToDisplay(const View& view);
VKHOST_API VcGeMatrix3d worldToDisplay(Editor& editor);
// Of the part of the screen that the current viewport takes.
VKHOST_API VcGePoint2d viewportPixels(Editor& editor);
// The side of a pixel, and half the side of the pick box, in drawing units.
VKHOST_API double pixelSize(Editor& editor);
VKHOST_API double pickAperture(Editor& editor);

// Extents of all that is in the current space but for what lies on frozen layers; empty where there is nothing with extents.
VKHOST_API VcDbExtents spaceExtents(const Editor& editor);
VKHOST_API VcDbExtents extentsOfSpace(const DatabaseCore& db, VcDbObjectId block);
// The same in the coordinates of the display.
VKHOST_API VcDbExtents displayExtents(Editor& editor, const View& view);
// A view of the same direction that shows the box, which is in display coordinates.
VKHOST_API View viewOf(Editor& editor, const View& like, const VcDbExtents& box, double margin = 1);

}  // namespace vk::edit
