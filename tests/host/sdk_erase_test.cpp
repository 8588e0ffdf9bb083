// Erasing and bringing back: what refuses to go, what goes along, and names that have been taken meanwhile.
#include "tests/host/sdk_samples.h"

namespace {

class Erasing : public testing::Test {
protected:
    SdkDrawing drawing;
    DatabaseCore& core() { return drawing.core(); }
};

TEST_F(Erasing, TwiceIsOnceAndBringingBackTwiceToo)
{
    const VcDbObjectId id = drawing.line();
    Writing<VcDbLine> line(id);
    EXPECT_EQ(line->erase(), Vcad::eOk);
    EXPECT_EQ(line->erase(), Vcad::eOk);
    EXPECT_EQ(line->erase(false), Vcad::eOk);
    EXPECT_EQ(line->erase(false), Vcad::eOk);
    EXPECT_FALSE(id.isErased());
    EXPECT_EQ(VcDbLine().erase(), Vcad::eNoDatabase);
}

TEST_F(Erasing, WhatTheDrawingStandsOnStays)
{
    VcDbObjectId groups;
    Opened<VcDbDictionary>(drawing.database.namedObjectsDictionaryId())->getAt(L"ACAD_GROUP", groups);
    const VcDbDatabase& db = drawing.database;
    const VcDbObjectId needed[] = {
        db.blockTableId(),
        db.layerTableId(),
        db.textStyleTableId(),
        db.linetypeTableId(),
        db.dimStyleTableId(),
        db.regAppTableId(),
        db.viewTableId(),
        db.viewportTableId(),
        db.UCSTableId(),
        db.namedObjectsDictionaryId(),
        groups,
        db.currentSpaceId(),
        db.clayer(),
        db.textstyle(),
        db.dimstyle(),
    };
    for (const VcDbObjectId id : needed) {
        ASSERT_TRUE(id.isValid());
        EXPECT_NE(Writing<VcDbObject>(id)->erase(), Vcad::eOk) << id.objectClass()->name();
        vds_name name;
        vcdbGetVdsName(name, id);
        EXPECT_EQ(vcdbEntDel(name), RTERROR) << id.objectClass()->name();
        EXPECT_FALSE(id.isErased());
    }
}

TEST_F(Erasing, ARecordComesBackUnlessItsNameIsTaken)
{
    const VcDbObjectId first = drawing.layer(L"Wall");
    ASSERT_EQ(Writing<VcDbLayerTableRecord>(first)->erase(), Vcad::eOk);
    const VcDbObjectId second = drawing.layer(L"wall");
    EXPECT_NE(Writing<VcDbLayerTableRecord>(first, true)->erase(false), Vcad::eOk);
    EXPECT_TRUE(first.isErased());
    VcDbObjectId found;
    EXPECT_EQ(Opened<VcDbLayerTable>(drawing.database.layerTableId())->getAt(L"WALL", found), Vcad::eOk);
    EXPECT_EQ(found, second);
    ASSERT_EQ(Writing<VcDbLayerTableRecord>(second)->erase(), Vcad::eOk);
    EXPECT_EQ(Writing<VcDbLayerTableRecord>(first, true)->erase(false), Vcad::eOk);
    EXPECT_EQ(Opened<VcDbLayerTable>(drawing.database.layerTableId())->getAt(L"WALL", found), Vcad::eOk);
    EXPECT_EQ(found, first);
}

TEST_F(Erasing, AMemberErasedOnItsOwnStaysErasedWhenItsBlockComesBack)
{
    const VcDbObjectId door = drawing.block(L"DOOR");
    const VcDbObjectId kept = drawing.add(std::make_unique<VcDbPoint>(), door),
                       gone = drawing.add(std::make_unique<VcDbPoint>(), door);
    Writing<VcDbPoint>(gone)->erase();
    ASSERT_EQ(Writing<VcDbBlockTableRecord>(door)->erase(), Vcad::eOk);
    EXPECT_TRUE(kept.isErased());
    ASSERT_EQ(Writing<VcDbBlockTableRecord>(door, true)->erase(false), Vcad::eOk);
    EXPECT_FALSE(kept.isErased());
    EXPECT_TRUE(gone.isErased());
}

TEST_F(Erasing, ABlockIsNeededAsLongAsAReferenceStands)
{
    const VcDbObjectId door = drawing.block(L"DOOR"), house = drawing.block(L"HOUSE");
    const VcDbObjectId inner = drawing.add(std::make_unique<VcDbBlockReference>(VcGePoint3d(), door), house);
    const VcDbObjectId outer = drawing.add(std::make_unique<VcDbBlockReference>(VcGePoint3d(), house));
    EXPECT_EQ(Writing<VcDbBlockTableRecord>(door)->erase(), Vcad::eCannotBeErased);
    EXPECT_EQ(Writing<VcDbBlockTableRecord>(house)->erase(), Vcad::eCannotBeErased);
    Writing<VcDbBlockReference>(outer)->erase();
    EXPECT_EQ(Writing<VcDbBlockTableRecord>(house)->erase(), Vcad::eOk);
    EXPECT_TRUE(inner.isErased());
    EXPECT_EQ(Writing<VcDbBlockTableRecord>(door)->erase(), Vcad::eOk);
}

TEST_F(Erasing, AMemberOfAnErasedBlockDoesNotComeBackAlone)
{
    const VcDbObjectId door = drawing.block(L"DOOR");
    const VcDbObjectId member = drawing.add(std::make_unique<VcDbPoint>(), door);
    ASSERT_EQ(Writing<VcDbBlockTableRecord>(door)->erase(), Vcad::eOk);
    vds_name name;
    vcdbGetVdsName(name, member);
    EXPECT_EQ(vcdbEntDel(name), RTERROR);
    EXPECT_TRUE(member.isErased());
}

TEST_F(Erasing, AnExtensionDictionaryGoesWithItsOwner)
{
    const VcDbObjectId id = drawing.line();
    VcDbObjectId dictionary, record;
    {
        Writing<VcDbLine> line(id);
        ASSERT_EQ(line->createExtensionDictionary(), Vcad::eOk);
        dictionary = line->extensionDictionary();
        auto* data = new VcDbXrecord;
        ASSERT_EQ(Writing<VcDbDictionary>(dictionary)->setAt(L"DATA", data, record), Vcad::eOk);
        data->close();
        EXPECT_EQ(line->releaseExtensionDictionary(), Vcad::eNotApplicable) << "it is not empty";
        line->erase();
    }
    EXPECT_TRUE(dictionary.isErased());
    EXPECT_TRUE(record.isErased());
    Writing<VcDbLine>(id, true)->erase(false);
    EXPECT_FALSE(dictionary.isErased());
    EXPECT_FALSE(record.isErased());
}

TEST_F(Erasing, PurgeTakesOutWhatIsStillNeeded)
{
    const VcDbObjectId used = drawing.layer(L"Used"), unused = drawing.layer(L"Unused"),
                       style = drawing.style(L"Unused");
    Writing<VcDbLine>(drawing.line())->setLayer(used);
    VcDbObjectIdArray ids{used, unused, style, drawing.database.clayer(), VcDbObjectId()};
    EXPECT_EQ(drawing.database.purge(ids), Vcad::eOk);
    EXPECT_EQ(ids, (VcDbObjectIdArray{unused, style}));
}

TEST_F(Erasing, UndoBringsBackAndRedoErasesAgain)
{
    for (const EntitySample& sample : entitySamples()) {
        SCOPED_TRACE(sample.name);
        SdkDrawing own;
        const VcDbObjectId id = sample.add(own);
        const std::string before = own.saidBy(id);
        const std::size_t mark = own.core().undo().mark();
        Writing<VcDbEntity>(id)->erase();
        auto span = own.core().undo().rollbackKeeping(mark);
        EXPECT_FALSE(id.isErased());
        EXPECT_EQ(own.saidBy(id), before);
        own.core().undo().redo(std::move(span));
        EXPECT_TRUE(id.isErased());
        own.core().undo().rollback(0);
        EXPECT_TRUE(id.isErased()) << "undone to before it was made";
        VcDbBlockTableRecordIterator members(*Opened<VcDbBlockTableRecord>(own.modelId()), true);
        EXPECT_TRUE(members.done());
    }
}

}
