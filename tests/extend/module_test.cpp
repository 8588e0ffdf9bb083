// The module itself, loaded as the host loads it: messages, commands, the Lisp function, entry points.
#include "host/base/modules.h"
#include "host/edit/command.h"
#include "host/edit/module_calls.h"
#include "tests/extend/host_support.h"

namespace {

constexpr const char* kModule = "libVkExtend.vrx";
constexpr const wchar_t* kService = L"VkExtendService";

class Module : public HostTest {
protected:
    using EntryPoint = int (*)(unsigned, void*);

    void load()
    {
        std::string error;
        if (!findModule("VkUInfo.dll")) {
            ASSERT_TRUE(loadModule("VkUInfo.dll", Binding::Global, error)) << error;
        }
        ASSERT_EQ(
            vk::edit::ModuleLoader::instance().load(modulePath(programModule()).substr(0, folderLength()) + kModule),
            "");
        handle = findModule(kModule);
        ASSERT_TRUE(handle);
        entry = reinterpret_cast<EntryPoint>(moduleSymbol(handle, "vcrxEntryPoint"));
        ASSERT_TRUE(entry);
    }
    static std::size_t folderLength() { return modulePath(programModule()).rfind('/') + 1; }
    static const vk::edit::CommandEntry* command(const char* name)
    {
        return vk::edit::CommandTable::instance().find(name);
    }

    LoadedModule* handle = nullptr;
    EntryPoint entry = nullptr;
};

TEST_F(Module, WithoutTheInterfaceLibraryItDoesNotStart)
{
    if (findModule("VkUInfo.dll"))
        GTEST_SKIP() << "loaded already";
    const std::string path = modulePath(programModule()).substr(0, folderLength()) + kModule;
    EXPECT_NE(vk::edit::ModuleLoader::instance().load(path), "");
    EXPECT_FALSE(vcrxServiceIsRegistered(kService));
    EXPECT_FALSE(command("TCASE"));
}

TEST_F(Module, StartRegistersServiceCommandsAndFunction)
{
    load();
    EXPECT_TRUE(vcrxServiceIsRegistered(kService));
    for (const char* name : {"DIMEX", "BLOCK?", "3D", "CHSPACE", "LAYCUR1", "-LAYDEL", "-SCALELISTEDIT"})
        EXPECT_TRUE(command(name)) << name;
    EXPECT_EQ(command("LAYDEL")->handler, command("-LAYDEL")->handler);
    EXPECT_EQ(command("LAYMCH")->handler, command("-LAYMCH")->handler);
    EXPECT_EQ(command("TCASE")->localName, "TCASE");
}

TEST_F(Module, EveryCommandHasItsHelp)
{
    load();
    std::size_t ofModule = 0;
    for (const vk::edit::CommandEntry* entry : vk::edit::CommandTable::instance().all()) {
        EXPECT_GT(entry->help.size(), 10u) << entry->name;
        EXPECT_TRUE(entry->help.ends_with('.')) << entry->name << ": " << entry->help;
        ofModule += entry->handler != nullptr;
    }
    EXPECT_EQ(ofModule, 88u);
    EXPECT_EQ(command("LAYTHW")->help, "Thaws all layers.");
    EXPECT_EQ(command("EXTRIM")->help, "Not available in this version.");
}

TEST_F(Module, StoppingTwiceLeavesNothingBehind)
{
    load();
    EXPECT_EQ(entry(kQuitMsg, nullptr), 0);
    EXPECT_FALSE(vcrxServiceIsRegistered(kService));
    EXPECT_FALSE(command("TCASE"));
    EXPECT_EQ(vk::edit::ModuleLoader::instance().unload(kModule), "");
}

TEST_F(Module, OtherMessagesDoNothing)
{
    load();
    int someone = 0;
    for (const unsigned message : {0u, 4u, 6u, 7u, 9u, 10u, 11u, 12u, 13u, 14u, 15u, 4000u})
        EXPECT_EQ(entry(message, &someone), 0) << message;
    EXPECT_TRUE(command("TCASE"));
}

TEST_F(Module, TheLispFunctionPrintsItsWarning)
{
    load();
    const auto result = vk::edit::ModuleCalls::instance().call(handle, 2, nullptr);
    EXPECT_FALSE(result.failed);
    EXPECT_NE(printed.find("while a reference is being edited"), printed.npos);
}

TEST_F(Module, CodesThatNoFunctionHasFail)
{
    load();
    for (const int code : {-1, 3, 1000}) {
        const auto result = vk::edit::ModuleCalls::instance().call(handle, code, nullptr);
        EXPECT_TRUE(result.failed) << code;
        EXPECT_EQ(result.message, "Incorrect function code.") << code;
    }
}

TEST_F(Module, TheCalculatorGivesNumbersBack)
{
    load();
    auto& calls = vk::edit::ModuleCalls::instance();
    const auto given = [&](resbuf* chain) { return calls.call(handle, 0, RbPtr(chain)); };
    const auto real = given(vcutBuildList(RTREAL, 2.5, RTNONE));
    ASSERT_TRUE(real.value);
    EXPECT_EQ(real.value->resval.rreal, 2.5);
    const auto small = given(vcutBuildList(RTSHORT, 7, RTNONE));
    ASSERT_TRUE(small.value);
    EXPECT_FALSE(given(vcutBuildList(RTSTR, L"1+1", RTNONE)).value);
    const auto other = given(vcutBuildList(RTT, 0, RTNONE));
    EXPECT_TRUE(!other.value || other.value->restype == RTNIL);
}

TEST_F(Module, EntryPointsAreFunctionsAlone)
{
    load();
    auto& loader = vk::edit::ModuleLoader::instance();
    for (const char* name : {"MatHei", "ArcText", "Excel", "Word", "qlattach", "cmd_FCMP", "TextEdit"})
        EXPECT_TRUE(loader.findEntryPoint(name)) << name;
    for (const char* name : {"hCurrentModule", "vcrxEntryPoint", "DllMain", "NoSuchName"})
        EXPECT_FALSE(loader.findEntryPoint(name)) << name;
}

TEST_F(Module, WhatIsNotBuiltSaysSo)
{
    load();
    command("MPEDIT")->handler();
    EXPECT_EQ(printed, "\nMPEDIT is not available in this version.\n");
}

}  // namespace
