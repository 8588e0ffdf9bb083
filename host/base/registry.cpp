// The settings store under its system-style calls.
#include "sdk/system.h"

#include "host/base/settings.h"
#include "host/base/unicode.h"

#include <cstring>
#include <list>

namespace {

struct OpenKey {
    std::string path;
    bool writable;
};

// Open keys by address; a handle that is not among them is refused.
std::list<OpenKey>& openKeys()
{
    static std::list<OpenKey> keys;
    return keys;
}

std::optional<OpenKey> keyOf(HKEY handle)
{
    if (handle == HKEY_CURRENT_USER)
        return OpenKey{"user", true};
    if (handle == HKEY_LOCAL_MACHINE)
        return OpenKey{"machine", true};
    for (const OpenKey& key : openKeys())
        if (&key == handle)
            return key;
    return std::nullopt;
}

HKEY addOpenKey(std::string path, DWORD access)
{
    return &openKeys().emplace_back(OpenKey{std::move(path), (access & KEY_SET_VALUE) != 0});
}

std::string below(const OpenKey& parent, const wchar_t* path)
{
    return normalizedKey(parent.path + "/" + (path ? wideToUtf8(path) : ""));
}

std::string nameOf(const wchar_t* name) { return name ? wideToUtf8(name) : ""; }

DWORD typeOf(const SettingValue& value)
{
    switch (value.kind) {
    case SettingValue::Kind::Number:
        return REG_DWORD;
    case SettingValue::Kind::LongNumber:
        return REG_QWORD;
    case SettingValue::Kind::Bytes:
        return value.type;
    case SettingValue::Kind::Text:
        break;
    }
    return REG_SZ;
}

template <class Number>
std::string bytesOf(Number number)
{
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

// The value as the caller gets it.
std::string dataOf(const SettingValue& value)
{
    switch (value.kind) {
    case SettingValue::Kind::Number:
        return bytesOf(static_cast<DWORD>(value.number));
    case SettingValue::Kind::LongNumber:
        return bytesOf(value.number);
    case SettingValue::Kind::Bytes:
        return value.text;
    case SettingValue::Kind::Text:
        break;
    }
    const std::wstring wide = utf8ToWide(value.text);
    return {reinterpret_cast<const char*>(wide.c_str()), (wide.size() + 1) * sizeof(wchar_t)};
}

// A text up to its terminator, or all of it where the caller left that out.
std::string textFrom(const BYTE* data, DWORD size)
{
    std::wstring text(size / sizeof(wchar_t), L'\0');
    if (!text.empty())
        std::memcpy(text.data(), data, text.size() * sizeof(wchar_t));
    return wideToUtf8(std::wstring_view(text).substr(0, text.find(L'\0')));
}

template <class Number>
Number numberFrom(const BYTE* data)
{
    Number number;
    std::memcpy(&number, data, sizeof number);
    return number;
}

SettingValue valueFrom(DWORD type, const BYTE* data, DWORD size)
{
    if (type == REG_SZ)
        return SettingValue::ofText(textFrom(data, size));
    if (type == REG_DWORD && size == sizeof(DWORD))
        return SettingValue::ofNumber(numberFrom<DWORD>(data));
    if (type == REG_QWORD && size == sizeof(std::int64_t))
        return SettingValue::ofLong(numberFrom<std::int64_t>(data));
    return SettingValue::ofBytes({reinterpret_cast<const char*>(data), size}, type);
}

LONG give(const std::string& data, BYTE* buffer, DWORD* size)
{
    if (!size)
        return buffer ? ERROR_INVALID_PARAMETER : ERROR_SUCCESS;
    const DWORD room = *size;
    *size = static_cast<DWORD>(data.size());
    if (!buffer)
        return ERROR_SUCCESS;
    if (room < data.size())
        return ERROR_MORE_DATA;
    std::memcpy(buffer, data.data(), data.size());
    return ERROR_SUCCESS;
}

}  // namespace

LONG RegOpenKeyExW(HKEY parent, const wchar_t* path, DWORD, DWORD access, HKEY* key)
{
    const auto from = keyOf(parent);
    if (!from)
        return ERROR_INVALID_HANDLE;
    if (!key)
        return ERROR_INVALID_PARAMETER;
    const std::string full = below(*from, path);
    if (!userSettings().hasKey(full))
        return ERROR_FILE_NOT_FOUND;
    *key = addOpenKey(full, access);
    return ERROR_SUCCESS;
}

LONG RegCreateKeyExW(HKEY parent, const wchar_t* path, DWORD, wchar_t*, DWORD, DWORD access, void*, HKEY* key,
                     DWORD* disposition)
{
    constexpr DWORD kCreated = 1, kOpened = 2;
    const auto from = keyOf(parent);
    if (!from)
        return ERROR_INVALID_HANDLE;
    if (!key)
        return ERROR_INVALID_PARAMETER;
    const std::string full = below(*from, path);
    const bool there = userSettings().hasKey(full);
    if (!there && !userSettings().createKey(full))
        return ERROR_WRITE_FAULT;
    if (disposition)
        *disposition = there ? kOpened : kCreated;
    *key = addOpenKey(full, access);
    return ERROR_SUCCESS;
}

LONG RegQueryValueExW(HKEY key, const wchar_t* name, DWORD*, DWORD* type, BYTE* data, DWORD* size)
{
    const auto from = keyOf(key);
    if (!from)
        return ERROR_INVALID_HANDLE;
    const auto value = userSettings().read(from->path, nameOf(name));
    if (!value)
        return ERROR_FILE_NOT_FOUND;
    if (type)
        *type = typeOf(*value);
    return give(dataOf(*value), data, size);
}

LONG RegSetValueExW(HKEY key, const wchar_t* name, DWORD, DWORD type, const BYTE* data, DWORD size)
{
    const auto to = keyOf(key);
    if (!to)
        return ERROR_INVALID_HANDLE;
    if (!to->writable)
        return ERROR_ACCESS_DENIED;
    if (!data && size)
        return ERROR_INVALID_PARAMETER;
    return userSettings().write(to->path, nameOf(name), valueFrom(type, data, size)) ? ERROR_SUCCESS
                                                                                     : ERROR_WRITE_FAULT;
}

LONG RegDeleteValueW(HKEY key, const wchar_t* name)
{
    const auto from = keyOf(key);
    if (!from)
        return ERROR_INVALID_HANDLE;
    if (!from->writable)
        return ERROR_ACCESS_DENIED;
    if (!userSettings().read(from->path, nameOf(name)))
        return ERROR_FILE_NOT_FOUND;
    return userSettings().remove(from->path, nameOf(name)) ? ERROR_SUCCESS : ERROR_WRITE_FAULT;
}

LONG RegDeleteKeyW(HKEY parent, const wchar_t* path)
{
    const auto from = keyOf(parent);
    if (!from)
        return ERROR_INVALID_HANDLE;
    const std::string full = below(*from, path);
    if (!path || !*path || !userSettings().hasKey(full))
        return ERROR_FILE_NOT_FOUND;
    return userSettings().removeKey(full) ? ERROR_SUCCESS : ERROR_WRITE_FAULT;
}

LONG RegEnumKeyExW(HKEY key, DWORD index, wchar_t* name, DWORD* size, DWORD*, wchar_t*, DWORD*, void*)
{
    const auto from = keyOf(key);
    if (!from)
        return ERROR_INVALID_HANDLE;
    const auto names = userSettings().subkeys(from->path);
    if (index >= names.size())
        return ERROR_NO_MORE_ITEMS;
    const std::wstring wide = utf8ToWide(names[index]);
    if (!name || !size || *size <= wide.size())
        return ERROR_MORE_DATA;
    std::wmemcpy(name, wide.c_str(), wide.size() + 1);
    *size = static_cast<DWORD>(wide.size());
    return ERROR_SUCCESS;
}

LONG RegCloseKey(HKEY key)
{
    return openKeys().remove_if([key](const OpenKey& open) { return &open == key; }) ? ERROR_SUCCESS
                                                                                     : ERROR_INVALID_HANDLE;
}
