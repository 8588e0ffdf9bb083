// The shared objects that the host has loaded: modules, its user-interface library, resource libraries.
#pragma once

#include "host/base/api.h"

#include <string>
#include <string_view>

// Entries stay for the life of the process, so that a handle that has been freed is recognised and not followed.
struct LoadedModule;

enum class Binding {
    Local,   // modules: their symbols are their own
    Global,  // the user-interface library, which modules bind to
};

// Loads, or counts one more use of what is loaded. A name without a folder is looked for beside the host and beside
// the loaded modules, without regard to case. The object's DllMain is called with reason 1, before its last use ends
// with reason 0. Null with a sentence in error when it cannot be loaded.
VKHOST_API LoadedModule* loadModule(std::string_view path, Binding binding, std::string& error);
VKHOST_API bool freeModule(LoadedModule* module);

// By file name, without regard to case; ".dll" may be left out. "vekad.exe" and "" are the program itself.
VKHOST_API LoadedModule* findModule(std::string_view name);
VKHOST_API LoadedModule* programModule();

VKHOST_API bool isLoaded(const LoadedModule* module);
VKHOST_API std::string modulePath(const LoadedModule* module);
VKHOST_API void* moduleSymbol(const LoadedModule* module, const char* name);
// Null for a symbol that is data.
VKHOST_API void* moduleFunction(const LoadedModule* module, const char* name);
