// Where text for the person goes: the transcript of the runner, the history of the window.
#pragma once

#include "host/base/api.h"

#include <functional>
#include <string_view>

// Gets UTF-8 text as it is printed, line breaks included. An empty sink restores standard output.
using ConsoleSink = std::function<void(std::string_view)>;
VKHOST_API void setConsoleSink(ConsoleSink sink);

VKHOST_API void consoleWrite(std::string_view text);
VKHOST_API void consoleWrite(std::wstring_view text);
