// System variables that a drawing carries: in its header, in its dictionary of variables, in the active viewport.
#pragma once

#include "host/edit/sysvar_table.h"

class DatabaseCore;

namespace vk::edit {

// Nothing where the drawing does not say.
VKHOST_API std::optional<SysVarValue> drawingSysVar(const DatabaseCore& db, const SysVarDef& def);
// Journalled. False where the drawing has no place for the variable.
VKHOST_API bool setDrawingSysVar(DatabaseCore& db, const SysVarDef& def, const SysVarValue& value);

}  // namespace vk::edit
