// What MVIEW and VPLAYER share.
#pragma once

#include "host/edit/editor.h"

#include <vector>

class VcDbViewport;

namespace vk::commands {

// Goes to the paper of the sheet; refused in the model's own tab.
void requireSheet(edit::Editor& ed);
std::vector<VcDbViewport*> selectViewports(edit::Editor& ed);
// Those of the sheet, without the one that is the sheet itself.
std::vector<VcDbViewport*> allViewports(edit::Editor& ed);
// What layers are in these viewports alone goes; how much that was.
std::size_t dropLayerOverrides(edit::Editor& ed, const std::vector<VcDbViewport*>& viewports);

}  // namespace vk::commands
