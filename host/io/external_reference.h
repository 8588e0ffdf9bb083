// External references: blocks whose members are the model of another drawing's file. Records that come with one are named
// REFERENCE|NAME; layer 0 stays layer 0. Their members are not saved with the drawing.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"

#include <string>
#include <vector>

class DatabaseCore;
class VcDbBlockTableRecord;

// All of the drawing, those within others too.
VKHOST_API std::vector<VcDbBlockTableRecord*> externalReferences(const DatabaseCore& db);
// A record for it, without members. The name must be free.
VKHOST_API VcDbBlockTableRecord& addExternalReference(DatabaseCore& db, const std::string& name,
                                                      const std::string& path, bool overlay);

struct ReferenceLoad {
    std::string error;                 // a sentence; empty when it is loaded
    std::vector<std::string> remarks;  // what within it could not be had
    bool ok() const { return error.empty(); }
};
// Reads the file at its path, or anew. Layers that are there keep their states. A file that leads back to the drawing or to
// itself is refused; within the file, what does so is left out with a remark.
VKHOST_API ReferenceLoad loadExternalReference(DatabaseCore& db, VcDbBlockTableRecord& reference);
// Leaves the record and its references, without members.
VKHOST_API void unloadExternalReference(DatabaseCore& db, VcDbBlockTableRecord& reference);
// Makes it a block of the drawing: REFERENCE|NAME becomes REFERENCE$0$NAME. False when it is not loaded.
VKHOST_API bool bindExternalReference(DatabaseCore& db, VcDbBlockTableRecord& reference);
// Takes it out with its references and the records that came with it.
VKHOST_API void detachExternalReference(DatabaseCore& db, VcDbBlockTableRecord& reference);
// Those that were loaded when the drawing was saved and came without members, as a drawing is opened. Tells what could not be had.
VKHOST_API std::vector<std::string> loadSavedReferences(DatabaseCore& db);
VKHOST_API bool isLoaded(const DatabaseCore& db, const VcDbBlockTableRecord& reference);
