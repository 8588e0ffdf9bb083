// Where and how a block is placed: the questions that INSERT, MINSERT and -XREF share.
#pragma once

#include "host/edit/editor.h"

#include <optional>

class VcDbBlockReference;
class VcDbBlockTableRecord;

namespace vk::commands {

struct Placement {
    VcGePoint3d point;  // in the UCS
    VcGeVector3d base;  // of the block, what comes to lie at the point
    VcGeScale3d scale;
    double rotation = 0;
};

// The evenly scaled form asks for one factor. While the point is asked for, the block is shown there.
Placement askPlacement(edit::Editor& ed, bool evenly = false, const VcDbBlockTableRecord* shown = nullptr);
// What the units of a block and of the drawing make of it; 1 when either says nothing.
double unitFactor(edit::Editor& ed, const VcDbBlockTableRecord& block);
// Position, scale and rotation in the plane of the UCS.
void place(edit::Editor& ed, VcDbBlockReference& reference, const Placement& placement, double unitFactor);
// Values of the block's attributes, asked for or at their defaults as ATTREQ says, in the order of its definitions.
std::vector<std::string> askAttributeValues(edit::Editor& ed, const VcDbBlockTableRecord& block);
// To a reference that stands in the drawing.
void addAttributes(edit::Editor& ed, VcDbBlockReference& reference, const std::vector<std::string>& values);

}  // namespace vk::commands
