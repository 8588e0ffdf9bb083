// Commands: one entry each - name, alias, flags, help, body - and the table of all that can be run.
#pragma once

#include "host/base/api.h"
#include "sdk/vced.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vk::edit {

class Editor;

using CommandBody = void (*)(Editor&);

struct HostCommand {
    const char* name;   // English, in capitals
    const char* alias;  // short form, or null
    int flags;          // CommandFlags
    const char* help;   // one sentence
    CommandBody body;
};

enum CommandFlags : int {
    kPlain = 0,
    kTransparent = 1,     // may run within another command, typed with '
    kUsesPickSet = 2,     // a set picked before the command is offered to it
    kNoUndoStep = 4,      // UNDO, U, REDO, and what changes nothing that undo knows
    kActsOnceDriven = 8,  // driven by another command it ends after one run
    kStaysWaiting = 16,   // stays with the person when the command that drove it has ended
};

// A command as the command line finds it.
struct CommandEntry {
    std::string group, name, localName, alias, help;
    int flags = 0;
    const HostCommand* host = nullptr;      // or
    VcEdCommandFunction handler = nullptr;  // of a module
};

class VKHOST_API CommandTable {
public:
    static CommandTable& instance();
    void addHostCommands(std::span<const HostCommand> commands);
    bool add(CommandEntry entry);
    bool remove(std::string_view group, std::string_view name);
    std::size_t removeGroup(std::string_view group);
    // By what was typed: "_NAME" and ".NAME" and "-NAME", local name, name, alias; without regard to case.
    const CommandEntry* find(std::string_view typed) const;
    std::vector<std::string> namesBeginning(std::string_view prefix) const;
    std::vector<const CommandEntry*> all() const;
    void setAlias(std::string alias, std::string name);

private:
    std::vector<std::unique_ptr<CommandEntry>> m_entries;
    std::unordered_map<std::string, std::vector<const CommandEntry*>> m_byName;
    std::unordered_map<std::string, std::string> m_aliases;
    void index(const CommandEntry& entry);
    void reindex();
};

}  // namespace vk::edit
