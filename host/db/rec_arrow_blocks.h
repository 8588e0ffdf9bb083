// The blocks of the built-in arrows of dimensions and leaders.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"

#include <string_view>

class DatabaseCore;

// Whether the name, with or without its leading underscore and in any case, is that of a built-in arrow.
VKHOST_API bool isBuiltInArrow(std::string_view name);

// The block of an arrow: one of that name or, for a built-in arrow, the block with the underscore, which is made when it
// is missing. Null when there is no such block.
VKHOST_API VcDbObjectId arrowBlock(DatabaseCore& db, std::string_view name);
