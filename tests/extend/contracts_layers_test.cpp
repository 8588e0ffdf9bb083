// What commands may lean on about layers: what may not be erased or frozen, by whichever way it is tried.
#include "tests/extend/sdk_support.h"

namespace {

class LayerRules : public SdkTest {
protected:
    static Name record(const wchar_t* name)
    {
        Name found;
        EXPECT_EQ(vcdbTblObjName(L"LAYER", name, found.value), RTNORM) << testing::PrintToString(std::wstring(name));
        return found;
    }
    static int flagsOf(const wchar_t* name)
    {
        const RbPtr chain(vcdbEntGet(record(name)));
        const resbuf* flags = group(chain.get(), 70);
        return flags ? flags->resval.rint : -1;
    }
    static int colourOf(const wchar_t* name)
    {
        const RbPtr chain(vcdbEntGet(record(name)));
        return group(chain.get(), 62)->resval.rint;
    }
    static int modifyFlags(const wchar_t* name, int flags)
    {
        const RbPtr chain(vcdbEntGet(record(name)));
        for (resbuf* node = chain.get(); node; node = node->rbnext)
            if (node->restype == 70)
                node->resval.rint = std::int16_t(flags);
        return vcdbEntMod(chain.get());
    }
    static Vcad::ErrorStatus freeze(const wchar_t* name)
    {
        auto* layer = opened<VcDbLayerTableRecord>(idOf(record(name)), VcDb::kForWrite);
        const Vcad::ErrorStatus status = layer->setIsFrozen(true);
        layer->close();
        return status;
    }
    static Vcad::ErrorStatus erase(const wchar_t* name)
    {
        auto* layer = opened<VcDbLayerTableRecord>(idOf(record(name)), VcDb::kForWrite);
        const Vcad::ErrorStatus status = layer->erase();
        layer->close();
        return status;
    }
    static void makeCurrent(std::wstring name)
    {
        resbuf node = {};
        node.restype = RTSTR;
        node.resval.rstring = name.data();
        EXPECT_EQ(vcedSetVar(L"CLAYER", &node), RTNORM);
    }
};

TEST_F(LayerRules, TheCurrentLayerIsNotFrozen)
{
    layer(L"A");
    makeCurrent(L"A");
    EXPECT_NE(freeze(L"A"), Vcad::eOk);
    EXPECT_EQ(modifyFlags(L"A", 1), RTERROR);
    EXPECT_EQ(flagsOf(L"A"), 0);
    run("-LAYER\n_F\nA\n\n");
    EXPECT_EQ(flagsOf(L"A"), 0);
    run("-LAYER\n_F\n*\n\n");
    EXPECT_EQ(flagsOf(L"A"), 0) << "by a wild-card neither";
    EXPECT_EQ(flagsOf(L"0"), 1);
    EXPECT_EQ(modifyFlags(L"A", 4), RTNORM) << "locking is another thing";
    EXPECT_EQ(flagsOf(L"A"), 4);
}

TEST_F(LayerRules, WhatIsNeededIsNotErased)
{
    for (const wchar_t* name : {L"USED", L"INBLOCK", L"CURRENT", L"FREE"})
        layer(name);
    const Name user = line(0, 0, 1, 1, L"USED");
    const vds_point origin = {0, 0, 0};
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"BLOCK", 2, L"B", 70, 0, 10, origin, RTNONE)).get()), RTNORM);
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"POINT", 8, L"INBLOCK", 10, origin, RTNONE)).get()), RTNORM);
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"ENDBLK", RTNONE)).get()), RTKWORD);
    makeCurrent(L"CURRENT");
    for (const wchar_t* name : {L"0", L"CURRENT", L"USED", L"INBLOCK"}) {
        EXPECT_NE(erase(name), Vcad::eOk) << testing::PrintToString(std::wstring(name));
        EXPECT_EQ(vcdbEntDel(record(name)), RTERROR);
        EXPECT_TRUE(RbPtr(vcdbTblSearch(L"LAYER", name, 0)));
    }
    EXPECT_EQ(erase(L"FREE"), Vcad::eOk);
    EXPECT_FALSE(RbPtr(vcdbTblSearch(L"LAYER", L"FREE", 0)));
    ASSERT_EQ(vcdbEntDel(user), RTNORM);
    EXPECT_EQ(erase(L"USED"), Vcad::eOk) << "nothing is on it any more";
    EXPECT_EQ(vcdbEntDel(user), RTNORM);
    EXPECT_TRUE(exists(user)) << "what comes back ...";
    EXPECT_TRUE(RbPtr(vcdbTblSearch(L"LAYER", textOf(user, 8).c_str(), 0))) << "... stands on a layer";
}

TEST_F(LayerRules, PurgingKeepsWhatIsNeeded)
{
    for (const wchar_t* name : {L"USED", L"FREE"})
        layer(name);
    line(0, 0, 1, 1, L"USED");
    VcDbObjectIdArray ids = {idOf(record(L"0")), idOf(record(L"USED")), idOf(record(L"FREE"))};
    ASSERT_EQ(editor().drawing().purge(ids), Vcad::eOk);
    ASSERT_EQ(ids.size(), 1u);
    EXPECT_EQ(ids[0], idOf(record(L"FREE")));
}

TEST_F(LayerRules, OffWithTheCurrentLayerAmongThemAsksOnce)
{
    layer(L"A");
    layer(L"B");
    run("-LAYER\n_OFF\nA,0,B\n_Y\n\n");
    for (const wchar_t* name : {L"A", L"0", L"B"})
        EXPECT_LT(colourOf(name), 0) << testing::PrintToString(std::wstring(name));
    run("-LAYER\n_ON\n*\n\n");
    EXPECT_GT(colourOf(L"0"), 0);
    EXPECT_EQ(vcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_OFF", RTSTR, L"*", RTSTR, L"_Y", RTSTR, L"", RTNONE), RTNORM);
    EXPECT_LT(colourOf(L"0"), 0);
    EXPECT_LT(colourOf(L"B"), 0);
    EXPECT_EQ(shortVariable(L"CMDACTIVE"), 0);
}

TEST_F(LayerRules, LockedLayersGuardTheirObjects)
{
    layer(L"L");
    const Name name = line(0, 0, 1, 1, L"L");
    setLayerFlags(L"L", 4);
    const RbPtr chain(vcdbEntGet(name));
    ASSERT_TRUE(chain);
    EXPECT_EQ(vcdbEntMod(chain.get()), RTERROR);
    EXPECT_EQ(vcdbEntDel(name), RTERROR);
    VcDbLine* object = nullptr;
    EXPECT_EQ(vcdbOpenObject(object, idOf(name), VcDb::kForWrite), Vcad::eOnLockedLayer);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(vcdbOpenObject(object, idOf(name), VcDb::kForRead), Vcad::eOk);
    EXPECT_EQ(object->upgradeOpen(), Vcad::eOnLockedLayer);
    object->close();
    EXPECT_TRUE(exists(line(5, 5, 6, 6, L"L"))) << "drawing on it is allowed";
    setLayerFlags(L"L", 0);
    EXPECT_EQ(vcdbEntDel(name), RTNORM);
}

TEST_F(LayerRules, ChangesOfLayersAreUndone)
{
    layer(L"A");
    step([] {
        setLayerFlags(L"A", 4);
        auto* layer = opened<VcDbLayerTableRecord>(idOf(record(L"A")), VcDb::kForWrite);
        layer->setIsOff(true);
        VcCmColor red;
        red.setColorIndex(1);
        layer->setColor(red);
        layer->close();
    });
    EXPECT_EQ(colourOf(L"A"), -1);
    run("U\n");
    EXPECT_EQ(flagsOf(L"A"), 0);
    EXPECT_EQ(colourOf(L"A"), 7);
    run("REDO\n");
    EXPECT_EQ(flagsOf(L"A"), 4);
    EXPECT_EQ(colourOf(L"A"), -1);
}

TEST_F(LayerRules, NamesAreFoundInAnyCaseAndMadeOnce)
{
    layer(L"W\u00E4nde");
    EXPECT_TRUE(RbPtr(vcdbTblSearch(L"LAYER", L"W\u00C4NDE", 0)));
    const RbPtr again(vcutBuildList(RTDXF0, L"LAYER", 2, L"w\u00E4nde", 70, 0, 62, 1, 6, L"Continuous", RTNONE));
    EXPECT_EQ(vcdbEntMake(again.get()), RTERROR);
    auto* record = new VcDbLayerTableRecord;
    ASSERT_EQ(record->setName(L"W\u00C4nde"), Vcad::eOk);
    VcDbLayerTable* table = nullptr;
    ASSERT_EQ(editor().drawing().getSymbolTable(table, VcDb::kForWrite), Vcad::eOk);
    EXPECT_EQ(table->add(record), Vcad::eDuplicateKey);
    delete record;
    table->close();
}

}  // namespace
