// Where entities leave ink, and where not.
#include "host/io/drawing_file.h"
#include "render_support.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_hatch.h"
#include "sdk/vcdb_images.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_text.h"

#include <sstream>

using namespace rendertest;

class RenderShapes : public Picture {
protected:
    static std::vector<VcGePoint2d> square(double low, double high)
    {
        return {{low, low}, {high, low}, {high, high}, {low, high}};
    }

    VcDbHatch& hatch(std::vector<std::vector<VcGePoint2d>> loops, bool solid,
                     VcDbHatch::HatchStyle style = VcDbHatch::kNormal)
    {
        auto* hatch = new VcDbHatch;
        for (const auto& loop : loops)
            hatch->appendLoop(VcDbHatch::kExternal, loop, {});
        hatch->setSolidFill(solid);
        hatch->setHatchStyle(style);
        return add(hatch, {.colour = 1});
    }
    VcDbPolyline& polyline(const std::vector<VcGePoint2d>& points, bool closed, double width, double bulge = 0)
    {
        auto* polyline = new VcDbPolyline;
        for (const VcGePoint2d& p : points)
            polyline->addVertexAt(polyline->numVerts(), p, bulge, width, width);
        polyline->setClosed(closed);
        return add(polyline, {.colour = 1});
    }
    std::size_t count(std::uint32_t argb) const
    {
        return std::size_t(std::count_if(sheet.marks.begin(), sheet.marks.end(),
                                         [&](const Sheet::Mark& m) { return m.argb == argb; }));
    }
};

// Curves

struct InkCase {
    const char* what;
    VcDbEntity* (*make)();
    VcGePoint2d inked, blank;
};
class InkOfCurves : public Picture, public testing::WithParamInterface<InkCase> {};

const InkCase kCurves[] = {
    {"Circle",
     [] {
         return static_cast<VcDbEntity*>(new VcDbCircle({500, 500, 0}, {0, 0, 1}, 300));
     },
     {500 + 300 * std::sqrt(0.5), 500 + 300 * std::sqrt(0.5)},
     {500, 500}},
    {"Arc",
     [] {
         return static_cast<VcDbEntity*>(new VcDbArc({500, 500, 0}, {0, 0, 1}, 300, 0, M_PI / 2));
     },
     {500 + 300 * std::sqrt(0.5), 500 + 300 * std::sqrt(0.5)},
     {500, 200}},
    {"ArcFromBelow",
     [] {
         return static_cast<VcDbEntity*>(new VcDbArc({500, 500, 0}, {0, 0, -1}, 300, 0, M_PI / 2));
     },
     {500 - 300 * std::sqrt(0.5), 500 + 300 * std::sqrt(0.5)},
     {500, 200}},
    {"Ellipse",
     [] {
         return static_cast<VcDbEntity*>(new VcDbEllipse({500, 500, 0}, {0, 0, 1}, {0, 400, 0}, 0.5));
     },
     {300, 500},
     {100, 500}},
    {"Spline",
     [] {
         auto* spline = new VcDbSpline;
         spline->setNurbsData(2, false, false, {{100, 100, 0}, {500, 900, 0}, {900, 100, 0}}, {0, 0, 0, 1, 1, 1}, {});
         return static_cast<VcDbEntity*>(spline);
     },
     {500, 500},
     {500, 900}},
    {"Face",
     [] {
         auto* face = new VcDbFace({100, 100, 5}, {900, 100, 9}, {900, 900, 0}, {100, 900, 0});
         face->makeEdgeInvisibleAt(0);
         return static_cast<VcDbEntity*>(face);
     },
     {900, 500},
     {500, 100}},
    {"Solid",
     [] {
         auto* solid = new VcDbSolid;
         const VcGePoint3d corners[] = {{100, 100, 0}, {900, 100, 0}, {100, 900, 0}, {900, 900, 0}};
         for (unsigned i = 0; i < 4; ++i)
             solid->setPointAt(i, corners[i]);
         return static_cast<VcDbEntity*>(solid);
     },
     {150, 500},
     {50, 500}},
    {"Xline",
     [] {
         auto* line = new VcDbXline;
         line->setBasePoint({1e6 + 500, 1e6, 0});
         line->setUnitDir({1, 1, 0});
         return static_cast<VcDbEntity*>(line);
     },
     {900, 400},
     {400, 900}},
};

TEST_P(InkOfCurves, IsWhereTheCurveRuns)
{
    add(GetParam().make(), {.colour = 1});
    paint();
    EXPECT_EQ(at(GetParam().inked.x, GetParam().inked.y), kRed);
    EXPECT_FALSE(isInk(GetParam().blank.x, GetParam().blank.y));
}
INSTANTIATE_TEST_SUITE_P(, InkOfCurves, testing::ValuesIn(kCurves), [](const auto& info) { return info.param.what; });

// Wide polylines

TEST_F(RenderShapes, WidePolylinesMeetInMitres)
{
    polyline({{100, 100}, {800, 100}, {800, 800}}, false, 100);
    paint();
    EXPECT_TRUE(isInk(845, 55)) << "the corner is filled";
    EXPECT_FALSE(isInk(855, 55));
    EXPECT_FALSE(isInk(745, 155)) << "and does not reach inward";
    EXPECT_FALSE(isInk(95, 100)) << "ends are blunt";
    EXPECT_TRUE(isInk(755, 145));
}

// Pieces without a width are lines, and one that is narrower than a pixel does not fade.
TEST_F(RenderShapes, PiecesOfNoWidthBesideWideOnes)
{
    auto* mixed = new VcDbPolyline;
    mixed->addVertexAt(0, {100, 100}, 0, 20, 20);
    mixed->addVertexAt(1, {400, 100}, 0, 0, 0);
    mixed->addVertexAt(2, {400, 400}, 1, 0, 0);
    mixed->addVertexAt(3, {400, 600}, 0, 0.001, 0.001);
    mixed->addVertexAt(4, {900, 600}, 0, 0, 0);
    add(mixed, {.colour = 1});
    paint();
    EXPECT_EQ(at(200, 108), kRed);
    EXPECT_EQ(at(400, 250), kRed);
    EXPECT_FALSE(isInk(405, 250));
    EXPECT_EQ(at(500, 500), kRed) << "an arc to the right";
    EXPECT_EQ(at(700, 600), kRed);
}

TEST_F(RenderShapes, AreasThatCrossThemselvesAreAreas)
{
    hatch({{{100, 100}, {900, 900}, {900, 100}, {100, 900}}}, true);
    paint();
    EXPECT_EQ(at(200, 500), kRed);
    EXPECT_EQ(at(800, 500), kRed);
    EXPECT_FALSE(isInk(500, 800));
}

TEST_F(RenderShapes, TaperedAndBulgedWidths)
{
    auto* taper = new VcDbPolyline;
    taper->addVertexAt(0, {100, 200}, 0, 0, 200);
    taper->addVertexAt(1, {900, 200}, 0, 0, 0);
    add(taper);
    auto* ring = new VcDbPolyline;  // a ring of two half circles, 100 to 200 about its centre
    ring->addVertexAt(0, {350, 700}, 1, 100, 100);
    ring->addVertexAt(1, {650, 700}, 1, 100, 100);
    ring->setClosed(true);
    add(ring);
    paint();
    EXPECT_TRUE(isInk(500, 245));
    EXPECT_FALSE(isInk(500, 255));
    EXPECT_TRUE(isInk(890, 290));
    EXPECT_FALSE(isInk(500, 795)) << "within the ring";
    EXPECT_TRUE(isInk(500, 805));
    EXPECT_TRUE(isInk(500, 895));
    EXPECT_FALSE(isInk(500, 905));
}

TEST_F(RenderShapes, FillModeLeavesOutlines)
{
    db().header().setInteger("$FILLMODE", 70, 0);
    polyline({{100, 500}, {900, 500}}, false, 100);
    paint();
    EXPECT_FALSE(isInk(500, 500));
    EXPECT_TRUE(isInk(500, 550));
}

// Hatches

struct IslandCase {
    VcDbHatch::HatchStyle style;
    bool outer, island, inIsland;
};
class Islands : public RenderShapes, public testing::WithParamInterface<IslandCase> {};

TEST_P(Islands, FollowTheStyle)
{
    hatch({square(100, 900), square(200, 800), square(300, 700)}, true, GetParam().style);
    paint();
    EXPECT_EQ(isInk(150, 500), GetParam().outer);
    EXPECT_EQ(isInk(250, 500), GetParam().island);
    EXPECT_EQ(isInk(350, 500), GetParam().inIsland);
}
INSTANTIATE_TEST_SUITE_P(, Islands,
                         testing::Values(IslandCase{VcDbHatch::kNormal, true, false, true},
                                         IslandCase{VcDbHatch::kOuter, true, false, false},
                                         IslandCase{VcDbHatch::kIgnore, true, true, true}));

TEST_F(RenderShapes, PatternLinesKeepToTheirAreaAndPhase)
{
    VcDbHatch& h = hatch({square(100, 900), square(400, 600)}, false);
    h.setPatternDefinitions({{0, 0, 0, 25, 50, {30, -20}}});
    paint();
    EXPECT_TRUE(isInk(210, 200)) << "line 4 begins its dashes at 4 * 25";
    EXPECT_FALSE(isInk(240, 200));
    EXPECT_TRUE(isInk(230, 250)) << "line 5 is half a period on";
    EXPECT_FALSE(isInk(210, 250));
    EXPECT_FALSE(isInk(200, 225));
    EXPECT_FALSE(isInk(510, 500)) << "not in the island";
    EXPECT_FALSE(isInk(60, 500)) << "not outside";
}

TEST_F(RenderShapes, TooFinePatternsAreATint)
{
    hatch({square(100, 900)}, false).setPatternDefinitions({{0, 0, 0, 0, 1e-7, {}}});
    paint();
    EXPECT_EQ(at(500, 500) >> 24, 0x7fu);
    EXPECT_LT(sheet.marks.size(), 10u);
}

// Order and masks

TEST_F(RenderShapes, WipeoutsMaskWhatLiesBeneath)
{
    line(0, 500, 1000, 500, {.colour = 1});
    auto* wipeout = new VcDbWipeout;
    wipeout->setOrientation({300, 300, 0}, {400, 0, 0}, {0, 400, 0});
    wipeout->setClipBoundary(VcDbRasterImage::kRect, {{-0.5, -0.5}, {0.5, 0.5}});
    add(wipeout);
    line(500, 0, 500, 1000, {.colour = 3});
    paint();
    EXPECT_EQ(at(200, 500), kRed);
    EXPECT_EQ(at(400, 500), kPage);
    EXPECT_EQ(at(500, 400), kGreen);
}

TEST_F(RenderShapes, DrawOrderFollowsItsTable)
{
    VcDbHatch& first = hatch({square(100, 900)}, true);
    VcDbHatch& second = hatch({square(100, 900)}, true);
    second.setColorIndex(3);
    paint();
    EXPECT_EQ(at(500, 500), kGreen);
    ASSERT_EQ(space().createExtensionDictionary(), Vcad::eOk);
    auto* dictionary = db().objectAs<VcDbDictionary>(space().extensionDictionary());
    auto* table = new VcDbSortentsTable;
    VcDbObjectId id;
    ASSERT_EQ(dictionary->setAt(L"ACAD_SORTENTS", table, id), Vcad::eOk);
    table->setBlockId(space().objectId());
    table->moveToTop({first.objectId()});
    paint();
    EXPECT_EQ(at(500, 500), kRed);
}

// A cube that is smoothed once has the middles of its sides drawn in, and its corners come to 5/9 of the way out; what a
// crease holds stays.
TEST_F(RenderShapes, SmoothedMeshes)
{
    const auto cube = [](int level, const std::string& creases) {
        std::string groups =
            "0\nSECTION\n2\nENTITIES\n0\nMESH\n5\n50\n100\nAcDbEntity\n8\n0\n100\nAcDbSubDMesh\n71\n2\n72\n0\n91\n" +
            std::to_string(level) + "\n92\n8\n";
        for (const char* corner : {"100 100 0", "900 100 0", "900 900 0", "100 900 0", "100 100 800", "900 100 800",
                                   "900 900 800", "100 900 800"}) {
            std::istringstream values(corner);
            std::string x, y, z;
            values >> x >> y >> z;
            groups += "10\n" + x + "\n20\n" + y + "\n30\n" + z + "\n";
        }
        groups += "93\n30\n";
        for (const char* face : {"0321", "4567", "0154", "1265", "2376", "3047"}) {
            groups += "90\n4\n";
            for (const char* c = face; *c; ++c)
                groups += std::string("90\n") + *c + "\n";
        }
        return groups + creases + "90\n0\n0\nENDSEC\n0\nEOF\n";
    };
    const auto show = [&](const std::string& file) {
        VcDbDatabase read(false);
        ASSERT_TRUE(readDrawingBytes(read, file).ok());
        sheet = {};
        vk::render::Scene scene(read.core(), *vk::render::findLayout(read.core(), ""), omissions);
        scene.paint(sheet, {{0, 0}, {kSide, kSide}}, {kSide, kSide, kPage, true});
    };
    show(cube(0, "94\n0\n95\n0\n"));
    EXPECT_TRUE(isInk(100, 300));
    EXPECT_FALSE(isInk(500, 300));
    show(cube(1, "94\n0\n95\n0\n"));
    EXPECT_FALSE(isInk(100, 300));
    EXPECT_TRUE(isInk(500, 300)) << "the middle of the side";
    EXPECT_TRUE(isInk(500 - 400 * 5.0 / 9, 500 - 400 * 5.0 / 9)) << "a corner";
    EXPECT_FALSE(isInk(150, 150));
    const std::string sharp = "94\n3\n90\n0\n90\n1\n90\n3\n90\n0\n90\n0\n90\n4\n95\n3\n140\n-1\n140\n-1\n140\n-1\n";
    show(cube(3, "94\n0\n95\n0\n"));
    EXPECT_FALSE(isInk(100, 100));
    show(cube(3, sharp));
    EXPECT_TRUE(isInk(100, 100)) << "a corner of three sharp edges";
    show(cube(1'000'000, sharp));
    EXPECT_TRUE(isInk(100, 100)) << "levels that cannot be told apart are left out";
}

// Blocks

TEST_F(RenderShapes, GridsOfBlocks)
{
    VcDbBlockTableRecord& b = block("B");
    line(0, 0, 10, 0, {.colour = 1}, &b);
    auto* grid = new VcDbMInsertBlock;
    grid->setBlockTableRecord(b.objectId());
    grid->setPosition({100, 100, 0});
    grid->setColumns(3);
    grid->setRows(2);
    grid->setColumnSpacing(100);
    grid->setRowSpacing(50);
    add(grid);
    paint();
    for (const double x : {105, 205, 305})
        for (const double y : {100, 150})
            EXPECT_TRUE(isInk(x, y)) << x << "," << y;
    EXPECT_FALSE(isInk(405, 100));
    EXPECT_FALSE(isInk(105, 200));
}

TEST_F(RenderShapes, HugeGridsAndBlocksInThemselvesComeToAnEnd)
{
    VcDbBlockTableRecord& b = block("B");
    line(0, 0, 10, 0, {}, &b);
    add(new VcDbBlockReference({0, 10, 0}, b.objectId()), {}, &b);
    auto* grid = new VcDbMInsertBlock;
    grid->setBlockTableRecord(b.objectId());
    grid->setColumns(30000);
    grid->setRows(30000);
    grid->setColumnSpacing(0.001);
    grid->setRowSpacing(0.001);
    add(grid);
    paint();
    EXPECT_TRUE(isInk(5, 0));
    EXPECT_LT(sheet.marks.size(), 100000u);
}

TEST_F(RenderShapes, TurnedAndMirroredBlocks)
{
    VcDbBlockTableRecord& b = block("B");
    b.setOrigin({10, 0, 0});
    line(10, 0, 110, 0, {.colour = 1}, &b);
    auto& turned = add(new VcDbBlockReference({500, 500, 0}, b.objectId()));
    turned.setRotation(M_PI / 2);
    auto& mirrored = add(new VcDbBlockReference({500, 500, 0}, b.objectId()));
    mirrored.setScaleFactors(VcGeScale3d(-2, 1, 1));
    paint();
    EXPECT_TRUE(isInk(500, 590));
    EXPECT_TRUE(isInk(310, 500));
    EXPECT_FALSE(isInk(590, 500));
}

TEST_F(RenderShapes, InvisibleAttributesAreNotDrawn)
{
    VcDbBlockTableRecord& b = block("B");
    line(0, 0, 10, 0, {}, &b);
    auto* definition = new VcDbAttributeDefinition;
    definition->setTag(L"TAG");
    definition->setTextString(L"XXXX");
    definition->setHeight(100);
    add(definition, {}, &b);
    auto& reference = add(new VcDbBlockReference({100, 100, 0}, b.objectId()));
    for (const bool invisible : {false, true}) {
        auto* attribute = new VcDbAttribute;
        attribute->setTag(L"TAG");
        attribute->setTextString(L"IIII");
        attribute->setHeight(100);
        attribute->setPosition({100, invisible ? 300.0 : 600.0, 0});
        attribute->setInvisible(invisible);
        ASSERT_EQ(reference.appendAttribute(attribute), Vcad::eOk);
        attribute->close();
    }
    paint();
    const auto inkBetween = [&](double low, double high) {
        for (const Sheet::Mark& mark : sheet.marks)
            for (const auto& points : {mark.line, mark.area.points})
                for (const Point2& p : points)
                    if (kSide - p.y > low && kSide - p.y < high)
                        return true;
        return false;
    };
    EXPECT_TRUE(inkBetween(590, 710));
    EXPECT_FALSE(inkBetween(290, 410)) << "the invisible one";
    EXPECT_FALSE(inkBetween(150, 210)) << "the definition itself";
}

// Points

struct PointCase {
    int mode;
    bool middle, right, upperRight, above;
};
class PointMarks : public Picture, public testing::WithParamInterface<PointCase> {};

// A size of 100: crosses reach a whole size, circle and square half of one.
TEST_P(PointMarks, FollowPdmode)
{
    db().header().setInteger("$PDMODE", 70, GetParam().mode);
    db().header().setReal("$PDSIZE", 40, 100);
    add(new VcDbPoint({500, 500, 0}));
    paint();
    EXPECT_EQ(isInk(500, 500), GetParam().middle);
    EXPECT_EQ(isInk(595, 500), GetParam().right);
    EXPECT_EQ(isInk(595, 595), GetParam().upperRight);
    EXPECT_EQ(isInk(500, 550), GetParam().above);
}
INSTANTIATE_TEST_SUITE_P(
    , PointMarks,
    testing::Values(PointCase{0, true, false, false, false}, PointCase{1, false, false, false, false},
                    PointCase{2, true, true, false, true}, PointCase{3, true, false, true, false},
                    PointCase{4, true, false, false, true}, PointCase{33, false, false, false, true},
                    PointCase{65, false, false, false, true}, PointCase{98, true, true, false, true}));

// The window

TEST_F(RenderShapes, TheWholeWindowHasAMarginOfTwoInAHundred)
{
    add(new VcDbCircle({500, 500, 0}, {0, 0, 1}, 100));
    layer("COLD").setIsFrozen(true);
    line(0, 0, 5000, 5000, {.layer = "COLD"});
    add(new VcDbXline);
    const PlaneWindow window = wholeWindow();
    EXPECT_NEAR(window.low.x, 396, 0.1);
    EXPECT_NEAR(window.high.y, 604, 0.1);
}

TEST_F(RenderShapes, NothingAndPointsHaveAWindowToo)
{
    EXPECT_GT(wholeWindow().width(), 0);
    add(new VcDbPoint({7, 8, 0}));
    const PlaneWindow window = wholeWindow();
    EXPECT_GT(window.width(), 0);
    EXPECT_NEAR((window.low.x + window.high.x) / 2, 7, 1e-9);
}

TEST_F(RenderShapes, CoordinatesBeyondAllMeasure)
{
    line(-1e300, 500, 1e300, 500, {.colour = 6});
    line(-1e12, 500, 1e12, 500, {.colour = 1});
    line(-1e12, -1e12, 1e12, 1e12, {.colour = 3});
    add(new VcDbCircle({0, -1e9, 0}, {0, 0, 1}, 1e9 + 200), {.colour = 5});
    paint();
    EXPECT_EQ(at(200, 500), kRed);
    EXPECT_EQ(at(700, 700), kGreen);
    for (const Sheet::Mark& mark : sheet.marks)
        for (const Point2& p : mark.line)
            EXPECT_LT(std::fabs(p.x) + std::fabs(p.y), 1e5);
}
