// How far to go, as MOVE, COPY and STRETCH ask it.
#pragma once

#include "host/edit/display.h"
#include "host/edit/editor.h"

#include <functional>

namespace vk::commands {

// From a base to a second point, the base alone, or a displacement; in the UCS. The second point is asked with what the
// function shows.
VcGeVector3d askDisplacement(edit::Editor& ed, const std::function<void(const VcGePoint3d& base)>& show);
// As one vector, with the last one offered again.
VcGeVector3d askWholeDisplacement(edit::Editor& ed);

// Shows the objects with the next question as a matrix of the UCS moves them for each place of the cursor.
void showMoved(edit::Editor& ed, const edit::SelectionSet& objects,
               std::function<VcGeMatrix3d(const VcGePoint3d& cursor)> inUcs);
void showMovedFrom(edit::Editor& ed, const edit::SelectionSet& objects, const VcGePoint3d& base);

}  // namespace vk::commands
