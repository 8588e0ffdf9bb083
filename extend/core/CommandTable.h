// The module's commands as plain data, in the order in which they are registered.
#pragma once

#include "vced.h"

#include <span>

// Bits that the host is given with a command.
inline constexpr int kUsesPickSet = 0x2;
inline constexpr int kRedraws = 0x4;
inline constexpr int kChangesSpace = 0x200002A;

struct CommandRow {
    const wchar_t* globalName;
    unsigned localNameId;
    int flags;
    VcEdCommandFunction handler;
};

// Registered when the edition allows them.
std::span<const CommandRow> gatedCommands();
// Registered always.
std::span<const CommandRow> commonCommands();
