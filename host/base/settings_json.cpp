#include "host/base/settings_json.h"

#include <limits>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

namespace {

constexpr std::uint32_t kTextType = 1;  // texts that are no valid UTF-8 are kept as bytes of this type

std::string toHex(std::string_view bytes)
{
    constexpr const char* kDigits = "0123456789abcdef";
    std::string hex;
    for (const char c : bytes) {
        hex += kDigits[static_cast<unsigned char>(c) >> 4];
        hex += kDigits[static_cast<unsigned char>(c) & 15];
    }
    return hex;
}

int hexDigit(char c)
{
    return c >= '0' && c <= '9' ? c - '0' : (c | 32) >= 'a' && (c | 32) <= 'f' ? (c | 32) - 'a' + 10 : -1;
}

std::optional<std::string> fromHex(std::string_view hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        const int high = hexDigit(hex[i]), low = hexDigit(hex[i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes += static_cast<char>(high * 16 + low);
    }
    return bytes;
}

Json bytesToJson(std::string_view bytes, std::uint32_t type) { return {{"type", type}, {"bytes", toHex(bytes)}}; }

Json valueToJson(const SettingValue& value)
{
    switch (value.kind) {
    case SettingValue::Kind::Number:
        return value.number;
    case SettingValue::Kind::LongNumber:
        return {{"long", value.number}};
    case SettingValue::Kind::Bytes:
        return bytesToJson(value.text, value.type);
    case SettingValue::Kind::Text:
        break;
    }
    return isValidUtf8(value.text) ? Json(value.text) : bytesToJson(value.text, kTextType);
}

std::optional<SettingValue> numberFromJson(const Json& json)
{
    if (json.is_number_unsigned() && json.get<std::uint64_t>() <= std::numeric_limits<std::uint32_t>::max())
        return SettingValue::ofNumber(json.get<std::uint32_t>());
    const auto number = json.get<std::int64_t>();
    const bool small = number < 0 && number >= std::numeric_limits<std::int32_t>::min();
    return small ? SettingValue::ofNumber(static_cast<std::uint32_t>(number)) : SettingValue::ofLong(number);
}

std::optional<SettingValue> objectFromJson(const Json& json)
{
    if (json.contains("long") && json["long"].is_number_integer())
        return SettingValue::ofLong(json["long"].get<std::int64_t>());
    if (!json.contains("bytes") || !json["bytes"].is_string() || !json.contains("type") ||
        !json["type"].is_number_unsigned())
        return std::nullopt;
    const auto bytes = fromHex(json["bytes"].get_ref<const std::string&>());
    const auto type = json["type"].get<std::uint32_t>();
    if (!bytes)
        return std::nullopt;
    return type == kTextType ? SettingValue::ofText(*bytes) : SettingValue::ofBytes(*bytes, type);
}

std::optional<SettingValue> valueFromJson(const Json& json)
{
    if (json.is_string())
        return SettingValue::ofText(json.get_ref<const std::string&>());
    if (json.is_boolean())
        return SettingValue::ofNumber(json.get<bool>() ? 1 : 0);
    if (json.is_number_integer())
        return numberFromJson(json);
    return json.is_object() ? objectFromJson(json) : std::nullopt;
}

}  // namespace

std::string settingsToJson(const SettingKeys& keys)
{
    Json root = Json::object();
    for (const auto& [key, values] : keys) {
        Json& entry = root[key] = Json::object();
        for (const auto& [name, value] : values)
            entry[name] = valueToJson(value);
    }
    return root.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::optional<SettingKeys> settingsFromJson(std::string_view text)
{
    const Json root = Json::parse(text, nullptr, false);
    if (!root.is_object())
        return std::nullopt;
    SettingKeys keys;
    for (const auto& [key, values] : root.items()) {
        SettingValues& entry = keys[normalizedKey(key)];
        if (!values.is_object())
            continue;
        for (const auto& [name, json] : values.items())
            if (auto value = valueFromJson(json))
                entry[name] = *std::move(value);
    }
    return keys;
}
