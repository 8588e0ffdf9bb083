// Symbol tables as modules walk and change them: names, duplicates, iterators, and what goes by a record's name.
#include "tests/host/sdk_drawing.h"

#include "host/io/drawing_file.h"

namespace {

class Tables : public testing::Test {
protected:
    SdkDrawing drawing;
    VcDbDatabase& db() { return drawing.database; }

    std::vector<std::wstring> layerNames(bool forward, bool skipErased)
    {
        Opened<VcDbLayerTable> table(db().layerTableId());
        VcDbLayerTableIterator* at = nullptr;
        EXPECT_EQ(table->newIterator(at, forward, skipErased), Vcad::eOk);
        std::vector<std::wstring> names;
        for (at->start(forward, skipErased); !at->done(); at->step(forward, skipErased)) {
            VcDbLayerTableRecord* record = nullptr;
            EXPECT_EQ(at->getRecord(record, VcDb::kForRead, true), Vcad::eOk);
            wchar_t* name = nullptr;
            record->getName(name);
            names.push_back(taken(name));
            record->close();
        }
        VcDbObjectId none;
        EXPECT_NE(at->getRecordId(none), Vcad::eOk);
        delete at;
        return names;
    }
    std::wstring nameOf(VcDbObjectId record)
    {
        wchar_t* name = nullptr;
        EXPECT_EQ(Opened<VcDbSymbolTableRecord>(record)->getName(name), Vcad::eOk);
        return taken(name);
    }
};

struct NameCase {
    std::wstring name;
    bool legal;
};

TEST_F(Tables, TakeNamesThatFilesCanHold)
{
    const NameCase cases[] = {
        {L"Wall", true},
        {L"A B", true},
        {L"\x00c4rger \x4e2d", true},
        {L"0$1-x_9", true},
        {std::wstring(255, L'a'), true},
        {std::wstring(255, L'\x4e2d'), true},
        {std::wstring(256, L'a'), false},
        {L"", false},
        {L" a", false},
        {L"a ", false},
        {L"a<b", false},
        {L"a>b", false},
        {L"a/b", false},
        {L"a\\b", false},
        {L"a\"b", false},
        {L"a:b", false},
        {L"a;b", false},
        {L"a?b", false},
        {L"a*b", false},
        {L"a|b", false},
        {L"a,b", false},
        {L"a=b", false},
        {L"a`b", false},
        {L"a\nb", false},
    };
    const VcDbObjectId renamed = drawing.layer(L"Renamed");
    for (const NameCase& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.name));
        Writing<VcDbLayerTableRecord> record(renamed);
        EXPECT_EQ(record->setName(c.name.c_str()) == Vcad::eOk, c.legal);
        wchar_t* name = nullptr;
        record->getName(name);
        EXPECT_EQ(taken(name), c.legal ? c.name : L"Renamed");
        record->setName(L"Renamed");
    }
    EXPECT_NE(Writing<VcDbLayerTableRecord>(renamed)->setName(nullptr), Vcad::eOk);
    EXPECT_EQ(nameOf(renamed), L"Renamed");
}

TEST_F(Tables, SomeNamesStandForGood)
{
    const DatabaseCore& core = drawing.core();
    for (const VcDbObjectId id :
         {db().clayer(), db().currentSpaceId(), core.findRecord(NameTable::Linetype, "ByLayer"),
          core.findRecord(NameTable::Linetype, "Continuous"), core.findRecord(NameTable::AppId, "ACAD")}) {
        const std::wstring name = nameOf(id);
        EXPECT_NE(Writing<VcDbSymbolTableRecord>(id)->setName(L"Other"), Vcad::eOk) << testing::PrintToString(name);
        EXPECT_EQ(nameOf(id), name);
    }
}

TEST_F(Tables, KnowNamesInAnyCase)
{
    const VcDbObjectId wall = drawing.layer(L"W\x00c4nde");
    Opened<VcDbLayerTable> table(db().layerTableId());
    for (const wchar_t* name : {L"W\x00c4nde", L"w\x00e4nde", L"W\x00c4NDE"}) {
        VcDbObjectId found;
        EXPECT_TRUE(table->has(name));
        EXPECT_EQ(table->getAt(name, found), Vcad::eOk);
        EXPECT_EQ(found, wall);
    }
    EXPECT_TRUE(table->has(wall));
    EXPECT_FALSE(table->has(db().textstyle())) << "a record of another table";
    EXPECT_FALSE(table->has(L"Wand"));
    EXPECT_FALSE(table->has(static_cast<const wchar_t*>(nullptr)));
}

TEST_F(Tables, RefuseASecondOfTheName)
{
    const VcDbObjectId wall = drawing.layer(L"Wall"), other = drawing.layer(L"Other");
    auto twin = std::make_unique<VcDbLayerTableRecord>();
    twin->setName(L"WALL");
    {
        Writing<VcDbLayerTable> table(db().layerTableId());
        VcDbObjectId id;
        EXPECT_EQ(table->add(id, twin.get()), Vcad::eDuplicateKey);
        EXPECT_TRUE(id.isNull());
        EXPECT_EQ(table->add(nullptr), Vcad::eInvalidInput);
    }
    EXPECT_EQ(Writing<VcDbLayerTableRecord>(other)->setName(L"wall"), Vcad::eDuplicateKey);
    EXPECT_EQ(nameOf(other), L"Other");
    EXPECT_EQ(Writing<VcDbLayerTableRecord>(wall)->setName(L"WALL"), Vcad::eOk) << "its own in another case";
    EXPECT_EQ(nameOf(wall), L"WALL");
}

TEST_F(Tables, RefuseRecordsOfOtherTablesAndWithoutAName)
{
    auto style = std::make_unique<VcDbTextStyleTableRecord>();
    style->setName(L"Notes");
    auto nameless = std::make_unique<VcDbLayerTableRecord>();
    Writing<VcDbLayerTable> layers(db().layerTableId());
    EXPECT_EQ(layers->add(style.get()), Vcad::eNotThatKindOfClass);
    EXPECT_NE(layers->add(nameless.get()), Vcad::eOk);
    EXPECT_FALSE(layers->has(L"Notes"));
    EXPECT_FALSE(layers->has(L""));
}

TEST_F(Tables, AreWalkedEitherWayWithOrWithoutTheErased)
{
    drawing.layer(L"A");
    const VcDbObjectId b = drawing.layer(L"B");
    drawing.layer(L"C");
    Writing<VcDbLayerTableRecord>(b)->erase();
    using Names = std::vector<std::wstring>;
    EXPECT_EQ(layerNames(true, true), (Names{L"0", L"A", L"C"}));
    EXPECT_EQ(layerNames(false, true), (Names{L"C", L"A", L"0"}));
    EXPECT_EQ(layerNames(true, false), (Names{L"0", L"A", L"B", L"C"}));
    Opened<VcDbLayerTable> table(db().layerTableId());
    VcDbObjectId found;
    EXPECT_EQ(table->getAt(L"b", found), Vcad::eKeyNotFound);
    EXPECT_EQ(table->getAt(L"b", found, true), Vcad::eOk);
    EXPECT_EQ(found, b);
}

TEST_F(Tables, WhatIsCurrentStaysCurrentUnderANewName)
{
    const VcDbObjectId wall = drawing.layer(L"Wall");
    ASSERT_EQ(db().setClayer(wall), Vcad::eOk);
    const VcDbObjectId dim = db().dimstyle(), text = db().textstyle();
    const std::size_t mark = drawing.core().undo().mark();
    ASSERT_EQ(Writing<VcDbLayerTableRecord>(wall)->setName(L"Mauer"), Vcad::eOk);
    EXPECT_EQ(db().clayer(), wall);
    EXPECT_EQ(Writing<VcDbLayerTableRecord>(wall)->erase(), Vcad::eCannotBeErased);
    EXPECT_NE(Writing<VcDbLayerTableRecord>(wall)->setIsFrozen(true), Vcad::eOk);
    ASSERT_EQ(Writing<VcDbDimStyleTableRecord>(dim)->setName(L"Masse"), Vcad::eOk);
    EXPECT_EQ(db().dimstyle(), dim);
    ASSERT_EQ(Writing<VcDbTextStyleTableRecord>(text)->setName(L"Schrift"), Vcad::eOk);
    EXPECT_EQ(db().textstyle(), text);
    drawing.core().undo().rollback(mark);
    EXPECT_EQ(db().clayer(), wall);
    EXPECT_EQ(nameOf(wall), L"Wall");
    EXPECT_EQ(drawing.core().header().text("$CLAYER", ""), "Wall");
}

TEST_F(Tables, TheCurrentLayerIsRenamedByItsChainToo)
{
    const VcDbObjectId wall = drawing.layer(L"Wall");
    db().setClayer(wall);
    vds_name name;
    vcdbGetVdsName(name, wall);
    const RbPtr chain(vcdbEntGet(name));
    const auto rename = [&](const wchar_t* to) {
        for (resbuf* node = chain.get(); node; node = node->rbnext)
            if (node->restype == 2)
                setRbString(*node, to);
        return vcdbEntMod(chain.get());
    };
    EXPECT_EQ(rename(L"Mauer"), RTNORM);
    EXPECT_EQ(db().clayer(), wall);
    EXPECT_EQ(rename(L"a<b"), RTERROR);
    EXPECT_EQ(rename(L""), RTERROR);
    EXPECT_EQ(rename(L"0"), RTERROR) << "taken";
    EXPECT_EQ(nameOf(wall), L"Mauer");
}

TEST_F(Tables, LayersRefuseToBeFrozenWhileCurrent)
{
    const VcDbObjectId wall = drawing.layer(L"Wall");
    EXPECT_NE(Writing<VcDbLayerTableRecord>(db().clayer())->setIsFrozen(true), Vcad::eOk);
    EXPECT_EQ(Writing<VcDbLayerTableRecord>(wall)->setIsFrozen(true), Vcad::eOk);
    EXPECT_NE(db().setClayer(wall), Vcad::eOk) << "frozen";
    EXPECT_NE(db().setClayer(db().textstyle()), Vcad::eOk);
    EXPECT_NE(db().setClayer({}), Vcad::eOk);
    EXPECT_EQ(Writing<VcDbLayerTableRecord>(wall)->setIsFrozen(false), Vcad::eOk);
    EXPECT_EQ(db().setClayer(wall), Vcad::eOk);
    EXPECT_EQ(db().clayer(), wall);
}

TEST_F(Tables, LayersKeepEachOfTheirSwitchesThroughAFile)
{
    const VcDbObjectId id = drawing.layer(L"Wall");
    {
        Writing<VcDbLayerTableRecord> layer(id);
        VcCmColor color;
        color.setRGB(200, 100, 50);
        EXPECT_EQ(layer->setColor(color), Vcad::eOk);
        EXPECT_NE(layer->setColor(VcCmColor::fromIndex(256)), Vcad::eOk) << "a layer has no layer to go by";
        EXPECT_NE(layer->setColor(VcCmColor::fromIndex(0)), Vcad::eOk);
        layer->setIsOff(true);
        layer->setIsFrozen(true);
        layer->setIsLocked(true);
        layer->setVPDFLT(true);
        layer->setIsPlottable(false);
        EXPECT_EQ(layer->setLineWeight(VcDb::LineWeight(50)), Vcad::eOk);
        EXPECT_NE(layer->setLineWeight(VcDb::LineWeight(212)), Vcad::eOk);
        EXPECT_NE(layer->setLinetypeObjectId(db().textstyle()), Vcad::eOk);
        EXPECT_EQ(layer->setLinetypeObjectId(drawing.core().findRecord(NameTable::Linetype, "Continuous")), Vcad::eOk);
    }
    std::string bytes;
    ASSERT_TRUE(writeDrawingBytes(db(), bytes).ok());
    VcDbDatabase again(false);
    ASSERT_TRUE(readDrawingBytes(again, bytes).ok());
    const VcDbObjectId same = again.core().findRecord(NameTable::Layer, "wall");
    Opened<VcDbLayerTableRecord> layer(same);
    ASSERT_TRUE(layer);
    EXPECT_TRUE(layer->isOff() && layer->isFrozen() && layer->isLocked() && layer->VPDFLT() && !layer->isPlottable());
    EXPECT_EQ(layer->color().rgb(), 0xC86432u);
    EXPECT_TRUE(layer->color().isByColor());
    EXPECT_EQ(layer->lineWeight(), 50);
    EXPECT_EQ(layer->linetypeObjectId().handle(), Opened<VcDbLayerTableRecord>(id)->linetypeObjectId().handle());
}

TEST_F(Tables, BlocksBeginningWithAStarTakeTheNextNumber)
{
    std::vector<std::wstring> names;
    for (int i = 0; i < 3; ++i) {
        auto* record = new VcDbBlockTableRecord;
        record->setName(L"*U");
        VcDbObjectId id;
        Writing<VcDbBlockTable> table(db().blockTableId());
        ASSERT_EQ(table->add(id, record), Vcad::eOk);
        EXPECT_TRUE(record->isAnonymous());
        record->close();
        names.push_back(nameOf(id));
    }
    EXPECT_EQ(names, (std::vector<std::wstring>{L"*U1", L"*U2", L"*U3"}));
}

TEST_F(Tables, ReferencesToABlockAreFoundDirectlyAndThroughOthers)
{
    const VcDbObjectId door = drawing.block(L"DOOR"), house = drawing.block(L"HOUSE");
    const VcDbObjectId inner = drawing.add(std::make_unique<VcDbBlockReference>(VcGePoint3d(), door), house);
    const VcDbObjectId outer = drawing.add(std::make_unique<VcDbBlockReference>(VcGePoint3d(), house));
    const VcDbObjectId direct = drawing.add(std::make_unique<VcDbBlockReference>(VcGePoint3d(1, 0, 0), door));
    Opened<VcDbBlockTableRecord> record(door);
    VcDbObjectIdArray ids{outer};
    EXPECT_EQ(record->getBlockReferenceIds(ids), Vcad::eOk);
    EXPECT_EQ(ids, (VcDbObjectIdArray{inner, direct})) << "what stood in the list goes";
    EXPECT_EQ(record->getBlockReferenceIds(ids, false), Vcad::eOk);
    EXPECT_EQ(ids, (VcDbObjectIdArray{inner, direct, outer}));
    Writing<VcDbBlockReference>(direct)->erase();
    VcDbBlockReferenceIdIterator* at = nullptr;
    ASSERT_EQ(record->newBlockReferenceIdIterator(at), Vcad::eOk);
    VcDbBlockReference* reference = nullptr;
    ASSERT_EQ(at->getBlockReference(reference), Vcad::eOk);
    EXPECT_EQ(reference->objectId(), inner);
    reference->close();
    at->step();
    EXPECT_TRUE(at->done());
    EXPECT_NE(at->getBlockReference(reference), Vcad::eOk);
    EXPECT_EQ(reference, nullptr);
    delete at;
}

TEST_F(Tables, ABlockRecordSaysWhatItIs)
{
    const VcDbObjectId door = drawing.block(L"DOOR");
    {
        Opened<VcDbBlockTableRecord> model(db().currentSpaceId());
        EXPECT_TRUE(model->isLayout());
        EXPECT_FALSE(model->isAnonymous());
        EXPECT_TRUE(model->getLayoutId().isValid());
    }
    Writing<VcDbBlockTableRecord> record(door);
    EXPECT_FALSE(record->isLayout() || record->isAnonymous() || record->isFromExternalReference() ||
                 record->isDependent());
    EXPECT_TRUE(record->explodable() && record->isResolved());
    EXPECT_EQ(record->xrefStatus(), VcDbBlockTableRecord::kXrfNotAnXref);
    EXPECT_FALSE(record->hasAttributeDefinitions());
    auto definition = std::make_unique<VcDbAttributeDefinition>();
    definition->setTag(L"NO");
    VcDbObjectId id;
    VcDbAttributeDefinition* added = definition.release();
    ASSERT_EQ(record->appendVcDbEntity(id, added), Vcad::eOk);
    EXPECT_TRUE(record->hasAttributeDefinitions());
    added->erase();
    added->close();
    EXPECT_FALSE(record->hasAttributeDefinitions());
    record->setExplodable(false);
    record->setOrigin({1, 2, 3});
    record->setComments(L"A door");
    EXPECT_NE(record->setComments(nullptr), Vcad::eOk);
    EXPECT_NE(record->setInsertUnits(25), Vcad::eOk);
    EXPECT_EQ(record->setInsertUnits(4), Vcad::eOk);
    EXPECT_FALSE(record->explodable());
    EXPECT_EQ(record->origin(), VcGePoint3d(1, 2, 3));
    EXPECT_EQ(taken(record->comments()), L"A door");
    EXPECT_EQ(record->insertUnits(), 4);
    record->setPathName(L"other.dxf");
    EXPECT_TRUE(record->isFromExternalReference());
    EXPECT_EQ(taken(record->pathName()), L"other.dxf");
}

TEST_F(Tables, MembersAreWalkedEitherWayWhileTheyGo)
{
    const VcDbObjectId door = drawing.block(L"DOOR");
    VcDbObjectIdArray members;
    for (int i = 0; i < 4; ++i)
        members.push_back(drawing.add(std::make_unique<VcDbPoint>(VcGePoint3d(i, 0, 0)), door));
    Writing<VcDbPoint>(members[1])->erase();
    VcDbBlockTableRecordIterator* at = nullptr;
    ASSERT_EQ(Opened<VcDbBlockTableRecord>(door)->newIterator(at, false), Vcad::eOk);
    VcDbObjectIdArray walked;
    for (; !at->done(); at->step(false)) {
        VcDbObjectId id;
        ASSERT_EQ(at->getEntityId(id), Vcad::eOk);
        walked.push_back(id);
        VcDbEntity* entity = nullptr;
        ASSERT_EQ(at->getEntity(entity, VcDb::kForWrite), Vcad::eOk);
        entity->erase();
        entity->close();
    }
    EXPECT_EQ(walked, (VcDbObjectIdArray{members[3], members[2], members[0]}));
    at->start();
    EXPECT_TRUE(at->done());
    at->start(true, false);
    VcDbEntity* entity = nullptr;
    EXPECT_EQ(at->getEntity(entity), Vcad::eWasErased);
    EXPECT_EQ(entity, nullptr);
    EXPECT_EQ(at->getEntity(entity, VcDb::kForRead, true), Vcad::eOk);
    entity->close();
    delete at;
}

}
