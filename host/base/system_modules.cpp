// Modules and texts under their system-style names.
#include "host/base/modules.h"
#include "host/base/resources.h"
#include "host/base/unicode.h"
#include "sdk/system.h"
#include "sdk/vchost.h"

static LoadedModule* moduleOf(HMODULE handle) { return handle ? static_cast<LoadedModule*>(handle) : programModule(); }

HMODULE GetModuleHandleW(const wchar_t* name) { return findModule(name ? wideToUtf8(name) : ""); }

DWORD GetModuleFileNameW(HMODULE module, wchar_t* buffer, DWORD size)
{
    const std::wstring path = utf8ToWide(modulePath(moduleOf(module)));
    if (!buffer || size == 0 || path.empty())
        return 0;
    const std::size_t length = std::min<std::size_t>(path.size(), size - 1);
    std::wmemcpy(buffer, path.c_str(), length);
    buffer[length] = 0;
    return length < path.size() ? size : static_cast<DWORD>(length);
}

void* GetProcAddress(HMODULE module, const char* name) { return moduleSymbol(moduleOf(module), name); }

HMODULE LoadLibraryW(const wchar_t* path)
{
    std::string error;
    return path ? loadModule(wideToUtf8(path), Binding::Local, error) : nullptr;
}

BOOL FreeLibrary(HMODULE module) { return freeModule(static_cast<LoadedModule*>(module)); }

int LoadStringW(HINSTANCE instance, UINT id, wchar_t* buffer, int size)
{
    const wchar_t* text = resourceText(instance ? instance : currentResourceHandle(), id);
    if (!text || !buffer || size <= 0)
        return 0;
    const std::size_t length = std::min(std::wcslen(text), static_cast<std::size_t>(size - 1));
    std::wmemcpy(buffer, text, length);
    buffer[length] = 0;
    return static_cast<int>(length);
}

HINSTANCE AfxGetResourceHandle() { return currentResourceHandle(); }

void AfxSetResourceHandle(HINSTANCE instance) { setCurrentResourceHandle(instance); }

void* loadResourceDll(const wchar_t* fileName) { return LoadLibraryW(fileName); }

int getProductLocaleId() { return 0x409; }
