// Putting the parts of an object in its place.
#pragma once

class DatabaseCore;
class VcDbEntity;

namespace vk::commands {

// False when it has no parts, or its block does not allow it; the object then stays.
bool explodeInPlace(DatabaseCore& db, VcDbEntity& entity);

}  // namespace vk::commands
