// What dimensions and leaders look like, and the block that holds it.
#include "db_support.h"

#include "host/db/chain.h"
#include "host/db/clone.h"
#include "host/db/dim_picture.h"
#include "host/db/rec_arrow_blocks.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_text.h"
#include "sdk/vchost.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

namespace {

struct DimPictures : testing::Test {
    DimPictures() : core(db.core()), space(*core.objectAs<VcDbBlockTableRecord>(core.modelSpace()))
    {
        VcDbDimVars vars = style().dimVars();
        vars = VcDbDimVars();
        vars.dimasz = 2;
        vars.dimtxt = 2;
        vars.dimgap = 0.5;
        vars.dimexo = 1;
        vars.dimexe = 1;
        vars.dimdec = 0;
        style().setDimVars(vars);
    }

    VcDbDimStyleTableRecord& style()
    {
        return *core.objectAs<VcDbDimStyleTableRecord>(core.findRecord(NameTable::DimStyle, "Standard"));
    }
    void change(void (*change)(VcDbDimVars&))
    {
        VcDbDimVars vars = style().dimVars();
        change(vars);
        style().setDimVars(vars);
    }

    template <class T>
    T& add(std::unique_ptr<T> entity)
    {
        T* raw = entity.release();
        EXPECT_EQ(space.appendVcDbEntity(raw), Vcad::eOk);
        raw->close();
        return *raw;
    }

    std::unique_ptr<VcDbRotatedDimension> linear(double length, double height = 10)
    {
        auto d = std::make_unique<VcDbRotatedDimension>();
        d->setXLine1Point({0, 0, 0});
        d->setXLine2Point({length, 0, 0});
        d->setDimLinePoint({length, height, 0});
        return d;
    }

    template <class T>
    std::vector<const T*> parts(const VcDbDimension& d)
    {
        std::vector<const T*> found;
        const auto* block = core.liveAs<VcDbBlockTableRecord>(d.dimBlockId());
        if (!block)
            return found;
        for (const std::uint32_t slot : block->memberSlots())
            if (const auto* part = T::cast(core.objectAt(slot)); part && !part->isErased())
                found.push_back(part);
        return found;
    }

    bool hasLine(const VcDbDimension& d, VcGePoint3d a, VcGePoint3d b)
    {
        for (const VcDbLine* line : parts<VcDbLine>(d)) {
            const VcGePoint3d s = line->startPoint(), e = line->endPoint();
            if ((s.distanceTo(a) < 1e-6 && e.distanceTo(b) < 1e-6) ||
                (s.distanceTo(b) < 1e-6 && e.distanceTo(a) < 1e-6))
                return true;
        }
        return false;
    }

    std::string said(const VcDbDimension& d)
    {
        std::string all;
        for (const VcDbMText* text : parts<VcDbMText>(d))
            all += (all.empty() ? "" : "|") + text->contentsUtf8();
        return all;
    }

    VcDbDatabase db;
    DatabaseCore& core;
    VcDbBlockTableRecord& space;
};

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

// Each variable shows where it should.
struct Look {
    const char* name;
    void (*change)(VcDbDimVars&);
    double length;
    VcGePoint3d from, to;  // a line that must be there
};
void PrintTo(const Look& l, std::ostream* out) { *out << l.name; }

const Look kLooks[] = {
    {"ExtensionOffset", [](VcDbDimVars& v) { v.dimexo = 3; }, 40, {0, 3, 0}, {0, 11, 0}},
    {"ExtensionBeyond", [](VcDbDimVars& v) { v.dimexe = 3; }, 40, {0, 1, 0}, {0, 13, 0}},
    {"ExtensionOfFixedLength",
     [](VcDbDimVars& v) {
         v.dimfxlon = 1;
         v.dimfxl = 4;
     },
     40,
     {0, 6, 0},
     {0, 11, 0}},
    {"TextAbove", [](VcDbDimVars& v) { v.dimtad = 1; }, 40, {2, 10, 0}, {38, 10, 0}},
    {"Scale", [](VcDbDimVars& v) { v.dimscale = 2; }, 80, {0, 2, 0}, {0, 12, 0}},
    {"Ticks",
     [](VcDbDimVars& v) {
         v.dimtsz = 1;
         v.dimtad = 1;
     },
     40,
     {0, 10, 0},
     {40, 10, 0}},
    {"TickStroke",
     [](VcDbDimVars& v) {
         v.dimtsz = 1;
         v.dimtad = 1;
     },
     40,
     {39, 9, 0},
     {41, 11, 0}},
    {"LineBeyondTicks",
     [](VcDbDimVars& v) {
         v.dimtsz = 1;
         v.dimtad = 1;
         v.dimdle = 2;
     },
     40,
     {-2, 10, 0},
     {42, 10, 0}},
    {"FirstHalfOnly",
     [](VcDbDimVars& v) {
         v.dimtad = 1;
         v.dimsd2 = 1;
     },
     40,
     {2, 10, 0},
     {20, 10, 0}},
    {"ArrowsOutside",
     [](VcDbDimVars& v) {
         v.dimatfit = 2;
         v.dimtad = 1;
     },
     5,
     {-2, 10, 0},
     {-4, 10, 0}},
    {"LineBetweenOutsideArrows",
     [](VcDbDimVars& v) {
         v.dimatfit = 2;
         v.dimtad = 1;
         v.dimtofl = 1;
     },
     5,
     {0, 10, 0},
     {5, 10, 0}},
};

// Whether arrows and text stand inside, and what runs between, for a text about 3.3 wide between arrows of 2.
const Look kFits[] = {
    {"AllInsideWhereThereIsRoom", [](VcDbDimVars& v) { v.dimtad = 1; }, 20, {2, 10, 0}, {18, 10, 0}},
    {"BothOutsideWithFit0",
     [](VcDbDimVars& v) {
         v.dimatfit = 0;
         v.dimtad = 1;
     },
     6,
     {8, 10, 0},
     {10, 10, 0}},
    {"ArrowsInsideWithFit1",
     [](VcDbDimVars& v) {
         v.dimatfit = 1;
         v.dimtad = 1;
     },
     6,
     {2, 10, 0},
     {4, 10, 0}},
    {"TextInsideWithFit2",
     [](VcDbDimVars& v) {
         v.dimatfit = 2;
         v.dimtad = 1;
     },
     6,
     {-2, 10, 0},
     {-4, 10, 0}},
    {"TextForcedInside",
     [](VcDbDimVars& v) {
         v.dimtix = 1;
         v.dimtad = 1;
         v.dimatfit = 0;
     },
     4,
     {-2, 10, 0},
     {-4, 10, 0}},
    {"LineForcedBetween",
     [](VcDbDimVars& v) {
         v.dimtix = 1;
         v.dimtad = 1;
         v.dimtofl = 1;
     },
     4,
     {0, 10, 0},
     {4, 10, 0}},
    {"TextBesideDragsTheLine",
     [](VcDbDimVars& v) {
         v.dimtad = 0;
         v.dimtih = 0;
         v.dimtoh = 0;
         v.dimtmove = 0;
         v.dimtofl = 1;
     },
     1.5,
     {0, 10, 0},
     {1.5, 10, 0}},
};

TEST_F(DimPictures, OutsideArrowsCanBeLeftOut)
{
    change([](VcDbDimVars& v) {
        v.dimtix = 1;
        v.dimtad = 1;
    });
    EXPECT_EQ(parts<VcDbSolid>(add(linear(3))).size(), 2u);
    change([](VcDbDimVars& v) { v.dimsoxd = 1; });
    EXPECT_EQ(parts<VcDbSolid>(add(linear(3))).size(), 0u) << "DIMSOXD";
    EXPECT_EQ(parts<VcDbSolid>(add(linear(30))).size(), 2u) << "they stand inside";
}

TEST_F(DimPictures, TextThatHasLeftTheLineFollowsDimtmove)
{
    const auto linesWith = [&](int dimtmove) {
        VcDbDimVars vars = style().dimVars();
        vars.dimtmove = std::int16_t(dimtmove);
        vars.dimtad = 1;
        style().setDimVars(vars);
        auto d = linear(40);
        d->setTextPosition({60, 25, 0});
        return parts<VcDbLine>(add(std::move(d))).size();
    };
    EXPECT_EQ(linesWith(0), 4u) << "the line is drawn out to the text";
    EXPECT_EQ(linesWith(1), 5u) << "two more of a leader";
    EXPECT_EQ(linesWith(2), 3u) << "nothing more";
}

// A turned arrow stands on the other side of its extension line, on a stub; the line between goes on to the extension line.
TEST_F(DimPictures, ArrowsThatAPersonHasTurned)
{
    change([](VcDbDimVars& v) { v.dimtad = 1; });
    auto made = linear(40);
    made->setArrowFlipped(true, true);
    auto& d = add(std::move(made));
    EXPECT_TRUE(hasLine(d, {2, 10, 0}, {40, 10, 0}));
    EXPECT_TRUE(hasLine(d, {42, 10, 0}, {44, 10, 0}));
    d.setArrowFlipped(false, true);
    d.recomputeDimBlock();
    EXPECT_TRUE(hasLine(d, {0, 10, 0}, {40, 10, 0}));
    EXPECT_TRUE(hasLine(d, {-2, 10, 0}, {-4, 10, 0}));
    d.setArrowFlipped(true, false);
    d.setArrowFlipped(false, false);
    d.recomputeDimBlock();
    EXPECT_TRUE(hasLine(d, {2, 10, 0}, {38, 10, 0}));
}

TEST_F(DimPictures, ATurnedArrowOfARadius)
{
    auto made = std::make_unique<VcDbRadialDimension>();
    made->setCenter({0, 0, 0});
    made->setChordPoint({10, 0, 0});
    made->setTextPosition({5, 0, 0});
    made->setArrowFlipped(true, true);
    auto& d = add(std::move(made));
    EXPECT_TRUE(hasLine(d, {8, 0, 0}, {10, 0, 0}));
    EXPECT_TRUE(hasLine(d, {12, 0, 0}, {14, 0, 0}));
}

// Undo and OOPS bring dimensions back with their blocks; a file has no use for the block of one that is erased.
TEST_F(DimPictures, BlocksOfErasedDimensionsAreNotSaved)
{
    auto& gone = add(linear(40));
    auto& stays = add(linear(50));
    const auto blocksSaved = [&] {
        std::string bytes;
        EXPECT_TRUE(writeDrawingBytes(db, bytes).ok());
        VcDbDatabase again(false);
        EXPECT_TRUE(readDrawingBytes(again, bytes).ok());
        std::size_t count = 0;
        for (const VcDbObjectId id : again.core().table(NameTable::Block).records())
            count += again.core().objectAs<VcDbBlockTableRecord>(id)->nameUtf8().starts_with("*D");
        return count;
    };
    EXPECT_EQ(blocksSaved(), 2u);
    gone.erase();
    EXPECT_EQ(blocksSaved(), 1u);
    gone.erase(false);
    EXPECT_EQ(blocksSaved(), 2u) << "it has come back";
    gone.erase();
    auto* user = new VcDbBlockReference(VcGePoint3d(), gone.dimBlockId());
    ASSERT_EQ(space.appendVcDbEntity(user), Vcad::eOk);
    user->close();
    EXPECT_EQ(blocksSaved(), 2u) << "something else shows it";
    user->erase();
    stays.setDimBlockId(gone.dimBlockId());
    EXPECT_EQ(blocksSaved(), 2u) << "another dimension has it; its own came with no erased one";
}

struct DimLooks : DimPictures, testing::WithParamInterface<Look> {};

TEST_P(DimLooks, HaveTheirLine)
{
    change(GetParam().change);
    const auto& d = add(linear(GetParam().length));
    EXPECT_TRUE(hasLine(d, GetParam().from, GetParam().to));
}

INSTANTIATE_TEST_SUITE_P(All, DimLooks, testing::ValuesIn(kLooks), [](const auto& info) { return info.param.name; });
INSTANTIATE_TEST_SUITE_P(Fits, DimLooks, testing::ValuesIn(kFits), [](const auto& info) { return info.param.name; });

TEST_F(DimPictures, ArrowsAreBlocksOfTheStyle)
{
    VcDbDimVars vars = style().dimVars();
    vars.dimsah = 1;
    vars.dimblk1 = arrowBlock(core, "DOT");
    style().setDimVars(vars);
    const auto& d = add(linear(40));
    const auto inserts = parts<VcDbBlockReference>(d);
    ASSERT_EQ(inserts.size(), 1u);
    EXPECT_EQ(inserts[0]->blockTableRecord(), vars.dimblk1);
    EXPECT_EQ(inserts[0]->scaleFactors().sx, 2);
    EXPECT_NEAR(inserts[0]->rotation(), M_PI, 1e-12);
    EXPECT_EQ(parts<VcDbSolid>(d).size(), 1u);
}

TEST_F(DimPictures, ColoursAreThoseOfTheStyle)
{
    change([](VcDbDimVars& v) {
        v.dimclrd = 1;
        v.dimclre = 2;
        v.dimclrt = 3;
        v.dimlwe = 50;
    });
    const auto& d = add(linear(40));
    EXPECT_EQ(parts<VcDbLine>(d)[0]->colorIndex(), 2);
    EXPECT_EQ(parts<VcDbLine>(d)[0]->lineWeight(), 50);
    EXPECT_EQ(parts<VcDbSolid>(d)[0]->colorIndex(), 1);
    EXPECT_EQ(parts<VcDbMText>(d)[0]->colorIndex(), 3);
}

TEST_F(DimPictures, ANegativeGapBoxesTheText)
{
    change([](VcDbDimVars& v) { v.dimgap = -0.5; });
    EXPECT_EQ(parts<VcDbLine>(add(linear(40))).size(), 8u);
}

TEST_F(DimPictures, AFixedTextHeightWins)
{
    auto* text = core.objectAs<VcDbTextStyleTableRecord>(core.findRecord(NameTable::TextStyle, "Standard"));
    text->setTextSize(3.5);
    change([](VcDbDimVars& v) { v.dimscale = 4; });
    EXPECT_EQ(parts<VcDbMText>(add(linear(400)))[0]->textHeight(), 3.5);
}

TEST_F(DimPictures, TextThatAPersonHasPutStays)
{
    auto d = linear(40);
    d->setTextPosition({30, 15, 0});
    auto& added = add(std::move(d));
    EXPECT_NEAR(parts<VcDbMText>(added)[0]->location().x, 30, 1e-9);
    added.useDefaultTextPosition();
    added.recomputeDimBlock();
    EXPECT_NEAR(parts<VcDbMText>(added)[0]->location().x, 20, 1e-9);
}

TEST_F(DimPictures, ADimensionInATiltedPlaneLiesInIt)
{
    auto d = linear(40);
    d->setNormal({0, -1, 0});
    d->setXLine2Point({40, 0, 0});
    d->setDimLinePoint({40, 0, 10});
    const auto& added = add(std::move(d));
    EXPECT_TRUE(hasLine(added, {0, 0, 1}, {0, 0, 11}));
    EXPECT_NEAR(parts<VcDbMText>(added)[0]->normal().y, -1, 1e-9);
}

// Every class: what it measures and what it says.

TEST_F(DimPictures, Angular)
{
    auto d = std::make_unique<VcDb2LineAngularDimension>();
    d->setXLine1Start({0, 0, 0});
    d->setXLine1End({10, 0, 0});
    d->setXLine2Start({0, 0, 0});
    d->setXLine2End({0, 10, 0});
    d->setArcPoint({15, 15, 0});
    auto& a = add(std::move(d));
    EXPECT_NEAR(a.measurement(), M_PI / 2, 1e-12);
    EXPECT_EQ(said(a), "\\A1;90%%d");
    EXPECT_EQ(parts<VcDbArc>(a).size(), 2u);
    EXPECT_TRUE(hasLine(a, {11, 0, 0}, {std::sqrt(450.0) + 1, 0, 0}));
    a.setArcPoint({-15, 15, 0});
    a.recomputeDimBlock();
    EXPECT_NEAR(a.measurement(), M_PI / 2, 1e-12);
}

// The arc runs on to text beside its sector, and under it where it stands above the arc.
TEST_F(DimPictures, AnArcRunsOnToTextThatHasLeftIt)
{
    const auto arcsWith = [&](int dimtmove) {
        VcDbDimVars vars = style().dimVars();
        vars.dimtmove = std::int16_t(dimtmove);
        style().setDimVars(vars);
        auto d = std::make_unique<VcDb3PointAngularDimension>();
        d->setXLine1Point({10, 0, 0});
        d->setXLine2Point({0, 10, 0});
        d->setArcPoint({20, 20, 0});
        d->setTextPosition({-20, 20, 0});
        double farthest = 0;
        for (const VcDbArc* arc : parts<VcDbArc>(add(std::move(d))))
            farthest = std::max(farthest, arc->endAngle());
        return farthest;
    };
    EXPECT_NEAR(arcsWith(0), 0.75 * M_PI, 0.15) << "up to the text, which breaks it";
    EXPECT_LT(arcsWith(2), 0.51 * M_PI);
}

TEST_F(DimPictures, TextOverAnExtensionLineStandsAtItsEndOrBesideIt)
{
    change([](VcDbDimVars& v) { v.dimjust = 3; });
    const auto& end = add(linear(40));
    EXPECT_TRUE(hasLine(end, {0, 1, 0}, {0, 11, 0}));
    EXPECT_NEAR(parts<VcDbMText>(end)[0]->location().x, 0, 1e-9);
    const std::size_t lines = parts<VcDbLine>(end).size();
    change([](VcDbDimVars& v) { v.dimtad = 1; });
    const auto& beside = add(linear(40));
    EXPECT_EQ(parts<VcDbLine>(beside).size(), lines + 1);
    EXPECT_LT(parts<VcDbMText>(beside)[0]->location().x, -0.5);
    change([](VcDbDimVars& v) { v.dimse1 = 1; });
    EXPECT_EQ(parts<VcDbLine>(add(linear(40))).size(), lines - 1) << "a line that is left out does not run on";
}

// Whoever reads it stands on the other side of the drawing, so above is below.
TEST_F(DimPictures, TextThatIsReadFromTheOtherSide)
{
    change([](VcDbDimVars& v) {
        v.dimtxtdirection = 1;
        v.dimtad = 1;
    });
    const auto& d = add(linear(40));
    EXPECT_NEAR(parts<VcDbMText>(d)[0]->rotation(), M_PI, 1e-9);
    EXPECT_LT(parts<VcDbMText>(d)[0]->location().y, 10);
}

TEST_F(DimPictures, AngularThroughThePoint)
{
    auto d = std::make_unique<VcDb3PointAngularDimension>();
    d->setCenterPoint({0, 0, 0});
    d->setXLine1Point({10, 0, 0});
    d->setXLine2Point({0, 10, 0});
    d->setArcPoint({-20, -20, 0});
    EXPECT_NEAR(add(std::move(d)).measurement(), 3 * M_PI / 2, 1e-12);
}

TEST_F(DimPictures, ParallelLinesMeasureNothing)
{
    auto d = std::make_unique<VcDb2LineAngularDimension>();
    d->setXLine1End({10, 0, 0});
    d->setXLine2Start({0, 5, 0});
    d->setXLine2End({10, 5, 0});
    d->setArcPoint({20, 2, 0});
    EXPECT_EQ(add(std::move(d)).measurement(), 0);
}

TEST_F(DimPictures, Radius)
{
    auto d = std::make_unique<VcDbRadialDimension>();
    d->setCenter({0, 0, 0});
    d->setChordPoint({20, 0, 0});
    const auto& r = add(std::move(d));
    EXPECT_EQ(said(r), "\\A1;R20");
    EXPECT_EQ(parts<VcDbSolid>(r).size(), 1u);
    EXPECT_GT(r.textPosition().x, 20);
}

TEST_F(DimPictures, Diameter)
{
    auto d = std::make_unique<VcDbDiametricDimension>();
    d->setChordPoint({20, 0, 0});
    d->setFarChordPoint({-20, 0, 0});
    const auto& r = add(std::move(d));
    EXPECT_EQ(said(r), "\\A1;%%c40");
    EXPECT_EQ(parts<VcDbSolid>(r).size(), 2u);
    EXPECT_NEAR(r.textPosition().x, 0, 1e-9);
}

TEST_F(DimPictures, JoggedRadius)
{
    auto d = std::make_unique<VcDbRadialDimensionLarge>();
    d->setCenter({0, 0, 0});
    d->setChordPoint({100, 0, 0});
    d->setOverrideCenter({50, -10, 0});
    d->setJogPoint({60, -5, 0});
    d->setJogAngle(M_PI / 4);
    const auto& r = add(std::move(d));
    EXPECT_EQ(said(r), "\\A1;R100");
    // The jog goes through its point at its angle, between two lines along the radius.
    EXPECT_TRUE(hasLine(r, {65, -10, 0}, {55, 0, 0}));
    EXPECT_TRUE(hasLine(r, {50, -10, 0}, {65, -10, 0}));
}

// Its own angle, over which a variable of its own goes; without either the style's.
TEST_F(DimPictures, TheAngleOfAJog)
{
    auto made = std::make_unique<VcDbRadialDimensionLarge>();
    made->setChordPoint({100, 0, 0});
    made->setOverrideCenter({50, -10, 0});
    made->setJogPoint({60, -5, 0});
    auto& d = add(std::move(made));
    const auto run = [&] {  // of the stroke that crosses over
        for (const VcDbLine* line : parts<VcDbLine>(d))
            if (std::abs(std::abs(line->endPoint().y - line->startPoint().y) - 10) < 1e-9)
                return std::abs(line->endPoint().x - line->startPoint().x);
        return -1.0;
    };
    EXPECT_NEAR(run(), 10, 1e-9) << "45 degrees of the style";
    d.setJogAngle(M_PI / 3);
    d.recomputeDimBlock();
    EXPECT_NEAR(run(), 10 / std::tan(M_PI / 3), 1e-9);
    VcDbDimOverrides(d).setReal(50, M_PI / 6);
    d.recomputeDimBlock();
    EXPECT_NEAR(run(), 10 / std::tan(M_PI / 6), 1e-9);
}

TEST_F(DimPictures, Ordinate)
{
    auto d = std::make_unique<VcDbOrdinateDimension>();
    d->setOrigin({5, 5, 0});
    d->setDefiningPoint({25, 17, 0});
    d->setLeaderEndPoint({25, 60, 0});
    d->useXAxis();
    auto& o = add(std::move(d));
    EXPECT_EQ(said(o), "\\A1;20");
    EXPECT_TRUE(hasLine(o, {25, 18, 0}, {25, 60, 0}));
    o.setLeaderEndPoint({60, 30, 0});
    o.useYAxis();
    o.recomputeDimBlock();
    EXPECT_EQ(said(o), "\\A1;12");
    EXPECT_EQ(parts<VcDbLine>(o).size(), 3u);
}

TEST_F(DimPictures, ArcLength)
{
    auto d = std::make_unique<VcDbArcDimension>();
    d->setCenterPoint({0, 0, 0});
    d->setXLine1Point({100, 0, 0});
    d->setXLine2Point({0, 100, 0});
    d->setArcPoint({90, 90, 0});
    const auto& a = add(std::move(d));
    EXPECT_NEAR(a.measurement(), 50 * M_PI, 1e-9);
    EXPECT_EQ(said(a), "\\A1;157");
}

TEST_F(DimPictures, PointsThatFallTogetherAreNoFault)
{
    add(std::make_unique<VcDbRotatedDimension>());
    add(std::make_unique<VcDbAlignedDimension>());
    add(std::make_unique<VcDb2LineAngularDimension>());
    add(std::make_unique<VcDb3PointAngularDimension>());
    add(std::make_unique<VcDbArcDimension>());
    add(std::make_unique<VcDbRadialDimension>());
    add(std::make_unique<VcDbDiametricDimension>());
    add(std::make_unique<VcDbRadialDimensionLarge>());
    add(std::make_unique<VcDbOrdinateDimension>());
    auto huge = linear(1e300);
    add(std::move(huge));
}

TEST_F(DimPictures, ExplodeGivesThePartsWithTheirLooks)
{
    auto& d = add(linear(40));
    d.setColorIndex(5);
    std::vector<VcDbEntity*> pieces;
    ASSERT_EQ(d.explode(pieces), Vcad::eOk);
    EXPECT_EQ(pieces.size(), 10u);
    for (VcDbEntity* piece : pieces) {
        EXPECT_EQ(piece->colorIndex(), 5);
        delete piece;
    }
    VcDbExtents extents;
    ASSERT_EQ(d.getGeomExtents(extents), Vcad::eOk);
    EXPECT_NEAR(extents.maxPoint().y, 11, 1e-9);
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

// Real drawings, where a folder of them is named by VEKAD_DRAWINGS: a block that is made anew puts its arrows where they
// were, its text no further off than half its height, and most of its lines.

struct Parts {
    std::vector<VcGePoint3d> tips, texts;
};

Parts partsOf(const DatabaseCore& core, VcDbObjectId block)
{
    Parts parts;
    const auto* record = core.liveAs<VcDbBlockTableRecord>(block);
    for (const std::uint32_t slot : record ? record->memberSlots() : std::vector<std::uint32_t>()) {
        const VcDbObject* part = core.objectAt(slot);
        if (part->isErased())
            continue;
        if (const auto* text = VcDbMText::cast(part))
            parts.texts.push_back(text->location());
        else if (const auto* solid = VcDbSolid::cast(part)) {
            VcGePoint3d tip;
            solid->getPointAt(2, tip);
            parts.tips.push_back(tip);
        }
    }
    return parts;
}

double farthest(const std::vector<VcGePoint3d>& wanted, const std::vector<VcGePoint3d>& got)
{
    double worst = 0;
    for (const VcGePoint3d& w : wanted) {
        double nearest = 1e300;
        for (const VcGePoint3d& g : got)
            nearest = std::min(nearest, w.distanceTo(g));
        worst = std::max(worst, nearest);
    }
    return worst;
}

double heightOf(const VcDbDimension& d)
{
    const VcDbDimVars vars = d.dimVars();
    return vars.dimtxt * (vars.dimscale > 0 ? vars.dimscale : 1);
}

TEST(DimDrawings, PicturesMadeAnewAgreeWithThoseOfTheFile)
{
    const char* folder = std::getenv("VEKAD_DRAWINGS");
    if (!folder)
        GTEST_SKIP() << "VEKAD_DRAWINGS names no folder";
    for (const char* name : {"full_r2000.dxf", "library_r2018_ascii.dxf", "uncommon_r2018.dxf"}) {
        VcDbDatabase db(false);
        ASSERT_TRUE(readDrawing(db, (std::filesystem::path(folder) / name).string()).ok()) << name;
        DatabaseCore& core = db.core();
        const std::uint32_t end = core.slotCount();
        int seen = 0;
        for (std::uint32_t slot = 1; slot < end; ++slot) {
            auto* d = VcDbDimension::cast(core.objectAt(slot));
            if (!d || d->dimBlockId().isNull())
                continue;
            const Parts before = partsOf(core, d->dimBlockId());
            const double measured = d->measurement(), height = heightOf(*d);
            ASSERT_EQ(d->recomputeDimBlock(), Vcad::eOk);
            const Parts after = partsOf(core, d->dimBlockId());
            const std::string which =
                std::string(name) + " " + d->isA()->name() + " " + std::to_string(d->handle().value());
            EXPECT_NEAR(d->measurement(), measured, 1e-6 * std::abs(measured)) << which;
            EXPECT_LT(farthest(before.tips, after.tips), 0.01 * height) << which;
            EXPECT_LT(farthest(before.texts, after.texts), 0.5 * height) << which;
            ++seen;
        }
        EXPECT_GT(seen, 5) << name;
    }
}

}
