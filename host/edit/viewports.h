// Which space is worked in: the model, a sheet, or the model through a viewport of the sheet.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"

class VcDbViewport;
class VcDbLayout;

namespace vk::edit {

class Editor;

VKHOST_API bool isOnSheet(const Editor& editor);
// The viewport through which the model is worked on; null in the model's own tab and on the sheet itself.
VKHOST_API VcDbViewport* activeViewport(const Editor& editor);
// The number that CVPORT shows: 1 for the sheet, 2 for the model's tab.
VKHOST_API int currentViewportNumber(const Editor& editor);
// False when the sheet has no such viewport, or it is off.
VKHOST_API bool setCurrentViewport(Editor& editor, int number);
VKHOST_API bool setActiveViewport(Editor& editor, const VcDbViewport& viewport);
// The one that is entered next, without entering it.
VKHOST_API void preferViewport(Editor& editor, const VcDbViewport& viewport);
// The viewport that was entered last, else the first that is on; false when there is none.
VKHOST_API bool enterViewport(Editor& editor);
VKHOST_API void leaveViewport(Editor& editor);

// The layout whose tab is shown.
VKHOST_API VcDbLayout* currentLayout(const Editor& editor);
// Shows a tab; a sheet begins in its paper space.
VKHOST_API bool showLayout(Editor& editor, VcDbLayout& layout);

}  // namespace vk::edit
