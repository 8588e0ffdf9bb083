// Names of table records, and what still needs a record.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_tables.h"

#include <string>
#include <string_view>

class DatabaseCore;

// Not empty, at most 255 characters, none of < > / \ " : ; ? * | , = ` nor a control character, no blank at the ends;
// a first "*" stands for an anonymous record.
bool isLegalRecordName(std::string_view utf8);

// The next free number behind a name such as "*U" in the table.
std::string freeAnonymousName(const VcDbSymbolTable& table, std::string_view prefix);

// Whether the record is known by its name: layer 0, the logical linetypes, the spaces. Others may be renamed.
bool hasFixedName(const DatabaseCore& db, const VcDbSymbolTableRecord& record);

// The header names what is current; it goes on naming the record under its new name.
void renameInHeader(DatabaseCore& db, const VcDbSymbolTableRecord& record, std::string_view oldName,
                    std::string_view newName);

// Gives a layer that names no linetype the continuous one.
void completeRecord(VcDbSymbolTableRecord& record, const DatabaseCore& db);

// Whether erasing the record is refused: it is current, one of those every drawing has, or something refers to it.
VKHOST_API bool recordIsNeeded(const DatabaseCore& db, const VcDbSymbolTableRecord& record);

// Which slots live objects refer to. Between walks over the whole drawing what changes is added, so that a mark that is
// missing is certain; one that is there is certain only when nothing has changed since the walk.
struct ReferenceMarks {
    std::vector<bool> referred;
    std::uint64_t seenChanges = 0;  // as DatabaseCore::changeCount(), up to where the marks know the drawing
    bool isExact = false;
};

// Ids that live objects refer to with a pointer (not as owner), each once. One walk over the whole drawing.
std::vector<bool> referredSlots(const DatabaseCore& db);
