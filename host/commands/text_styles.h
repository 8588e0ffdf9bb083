// What the commands share that ask for a text style.
#pragma once

namespace vk::edit {
class Editor;
}

namespace vk::commands {

// Asks for a pattern and shows the styles that match it.
void listTextStyles(edit::Editor& ed);

}  // namespace vk::commands
