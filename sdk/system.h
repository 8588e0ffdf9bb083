// System-style functions under the names that the desktop system gives them.
#pragma once

#include "vkdefs.h"

#include <cwchar>

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using LONG = std::int32_t;
using LRESULT = std::intptr_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using HANDLE = void*;
using HMODULE = void*;
using HINSTANCE = void*;
using HWND = void*;
using HKEY = void*;
using LPCWSTR = const wchar_t*;
using LPWSTR = wchar_t*;

#ifndef TRUE
#define TRUE 1
#define FALSE 0
#endif

// What a resource library exports as `extern "C" const VkResourceTable vkResourceTable`, in ascending order of id.
struct VkResourceText {
    unsigned id;
    const wchar_t* text;
};
struct VkResourceTable {
    unsigned count;
    const VkResourceText* texts;
};

// Modules and texts. A null name is the program, "vekad.exe".
VK_SDK HMODULE GetModuleHandleW(const wchar_t* name);
VK_SDK DWORD GetModuleFileNameW(HMODULE module, wchar_t* buffer, DWORD size);
VK_SDK void* GetProcAddress(HMODULE module, const char* name);
VK_SDK HMODULE LoadLibraryW(const wchar_t* path);
VK_SDK BOOL FreeLibrary(HMODULE module);
VK_SDK int LoadStringW(HINSTANCE instance, UINT id, wchar_t* buffer, int size);
VK_SDK HINSTANCE AfxGetResourceHandle();
VK_SDK void AfxSetResourceHandle(HINSTANCE instance);

// Message boxes.
enum : UINT {
    MB_OK = 0,
    MB_OKCANCEL = 1,
    MB_ABORTRETRYIGNORE = 2,
    MB_YESNOCANCEL = 3,
    MB_YESNO = 4,
    MB_RETRYCANCEL = 5,
    MB_ICONERROR = 0x10,
    MB_ICONSTOP = 0x10,
    MB_ICONQUESTION = 0x20,
    MB_ICONEXCLAMATION = 0x30,
    MB_ICONWARNING = 0x30,
    MB_ICONINFORMATION = 0x40,
    MB_DEFBUTTON1 = 0,
    MB_DEFBUTTON2 = 0x100,
    MB_DEFBUTTON3 = 0x200,
};
enum { IDOK = 1, IDCANCEL, IDABORT, IDRETRY, IDIGNORE, IDYES, IDNO };
VK_SDK int MessageBoxW(HWND owner, const wchar_t* text, const wchar_t* title, UINT style = MB_OK);
VK_SDK int AfxMessageBox(const wchar_t* text, UINT style = MB_OK, UINT help = 0);
VK_SDK int AfxMessageBox(UINT id, UINT style = MB_OK, UINT help = static_cast<UINT>(-1));

// The settings store. Texts have type REG_SZ and a size in bytes with their terminator.
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<std::uintptr_t>(0x80000001)))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<std::uintptr_t>(0x80000002)))
enum : DWORD {
    REG_NONE = 0,
    REG_SZ = 1,
    REG_EXPAND_SZ = 2,
    REG_BINARY = 3,
    REG_DWORD = 4,
    REG_MULTI_SZ = 7,
    REG_QWORD = 11
};
enum : DWORD {
    KEY_QUERY_VALUE = 1,
    KEY_SET_VALUE = 2,
    KEY_READ = 0x20019,
    KEY_WRITE = 0x20006,
    KEY_ALL_ACCESS = 0xF003F
};
enum : LONG {
    ERROR_SUCCESS = 0,
    ERROR_FILE_NOT_FOUND = 2,
    ERROR_ACCESS_DENIED = 5,
    ERROR_INVALID_HANDLE = 6,
    ERROR_WRITE_FAULT = 29,
    ERROR_INVALID_PARAMETER = 87,
    ERROR_MORE_DATA = 234,
    ERROR_NO_MORE_ITEMS = 259,
};
VK_SDK LONG RegOpenKeyExW(HKEY parent, const wchar_t* path, DWORD options, DWORD access, HKEY* key);
VK_SDK LONG RegCreateKeyExW(HKEY parent, const wchar_t* path, DWORD reserved, wchar_t* keyClass, DWORD options,
                            DWORD access, void* security, HKEY* key, DWORD* disposition);
VK_SDK LONG RegQueryValueExW(HKEY key, const wchar_t* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size);
VK_SDK LONG RegSetValueExW(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);
VK_SDK LONG RegDeleteValueW(HKEY key, const wchar_t* name);
VK_SDK LONG RegDeleteKeyW(HKEY parent, const wchar_t* path);
VK_SDK LONG RegEnumKeyExW(HKEY key, DWORD index, wchar_t* name, DWORD* size, DWORD* reserved, wchar_t* keyClass,
                          DWORD* classSize, void* lastWrite);
VK_SDK LONG RegCloseKey(HKEY key);

// Files. Paths take '/'; a '\' counts as '/' where there is no file of that very name.
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1)))
enum : DWORD {
    GENERIC_READ = 0x80000000,
    GENERIC_WRITE = 0x40000000,
    FILE_SHARE_READ = 1,
    FILE_SHARE_WRITE = 2,
    CREATE_NEW = 1,
    CREATE_ALWAYS = 2,
    OPEN_EXISTING = 3,
    OPEN_ALWAYS = 4,
    TRUNCATE_EXISTING = 5,
    FILE_ATTRIBUTE_READONLY = 1,
    FILE_ATTRIBUTE_HIDDEN = 2,
    FILE_ATTRIBUTE_DIRECTORY = 0x10,
    FILE_ATTRIBUTE_NORMAL = 0x80,
    INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF,
    INVALID_FILE_SIZE = 0xFFFFFFFF,
};
VK_SDK HANDLE CreateFileW(const wchar_t* path, DWORD access, DWORD share, void* security, DWORD disposition,
                          DWORD attributes, HANDLE pattern);
VK_SDK BOOL ReadFile(HANDLE file, void* buffer, DWORD count, DWORD* read, void* overlapped);
VK_SDK BOOL WriteFile(HANDLE file, const void* buffer, DWORD count, DWORD* written, void* overlapped);
VK_SDK DWORD GetFileSize(HANDLE file, DWORD* high);
VK_SDK BOOL CloseHandle(HANDLE handle);
VK_SDK BOOL CopyFileW(const wchar_t* from, const wchar_t* to, BOOL failIfExists);
VK_SDK BOOL DeleteFileW(const wchar_t* path);
VK_SDK DWORD GetFileAttributesW(const wchar_t* path);
VK_SDK DWORD GetTempPathW(DWORD size, wchar_t* buffer);  // private to the run, with its separator

// Programs. They are not waited for; both handles must be closed.
struct STARTUPINFOW {
    DWORD cb;
    void* reserved[8];
};
struct PROCESS_INFORMATION {
    HANDLE hProcess;
    HANDLE hThread;
    DWORD dwProcessId;
    DWORD dwThreadId;
};
VK_SDK BOOL CreateProcessW(const wchar_t* program, wchar_t* commandLine, void* processSecurity, void* threadSecurity,
                           BOOL inherit, DWORD flags, void* environment, const wchar_t* folder, STARTUPINFOW* startup,
                           PROCESS_INFORMATION* information);

// Code pages, by number; 0 is the host's own.
enum : UINT { CP_ACP = 0, CP_UTF8 = 65001 };
enum : DWORD { MB_PRECOMPOSED = 1, MB_ERR_INVALID_CHARS = 8 };
VK_SDK UINT GetACP();
VK_SDK BOOL IsDBCSLeadByte(BYTE byte);
// Counts of characters or bytes, 0 on failure. A length of -1 means up to the terminator and with it; a size of 0
// asks for the length that is needed.
VK_SDK int MultiByteToWideChar(UINT codePage, DWORD flags, const char* text, int length, wchar_t* buffer, int size);
VK_SDK int WideCharToMultiByte(UINT codePage, DWORD flags, const wchar_t* text, int length, char* buffer, int size,
                               const char* unknown, BOOL* usedUnknown);

// The high bit is set while the key is down.
enum { VK_SHIFT = 0x10, VK_CONTROL = 0x11, VK_MENU = 0x12, VK_ESCAPE = 0x1B };
VK_SDK short GetKeyState(int key);

// Texts. Numbers are read from the front, with the point, in every locale, and saturate.
VK_SDK int StrCmpI(const wchar_t* a, const wchar_t* b);
VK_SDK void _wsplitpath(const wchar_t* path, wchar_t* drive, wchar_t* folder, wchar_t* name, wchar_t* extension);
VK_SDK int _wtoi(const wchar_t* text);
VK_SDK long _wtol(const wchar_t* text);
VK_SDK double _wtof(const wchar_t* text);
// 0, or an error number; a text that does not fit leaves an empty one behind.
VK_SDK int _wcsupr_s(wchar_t* text, std::size_t size);
VK_SDK int wcscpy_s(wchar_t* to, std::size_t size, const wchar_t* from);
VK_SDK int wcscat_s(wchar_t* to, std::size_t size, const wchar_t* from);
inline constexpr std::size_t _TRUNCATE = static_cast<std::size_t>(-1);
VK_SDK int wcsncpy_s(wchar_t* to, std::size_t size, const wchar_t* from, std::size_t count);
VK_SDK int memcpy_s(void* to, std::size_t size, const void* from, std::size_t count);
VK_SDK int _tvkstrcpy_s(wchar_t* to, std::size_t size, const wchar_t* from);

template <std::size_t N>
int _wcsupr_s(wchar_t (&text)[N])
{
    return _wcsupr_s(text, N);
}
template <std::size_t N>
int wcscpy_s(wchar_t (&to)[N], const wchar_t* from)
{
    return wcscpy_s(to, N, from);
}
template <std::size_t N>
int wcscat_s(wchar_t (&to)[N], const wchar_t* from)
{
    return wcscat_s(to, N, from);
}
template <std::size_t N>
int wcsncpy_s(wchar_t (&to)[N], const wchar_t* from, std::size_t count)
{
    return wcsncpy_s(to, N, from, count);
}
template <std::size_t N>
int _tvkstrcpy_s(wchar_t (&to)[N], const wchar_t* from)
{
    return _tvkstrcpy_s(to, N, from);
}
