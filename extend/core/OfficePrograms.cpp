// Excel and Word: starts the program that the settings of the machine name, without waiting for it.
#include "core/Handlers.h"
#include "system.h"

namespace {

// The default value of a key, a path; an empty text where there is none.
template <DWORD N>
bool readDefaultValue(const wchar_t* path, wchar_t (&value)[N])
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    DWORD size = sizeof value - sizeof value[0];
    const LONG status = RegQueryValueExW(key, nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(value), &size);
    RegCloseKey(key);
    return status == ERROR_SUCCESS;
}

void startRegisteredProgram(const wchar_t* key)
{
    wchar_t path[1024 + 1] = {};
    if (!readDefaultValue(key, path))
        return;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(path, nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        return;
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

}  // namespace

void Excel() { startRegisteredProgram(L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\Excel.exe"); }

void Word() { startRegisteredProgram(L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\Winword.exe"); }
