// What commands remember between runs of the host, guards of system variables, and texts by number.
#pragma once

#include "classlib_string.h"
#include "core/Extend_Mpd.h"
#include "resbuf.h"

// The key of a group of settings in the current profile, below the current user's root; false without a profile.
bool profileKey(const wchar_t* group, CStdStrW& key);

// Choices of the layer tools.
class LayerToolsUtils {
public:
    LayerToolsUtils() = delete;

    // Keeps what the profile does not say.
    static void ReadFromProfile();
    // Stores the flags in a group that is there already; it makes none.
    static void WriteToProfile();

    static bool bLockFlag;
    static bool bFreezeFlag;
    static int nLayLockFadectl;  // percent
};

// Values of the text tools are written as reals and read as integers: 1 on success, 0 on failure.
int SetEledimCheckReg(double value, const wchar_t* name);
int GetEledimCheckReg(int& value, const wchar_t* name);

// Puts a short system variable back when it goes. Without a name it does nothing.
class IntVarHolder {
public:
    explicit IntVarHolder(const wchar_t* name);
    IntVarHolder(const IntVarHolder&) = delete;
    IntVarHolder& operator=(const IntVarHolder&) = delete;
    ~IntVarHolder() noexcept;

    int SetValue(short value);

private:
    resbuf m_variable = {};
    CStdStrW m_name;
    short m_saved = 0;
};

// No pick-first set for as long as it lives.
class AutoSysVar_PICKFIRST {
public:
    AutoSysVar_PICKFIRST();
    AutoSysVar_PICKFIRST(const AutoSysVar_PICKFIRST&) = delete;
    AutoSysVar_PICKFIRST& operator=(const AutoSysVar_PICKFIRST&) = delete;
    ~AutoSysVar_PICKFIRST() noexcept;

private:
    resbuf m_variable = {};
    short m_saved = 0;
};

// No echo of the host's commands for as long as it lives.
class PrepareCmdEcho {
public:
    PrepareCmdEcho();
    PrepareCmdEcho(const PrepareCmdEcho&) = delete;
    PrepareCmdEcho& operator=(const PrepareCmdEcho&) = delete;
    ~PrepareCmdEcho() noexcept;

private:
    int m_saved = 0;
};

// A text by number, or the default where there is no such text.
class __ResourceString {
public:
    __ResourceString(UINT id, const wchar_t* defaultText);
    const CStdStrW& text() const { return m_found ? m_loaded : m_default; }

private:
    CStdStrW m_loaded;
    CStdStrW m_default;
    UINT m_id;
    bool m_found;
};

// Shows a text: mode 0 at the command line, 1 in a message box, any other nowhere.
void vcedErrorPrompt(int id, int mode);
// From the current resources; a text that is missing is told in a message box.
CStdStrW StringFromID(int id);
// From the module's resources, in a message box.
void alertWithResourceId(int id);
