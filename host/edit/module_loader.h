// Modules: shared objects with vcrxEntryPoint, loaded locally, told about each drawing, and called for their Lisp functions.
#pragma once

#include "host/base/api.h"

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace vk::edit {

class VKHOST_API ModuleLoader {
public:
    static ModuleLoader& instance();

    // Sets up the registry of services: "DynamicLinker", "VKAD_REGISTERED_COMMANDS", "ServiceDictionary".
    static void prepareServices();

    // Why it failed, or empty. A module of that name that is loaded already is left alone.
    std::string load(const std::string& path);
    // Fails for a module that has not unlocked itself.
    std::string unload(const std::string& name);
    void unloadAll();
    std::vector<std::string> loaded() const;

    // A drawing has been opened or is about to be closed.
    void drawingOpened();
    void drawingClosing();

    // An entry point that a module exports without a command name: extern "C" void NAME(). Null if no module has it.
    using EntryPoint = void (*)();
    EntryPoint findEntryPoint(const std::string& name) const;

    // Calls a module's Lisp function by its code; the message that reaches the module is the invocation.
    int invoke(void* module, int code);
    // The module that is being called or initialised.
    void* current() const { return m_current; }
    void lock(void* module, bool locked);

    // What the module being called says about a command of its own. The texts stand in a file beside it, of its name but
    // for the ending ".help": a command's name, a tab and a sentence on each line; lines that begin with # are left out.
    std::string helpOf(const std::string& command) const;

private:
    struct Module {
        std::string name, path;
        std::unordered_map<std::string, std::string> help;
        void* handle = nullptr;
        int (*entry)(unsigned, void*) = nullptr;
        bool locked = true;
    };
    int send(Module& module, unsigned message, void* argument);
    std::vector<std::unique_ptr<Module>> m_modules;
    void* m_current = nullptr;
};

}  // namespace vk::edit
