#include "core/ExtendUtils.h"

#include "vced.h"
#include "vcut.h"

#include <cwchar>

bool LayerToolsUtils::bLockFlag = true;
bool LayerToolsUtils::bFreezeFlag = false;
int LayerToolsUtils::nLayLockFadectl = 50;

bool profileKey(const wchar_t* group, CStdStrW& key)
{
    resbuf profile = {};
    if (vcedGetVar(L"CPROFILE", &profile) != RTNORM)
        return false;
    key = vcdbHostApplicationServices()->getUserRegistryProductRootKey();
    key += L"\\Profiles\\";
    key += profile.resval.rstring;
    key += L"\\UserInterfaceSettings\\";
    key += group;
    vcad_free(profile.resval.rstring);
    return true;
}

namespace {

constexpr const wchar_t* kLayerTools = L"LayerTools";
constexpr const wchar_t* kTextTools = L"TextTools";
constexpr const wchar_t* kLockFlag = L"LockFlag";
constexpr const wchar_t* kFreezeFlag = L"FreezeFlag";

HKEY openGroup(const wchar_t* group, DWORD access)
{
    CStdStrW path;
    HKEY key = nullptr;
    if (!profileKey(group, path) || RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, access, &key) != ERROR_SUCCESS)
        return nullptr;
    return key;
}

HKEY openOrCreateGroup(const wchar_t* group)
{
    CStdStrW path;
    if (!profileKey(group, path))
        return nullptr;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_ALL_ACCESS, &key) == ERROR_SUCCESS)
        return key;
    const LONG status = RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    return status == ERROR_SUCCESS ? key : nullptr;
}

void readFlag(HKEY key, const wchar_t* name, bool& flag)
{
    std::int32_t value = 0;
    DWORD size = sizeof value;
    if (RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size) == ERROR_SUCCESS)
        flag = value != 0;
}

void writeFlag(HKEY key, const wchar_t* name, bool flag)
{
    const std::int32_t value = flag;
    RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof value);
}

// A node of which only the short is looked at.
short readShort(const wchar_t* name)
{
    resbuf variable = {};
    vcedGetVar(name, &variable);
    return variable.resval.rint;
}

int writeShort(const wchar_t* name, resbuf& variable, short value)
{
    if (vcedGetVar(name, &variable) != RTNORM)
        variable.restype = RTSHORT;
    variable.resval.rint = value;
    return vcedSetVar(name, &variable);
}

}  // namespace

void LayerToolsUtils::ReadFromProfile()
{
    HKEY key = openGroup(kLayerTools, KEY_READ);
    if (!key)
        return;
    readFlag(key, kLockFlag, bLockFlag);
    readFlag(key, kFreezeFlag, bFreezeFlag);
    RegCloseKey(key);
}

void LayerToolsUtils::WriteToProfile()
{
    HKEY key = openGroup(kLayerTools, KEY_ALL_ACCESS);
    if (!key)
        return;
    writeFlag(key, kLockFlag, bLockFlag);
    writeFlag(key, kFreezeFlag, bFreezeFlag);
    RegCloseKey(key);
}

int SetEledimCheckReg(double value, const wchar_t* name)
{
    HKEY key = openOrCreateGroup(kTextTools);
    if (!key)
        return 0;
    wchar_t text[250];
    vcutSPrintf(text, std::size(text), L"%f", value);
    const DWORD size = DWORD((std::wcslen(text) + 1) * sizeof(wchar_t));
    const LONG status = RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), size);
    RegCloseKey(key);
    return status == ERROR_SUCCESS;
}

int GetEledimCheckReg(int& value, const wchar_t* name)
{
    HKEY key = openGroup(kTextTools, KEY_ALL_ACCESS);
    if (!key)
        return 0;
    wchar_t text[1000 / sizeof(wchar_t) + 1] = {};
    DWORD size = 1000;
    const LONG status = RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size);
    RegCloseKey(key);
    if (status != ERROR_SUCCESS)
        return 0;
    std::swscanf(text, L"%d", &value);
    return 1;
}

IntVarHolder::IntVarHolder(const wchar_t* name) : m_name(name)
{
    if (m_name.IsEmpty())
        return;
    vcedGetVar(m_name, &m_variable);
    m_saved = m_variable.resval.rint;
}

int IntVarHolder::SetValue(short value) { return m_name.IsEmpty() ? RTERROR : writeShort(m_name, m_variable, value); }

IntVarHolder::~IntVarHolder() noexcept
{
    if (m_name.IsEmpty())
        return;
    m_variable = {};
    writeShort(m_name, m_variable, m_saved);
}

AutoSysVar_PICKFIRST::AutoSysVar_PICKFIRST()
{
    vcedGetVar(L"PICKFIRST", &m_variable);
    m_saved = m_variable.resval.rint;
    m_variable.resval.rint = 0;
    vcedSetVar(L"PICKFIRST", &m_variable);
}

AutoSysVar_PICKFIRST::~AutoSysVar_PICKFIRST() noexcept
{
    m_variable.resval.rint = m_saved;
    vcedSetVar(L"PICKFIRST", &m_variable);
}

PrepareCmdEcho::PrepareCmdEcho() : m_saved(readShort(L"CMDECHO"))
{
    resbuf variable = {};
    writeShort(L"CMDECHO", variable, 0);
}

PrepareCmdEcho::~PrepareCmdEcho() noexcept
{
    resbuf variable = {};
    writeShort(L"CMDECHO", variable, short(m_saved));
}

__ResourceString::__ResourceString(UINT id, const wchar_t* defaultText)
    : m_default(defaultText), m_id(id), m_found(m_loaded.LoadStringW(m_id))
{
}

void vcedErrorPrompt(int id, int mode)
{
    const CStdStrW text = __ResourceString(UINT(id), nullptr).text();
    if (mode == 0)
        vcutPrintf(L"\n%s\n", text);
    else if (mode == 1)
        AfxMessageBox(text);
}

CStdStrW StringFromID(int id)
{
    CStdStrW text;
    if (!text.LoadString(UINT(id)))
        AfxMessageBox(L"loadstring error! check string id is right!");
    return text;
}

void alertWithResourceId(int id)
{
    CStdStrW text;
    text.LoadString(hLibModule, UINT(id));
    AfxMessageBox(text);
}
