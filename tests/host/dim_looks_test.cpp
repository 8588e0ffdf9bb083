// What the variables of a style do to the picture of a linear dimension.
#include "dim_picture_support.h"

#include "host/db/rec_arrow_blocks.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_insert.h"


namespace {

// Each variable shows where it should.
struct Look {
    const char* name;
    void (*change)(VcDbDimVars&);
    double length;
    VcGePoint3d from, to;  // a line that must be there
};
void PrintTo(const Look& l, std::ostream* out) { *out << l.name; }

// clang-format off
const Look kLooks[] = {
    {"ExtensionOffset", [](VcDbDimVars& v) { v.dimexo = 3; }, 40, {0, 3, 0}, {0, 11, 0}},
    {"ExtensionBeyond", [](VcDbDimVars& v) { v.dimexe = 3; }, 40, {0, 1, 0}, {0, 13, 0}},
    {"ExtensionOfFixedLength", [](VcDbDimVars& v) { v.dimfxlon = 1; v.dimfxl = 4; }, 40, {0, 6, 0}, {0, 11, 0}},
    {"TextAbove", [](VcDbDimVars& v) { v.dimtad = 1; }, 40, {2, 10, 0}, {38, 10, 0}},
    {"Scale", [](VcDbDimVars& v) { v.dimscale = 2; }, 80, {0, 2, 0}, {0, 12, 0}},
    {"Ticks", [](VcDbDimVars& v) { v.dimtsz = 1; v.dimtad = 1; }, 40, {0, 10, 0}, {40, 10, 0}},
    {"TickStroke", [](VcDbDimVars& v) { v.dimtsz = 1; v.dimtad = 1; }, 40, {39, 9, 0}, {41, 11, 0}},
    {"LineBeyondTicks", [](VcDbDimVars& v) { v.dimtsz = 1; v.dimtad = 1; v.dimdle = 2; }, 40, {-2, 10, 0}, {42, 10, 0}},
    {"FirstHalfOnly", [](VcDbDimVars& v) { v.dimtad = 1; v.dimsd2 = 1; }, 40, {2, 10, 0}, {20, 10, 0}},
    {"ArrowsOutside", [](VcDbDimVars& v) { v.dimatfit = 2; v.dimtad = 1; }, 5, {-2, 10, 0}, {-4, 10, 0}},
    {"LineBetweenOutsideArrows", [](VcDbDimVars& v) { v.dimatfit = 2; v.dimtad = 1; v.dimtofl = 1; }, 5, {0, 10, 0}, {5, 10, 0}},
};
// clang-format on

// Whether arrows and text stand inside, and what runs between, for a text about 3.3 wide between arrows of 2.
// clang-format off
const Look kFits[] = {
    {"AllInsideWhereThereIsRoom", [](VcDbDimVars& v) { v.dimtad = 1; }, 20, {2, 10, 0}, {18, 10, 0}},
    {"BothOutsideWithFit0", [](VcDbDimVars& v) { v.dimatfit = 0; v.dimtad = 1; }, 6, {8, 10, 0}, {10, 10, 0}},
    {"ArrowsInsideWithFit1", [](VcDbDimVars& v) { v.dimatfit = 1; v.dimtad = 1; }, 6, {2, 10, 0}, {4, 10, 0}},
    {"TextInsideWithFit2", [](VcDbDimVars& v) { v.dimatfit = 2; v.dimtad = 1; }, 6, {-2, 10, 0}, {-4, 10, 0}},
    {"TextForcedInside", [](VcDbDimVars& v) { v.dimtix = 1; v.dimtad = 1; v.dimatfit = 0; }, 4, {-2, 10, 0}, {-4, 10, 0}},
    {"LineForcedBetween", [](VcDbDimVars& v) { v.dimtix = 1; v.dimtad = 1; v.dimtofl = 1; }, 4, {0, 10, 0}, {4, 10, 0}},
    {"TextBesideDragsTheLine", [](VcDbDimVars& v) { v.dimtad = 0; v.dimtih = 0; v.dimtoh = 0; v.dimtmove = 0; v.dimtofl = 1; }, 1.5, {0, 10, 0}, {1.5, 10, 0}},
};
// clang-format on

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

// A turned arrow stands on the other side of its extension line, on a tail; the line between goes on to the extension line.
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

}
