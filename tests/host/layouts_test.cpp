// Layouts: which block is the paper space, copies, and what undo makes of it; the annotation scale of viewports.
#include "host/base/unicode.h"
#include "host/db/chain.h"
#include "host/db/coordinate_system.h"
#include "host/db/database.h"
#include "host/db/draw_order.h"
#include "host/db/layouts.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"
#include "sdk/vced.h"
#include "sdk/vcut.h"

#include <gtest/gtest.h>

namespace {

class Layouts : public testing::Test {
protected:
    DatabaseCore& db() { return m_drawing.core(); }
    std::string blockName(const VcDbLayout& layout)
    {
        return db().objectAs<VcDbBlockTableRecord>(layout.getBlockTableRecordId())->nameUtf8();
    }
    VcDbDatabase m_drawing{true};
};

TEST_F(Layouts, ThePaperSpaceTakesItsNameAlong)
{
    VcDbLayout& first = *layoutNamed(db(), "Layout1");
    VcDbLayout& second = addLayout(db(), "Second");
    EXPECT_EQ(blockName(first), "*Paper_Space");
    makePaperSpace(db(), second);
    EXPECT_EQ(blockName(second), "*Paper_Space");
    EXPECT_EQ(blockName(first), "*Paper_Space0");
    EXPECT_EQ(db().paperSpace(), second.getBlockTableRecordId());
}

TEST_F(Layouts, UndoBringsThePaperSpaceBack)
{
    VcDbLayout& first = *layoutNamed(db(), "Layout1");
    VcDbLayout& second = addLayout(db(), "Second");
    db().undo().setRecording(true);
    const std::size_t mark = db().undo().mark();
    makePaperSpace(db(), second);
    db().undo().rollback(mark);
    EXPECT_EQ(db().paperSpace(), first.getBlockTableRecordId());
    EXPECT_EQ(blockName(first), "*Paper_Space");
    EXPECT_EQ(db().findRecord(NameTable::Block, "*Paper_Space"), first.getBlockTableRecordId());
}

TEST_F(Layouts, EachSheetKeepsItsLimitsAndItsUcs)
{
    VcDbLayout& first = *layoutNamed(db(), "Layout1");
    VcDbLayout& second = addLayout(db(), "Second");
    db().header().setInteger("$TILEMODE", 70, 0);
    db().header().setPoint("$PLIMMAX", 77, 55);
    setCurrentUcs(db(), {{1, 2, 3}, {0, 1, 0}, {-1, 0, 0}});
    makePaperSpace(db(), second);
    EXPECT_TRUE(currentUcs(db()).isWorld());
    makePaperSpace(db(), first);
    EXPECT_EQ(db().header().point("$PLIMMAX")->x, 77);
    EXPECT_EQ(currentUcs(db()).origin, VcGePoint3d(1, 2, 3));
}

TEST_F(Layouts, ACopyHasAllThatStandsOnTheSheet)
{
    VcDbLayout& first = *layoutNamed(db(), "Layout1");
    sheetViewport(db(), first.getBlockTableRecordId());
    VcDbObjectId id;
    auto* line = new VcDbLine({0, 0, 0}, {1, 1, 0});
    db().objectAs<VcDbBlockTableRecord>(first.getBlockTableRecordId())->appendVcDbEntity(id, line);
    line->close();
    VcDbLayout& copy = copyLayout(db(), first, "Copy");
    EXPECT_EQ(db().objectAs<VcDbBlockTableRecord>(copy.getBlockTableRecordId())->memberSlots().size(), 2u);
    EXPECT_EQ(viewportsOf(db(), copy.getBlockTableRecordId()).size(), 1u);
    eraseLayout(db(), copy);
    EXPECT_EQ(layoutNamed(db(), "Copy"), nullptr);
    EXPECT_EQ(layoutsByTab(db()).size(), 2u);
}

TEST_F(Layouts, ComeBackFromAFileInTheirOrder)
{
    addLayout(db(), "Second");
    makePaperSpace(db(), addLayout(db(), "Third"));
    std::string bytes;
    ASSERT_TRUE(writeDrawingBytes(m_drawing, bytes).ok());
    VcDbDatabase again(false);
    ASSERT_TRUE(readDrawingBytes(again, bytes).ok());
    std::vector<std::string> names;
    for (const VcDbLayout* layout : layoutsByTab(again.core()))
        names.push_back(layout->nameUtf8());
    EXPECT_EQ(names, (std::vector<std::string>{"Model", "Layout1", "Second", "Third"}));
    EXPECT_EQ(layoutOfBlock(again.core(), again.core().paperSpace())->nameUtf8(), "Third");
}

TEST_F(Layouts, AViewportNamesItsAnnotationScale)
{
    VcDbViewport& viewport = sheetViewport(db(), db().paperSpace());
    EXPECT_EQ(viewport.annotationScale(), nullptr);

    auto* root = db().objectAs<VcDbDictionary>(db().rootDictionary());
    auto* list = db().liveAs<VcDbDictionary>(root->find("ACAD_SCALELIST"));
    if (!list) {
        auto made = std::make_unique<VcDbDictionary>();
        list = made.get();
        root->setAtUtf8("ACAD_SCALELIST", db().add(std::move(made), root->objectId()));
    }
    auto scale = std::make_unique<VcDbScale>();
    scale->set("1:50", 1, 50, false);
    const VcDbObjectId scaleId = db().add(std::move(scale), list->objectId());
    list->setAtUtf8("A0", scaleId);

    // What a file has: the record in the extension dictionary.
    ASSERT_EQ(viewport.createExtensionDictionary(), Vcad::eOk);
    auto record = std::make_unique<VcDbXrecord>();
    resbuf value{};
    value.restype = 340;
    idToName(scaleId, value.resval.rlname);
    ASSERT_EQ(record->setFromRbChain(value), Vcad::eOk);
    auto* extension = db().objectAs<VcDbDictionary>(viewport.extensionDictionary());
    extension->setAtUtf8("ASDK_XREC_ANNOTATION_SCALE_INFO", db().add(std::move(record), extension->objectId()));

    VcDbAnnotationScale* named = viewport.annotationScale();
    ASSERT_NE(named, nullptr);
    wchar_t* name = nullptr;
    ASSERT_EQ(named->getName(name), Vcad::eOk);
    EXPECT_EQ(wideToUtf8(name), "1:50");
    vcutDelString(name);
    EXPECT_NE(named->setName(L"no such scale"), Vcad::eOk);
    EXPECT_EQ(named->setName(L"1:50"), Vcad::eOk);
    EXPECT_EQ(VcDbSystemInternals::getImpAnnotationScale(named)->setScaleId(scaleId), Vcad::eOk);
    EXPECT_NE(named->setScaleId(viewport.objectId()), Vcad::eOk);
}

// What a module asks for goes directly beneath or above the parent, in the order it had.
TEST_F(Layouts, DrawOrderIsInherited)
{
    auto* model = db().objectAs<VcDbBlockTableRecord>(db().modelSpace());
    VcDbObjectIdArray ids(4), order;
    for (VcDbObjectId& id : ids) {
        auto* point = new VcDbPoint;
        model->appendVcDbEntity(id, point);
        point->close();
    }
    ASSERT_EQ(vcedDrawOrderInherit(ids[1], {ids[3], ids[2]}, 3), Vcad::eOk);
    VcDbSortentsTable* table = drawOrderOf(db(), db().modelSpace());
    ASSERT_EQ(table->getFullDrawOrder(order), Vcad::eOk);
    EXPECT_EQ(order, (VcDbObjectIdArray{ids[0], ids[2], ids[3], ids[1]}));
    ASSERT_EQ(vcedDrawOrderInherit(ids[1], {ids[0]}, 1), Vcad::eOk);
    table->getFullDrawOrder(order);
    EXPECT_EQ(order, (VcDbObjectIdArray{ids[2], ids[3], ids[1], ids[0]}));
    EXPECT_NE(vcedDrawOrderInherit(ids[1], {ids[0]}, 2), Vcad::eOk);
    EXPECT_NE(vcedDrawOrderInherit({}, {ids[0]}, 3), Vcad::eOk);
}

}
