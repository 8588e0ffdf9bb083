// What a command would make, shown with the next question for each place of the cursor.
#pragma once

#include "host/edit/display.h"
#include "host/edit/editor.h"

#include <functional>
#include <memory>

namespace vk::commands {

// An entity that is in no drawing; null, or a CommandError, where the cursor allows none.
using Figure = std::function<std::unique_ptr<VcDbEntity>(const VcGePoint3d& cursor)>;
void showFigure(edit::Editor& ed, Figure figure);

// All that is drawn of an entity, as chords in the UCS.
edit::Preview::Lines linesOf(const edit::Editor& ed, const VcDbEntity& entity);

}  // namespace vk::commands
