// Which class of ours an object of a file is.
#pragma once

#include "host/io/dxf_source.h"

#include <memory>
#include <span>

class VcDbObject;

// By group 0 and, where several classes share one, by flags and subclass markers. Classes that we do not have come back
// as kept entities or objects.
std::unique_ptr<VcDbObject> makeEntity(std::string_view type, std::span<const Tag> body);
std::unique_ptr<VcDbObject> makeObject(std::string_view type);
