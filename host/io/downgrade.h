// What becomes of a drawing's objects in an older release.
#pragma once

#include "host/db/database.h"

#include <map>

class GroupSink;
class LetGo;
class VcDbEntity;

enum class Fate { Kept, Rewritten, Dropped };

// What the release can say of an entity: itself, something older that looks the same, or nothing.
Fate fateOf(const VcDbEntity& entity, const DatabaseCore& db, DxfVersion version);
// Writes what stands for an entity whose fate is Rewritten. Its pieces take their handles from nextHandle where there is one.
void writeOlderForm(VcDbEntity& entity, DatabaseCore& db, DxfVersion version, GroupSink& sink, const TagList* space,
                    std::uint64_t* nextHandle);

// ByLayer and ByBlock, which R12 does not list.
bool isAbstractLinetype(const DatabaseCore& db, VcDbObjectId id);

// The classes of the file, and those that objects made since need.
std::vector<ClassRecord> classesToWrite(const DatabaseCore& db, DxfVersion version);

// Whether what the release has no place for, beyond entities, would be dropped: by kind, with how many.
std::map<std::string, std::size_t> objectsWithoutPlace(const DatabaseCore& db, DxfVersion version, const LetGo& letGo);
