#include "host/base/settings.h"

#include "host/base/console.h"
#include "host/base/files.h"
#include "host/base/settings_json.h"

#include <boost/interprocess/sync/file_lock.hpp>
#include <boost/interprocess/sync/scoped_lock.hpp>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sys/stat.h>

namespace {

constexpr const char* kFileName = "settings.json";

// Held while a change is read, applied and written; without it (a folder that cannot be written) we go on alone.
class ProcessLock {
public:
    explicit ProcessLock(const std::string& file)
    {
        try {
            std::ofstream(file, std::ios::app);
            m_lock = boost::interprocess::file_lock(file.c_str());
            m_lock.lock();
            m_held = true;
        } catch (const boost::interprocess::interprocess_exception&) {
        }
    }
    ProcessLock(const ProcessLock&) = delete;
    ~ProcessLock()
    {
        if (m_held)
            m_lock.unlock();
    }

private:
    boost::interprocess::file_lock m_lock;
    bool m_held = false;
};

bool liesBelow(std::string_view key, std::string_view parent)
{
    return key.size() > parent.size() && key[parent.size()] == '/' && equalNoCase(key.substr(0, parent.size()), parent);
}

std::string defaultFolder()
{
    if (const char* folder = std::getenv("XDG_CONFIG_HOME"); folder && *folder)
        return joinPath(folder, "vekad");
    const char* home = std::getenv("HOME");
    return joinPath(home && *home ? home : "/tmp", ".config/vekad");
}

std::unique_ptr<Settings>& userInstance()
{
    static std::unique_ptr<Settings> instance;
    return instance;
}

// What cannot be understood is put aside, not overwritten.
void putAside(const std::string& file)
{
    const std::string kept = file + ".bad";
    if (std::rename(file.c_str(), kept.c_str()) == 0)
        consoleWrite("The settings in " + file + " cannot be read; they are kept as " + kept + ".\n");
}

}  // namespace

std::string normalizedKey(std::string_view key)
{
    std::string normal;
    for (const char c : key) {
        const char divided = c == '\\' ? '/' : c;
        if (divided != '/' || (!normal.empty() && normal.back() != '/'))
            normal += divided;
    }
    while (!normal.empty() && normal.back() == '/')
        normal.pop_back();
    return normal;
}

Settings::FileStamp Settings::stampOfFile() const
{
    struct stat info = {};
    if (::stat(m_file.c_str(), &info) != 0)
        return {};
    return {static_cast<std::int64_t>(info.st_ino), info.st_size, info.st_mtim.tv_sec, info.st_mtim.tv_nsec};
}

bool Settings::refresh()
{
    const FileStamp stamp = stampOfFile();
    if (stamp == m_stamp || stamp.size < 0)
        return true;
    const auto content = readWholeFile(m_file, &m_error);
    if (!content)
        return false;
    if (auto keys = settingsFromJson(*content))
        m_keys = *std::move(keys);
    else
        putAside(m_file);
    m_stamp = stamp;
    return true;
}

bool Settings::save()
{
    const bool saved = writeFileAtomically(m_file, settingsToJson(m_keys), m_error);
    if (saved)
        m_stamp = stampOfFile();
    return saved;
}

// apply tells whether it changed anything.
template <class Change>
bool Settings::change(Change apply)
{
    makeFolders(std::string(folderOf(m_file)));
    const ProcessLock lock(m_file + ".lock");
    const bool safe = refresh();
    return !apply(m_keys) || (safe && save());
}

bool Settings::hasKey(std::string_view key)
{
    refresh();
    const std::string normal = normalizedKey(key);
    return m_keys.contains(normal) ||
           std::any_of(m_keys.begin(), m_keys.end(), [&](const auto& entry) { return liesBelow(entry.first, normal); });
}

std::optional<SettingValue> Settings::read(std::string_view key, std::string_view name)
{
    refresh();
    const auto values = m_keys.find(normalizedKey(key));
    if (values == m_keys.end())
        return std::nullopt;
    const auto value = values->second.find(name);
    return value == values->second.end() ? std::nullopt : std::optional(value->second);
}

std::vector<std::string> Settings::subkeys(std::string_view key)
{
    refresh();
    const std::string normal = normalizedKey(key);
    std::map<std::string, bool, NoCaseLess> parts;
    for (const auto& [other, values] : m_keys)
        if (liesBelow(other, normal)) {
            const std::string rest = other.substr(normal.size() + 1);
            parts.emplace(rest.substr(0, rest.find('/')), true);
        }
    std::vector<std::string> names;
    for (const auto& [part, present] : parts)
        names.push_back(part);
    return names;
}

std::vector<std::string> Settings::names(std::string_view key)
{
    refresh();
    std::vector<std::string> names;
    if (const auto values = m_keys.find(normalizedKey(key)); values != m_keys.end())
        for (const auto& [name, value] : values->second)
            names.push_back(name);
    return names;
}

bool Settings::createKey(std::string_view key)
{
    return change([&](SettingKeys& keys) { return keys.try_emplace(normalizedKey(key)).second; });
}

bool Settings::write(std::string_view key, std::string_view name, const SettingValue& value)
{
    return change([&](SettingKeys& keys) {
        SettingValues& values = keys[normalizedKey(key)];
        const auto [at, added] = values.try_emplace(std::string(name), value);
        if (!added && at->second == value)
            return false;
        at->second = value;
        return true;
    });
}

bool Settings::remove(std::string_view key, std::string_view name)
{
    return change([&](SettingKeys& keys) {
        const auto values = keys.find(normalizedKey(key));
        const auto value = values == keys.end() ? SettingValues::iterator() : values->second.find(name);
        if (values == keys.end() || value == values->second.end())
            return false;
        values->second.erase(value);
        return true;
    });
}

bool Settings::removeKey(std::string_view key)
{
    const std::string normal = normalizedKey(key);
    return change([&](SettingKeys& keys) {
        return std::erase_if(keys, [&](const auto& entry) {
                   return equalNoCase(std::string_view(entry.first), std::string_view(normal)) ||
                          liesBelow(entry.first, normal);
               }) > 0;
    });
}

Settings& userSettings()
{
    if (!userInstance())
        setSettingsFolder(defaultFolder());
    return *userInstance();
}

void setSettingsFolder(const std::string& folder)
{
    userInstance() = std::make_unique<Settings>(joinPath(folder, kFileName));
}

const wchar_t* productRootKey() { return L"Software\\vekad"; }

std::string profileKey(std::string_view profile)
{
    return "user/" + normalizedKey(wideToUtf8(productRootKey())) + "/Profiles/" + std::string(profile);
}

std::string profileGroupKey(std::string_view profile, std::string_view group)
{
    return profileKey(profile) + "/UserInterfaceSettings/" + std::string(group);
}

bool ensureProfile(std::string_view profile)
{
    Settings& settings = userSettings();
    if (settings.hasKey(profileKey(profile)))
        return true;
    bool saved = true;
    for (const char* group : {"LayerTools", "TextTools", "FileCompare"})
        saved = settings.createKey(profileGroupKey(profile, group)) && saved;
    return saved;
}
