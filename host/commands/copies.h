// Moving and copying whole objects, as the transforming commands and arrays do.
#pragma once

#include "host/commands/drawing.h"
#include "host/edit/selection_set.h"

#include <memory>
#include <vector>

namespace vk::commands {

// What a class cannot take is told and left. The matrix is in the world.
void transformObjects(edit::Editor& ed, const edit::SelectionSet& objects, const VcGeMatrix3d& world);
// New objects in the current space, in the same order.
std::shared_ptr<edit::SelectionSet> copied(edit::Editor& ed, const edit::SelectionSet& objects);

// Copies that stand already where the matrix takes them. What a class cannot take has none, for it would lie on its
// original.
struct PlacedCopies {
    std::shared_ptr<edit::SelectionSet> objects;
    std::size_t left = 0;
};
PlacedCopies placeCopies(edit::Editor& ed, const edit::SelectionSet& objects, const VcGeMatrix3d& world);
// Takes away copies that could not be placed, and gives back how many.
std::size_t takeAway(edit::Editor& ed, const std::vector<VcDbObjectId>& copies);
void reportNotCopied(edit::Editor& ed, std::size_t left);
// Moves what can be moved, and gives back the rest.
std::vector<VcDbObjectId> transformWhatCan(edit::Editor& ed, const edit::SelectionSet& objects,
                                           const VcGeMatrix3d& world);
void reportLeft(edit::Editor& ed, std::size_t left);
// From an act in the UCS to the same act in the world.
VcGeMatrix3d inWorld(const edit::Editor& ed, const VcGeMatrix3d& ucs);

}  // namespace vk::commands
