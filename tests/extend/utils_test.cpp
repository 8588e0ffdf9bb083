// Guards of system variables, choices kept in the profile, texts by number, and single groups of entities.
#include "core/ExtendUtils.h"
#include "core/PublicFunction.h"
#include "host/commands/all_commands.h"
#include "tests/extend/host_support.h"

namespace {

using Guards = HostTest;

TEST_F(Guards, IntVarHolderPutsTheValueBack)
{
    set_acad_int_var(L"OSMODE", 5);
    {
        IntVarHolder outer(L"OSMODE");
        EXPECT_EQ(outer.SetValue(7), RTNORM);
        {
            IntVarHolder inner(L"OSMODE");
            EXPECT_EQ(inner.SetValue(9), RTNORM);
            EXPECT_EQ(shortVariable(L"OSMODE"), 9);
        }
        EXPECT_EQ(shortVariable(L"OSMODE"), 7);
    }
    EXPECT_EQ(shortVariable(L"OSMODE"), 5);
}

TEST_F(Guards, IntVarHolderWithoutANameDoesNothing)
{
    IntVarHolder inert(L"");
    EXPECT_EQ(inert.SetValue(1), RTERROR);
}

TEST_F(Guards, PickFirstAndEchoAreOffForTheGuardsLife)
{
    for (const int before : {0, 1}) {
        set_acad_int_var(L"PICKFIRST", before);
        set_acad_int_var(L"CMDECHO", before);
        {
            AutoSysVar_PICKFIRST pick;
            PrepareCmdEcho echo;
            EXPECT_EQ(shortVariable(L"PICKFIRST"), 0);
            EXPECT_EQ(shortVariable(L"CMDECHO"), 0);
        }
        EXPECT_EQ(shortVariable(L"PICKFIRST"), before);
        EXPECT_EQ(shortVariable(L"CMDECHO"), before);
    }
}

TEST_F(Guards, StringVariables)
{
    wchar_t text[64] = L"";
    EXPECT_EQ(get_acad_str_var(L"CLAYER", text, 64), 1);
    EXPECT_STREQ(text, L"0");
    EXPECT_EQ(getCurTextStyle(text, 64), RTNORM);
    EXPECT_STREQ(text, L"Standard");
    EXPECT_EQ(getCurLayer(nullptr, 64), RTERROR);
    EXPECT_EQ(set_acad_str_var(L"", L"x"), 0);
    EXPECT_EQ(set_acad_str_var(nullptr, L"x"), 0);
    EXPECT_EQ(set_acad_str_var(L"CLAYER", nullptr), 0);
    EXPECT_EQ(CreateNewLayer(L"COPY"), RTNORM);
    EXPECT_EQ(createLayer(L"COPY", 1, L"Continuous"), 0);
    EXPECT_EQ(createLayer(L"RED", 1, L"Continuous"), 1);
    EXPECT_EQ(set_acad_str_var(L"CLAYER", L"RED"), 1);
    EXPECT_EQ(getCurLayer(text, 64), RTNORM);
    EXPECT_STREQ(text, L"RED");
}

using Profile = HostTest;

TEST_F(Profile, RealsAreReadAsIntegers)
{
    int value = 42;
    EXPECT_EQ(GetEledimCheckReg(value, L"NoSuchValue"), 0);
    EXPECT_EQ(value, 42);
    EXPECT_EQ(SetEledimCheckReg(1.0, L"Keep"), 1);
    EXPECT_EQ(GetEledimCheckReg(value, L"Keep"), 1);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(SetEledimCheckReg(0.0, L"Keep"), 1);
    EXPECT_EQ(GetEledimCheckReg(value, L"Keep"), 1);
    EXPECT_EQ(value, 0);
}

TEST_F(Profile, LayerFlagsLastAndMissingOnesStay)
{
    LayerToolsUtils::ReadFromProfile();
    EXPECT_TRUE(LayerToolsUtils::bLockFlag);
    EXPECT_FALSE(LayerToolsUtils::bFreezeFlag);
    LayerToolsUtils::bLockFlag = false;
    LayerToolsUtils::bFreezeFlag = true;
    LayerToolsUtils::WriteToProfile();
    LayerToolsUtils::bLockFlag = true;
    LayerToolsUtils::bFreezeFlag = false;
    LayerToolsUtils::ReadFromProfile();
    EXPECT_FALSE(LayerToolsUtils::bLockFlag);
    EXPECT_TRUE(LayerToolsUtils::bFreezeFlag);
    LayerToolsUtils::bLockFlag = true;
    LayerToolsUtils::bFreezeFlag = false;
}

using Messages = HostTest;

TEST_F(Messages, ATextThatIsMissingIsToldOnce)
{
    EXPECT_TRUE(StringFromID(64999).IsEmpty());
    EXPECT_EQ(boxes, std::vector<std::string>{"loadstring error! check string id is right!"});
}

TEST_F(Messages, TheModeSaysWhere)
{
    hLibModule = loadResourceDll(L"VkExtendRes.dll");
    ASSERT_TRUE(hLibModule);
    {
        CVcModuleResourceOverride resources(hLibModule);
        vcedErrorPrompt(2577, 2);
        EXPECT_EQ(printed, "");
        EXPECT_TRUE(boxes.empty());
        vcedErrorPrompt(6121, 0);
        EXPECT_EQ(printed, "\nCAL\n");
        vcedErrorPrompt(6121, 1);
        EXPECT_EQ(boxes, std::vector<std::string>{"CAL"});
    }
    alertWithResourceId(6120);
    EXPECT_EQ(boxes.back(), "C:CAL");
    FreeLibrary(hLibModule);
    hLibModule = nullptr;
}

using Entities = HostTest;

TEST_F(Entities, AMissingGroupLeavesTheDefault)
{
    vds_name name = {}, nothing = {};
    makeText(name);
    int number = 7;
    EXPECT_EQ(GetEntInt(name, 68, number), RTNORM);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(GetEntInt(nothing, 68, number), RTERROR);
    double height = 0;
    EXPECT_EQ(GetEntReal(name, 40, height), RTNORM);
    EXPECT_EQ(height, 2.5);
    vds_point at = {};
    EXPECT_EQ(GetEntPoint(name, 10, at), RTNORM);
    EXPECT_EQ(at[1], 2);
    wchar_t type[3] = L"";
    EXPECT_EQ(GetEntType(name, type, 3), RTNORM);
    EXPECT_STREQ(type, L"TE");
    EXPECT_EQ(GetEntType(name, nullptr, 0), RTNORM);
    EXPECT_EQ(getEntType(name), 16);
    EXPECT_EQ(getEntType(nothing), 0);
}

TEST_F(Entities, LayersAreSet)
{
    vds_name name = {}, nothing = {};
    makeText(name);
    createLayer(L"RED", 1, L"Continuous");
    CStdStrW layer;
    EXPECT_EQ(SetEntLayer(name, L"RED"), RTNORM);
    EXPECT_TRUE(GetObjLayer(name, layer));
    EXPECT_EQ(layer, L"RED");
    EXPECT_EQ(SetEntLayer(nothing, L"RED"), RTERROR);
    EXPECT_EQ(printed, "\nSetting error!");
    EXPECT_FALSE(GetObjLayer(nothing, layer));
}

TEST_F(Entities, WhatWasMadeAfterAnEntityIsFound)
{
    vds_name first = {}, second = {}, all = {}, later = {}, nothing = {};
    makeText(first);
    makeText(second);
    ASSERT_EQ(vcedSSAdd(nullptr, nullptr, all), RTNORM);
    ASSERT_EQ(vcedSSAdd(nullptr, nullptr, later), RTNORM);
    int count = -1;
    EXPECT_EQ(GetLastSel(first, later), RTNORM);
    EXPECT_EQ(vcedSSLength(later, &count), RTNORM);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(vcedSSMemb(second, later), RTNORM);
    EXPECT_EQ(GetLastSel(nothing, all), RTNORM);
    vcedSSLength(all, &count);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(ssaddss(all, later), RTNORM);
    vcedSSLength(later, &count);
    EXPECT_EQ(count, 2);
    EmptyEntFromSS(later);
    EXPECT_EQ(getEntType(first), 0);
    vcedSSFree(all);
    vcedSSFree(later);
}

TEST_F(Entities, PolylinesAreToldApartByTheirFlags)
{
    const struct {
        int flags, vertexFlags, kind;
    } kCases[] = {{0, 0, 6}, {1, 0, 6}, {8, 32, 7}, {9, 32, 7}, {16, 64, 11}, {64, 192, 19}};
    for (const auto& c : kCases) {
        const vds_point at = {1, 2, 0};
        const RbPtr head(vcutBuildList(RTDXF0, L"POLYLINE", 8, L"0", 66, 1, 70, c.flags, 71, 2, 72, 2, RTNONE));
        ASSERT_EQ(vcdbEntMake(head.get()), RTNORM) << c.flags;
        for (int i = 0; i < 4; ++i) {
            const RbPtr vertex(vcutBuildList(RTDXF0, L"VERTEX", 8, L"0", 10, at, 70, c.vertexFlags, RTNONE));
            ASSERT_EQ(vcdbEntMake(vertex.get()), RTNORM) << c.flags;
        }
        const RbPtr end(vcutBuildList(RTDXF0, L"SEQEND", RTNONE));
        ASSERT_EQ(vcdbEntMake(end.get()), RTNORM) << c.flags;
        vds_name name = {};
        ASSERT_EQ(vcdbEntLast(name), RTNORM);
        EXPECT_EQ(getEntType(name), c.kind) << c.flags;
    }
}

// Commands of the host that make layers.
class Layers : public HostTest {
protected:
    Layers() { vk::commands::registerHostCommands(); }

    static int flagsOf(const wchar_t* name)
    {
        const RbPtr record(vcdbTblSearch(L"LAYER", name, 0));
        int flags = -1;
        GetBufInt(record.get(), 70, flags);
        return flags;
    }
    static CStdStrW current()
    {
        wchar_t name[64] = L"";
        getCurLayer(name, 64);
        return name;
    }
};

TEST_F(Layers, ANewLayerHasItsColourAndTheEchoStaysOff)
{
    set_acad_int_var(L"CMDECHO", 1);
    EXPECT_EQ(createLayer(L"NOTES", 4), 1);
    const RbPtr record(vcdbTblSearch(L"LAYER", L"NOTES", 0));
    int colour = 0;
    EXPECT_EQ(GetBufInt(record.get(), 62, colour), RTNORM);
    EXPECT_EQ(colour, 4);
    EXPECT_EQ(createLayer(L"NOTES", 5), 1);
    EXPECT_EQ(shortVariable(L"CMDECHO"), 0);
    EXPECT_EQ(current(), L"0");
}

TEST_F(Layers, AFrozenLayerIsThawedAndMadeCurrent)
{
    EXPECT_TRUE(dsc_frz_layer(L"AUX"));
    EXPECT_EQ(flagsOf(L"AUX") & 1, 1);
    EXPECT_EQ(current(), L"0");
    EXPECT_EQ(shortVariable(L"CMDECHO"), 0);
    EXPECT_EQ(dsc_set_clayer(L"AUX"), 1);
    EXPECT_EQ(flagsOf(L"AUX") & 1, 0);
    EXPECT_EQ(current(), L"AUX");
    EXPECT_EQ(shortVariable(L"CMDECHO"), 1);
}

}  // namespace
