// Deep cloning: copies of objects with all they own, references translated, within a drawing or into another.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_database.h"

// Entities go to the end of the owner's members; records and dictionary entries keep their names, a record that the target
// already has by name is taken in the clone's place. Records that the clones refer to come along; a reference to
// anything else that stays behind becomes null in another database and stays in the same one.
VKHOST_API Vcad::ErrorStatus cloneObjects(const VcDbObjectIdArray& ids, VcDbObjectId owner, VcDbIdMapping& mapping);
