#include "host/edit/module_loader.h"

#include "host/base/files.h"
#include "host/base/modules.h"
#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/edit/editor.h"
#include "sdk/vcrx.h"

#include <filesystem>
#include <sstream>
#include <utility>

namespace vk::edit {

namespace {

class Linker : public VcRxDynamicLinker {
public:
    bool loadModule(const wchar_t* file, bool) override
    {
        return file && ModuleLoader::instance().load(wideToUtf8(file)).empty();
    }
    bool unloadModule(const wchar_t* file) override
    {
        return file && ModuleLoader::instance().unload(wideToUtf8(file)).empty();
    }
    bool lock(void* module) override
    {
        ModuleLoader::instance().lock(module, true);
        return module != nullptr;
    }
    bool unlock(void* module) override
    {
        ModuleLoader::instance().lock(module, false);
        return module != nullptr;
    }
};

class CommandStack : public VcEdCommandStack {
public:
    Vcad::ErrorStatus addCommand(const wchar_t* group, const wchar_t* globalName, const wchar_t* localName, int flags,
                                 VcEdCommandFunction handler, VcEdUIContext*, int, void*,
                                 VcEdCommand** commandOut) override
    {
        if (!group || !globalName || !*globalName || !handler)
            return Vcad::eInvalidInput;
        CommandEntry entry;
        entry.group = wideToUtf8(group);
        entry.name = wideToUtf8(globalName);
        entry.localName = localName ? wideToUtf8(localName) : std::string();
        entry.flags =
            (flags & VCED_CMD_TRANSPARENT ? kTransparent : 0) | (flags & VCED_CMD_USEPICKSET ? kUsesPickSet : 0);
        entry.handler = handler;
        entry.help = ModuleLoader::instance().helpOf(entry.name);
        if (commandOut)
            *commandOut = nullptr;
        return CommandTable::instance().add(std::move(entry)) ? Vcad::eOk : Vcad::eDuplicateKey;
    }
    Vcad::ErrorStatus removeCommand(const wchar_t* group, const wchar_t* name) override
    {
        return group && name && CommandTable::instance().remove(wideToUtf8(group), wideToUtf8(name))
                   ? Vcad::eOk
                   : Vcad::eKeyNotFound;
    }
    Vcad::ErrorStatus removeGroup(const wchar_t* group) override
    {
        return group && CommandTable::instance().removeGroup(wideToUtf8(group)) ? Vcad::eOk : Vcad::eKeyNotFound;
    }
};

class Service : public VcRxObject {};

VcRxDictionary& serviceDictionary() { return *VcRxDictionary::cast(vcrxSysRegistry()->at(L"ServiceDictionary")); }

}

void ModuleLoader::prepareServices()
{
    VcRxDictionary* registry = vcrxSysRegistry();
    if (registry->has(L"DynamicLinker"))
        return;
    registry->atPut(L"DynamicLinker", new Linker);
    registry->atPut(L"VKAD_REGISTERED_COMMANDS", new CommandStack);
    registry->atPut(L"ServiceDictionary", new VcRxDictionary);
}

ModuleLoader& ModuleLoader::instance()
{
    static ModuleLoader loader;
    return loader;
}

int ModuleLoader::send(Module& module, unsigned message, void* argument)
{
    struct Restore {  // modules throw
        void*& current;
        void* before;
        ~Restore() { current = before; }
    } const restore{m_current, std::exchange(m_current, module.handle)};
    return module.entry(message, argument);
}

static std::unordered_map<std::string, std::string> readHelp(const std::string& modulePath)
{
    std::unordered_map<std::string, std::string> help;
    const auto content = readWholeFile(std::filesystem::path(modulePath).replace_extension(".help").string(), nullptr);
    std::istringstream lines(content.value_or(""));
    for (std::string line; std::getline(lines, line);)
        if (const std::size_t tab = line.find('\t'); tab != std::string::npos && !line.starts_with('#'))
            help[line.substr(0, tab)] = trimBlanks(line).substr(tab + 1);
    return help;
}

std::string ModuleLoader::helpOf(const std::string& command) const
{
    for (const auto& module : m_modules)
        if (module->handle == m_current)
            if (const auto found = module->help.find(command); found != module->help.end())
                return found->second;
    return {};
}

std::string ModuleLoader::load(const std::string& path)
{
    const std::string name = std::filesystem::path(path).filename().string();
    for (const auto& module : m_modules)
        if (equalNoCase(module->name, name))
            return {};
    auto module = std::make_unique<Module>();
    module->name = name;
    module->path = path;
    module->help = readHelp(path);
    std::string error;
    LoadedModule* const loaded = loadModule(path, Binding::Local, error);
    if (!loaded)
        return fmt::format("\"{}\" cannot be loaded: {}", path, error);
    module->handle = loaded;
    module->entry = reinterpret_cast<int (*)(unsigned, void*)>(moduleSymbol(loaded, "vcrxEntryPoint"));
    if (!module->entry) {
        freeModule(loaded);
        return fmt::format("\"{}\" is no module: it has no entry point.", path);
    }
    m_modules.push_back(std::move(module));
    Module& added = *m_modules.back();
    std::string failure;
    try {
        if (const int status = send(added, kInitAppMsg, added.handle))
            failure = fmt::format("\"{}\" refused to start (status {}).", path, status);
    } catch (const std::exception& error) {
        failure = fmt::format("\"{}\" failed to start: {}", path, error.what());
    }
    if (!failure.empty()) {
        freeModule(static_cast<LoadedModule*>(added.handle));
        m_modules.pop_back();
        return failure;
    }
    if (Editor::instance().hasDrawing())
        send(added, kLoadDwgMsg, nullptr);
    return {};
}

std::string ModuleLoader::unload(const std::string& name)
{
    const auto found =
        std::find_if(m_modules.begin(), m_modules.end(), [&](const auto& m) { return equalNoCase(m->name, name); });
    if (found == m_modules.end())
        return fmt::format("\"{}\" is not loaded.", name);
    if ((*found)->locked)
        return fmt::format("\"{}\" is in use and cannot be unloaded.", name);
    send(**found, kUnloadAppMsg, (*found)->handle);
    freeModule(static_cast<LoadedModule*>((*found)->handle));
    m_modules.erase(found);
    return {};
}

void ModuleLoader::unloadAll()
{
    while (!m_modules.empty()) {
        Module& last = *m_modules.back();
        send(last, kUnloadAppMsg, last.handle);
        freeModule(static_cast<LoadedModule*>(last.handle));
        m_modules.pop_back();
    }
}

std::vector<std::string> ModuleLoader::loaded() const
{
    std::vector<std::string> names;
    for (const auto& module : m_modules)
        names.push_back(module->name);
    return names;
}

void ModuleLoader::drawingOpened()
{
    for (const auto& module : m_modules)
        send(*module, kLoadDwgMsg, nullptr);
}

void ModuleLoader::drawingClosing()
{
    for (const auto& module : m_modules)
        send(*module, kUnloadDwgMsg, nullptr);
}

// C names of functions alone: the mangled ones of C++ take arguments that nobody could give, and data cannot be called.
ModuleLoader::EntryPoint ModuleLoader::findEntryPoint(const std::string& name) const
{
    if (name.empty() || name.starts_with('_') || name == "vcrxEntryPoint" || name == "DllMain")
        return nullptr;
    for (const auto& module : m_modules)
        if (void* entry = moduleFunction(static_cast<LoadedModule*>(module->handle), name.c_str()))
            return reinterpret_cast<EntryPoint>(entry);
    return nullptr;
}

int ModuleLoader::invoke(void* handle, int)
{
    for (const auto& module : m_modules)
        if (module->handle == handle)
            return send(*module, kInvkSubrMsg, nullptr);
    return RTERROR;
}

void ModuleLoader::lock(void* handle, bool locked)
{
    for (const auto& module : m_modules)
        if (module->handle == handle)
            module->locked = locked;
}

}

VCRX_DEFINE(VcEdCommandStack, VcRxObject)

VcRxDictionary* vcrxSysRegistry()
{
    static auto* registry = new VcRxDictionary;  // modules may look for a service while the process ends
    return registry;
}

bool vcrxRegisterAppMDIAware(void* appHandle) { return appHandle != nullptr; }

bool vcrxServiceIsRegistered(const wchar_t* name) { return name && vk::edit::serviceDictionary().has(name); }

bool vcrxRegisterService(const wchar_t* name)
{
    if (!name || vcrxServiceIsRegistered(name))
        return false;
    vk::edit::serviceDictionary().atPut(name, new vk::edit::Service);
    return true;
}
