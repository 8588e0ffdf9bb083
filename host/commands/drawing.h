// What commands share when they make and change objects: the current space, new entities, the plane of the UCS.
#pragma once

#include "host/edit/editor.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcge.h"

namespace vk::commands {

// Puts a new entity into the current space with the current properties. One that can have a thickness and has none takes the
// current one.
VcDbObjectId addToSpace(edit::Editor& ed, std::unique_ptr<VcDbEntity> entity);

VcGeMatrix3d ucsToWorld(const edit::Editor& ed);
VcGePoint3d toWorld(const edit::Editor& ed, const VcGePoint3d& ucs);
VcGePoint3d fromWorld(const edit::Editor& ed, const VcGePoint3d& world);
VcGeVector3d ucsNormal(const edit::Editor& ed);
// The angle of the UCS's X axis in the plane of its normal, against that plane's own X axis.
double ucsTwist(const edit::Editor& ed);

// An angle that is a direction: as typed it counts from the drawing's angle zero. Turns and spans ask with askAngle.
edit::Answer askDirection(edit::Editor& ed, std::string_view prompt, const edit::AskOptions& options = {});

// Texts of a length, a point (each coordinate; as it is typed) and an angle in the drawing's notation.
std::string lengthText(double value);
std::string pointText(const VcGePoint3d& p);
std::string typedPointText(const VcGePoint3d& p);
std::string angleText(double radians);
// As an answer to askDirection and to askAngle would be typed: from the drawing's angle zero, the way round that it measures.
std::string directionText(const edit::Editor& ed, double radians);
std::string turnText(const edit::Editor& ed, double radians);

bool isOnLockedLayer(const VcDbEntity& entity);
std::string layerName(const VcDbEntity& entity);

}  // namespace vk::commands
