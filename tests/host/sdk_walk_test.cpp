// Walking a drawing by names and chains, and putting polylines, references and blocks together over several calls.
#include "tests/host/sdk_samples.h"

namespace {

struct Name {
    vds_name name = {0, 0};
    bool operator==(const Name& o) const { return name[0] == o.name[0] && name[1] == o.name[1]; }
};

Name nameOf(VcDbObjectId id)
{
    Name n;
    EXPECT_EQ(vcdbGetVdsName(n.name, id), Vcad::eOk);
    return n;
}

std::wstring textOf(const resbuf* chain, int code)
{
    const auto nodes = nodesOf(chain, code);
    return nodes.empty() ? L"" : nodes.front()->resval.rstring;
}

class Walking : public testing::Test {
protected:
    std::vector<std::wstring> typesFrom(Name from)
    {
        std::vector<std::wstring> types;
        for (Name next; vcdbEntNext(from.name, next.name) == RTNORM; from = next)
            types.push_back(textOf(RbPtr(vcdbEntGet(next.name)).get(), 0));
        return types;
    }
    static int make(std::initializer_list<std::pair<int, const wchar_t*>> texts,
                    std::initializer_list<std::pair<int, int>> numbers = {}, Name* made = nullptr)
    {
        RbBuilder chain;
        for (const auto& [code, text] : texts)
            chain.addString(code, text);
        for (const auto& [code, value] : numbers)
            chain.addInteger(code, value);
        chain.addPoint(10, 1, 2, 0);
        chain.addReal(40, 2.5);
        const RbPtr whole = chain.take();
        return made ? vcdbEntMakeX(whole.get(), made->name) : vcdbEntMake(whole.get());
    }
    using Types = std::vector<std::wstring>;
    SdkDrawing drawing;
};

TEST_F(Walking, MainEntitiesComeWithTheirPartsAndEnds)
{
    drawing.line();
    addSample(drawing, "SpacePolyline");
    addSample(drawing, "BlockReference");
    const VcDbObjectId last = drawing.line();
    EXPECT_EQ(typesFrom({}), (Types{L"LINE", L"POLYLINE", L"VERTEX", L"VERTEX", L"VERTEX", L"SEQEND", L"INSERT",
                                    L"ATTRIB", L"SEQEND", L"LINE"}));
    Name found;
    ASSERT_EQ(vcdbEntLast(found.name), RTNORM);
    EXPECT_EQ(found, nameOf(last));
    Writing<VcDbLine>(last)->erase();
    ASSERT_EQ(vcdbEntLast(found.name), RTNORM);
    EXPECT_EQ(textOf(RbPtr(vcdbEntGet(found.name)).get(), 0), L"INSERT");
    EXPECT_EQ(vcdbEntNext(nameOf(last).name, found.name), RTERROR) << "nothing stands behind what was last";
}

TEST_F(Walking, DefinitionsAreWalkedOnTheirOwn)
{
    const VcDbObjectId door = drawing.block(L"DOOR");
    drawing.add(std::make_unique<VcDbLine>(), door);
    const VcDbObjectId circle = drawing.add(std::make_unique<VcDbCircle>(), door);
    drawing.line();
    EXPECT_EQ(typesFrom(nameOf(door)), (Types{L"LINE", L"CIRCLE"}));
    EXPECT_EQ(typesFrom(nameOf(circle)), Types{});
    EXPECT_EQ(typesFrom({}), Types{L"LINE"});
    EXPECT_EQ(typesFrom(nameOf(drawing.database.clayer())), Types{}) << "a layer has nothing to walk";
    Name none{{7, 7}};
    EXPECT_EQ(vcdbEntNext(none.name, none.name), RTERROR);
    EXPECT_EQ(none, (Name{{7, 7}}));
    EXPECT_EQ(vcdbEntNext(nullptr, nullptr), RTERROR);
}

TEST_F(Walking, TablesAreWalkedFromTheirFirstOrFromAName)
{
    for (const wchar_t* name : {L"A", L"B", L"C"})
        drawing.layer(name);
    const auto next = [](int rewind) { return textOf(RbPtr(vcdbTblNext(L"layer", rewind)).get(), 2); };
    EXPECT_EQ(next(1), L"0");
    EXPECT_EQ(next(0), L"A");
    EXPECT_EQ(textOf(RbPtr(vcdbTblSearch(L"LAYER", L"c", 0)).get(), 2), L"C");
    EXPECT_EQ(next(0), L"B") << "a search leaves the walk alone";
    EXPECT_EQ(textOf(RbPtr(vcdbTblSearch(L"LAYER", L"a", 1)).get(), 2), L"A");
    EXPECT_EQ(next(0), L"B") << "or sets it";
    EXPECT_EQ(next(0), L"C");
    EXPECT_EQ(next(0), L"");
    EXPECT_EQ(next(0), L"");
    EXPECT_EQ(next(1), L"0");
    Writing<VcDbLayerTableRecord>(drawing.core().findRecord(NameTable::Layer, "A"))->erase();
    EXPECT_EQ(next(0), L"B");
    EXPECT_EQ(vcdbTblSearch(L"LAYER", L"A", 0), nullptr);
}

TEST_F(Walking, OtherTablesAndNamesAreNone)
{
    Name name{{7, 7}};
    for (const wchar_t* table : {L"LAYERS", L"", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_EQ(vcdbTblNext(table, 1), nullptr);
        EXPECT_EQ(vcdbTblSearch(table, L"0", 0), nullptr);
        EXPECT_EQ(vcdbTblObjName(table, L"0", name.name), RTERROR);
    }
    EXPECT_EQ(vcdbTblSearch(L"LAYER", nullptr, 0), nullptr);
    EXPECT_EQ(vcdbTblObjName(L"LAYER", L"none", name.name), RTERROR);
    EXPECT_EQ(name, (Name{{7, 7}}));
    EXPECT_EQ(vcdbTblObjName(L"LAYER", L"0", name.name), RTNORM);
    EXPECT_EQ(name, nameOf(drawing.database.clayer()));
    for (const wchar_t* table : {L"LAYER", L"LTYPE", L"STYLE", L"DIMSTYLE", L"APPID", L"VPORT"})
        EXPECT_NE(RbPtr(vcdbTblNext(table, 1)), nullptr) << table;
    EXPECT_EQ(vcdbTblNext(L"BLOCK", 1), nullptr) << "the spaces are not listed";
}

TEST_F(Walking, DictionariesAreWalkedFromTheirFirstOrFromAKey)
{
    Name root;
    ASSERT_EQ(vcdbNamedObjDict(root.name), RTNORM);
    EXPECT_EQ(root, nameOf(drawing.database.namedObjectsDictionaryId()));
    EXPECT_EQ(vcdbNamedObjDict(nullptr), RTERROR);
    std::size_t count = 0;
    for (RbPtr chain(vcdbDictNext(root.name, 1)); chain; chain.reset(vcdbDictNext(root.name, 0)))
        ++count;
    EXPECT_EQ(count, Opened<VcDbDictionary>(drawing.database.namedObjectsDictionaryId())->numEntries());
    const RbPtr groups(vcdbDictSearch(root.name, L"acad_group", 1));
    ASSERT_TRUE(groups);
    EXPECT_EQ(textOf(groups.get(), 0), L"DICTIONARY");
    EXPECT_EQ(vcdbDictSearch(root.name, L"none", 0), nullptr);
    EXPECT_EQ(vcdbDictSearch(root.name, nullptr, 0), nullptr);
    EXPECT_EQ(vcdbDictSearch(nameOf(drawing.database.clayer()).name, L"x", 0), nullptr) << "no dictionary";
    EXPECT_EQ(vcdbDictNext(Name{{9, 9}}.name, 1), nullptr);
}

TEST_F(Walking, PolylinesArePutTogetherUntilTheirEnd)
{
    EXPECT_EQ(make({{0, L"POLYLINE"}}, {{66, 1}, {70, 0}}), RTNORM);
    EXPECT_EQ(make({{0, L"VERTEX"}}), RTNORM);
    Name last;
    EXPECT_EQ(vcdbEntLast(last.name), RTERROR) << "not there before it is whole";
    EXPECT_EQ(make({{0, L"VERTEX"}}), RTNORM);
    EXPECT_EQ(make({{0, L"SEQEND"}}), RTNORM);
    EXPECT_EQ(typesFrom({}), (Types{L"POLYLINE", L"VERTEX", L"VERTEX", L"SEQEND"}));
}

TEST_F(Walking, WhatDoesNotBelongDropsWhatIsHalfBuilt)
{
    EXPECT_EQ(make({{0, L"VERTEX"}}), RTERROR) << "of no polyline";
    EXPECT_EQ(make({{0, L"SEQEND"}}), RTERROR);
    EXPECT_EQ(make({{0, L"ENDBLK"}}), RTERROR);
    EXPECT_EQ(make({{0, L"POLYLINE"}}, {{66, 1}}), RTNORM);
    EXPECT_EQ(make({{0, L"ATTRIB"}}), RTERROR);
    EXPECT_EQ(make({{0, L"VERTEX"}}), RTERROR) << "the polyline is gone";
    EXPECT_EQ(make({{0, L"POLYLINE"}}, {{66, 1}}), RTNORM);
    EXPECT_EQ(vcdbEntMake(nullptr), RTNORM) << "so null drops it";
    EXPECT_EQ(make({{0, L"SEQEND"}}), RTERROR);
    EXPECT_EQ(typesFrom({}), Types{});
    EXPECT_EQ(make({{0, L"NOSUCH"}}), RTERROR);
    EXPECT_EQ(make({}), RTERROR);
    EXPECT_EQ(make({{0, L"CIRCLE"}}), RTNORM);
    EXPECT_EQ(typesFrom({}), Types{L"CIRCLE"});
}

TEST_F(Walking, BlocksTakeTheirMembersUntilTheirEnd)
{
    EXPECT_EQ(make({{0, L"BLOCK"}, {2, L"a<b"}}, {{70, 0}}), RTERROR);
    EXPECT_EQ(make({{0, L"BLOCK"}, {2, L"GATE"}}, {{70, 0}}), RTNORM);
    EXPECT_EQ(make({{0, L"CIRCLE"}}), RTNORM);
    EXPECT_EQ(make({{0, L"POLYLINE"}}, {{66, 1}}), RTNORM);
    EXPECT_EQ(make({{0, L"ENDBLK"}}), RTERROR) << "in the middle of a polyline";
    EXPECT_EQ(make({{0, L"SEQEND"}}), RTNORM);
    EXPECT_EQ(make({{0, L"ENDBLK"}}), RTKWORD);
    EXPECT_EQ(typesFrom({}), Types{});
    Name gate;
    ASSERT_EQ(vcdbTblObjName(L"BLOCK", L"gate", gate.name), RTNORM);
    EXPECT_EQ(typesFrom(gate).front(), L"CIRCLE");
    EXPECT_EQ(make({{0, L"BLOCK"}, {2, L"GATE"}}, {{70, 0}}), RTNORM);
    EXPECT_EQ(make({{0, L"LINE"}}), RTNORM);
    EXPECT_EQ(make({{0, L"ENDBLK"}}), RTKWORD);
    EXPECT_EQ(typesFrom(gate), Types{L"LINE"}) << "made anew, under its old name";
    EXPECT_EQ(make({{0, L"BLOCK"}, {2, L"*Model_Space"}}, {{70, 0}}), RTNORM);
    make({{0, L"ENDBLK"}});
    EXPECT_EQ(typesFrom({}), Types{}) << "the space itself is not made anew";
}

TEST_F(Walking, RecordsAreMadeOnceByTheirChain)
{
    Name made;
    EXPECT_EQ(make({{0, L"LAYER"}, {100, L"AcDbSymbolTableRecord"}, {100, L"AcDbLayerTableRecord"}, {2, L"Wall"}},
                   {{70, 4}, {62, -3}}, &made),
              RTNORM);
    Opened<VcDbLayerTableRecord> layer(drawing.core().findRecord(NameTable::Layer, "wall"));
    ASSERT_TRUE(layer);
    EXPECT_EQ(made, nameOf(layer->objectId()));
    EXPECT_TRUE(layer->isLocked() && layer->isOff());
    EXPECT_EQ(layer->color().colorIndex(), 3);
    EXPECT_EQ(make({{0, L"LAYER"}, {2, L"WALL"}}, {{70, 0}}), RTERROR);
    EXPECT_EQ(make({{0, L"LAYER"}, {2, L"a*b"}}, {{70, 0}}), RTERROR);
    EXPECT_EQ(make({{0, L"LAYER"}}, {{70, 0}}), RTERROR);
}

}
