#include "host/base/modules.h"

#include "host/base/files.h"
#include "host/base/unicode.h"

#include <cstdint>
#include <deque>
#include <dlfcn.h>
#include <filesystem>
#include <link.h>
#include <optional>
#include <utility>

struct LoadedModule {
    std::string path;
    void* object = nullptr;
    int uses = 0;
};

namespace {

constexpr std::uint32_t kAttach = 1;
constexpr std::uint32_t kDetach = 0;

std::deque<LoadedModule>& table()
{
    static std::deque<LoadedModule> modules = {{programPath(), ::dlopen(nullptr, RTLD_LAZY), 1}};
    return modules;
}

LoadedModule* entryOf(const LoadedModule* module)
{
    for (LoadedModule& entry : table())
        if (&entry == module)
            return &entry;
    return nullptr;
}

LoadedModule* findLoadedPath(const std::string& path)
{
    for (LoadedModule& entry : table())
        if (entry.object && entry.path == path)
            return &entry;
    return nullptr;
}

// A freed entry of the same file is used again: its old handles mean the same library.
LoadedModule& entryFor(const std::string& path)
{
    for (LoadedModule& entry : table())
        if (entry.path == path)
            return entry;
    return table().emplace_back(LoadedModule{path});
}

std::optional<std::string> locate(std::string_view name)
{
    const std::string native = nativePath(name);
    if (native.find('/') != native.npos)
        return fileExists(native) ? std::optional(native) : std::nullopt;
    if (const auto beside = findFileNoCase(hostFolder(), native))
        return beside;
    for (const LoadedModule& entry : table())
        if (entry.object)
            if (const auto beside = findFileNoCase(std::string(folderOf(entry.path)), native))
                return beside;
    return std::nullopt;
}

void callMain(const LoadedModule& module, std::uint32_t reason)
{
    using Main = int (*)(void*, std::uint32_t, void*);
    if (const auto entry = reinterpret_cast<Main>(::dlsym(module.object, "DllMain")))
        entry(const_cast<LoadedModule*>(&module), reason, nullptr);
}

bool namesFile(std::string_view wanted, const std::string& path)
{
    const std::string_view file = fileNameOf(path);
    return equalNoCase(wanted, file) || equalNoCase(wanted, std::string_view(path)) ||
           equalNoCase(std::string(wanted) + ".dll", file);
}

}  // namespace

LoadedModule* loadModule(std::string_view name, Binding binding, std::string& error)
{
    const auto found = locate(name);
    if (!found) {
        error = "cannot find " + std::string(name);
        return nullptr;
    }
    std::error_code ignored;
    const std::string path = std::filesystem::canonical(*found, ignored).string();
    if (LoadedModule* loaded = findLoadedPath(path)) {
        ++loaded->uses;
        return loaded;
    }
    void* object = ::dlopen(path.c_str(), RTLD_NOW | (binding == Binding::Global ? RTLD_GLOBAL : RTLD_LOCAL));
    if (!object) {
        error = ::dlerror();
        return nullptr;
    }
    LoadedModule& entry = entryFor(path);
    entry.object = object;
    entry.uses = 1;
    callMain(entry, kAttach);
    return &entry;
}

bool freeModule(LoadedModule* module)
{
    LoadedModule* entry = entryOf(module);
    if (!entry || !entry->object || entry == programModule())
        return false;
    if (--entry->uses > 0)
        return true;
    callMain(*entry, kDetach);
    ::dlclose(std::exchange(entry->object, nullptr));
    return true;
}

LoadedModule* findModule(std::string_view name)
{
    if (name.empty() || equalNoCase(name, std::string_view("vekad.exe")))
        return programModule();
    for (LoadedModule& entry : table())
        if (entry.object && namesFile(name, entry.path))
            return &entry;
    return nullptr;
}

LoadedModule* programModule() { return &table().front(); }

bool isLoaded(const LoadedModule* module)
{
    const LoadedModule* entry = entryOf(module);
    return entry && entry->object;
}

std::string modulePath(const LoadedModule* module) { return isLoaded(module) ? module->path : ""; }

void* moduleSymbol(const LoadedModule* module, const char* name)
{
    return isLoaded(module) && name ? ::dlsym(module->object, name) : nullptr;
}

void* moduleFunction(const LoadedModule* module, const char* name)
{
    void* const symbol = moduleSymbol(module, name);
    Dl_info place;
    void* entry = nullptr;
    if (!symbol || !::dladdr1(symbol, &place, &entry, RTLD_DL_SYMENT) || !entry)
        return nullptr;
    return ELF64_ST_TYPE(static_cast<const ElfW(Sym)*>(entry)->st_info) == STT_FUNC ? symbol : nullptr;
}
