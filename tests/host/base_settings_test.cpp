#include "host/base/console.h"
#include "host/base/files.h"
#include "host/base/settings.h"
#include "sdk/system.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class SettingsTest : public testing::Test {
protected:
    const std::string folder = [] {
        std::string name = testing::TempDir() + "vekad-settings-XXXXXX";
        return std::string(mkdtemp(name.data()));
    }();
    const std::string file = folder + "/settings.json";

    void SetUp() override { setSettingsFolder(folder); }
    ~SettingsTest() override { std::filesystem::remove_all(folder); }
};

TEST_F(SettingsTest, ValuesOfEveryKindSurvive)
{
    const SettingValue values[] = {
        SettingValue::ofText("\xC3\xA9 \"quoted\" \\ \n"),
        SettingValue::ofText("\xFF stray"),
        SettingValue::ofText(""),
        SettingValue::ofNumber(0xFFFFFFFF),
        SettingValue::ofLong(-5),
        SettingValue::ofLong(1LL << 60),
        SettingValue::ofBytes(std::string_view("\0\xFF", 2), 3),
    };
    Settings first(file);
    int i = 0;
    for (const SettingValue& value : values)
        EXPECT_TRUE(first.write("user/Group", "v" + std::to_string(i++), value));
    Settings second(file);
    i = 0;
    for (const SettingValue& value : values)
        EXPECT_EQ(second.read("USER\\group", "V" + std::to_string(i++)), value);
}

TEST_F(SettingsTest, KeysFormATree)
{
    Settings settings(file);
    settings.createKey("user/A/B/C");
    settings.write("user\\a\\D", "x", SettingValue::ofNumber(1));
    EXPECT_TRUE(settings.hasKey("user/A"));
    EXPECT_FALSE(settings.hasKey("user/A/Bx"));
    EXPECT_EQ(settings.subkeys("user/a"), (std::vector<std::string>{"B", "D"}));
    EXPECT_EQ(settings.names("user/A/D"), std::vector<std::string>{"x"});
    EXPECT_TRUE(settings.removeKey("user/A/B"));
    EXPECT_FALSE(settings.hasKey("user/A/B/C"));
    EXPECT_TRUE(settings.remove("user/A/D", "X"));
    EXPECT_EQ(settings.read("user/A/D", "x"), std::nullopt);
    EXPECT_TRUE(settings.hasKey("user/A/D"));
}

TEST_F(SettingsTest, WhatOthersWroteIsKept)
{
    Settings mine(file), theirs(file);
    mine.write("user/K", "a", SettingValue::ofNumber(1));
    theirs.write("user/K", "b", SettingValue::ofNumber(2));
    mine.write("user/K", "c", SettingValue::ofNumber(3));
    EXPECT_EQ(mine.names("user/K"), (std::vector<std::string>{"a", "b", "c"}));
}

TEST_F(SettingsTest, ProcessesDoNotLoseEachOthersValues)
{
    constexpr int kWriters = 4, kValues = 10;
    for (int writer = 0; writer < kWriters; ++writer)
        if (fork() == 0) {
            Settings settings(file);
            for (int i = 0; i < kValues; ++i)
                settings.write("user/K", std::to_string(writer * 100 + i), SettingValue::ofNumber(1));
            _exit(0);
        }
    while (wait(nullptr) > 0)
        ;
    EXPECT_EQ(Settings(file).names("user/K").size(), static_cast<std::size_t>(kWriters * kValues));
}

TEST_F(SettingsTest, AFileThatMakesNoSenseIsPutAside)
{
    std::ofstream(file) << "{ broken";
    std::string printed;
    setConsoleSink([&](std::string_view text) { printed += text; });
    Settings settings(file);
    EXPECT_FALSE(settings.hasKey("user"));
    EXPECT_TRUE(settings.write("user/K", "a", SettingValue::ofNumber(1)));
    setConsoleSink({});
    EXPECT_EQ(readWholeFile(file + ".bad"), "{ broken");
    EXPECT_NE(printed.find(".bad"), printed.npos);
}

TEST_F(SettingsTest, HandEditedValuesAreTakenOrLeft)
{
    std::ofstream(file)
        << R"({"user/K": {"n": -1, "b": true, "f": 1.5, "l": [1], "o": {"bytes": "zz", "type": 3}, "t": "x"}, "odd": 3})";
    Settings settings(file);
    EXPECT_EQ(settings.read("user/K", "n"), SettingValue::ofNumber(0xFFFFFFFF));
    EXPECT_EQ(settings.read("user/K", "b"), SettingValue::ofNumber(1));
    EXPECT_EQ(settings.names("user/K"), (std::vector<std::string>{"b", "n", "t"}));
    EXPECT_TRUE(settings.hasKey("odd"));
}

TEST_F(SettingsTest, WithoutAFolderValuesHoldForTheRun)
{
    Settings settings("/dev/null/none/settings.json");
    EXPECT_FALSE(settings.write("user/K", "a", SettingValue::ofNumber(4)));
    EXPECT_EQ(settings.read("user/K", "a"), SettingValue::ofNumber(4));
    EXPECT_FALSE(settings.lastError().empty());
}

TEST_F(SettingsTest, ANewProfileHasItsGroups)
{
    EXPECT_TRUE(ensureProfile("Default"));
    EXPECT_TRUE(userSettings().hasKey("user/Software/vekad/Profiles/Default/UserInterfaceSettings/LayerTools"));
    EXPECT_EQ(userSettings().subkeys(profileKey("Default") + "/UserInterfaceSettings"),
              (std::vector<std::string>{"FileCompare", "LayerTools", "TextTools"}));
}

TEST_F(SettingsTest, RegistryCallsKeepTypesAndSizes)
{
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\T", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\T", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    const wchar_t text[] = L"1.000000";
    const DWORD number = 7;
    EXPECT_EQ(RegSetValueExW(key, L"Flag", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), 4), ERROR_SUCCESS);
    EXPECT_EQ(RegSetValueExW(key, L"Text", 0, REG_SZ, reinterpret_cast<const BYTE*>(text), sizeof text), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"SOFTWARE/t", 0, KEY_READ, &key), ERROR_SUCCESS);
    DWORD type = 0, size = 4, got = 0;
    EXPECT_EQ(RegQueryValueExW(key, L"flag", nullptr, &type, reinterpret_cast<BYTE*>(&got), &size), ERROR_SUCCESS);
    EXPECT_EQ(type, REG_DWORD);
    EXPECT_EQ(got, 7u);
    wchar_t buffer[20];
    size = 8;
    EXPECT_EQ(RegQueryValueExW(key, L"Text", nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, sizeof text);
    EXPECT_EQ(RegQueryValueExW(key, L"Text", nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size), ERROR_SUCCESS);
    EXPECT_STREQ(buffer, text);
    EXPECT_EQ(RegSetValueExW(key, L"Flag", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), 4),
              ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegQueryValueExW(key, L"none", nullptr, nullptr, nullptr, &size), ERROR_FILE_NOT_FOUND);
    RegCloseKey(key);
    EXPECT_EQ(RegCloseKey(nullptr), ERROR_INVALID_HANDLE);
}

}  // namespace
