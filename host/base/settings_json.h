// The form of the settings file: one object of keys, each an object of values. Texts and 32-bit numbers stand as
// they are, other values as objects that name their type.
#pragma once

#include "host/base/settings.h"

std::string settingsToJson(const SettingKeys& keys);
// Nothing when the text is no such file. Values of a form that is not known are left out.
std::optional<SettingKeys> settingsFromJson(std::string_view text);
