// The draw order of a block's entities.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"

class DatabaseCore;
class VcDbSortentsTable;

// The table of a block, in its extension dictionary; made when it is missing.
VKHOST_API VcDbSortentsTable* drawOrderOf(DatabaseCore& db, VcDbObjectId block);
