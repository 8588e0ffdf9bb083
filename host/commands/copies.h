// Moving and copying whole objects, as the transforming commands and arrays do.
#pragma once

#include "host/commands/drawing.h"
#include "host/edit/selection_set.h"

#include <memory>

namespace vk::commands {

// What a class cannot take is told and left. The matrix is in the world.
void transformObjects(edit::Editor& ed, const edit::SelectionSet& objects, const VcGeMatrix3d& world);
// New objects in the current space, in the same order.
std::shared_ptr<edit::SelectionSet> copied(edit::Editor& ed, const edit::SelectionSet& objects);
// From an act in the UCS to the same act in the world.
VcGeMatrix3d inWorld(const edit::Editor& ed, const VcGeMatrix3d& ucs);

}  // namespace vk::commands
