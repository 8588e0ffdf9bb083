#include "core/Extend_Mpd.h"

#include "core/CommandTable.h"
#include "vced.h"
#include "vcut.h"

#include <memory>

HINSTANCE hLibModule = nullptr;
HINSTANCE hCurrentModule = nullptr;
CVcExtensionModule VkExtend;
CVcExtensionModule& CVcModuleResourceOverride::m_extensionModule = VkExtend;

namespace {

constexpr const wchar_t* kService = L"VkExtendService";
constexpr const wchar_t* kCommandGroup = L"VK_EXTEND_COMMANDS";
constexpr const wchar_t* kCommandStack = L"VKAD_REGISTERED_COMMANDS";
constexpr const wchar_t* kServiceDictionary = L"ServiceDictionary";
constexpr const wchar_t* kDynamicLinker = L"DynamicLinker";

constexpr int kStarted = 0;
constexpr int kCannotStart = 3;

// The one function of the table that Lisp knows by name.
constexpr int kDefinedFunction = 2;

template <class Service>
Service* service(const wchar_t* name)
{
    return Service::cast(vcrxSysRegistry()->at(name));
}

HINSTANCE LoadResourceLibrary()
{
    return GetModuleHandleW(L"VkUInfo.dll") ? loadResourceDll(L"VkExtendRes.dll") : nullptr;
}

// A name that cannot be registered leaves the others as they are.
void registerCommands(std::span<const CommandRow> rows)
{
    for (const CommandRow& row : rows)
        if (auto* stack = service<VcEdCommandStack>(kCommandStack))
            stack->addCommand(kCommandGroup, row.globalName, LoadLocalCmd(row.localNameId), row.flags, row.handler,
                              nullptr, -1, nullptr, nullptr);
}

void funcload()
{
    const LispFunctionRow& row = func_table[kDefinedFunction];
    vcedDefunEx(row.name, LoadLocalCmd(row.localNameId), kDefinedFunction);
}

int dofun()
{
    const int code = vcedGetFunCode();
    if (code < 0 || code >= int(std::size(func_table))) {
        vcdbFail(L"Incorrect function code.");
        return RTERROR;
    }
    resbuf* arguments = vcedGetArgs();
    const int result = func_table[code].handler(arguments);
    vcutRelRb(arguments);
    return result;
}

int start(void* application)
{
    hLibModule = LoadResourceLibrary();
    if (!hLibModule)
        return kCannotStart;
    if (auto* linker = service<VcRxDynamicLinker>(kDynamicLinker))
        linker->unlock(application);
    vcrxRegisterAppMDIAware(application);
    initApp();
    return kStarted;
}

void stop()
{
    unloadApp();
    if (hLibModule)
        FreeLibrary(hLibModule);
}

void setLocked(void* handle, bool locked)
{
    auto* linker = service<VcRxDynamicLinker>(kDynamicLinker);
    if (!linker)
        return;
    if (locked)
        linker->lock(handle);
    else
        linker->unlock(handle);
}

}  // namespace

EditionCheck editionCheck = [] { return true; };

const LispFunctionRow func_table[3] = {
    {L"C:CAL", 6120, &cal2},
    {L"CAL", 6121, &cal2},
    {L"ai_refedit_alert", 6275, &ai_refedit_alert},
};

CStdStrW LoadLocalCmd(UINT id)
{
    CStdStrW name;
    name.LoadString(hLibModule, id);
    return name;
}

void initApp()
{
    CVcModuleResourceOverride resources(hLibModule);
    if (!vcrxServiceIsRegistered(kService))
        vcrxRegisterService(kService);
    if (editionCheck())
        registerCommands(gatedCommands());
    registerCommands(commonCommands());
}

void unloadApp()
{
    if (vcrxServiceIsRegistered(kService))
        if (auto* services = service<VcRxDictionary>(kServiceDictionary))
            delete services->remove(kService);
    if (auto* stack = service<VcEdCommandStack>(kCommandStack))
        stack->removeGroup(kCommandGroup);
}

VK_ENTRY_POINT int vcrxEntryPoint(unsigned message, void* argument)
{
    static void* pSrvcDC = nullptr;
    static void* moduleHandle = nullptr;
    switch (message) {
    case kInitAppMsg:
        return start(argument);
    case kUnloadAppMsg:
        stop();
        break;
    case kLoadDwgMsg:
        funcload();
        break;
    case kInvkSubrMsg:
        dofun();
        break;
    case kQuitMsg:
        unloadApp();
        break;
    case kDependencyMsg:
    case kNoDependencyMsg:
        if (argument == pSrvcDC)
            setLocked(moduleHandle, message == kDependencyMsg);
        break;
    }
    return kStarted;
}

VK_ENTRY_POINT int DllMain(void* instance, unsigned reason, void*)
{
    constexpr unsigned kAttach = 1;
    if (reason == kAttach)
        hCurrentModule = instance;
    return 1;
}
