// System variables that are worked out when they are asked for, and those whose setting does more than store a value.
#pragma once

#include "host/edit/sysvars.h"

namespace vk::edit {

// Nothing for a variable that is simply stored.
std::optional<SysVarValue> computedSysVar(const Editor& editor, const SysVarDef& def);
// Nothing where storing the value is all there is to do.
std::optional<SetVarResult> setSpecialSysVar(Editor& editor, const SysVarDef& def, const SysVarValue& value);

}  // namespace vk::edit
