// What every drawing of today has: tables, standard records, spaces, dictionaries, layouts and header variables.
#pragma once

#include "host/base/api.h"

#include <string>

class DatabaseCore;

// Makes what is missing and keeps what is there; done twice, the second time changes nothing. For new drawings, and for
// files of releases or programs that leave most of it out. The drawing's units are those of its $MEASUREMENT, metric where
// it has none.
VKHOST_API void ensureStandardObjects(DatabaseCore& db);

class VcDbBlockTableRecord;

// A new block record of that name, with its beginning and end, on layer 0. The name must be free.
VKHOST_API VcDbBlockTableRecord& addBlockRecord(DatabaseCore& db, std::string name);
// Gives a record that has none its beginning and end.
VKHOST_API void ensureBlockEnds(DatabaseCore& db, VcDbBlockTableRecord& record);
