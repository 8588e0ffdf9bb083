// What the layer tools share, called as they are.
#include "core/EchoBracket.h"
#include "core/PublicFunction.h"
#include "host/commands/all_commands.h"
#include "host/edit/window_messages.h"
#include "layer/LayerHelpers.h"
#include "tests/extend/host_support.h"
#include "vchost.h"

namespace {

class LayerHelpers : public CommandTest {
protected:
    LayerHelpers()
    {
        vk::commands::registerHostCommands();
        createLayer(L"WALLS", 3, L"Continuous");
    }

    static int layerGroup(const wchar_t* name, int code)
    {
        const RbPtr record(vcdbTblSearch(L"LAYER", name, 0));
        int value = -999;
        GetBufInt(record.get(), code, value);
        return value;
    }
    static bool isOff(const wchar_t* name) { return layerGroup(name, 62) < 0; }
    static void setFlags(const wchar_t* layer, int flags)
    {
        vds_name name = {};
        ASSERT_EQ(vcdbTblObjName(L"LAYER", layer, name), RTNORM);
        const RbPtr record(vcdbEntGet(name));
        SetBufInt(record.get(), 70, flags);
        ASSERT_EQ(vcdbEntMod(record.get()), RTNORM);
    }
    void type(const char* lines) { editor().pushSource(std::make_unique<vk::edit::ScriptSource>("test", lines)); }
    bool said(std::string_view text) const { return printed.find(text) != std::string::npos; }
};

TEST_F(LayerHelpers, AnEntityIsMoved)
{
    vds_name name = {}, nothing = {};
    makeText(name);
    CStdStrW layer;
    EXPECT_EQ(mod_ent_layer(name, L"WALLS"), 1);
    EXPECT_TRUE(GetObjLayer(name, layer));
    EXPECT_EQ(layer, L"WALLS");
    EXPECT_EQ(mod_ent_layer(name, nullptr), 0);
    EXPECT_EQ(mod_ent_layer(nothing, L"WALLS"), 0);
    setFlags(L"WALLS", 4);
    EXPECT_EQ(mod_ent_layer(name, L"0"), 0);
    EXPECT_TRUE(GetObjLayer(name, layer));
    EXPECT_EQ(layer, L"WALLS");
}

TEST_F(LayerHelpers, FlagsAreWrittenWhereTheLayerMayBeChanged)
{
    createLayer(L"XR", 3, L"Continuous");
    createLayer(L"SHUT", 3, L"Continuous");
    createLayer(L"HERE", 3, L"Continuous");
    setFlags(L"SHUT", 4);
    set_acad_str_var(L"CLAYER", L"HERE");
    const struct {
        const wchar_t* name;
        int result;
        const char* said;
    } kCases[] = {
        {L"0", 0, "Layer \"0\" cannot be changed."},
        {L"HERE", 0, "The current layer cannot be changed."},
        {L"NOWHERE", 0, "There is no layer of that name."},
        {L"SHUT", 0, "Layer \"SHUT\" is locked"},
        {L"WALLS", 1, ""},
        {L"walls", 1, ""},
    };
    for (const auto& c : kCases) {
        printed.clear();
        EXPECT_EQ(dsc_frz_layer(CStdStrW(c.name), 1), c.result) << c.said;
        EXPECT_TRUE(*c.said ? said(c.said) : printed.empty()) << printed;
    }
    EXPECT_EQ(layerGroup(L"WALLS", 70) & 1, 1);
    EXPECT_EQ(layerGroup(L"SHUT", 70) & 1, 0);
    EXPECT_EQ(dsc_frz_layer(CStdStrW(L"WALLS"), 0), 1);
    EXPECT_EQ(layerGroup(L"WALLS", 70) & 1, 0);
}

TEST_F(LayerHelpers, ALayerIsTurnedOff)
{
    EXPECT_EQ(OffOneLayer(L"walls"), RTNORM);
    EXPECT_TRUE(isOff(L"WALLS"));
    EXPECT_TRUE(said("Layer \"walls\" has been turned off."));
}

TEST_F(LayerHelpers, TheCurrentLayerIsTurnedOffOnlyWhenTheAnswerIsYes)
{
    const struct {
        const char* typed;
        int result;
        bool off;
    } kCases[] = {{"\n", RTNORM, true},    {"y\n", RTNORM, true},        {"Yes\n", RTNORM, true},
                  {"n\n", RTERROR, false}, {"(cancel)\n", RTCAN, false}, {"what\nNo\n", RTERROR, false}};
    set_acad_str_var(L"CLAYER", L"WALLS");
    for (const auto& c : kCases) {
        vcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_ON", RTSTR, L"*", RTSTR, L"", RTNONE);
        type(c.typed);
        EXPECT_EQ(OffOneLayer(L"Walls"), c.result) << c.typed;
        EXPECT_EQ(isOff(L"WALLS"), c.off) << c.typed;
    }
}

TEST_F(LayerHelpers, LayersAreListed)
{
    setFlags(L"WALLS", 4);
    ShowLayer(L"");
    EXPECT_TRUE(said("\n------------------------ ------------ ------------- --------------------"));
    EXPECT_TRUE(said("\n0                        0            7             Continuous"));
    EXPECT_TRUE(said("\nWALLS                    4            3             Continuous"));
    EXPECT_TRUE(said("\nCurrent layer: 0"));
    printed.clear();
    ShowLayer(L"walls");
    EXPECT_TRUE(said("\nWALLS                    4"));
    EXPECT_FALSE(said("\n0   "));
    printed.clear();
    ShowLayer(L"NOWHERE");
    EXPECT_TRUE(said("There is no layer of that name."));
    EXPECT_FALSE(said("Current layer"));
}

TEST_F(LayerHelpers, TheListIsAskedFor)
{
    const struct {
        const char* typed;
        int result;
        bool all, walls;
    } kCases[] = {
        {"*\n", 1, true, true}, {"\n", 1, true, true}, {"WALLS\n", 1, false, true}, {"(cancel)\n", 0, false, false}};
    for (const auto& c : kCases) {
        printed.clear();
        type(c.typed);
        EXPECT_EQ(ListLayer(), c.result) << c.typed;
        EXPECT_EQ(said("\n0    "), c.all) << c.typed;
        EXPECT_EQ(said("\nWALLS  "), c.walls) << c.typed;
    }
}

TEST_F(LayerHelpers, TheBracketSilencesAndPutsBack)
{
    const wchar_t* kVariables[] = {L"CMDECHO", L"BLIPMODE", L"EXPERT"};
    for (const wchar_t* name : kVariables)
        set_acad_int_var(name, 1);
    {
        EchoBracket quiet;
        for (const wchar_t* name : kVariables) {
            EXPECT_EQ(shortVariable(name), 0);
            set_acad_int_var(name, 0);
        }
    }
    for (const wchar_t* name : kVariables)
        EXPECT_EQ(shortVariable(name), 1);
}

TEST_F(LayerHelpers, MessagesGoToTheWindowWhereThereIsOne)
{
    EXPECT_EQ(vcadPostMessageToWnd(nullptr, 273, 10683, 0), 0);
    std::vector<vk::edit::PostedMessage> taken;
    vk::edit::setMessageReceiver([&](const vk::edit::PostedMessage& m) { taken.push_back(m); });
    EXPECT_EQ(vcadPostMessageToWnd(nullptr, 273, 10683, 0), 1);
    EXPECT_EQ(vkadPostMessageToWnd(&taken, 1, 2, 3), 1);
    vk::edit::setMessageReceiver({});
    ASSERT_EQ(taken.size(), 2u);
    EXPECT_EQ(taken[0].message, 273u);
    EXPECT_EQ(taken[0].wParam, 10683u);
    EXPECT_EQ(taken[1].target, &taken);
    EXPECT_EQ(taken[1].lParam, 3);
}

}  // namespace
