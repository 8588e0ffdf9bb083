// Blocks as commands make and find them: from objects of the drawing, or from another drawing's file.
#pragma once

#include "host/edit/editor.h"
#include "sdk/vcdb_database.h"

#include <string>

class VcDbBlockTableRecord;

namespace vk::commands {

VcDbBlockTableRecord* blockNamed(edit::Editor& ed, std::string_view name);
// Names of blocks as people know them, those of layouts and of the host's own left out.
void listBlocks(edit::Editor& ed, const std::string& pattern);
// A new record, or the known one without its members.
VcDbBlockTableRecord& emptyBlock(edit::Editor& ed, const std::string& name);
// Whether the block, or one that it holds, refers to the other.
bool refersTo(const DatabaseCore& db, VcDbObjectId block, VcDbObjectId other);
// Clones the objects into the record and moves them by the matrix.
void fillBlock(edit::Editor& ed, VcDbBlockTableRecord& block, const VcDbObjectIdArray& objects, const VcGeMatrix3d& m);

// The file of a drawing that a command names, with or without its ending. Errors of the command tell what is wrong.
std::string findDrawing(edit::Editor& ed, const std::string& name);
std::unique_ptr<VcDbDatabase> readOther(edit::Editor& ed, const std::string& path);
// Makes the block what stands in the model of the file.
VcDbBlockTableRecord& blockFromFile(edit::Editor& ed, const std::string& name, const std::string& path);
// A block's name that a file's name gives.
std::string blockNameOf(std::string_view path);

}  // namespace vk::commands
