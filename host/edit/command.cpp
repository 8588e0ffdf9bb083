#include "host/edit/command.h"

#include "host/base/unicode.h"

namespace vk::edit {

CommandTable& CommandTable::instance()
{
    static CommandTable table;
    return table;
}

void CommandTable::index(const CommandEntry& entry)
{
    for (const std::string* name : {&entry.name, &entry.localName, &entry.alias})
        if (!name->empty()) {
            auto& found = m_byName[foldKey(*name)];
            if (std::find(found.begin(), found.end(), &entry) == found.end())
                found.push_back(&entry);
        }
}

void CommandTable::reindex()
{
    m_byName.clear();
    for (const auto& entry : m_entries)
        index(*entry);
}

void CommandTable::addHostCommands(std::span<const HostCommand> commands)
{
    for (const HostCommand& c : commands)
        add({"HOST", c.name, c.name, c.alias ? c.alias : "", c.help, c.flags, &c, nullptr});
}

bool CommandTable::add(CommandEntry entry)
{
    for (const auto& known : m_entries)
        if (known->group == entry.group && equalNoCase(known->name, entry.name))
            return false;
    m_entries.push_back(std::make_unique<CommandEntry>(std::move(entry)));
    index(*m_entries.back());
    return true;
}

bool CommandTable::remove(std::string_view group, std::string_view name)
{
    const std::size_t removed =
        std::erase_if(m_entries, [&](const auto& e) { return e->group == group && equalNoCase(e->name, name); });
    reindex();
    return removed > 0;
}

std::size_t CommandTable::removeGroup(std::string_view group)
{
    const std::size_t removed = std::erase_if(m_entries, [&](const auto& e) { return e->group == group; });
    reindex();
    return removed;
}

const CommandEntry* CommandTable::find(std::string_view typed) const
{
    while (typed.starts_with('_') || typed.starts_with('.') || typed.starts_with('\''))
        typed.remove_prefix(1);
    auto found = m_byName.find(foldKey(typed));
    if (found == m_byName.end())
        if (const auto alias = m_aliases.find(foldKey(typed)); alias != m_aliases.end())
            found = m_byName.find(foldKey(alias->second));
    return found == m_byName.end() ? nullptr : found->second.front();
}

std::vector<std::string> CommandTable::namesBeginning(std::string_view prefix) const
{
    std::vector<std::string> names;
    for (const auto& entry : m_entries)
        if (entry->localName.size() >= prefix.size() &&
            equalNoCase(std::string_view(entry->localName).substr(0, prefix.size()), prefix))
            names.push_back(entry->localName);
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::vector<const CommandEntry*> CommandTable::all() const
{
    std::vector<const CommandEntry*> entries;
    for (const auto& entry : m_entries)
        entries.push_back(entry.get());
    return entries;
}

void CommandTable::setAlias(std::string alias, std::string name) { m_aliases[foldKey(alias)] = std::move(name); }

}
