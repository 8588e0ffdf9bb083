// Kinds of object that share one group 0: which class it is shows in other groups.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"

#include <memory>
#include <string_view>

// Of the four polylines by flags (group 70) and, where the file has them, the last subclass marker, which wins.
VKHOST_API std::unique_ptr<VcDbObject> createPolyline(std::int64_t flags, std::string_view marker);
VKHOST_API std::unique_ptr<VcDbObject> createVertex(std::int64_t flags, std::string_view marker);
// A grid of references when it has more than one column (group 70) or row (71).
VKHOST_API std::unique_ptr<VcDbObject> createInsert(std::int64_t columns, std::int64_t rows,
                                                    std::string_view lastMarker);
// Of the seven dimensions by flags (group 70) and the last marker.
VKHOST_API std::unique_ptr<VcDbObject> createDimension(std::int64_t flags, std::string_view marker);
