// The option stAte of -LAYER: layer states by name.
#pragma once

namespace vk::edit {
class Editor;
}

namespace vk::commands {

void layerStateOption(edit::Editor& ed);

}  // namespace vk::commands
