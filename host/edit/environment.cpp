#include "host/edit/environment.h"

#include "host/base/settings.h"
#include "host/base/unicode.h"

namespace vk::edit {

namespace {

std::string environmentKey() { return profileGroupKey("Default", "Environment"); }

// What a new profile answers with.
constexpr std::pair<std::string_view, std::string_view> kInitial[] = {
    {"MaxArray", "100000"},
    {"MaxHatch", "1000000"},
};

}

std::optional<std::string> readEnvironment(std::string_view name)
{
    if (const auto stored = userSettings().read(environmentKey(), name))
        return stored->kind == SettingValue::Kind::Text ? stored->text : std::to_string(stored->number);
    for (const auto& [known, value] : kInitial)
        if (equalNoCase(known, name))
            return std::string(value);
    return std::nullopt;
}

bool writeEnvironment(std::string_view name, std::string_view value)
{
    return !name.empty() && userSettings().write(environmentKey(), name, SettingValue::ofText(value));
}

}
