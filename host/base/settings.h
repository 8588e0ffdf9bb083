// The settings of one person: keys with typed values in one file that a person can read and edit.
//
// Keys are paths ("user/Software/vekad/Profiles/..."); '/' and '\' both divide, case does not count. Every change is
// on disk before the call returns, written whole and put in place in one step, under a lock between processes; what
// another process wrote in the meantime is kept.
#pragma once

#include "host/base/api.h"
#include "host/base/unicode.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct SettingValue {
    enum class Kind { Text, Number, LongNumber, Bytes };
    Kind kind = Kind::Text;
    std::string text;  // UTF-8, or the bytes
    std::int64_t number = 0;
    std::uint32_t type = 0;  // of bytes: the system layer's own number

    static SettingValue ofText(std::string_view text) { return {Kind::Text, std::string(text)}; }
    static SettingValue ofNumber(std::uint32_t number) { return {Kind::Number, {}, number}; }
    static SettingValue ofLong(std::int64_t number) { return {Kind::LongNumber, {}, number}; }
    static SettingValue ofBytes(std::string_view bytes, std::uint32_t type)
    {
        return {Kind::Bytes, std::string(bytes), 0, type};
    }
    bool operator==(const SettingValue&) const = default;
};

// Names of a map keep the case in which they were first written.
using SettingValues = std::map<std::string, SettingValue, NoCaseLess>;
using SettingKeys = std::map<std::string, SettingValues, NoCaseLess>;

class VKHOST_API Settings {
public:
    explicit Settings(std::string file) : m_file(std::move(file)) {}

    bool hasKey(std::string_view key);
    std::optional<SettingValue> read(std::string_view key, std::string_view name);
    std::vector<std::string> subkeys(std::string_view key);  // the next part of each key below this one
    std::vector<std::string> names(std::string_view key);

    // False when the change could not be put on disk; it then holds for this run only.
    bool createKey(std::string_view key);
    bool write(std::string_view key, std::string_view name, const SettingValue& value);
    bool remove(std::string_view key, std::string_view name);
    bool removeKey(std::string_view key);  // with all below it

    const std::string& file() const { return m_file; }
    const std::string& lastError() const { return m_error; }

private:
    struct FileStamp {
        std::int64_t inode = 0, size = -1, seconds = 0, nanoseconds = 0;
        bool operator==(const FileStamp&) const = default;
    };
    std::string m_file;
    std::string m_error;
    SettingKeys m_keys;
    FileStamp m_stamp;

    FileStamp stampOfFile() const;
    bool refresh();  // false when there is a file that cannot be read: it must not be overwritten
    bool save();
    template <class Change>
    bool change(Change apply);
};

// The settings file of this person, under the configuration folder or the folder given.
VKHOST_API Settings& userSettings();
VKHOST_API void setSettingsFolder(const std::string& folder);

VKHOST_API std::string normalizedKey(std::string_view key);

// Where a product's profiles lie, and the keys beneath them. Names of groups: "LayerTools", "TextTools", ...
VKHOST_API const wchar_t* productRootKey();
VKHOST_API std::string profileKey(std::string_view profile);
VKHOST_API std::string profileGroupKey(std::string_view profile, std::string_view group);
// Makes a profile with the groups that modules expect to find; one that is there stays as it is.
VKHOST_API bool ensureProfile(std::string_view profile);
