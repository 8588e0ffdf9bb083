// New objects by what a file or a chain calls them.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"

#include <memory>
#include <string_view>

// Where several classes share one group 0, group 70 (of references also 71) and the last subclass marker tell which it is.
// Null for a type that no class of ours stores.
VKHOST_API std::unique_ptr<VcDbObject> newObjectOfType(std::string_view type, std::int64_t group70,
                                                       std::int64_t group71, std::string_view lastMarker);
