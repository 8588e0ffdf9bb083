// The block of a dimension follows the dimension, its style and undo; frames, leaders.
#include "dim_picture_support.h"

#include "host/db/chain.h"
#include "host/db/clone.h"
#include "host/db/dim_picture.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vchost.h"

#include <cmath>

namespace {

TEST_F(DimPictures, ANewDimensionIsDrawnWhenItIsClosed)
{
    const auto& d = add(linear(40));
    EXPECT_EQ(d.measurement(), 40);
    EXPECT_TRUE(hasLine(d, {0, 1, 0}, {0, 11, 0}));
    EXPECT_TRUE(hasLine(d, {40, 1, 0}, {40, 11, 0}));
    EXPECT_EQ(parts<VcDbSolid>(d).size(), 2u);
    EXPECT_EQ(parts<VcDbPoint>(d).size(), 3u);
    EXPECT_EQ(said(d), "\\A1;40");
    EXPECT_NEAR(d.textPosition().x, 20, 1e-9);
    EXPECT_NEAR(d.textPosition().y, 10, 1e-9);
    // The line is broken around its text.
    EXPECT_EQ(parts<VcDbLine>(d).size(), 4u);
}

TEST_F(DimPictures, DefinitionPointsStandOnALayerThatIsNotPlotted)
{
    const auto& d = add(linear(40));
    const auto* layer = core.objectAs<VcDbLayerTableRecord>(parts<VcDbPoint>(d)[0]->layerId());
    ASSERT_NE(layer, nullptr);
    EXPECT_EQ(layer->nameUtf8(), "Defpoints");
    EXPECT_FALSE(layer->isPlottable());
}

TEST_F(DimPictures, WritingBackFollowsTheStyle)
{
    vcdbHostApplicationServices()->setWorkingDatabase(&db);
    auto& d = add(linear(40));
    const VcDbObjectId block = d.dimBlockId();
    change([](VcDbDimVars& v) {
        v.dimtad = 1;
        v.dimdec = 1;
        v.dimse1 = 1;
    });
    EXPECT_EQ(said(d), "\\A1;40");
    EXPECT_EQ(applyChain(d, *std::make_unique<ChainGroups>(chainOf(d).get())), Vcad::eOk);
    EXPECT_EQ(said(d), "\\A1;40.0");
    EXPECT_EQ(d.dimBlockId(), block);
    EXPECT_FALSE(hasLine(d, {0, 1, 0}, {0, 11, 0}));
    EXPECT_TRUE(hasLine(d, {2, 10, 0}, {38, 10, 0}));
    vcdbHostApplicationServices()->setWorkingDatabase(nullptr);
}

TEST_F(DimPictures, UndoBringsTheFormerPictureBack)
{
    auto& d = add(linear(40));
    core.undo().setRecording(true);
    const std::size_t mark = core.undo().mark();
    d.setXLine2Point({50, 0, 0});
    d.recomputeDimBlock();
    EXPECT_EQ(said(d), "\\A1;50");
    core.undo().rollback(mark);
    EXPECT_EQ(said(d), "\\A1;40");
    EXPECT_EQ(d.measurement(), 40);
    EXPECT_EQ(parts<VcDbSolid>(d).size(), 2u);
}

TEST_F(DimPictures, WhatDoesNotShowLeavesThePictureAlone)
{
    auto& d = add(linear(40));
    const VcDbObjectId first = parts<VcDbLine>(d)[0]->objectId();
    VcDbObject* opened = nullptr;
    ASSERT_EQ(DatabaseCore::openObject(opened, d.objectId(), VcDb::kForWrite, false), Vcad::eOk);
    d.setColorIndex(3);
    d.close();
    EXPECT_EQ(parts<VcDbLine>(d)[0]->objectId(), first);
    ASSERT_EQ(DatabaseCore::openObject(opened, d.objectId(), VcDb::kForWrite, false), Vcad::eOk);
    d.setDimensionText(L"<> mm");
    d.close();
    EXPECT_EQ(said(d), "\\A1;40 mm");
}

TEST_F(DimPictures, ACopyThatMovesGetsABlockOfItsOwn)
{
    auto& d = add(linear(40));
    VcDbIdMapping mapping;
    ASSERT_EQ(cloneObjects({d.objectId()}, core.modelSpace(), mapping), Vcad::eOk);
    VcDbIdPair pair(d.objectId(), {});
    ASSERT_TRUE(mapping.compute(pair));
    auto* twin = core.liveAs<VcDbRotatedDimension>(pair.value());
    ASSERT_EQ(twin->transformBy(VcGeMatrix3d::scaling(2)), Vcad::eOk);
    EXPECT_NE(twin->dimBlockId(), d.dimBlockId());
    EXPECT_EQ(said(*twin), "\\A1;80");
    EXPECT_EQ(said(d), "\\A1;40");
}

TEST_F(DimPictures, InAnotherDrawingABlockOfTheSameNumberIsAnotherOne)
{
    auto& d = add(linear(40));
    VcDbDatabase other;
    auto* there = other.core().objectAs<VcDbBlockTableRecord>(other.core().modelSpace());
    auto* made = linear(7).release();
    ASSERT_EQ(there->appendVcDbEntity(made), Vcad::eOk);
    made->close();
    VcDbIdMapping mapping;
    ASSERT_EQ(cloneObjects({d.objectId()}, there->objectId(), mapping), Vcad::eOk);
    VcDbIdPair pair(d.objectId(), {});
    ASSERT_TRUE(mapping.compute(pair));
    const auto* twin = other.core().liveAs<VcDbRotatedDimension>(pair.value());
    EXPECT_NE(twin->dimBlockId(), made->dimBlockId());
    EXPECT_EQ(other.core().objectAs<VcDbBlockTableRecord>(twin->dimBlockId())->memberSlots().size(), 10u);
}

TEST_F(DimPictures, AFrameHasABoxForEachField)
{
    auto made = std::make_unique<VcDbFcf>();
    made->setText(L"{\\Fgdt;j}%%v0.1%%v%%vA");
    auto& frame = add(std::move(made));
    EXPECT_EQ(vk::dim::framePieces(frame).size(), 15u);
    VcDbExtents extents;
    ASSERT_EQ(frame.getGeomExtents(extents), Vcad::eOk);
    EXPECT_NEAR(extents.maxPoint().y - extents.minPoint().y, 3, 1e-9);
}

TEST_F(DimPictures, MovingTurnsAngles)
{
    auto& d = add(linear(40));
    ASSERT_EQ(d.transformBy(VcGeMatrix3d::rotation(M_PI / 2, VcGeVector3d::zAxis())), Vcad::eOk);
    EXPECT_NEAR(d.rotation(), M_PI / 2, 1e-12);
    EXPECT_EQ(said(d), "\\A1;40");
    EXPECT_TRUE(hasLine(d, {-1, 0, 0}, {-11, 0, 0}));
}

// Leaders

TEST_F(DimPictures, ALeaderHasAnArrowOfTheStyle)
{
    auto made = std::make_unique<VcDbLeader>();
    made->appendVertex({0, 0, 0});
    made->appendVertex({10, 0, 0});
    auto& leader = add(std::move(made));
    auto pieces = vk::dim::leaderPieces(leader);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_TRUE(pieces[0]->isKindOf(VcDbSolid::desc()));
    EXPECT_EQ(static_cast<VcDbLine&>(*pieces[1]).startPoint(), VcGePoint3d(2, 0, 0));
    change([](VcDbDimVars& v) { v.dimasz = 4; });
    EXPECT_EQ(static_cast<VcDbLine&>(*vk::dim::leaderPieces(leader)[1]).startPoint(), VcGePoint3d(4, 0, 0));
    change([](VcDbDimVars& v) { v.dimasz = 20; });
    EXPECT_EQ(vk::dim::leaderPieces(leader).size(), 1u);
    leader.setSplined(true);
    EXPECT_TRUE(vk::dim::leaderPieces(leader)[0]->isKindOf(VcDbSpline::desc()));
}

TEST_F(DimPictures, ANegativeGapBoxesTheTextOfALeader)
{
    auto text = std::make_unique<VcDbMText>();
    text->setContents(L"note");
    text->setTextHeight(2);
    text->setAttachment(VcDbMText::kMiddleLeft);
    text->setLocation({20, 10, 0});
    const auto& note = add(std::move(text));
    auto made = std::make_unique<VcDbLeader>();
    made->appendVertex({0, 0, 0});
    made->appendVertex({18, 10, 0});
    auto& leader = add(std::move(made));
    ASSERT_EQ(leader.attachAnnotation(note.objectId()), Vcad::eOk);
    const std::size_t plain = vk::dim::leaderPieces(leader).size();
    change([](VcDbDimVars& v) { v.dimgap = -0.5; });
    EXPECT_EQ(vk::dim::leaderPieces(leader).size(), plain + 4);
    VcDbExtents box;
    ASSERT_EQ(leader.getGeomExtents(box), Vcad::eOk);
    EXPECT_NEAR(box.maxPoint().x, 20 + note.actualWidth() + 0.5, 1e-9);
    EXPECT_NEAR(box.maxPoint().y, 10 + note.actualHeight() / 2 + 0.5, 1e-9);
}

TEST_F(DimPictures, TheHookLineFollowsTheStyle)
{
    auto text = std::make_unique<VcDbMText>();
    text->setContents(L"note");
    text->setLocation({20.5, 11, 0});
    const VcDbObjectId note = add(std::move(text)).objectId();
    auto made = std::make_unique<VcDbLeader>();
    for (const VcGePoint3d& p : {VcGePoint3d(0, 0, 0), VcGePoint3d(18, 10, 0), VcGePoint3d(20, 10, 0)})
        made->appendVertex(p);
    made->setHookLine(true);
    auto& leader = add(std::move(made));
    ASSERT_EQ(leader.attachAnnotation(note), Vcad::eOk);
    EXPECT_EQ(leader.annoType(), 0);
    change([](VcDbDimVars& v) {
        v.dimasz = 3;
        v.dimgap = 1;
    });
    ASSERT_EQ(applyChain(leader, *std::make_unique<ChainGroups>(chainOf(leader).get())), Vcad::eOk);
    EXPECT_NEAR(leader.vertexAt(2).x, 19.5, 1e-9);
    EXPECT_NEAR(leader.vertexAt(1).x, 16.5, 1e-9);
    EXPECT_FALSE(vk::dim::underlineEnd(leader));
    change([](VcDbDimVars& v) { v.dimtad = 1; });
    ASSERT_TRUE(vk::dim::underlineEnd(leader));
    EXPECT_NEAR(vk::dim::underlineEnd(leader)->x, 20.5 + leader.annoWidth(), 1e-9);
}

}
