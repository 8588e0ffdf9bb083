// Since which release a drawing's header has a variable.
#pragma once

#include "host/db/field_visitor.h"

#include <string_view>

// Variables that we do not know are taken for ones of R13.
DxfVersion headerVariableSince(std::string_view name);
