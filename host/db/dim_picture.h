// What a dimension or a leader looks like, as entities, and the anonymous block that holds a dimension's.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_dims.h"

#include <memory>
#include <optional>
#include <vector>

namespace vk::dim {

struct Picture {
    std::vector<std::unique_ptr<VcDbEntity>> pieces;  // in no database, in world coordinates
    VcGePoint3d textMiddle;
    double measurement = 0;
    std::vector<std::pair<VcGePoint3d, bool>> arrows;  // tips, and whether it is the second one
};

// Empty for a dimension that belongs to no drawing. Layer 0 and "by block" are left to whatever shows the picture.
VKHOST_API Picture pictureOf(const VcDbDimension& dimension);

// The lines or the curve of a leader, and its arrow.
VKHOST_API std::vector<std::unique_ptr<VcDbEntity>> leaderPieces(const VcDbLeader& leader);

// How far a straight leader runs on under its text, where DIMTAD puts that above the line.
VKHOST_API std::optional<VcGePoint3d> underlineEnd(const VcDbLeader& leader);

// The boxes and texts of a feature control frame.
VKHOST_API std::vector<std::unique_ptr<VcDbEntity>> framePieces(const VcDbFcf& frame);

// Draws the dimension into its block: the one that it has when no other dimension uses it, else a new one.
VKHOST_API Vcad::ErrorStatus remakePicture(VcDbDimension& dimension);

// Whether another dimension of the drawing has the same block.
VKHOST_API bool isBlockShared(const VcDbDimension& dimension);

// Gives a piece of a picture the properties that it leaves to its owner.
void inheritFrom(VcDbEntity& piece, const VcDbEntity& owner);

// DIMSCALE or, where that is 0, the scale of the space: 1 on a sheet, the current annotation scale in the model.
double overallScale(const VcDbDimVars& vars, const DatabaseCore& db, bool inPaperSpace);
bool isInPaperSpace(const VcDbEntity& entity, const DatabaseCore& db);

// An arrow in the XY plane, its tip there and pointing in that direction; null where the style has none.
std::unique_ptr<VcDbEntity> arrowPiece(const DatabaseCore& db, VcDbObjectId block, const VcGePoint3d& tip,
                                       double direction, double size);
// Whether a line runs through to the tip of arrows of that block.
bool arrowHasNoBody(const DatabaseCore& db, VcDbObjectId block);

}  // namespace vk::dim
