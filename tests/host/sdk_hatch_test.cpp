// Hatches: loops of every kind through their accessors, files, moves and undo; patterns, gradients and sources.
#include "tests/host/sdk_samples.h"

#include "host/io/drawing_file.h"

namespace {

using Edge = VcDbHatch::Edge;

// Groups of one edge in a file, behind its type.
struct EdgeKind {
    const char* name;
    int type;
    std::vector<std::pair<int, double>> groups;
};

const EdgeKind kEdges[] = {
    {"Line", 1, {{10, 0}, {20, 0}, {11, 4}, {21, 0}}},
    {"Arc", 2, {{10, 2}, {20, 0}, {40, 2}, {50, 0}, {51, 180}, {73, 1}}},
    {"ClockwiseArc", 2, {{10, 2}, {20, 0}, {40, 2}, {50, 0}, {51, 180}, {73, 0}}},
    {"Ellipse", 3, {{10, 2}, {20, 0}, {11, 2}, {21, 0}, {40, 0.5}, {50, 0}, {51, 180}, {73, 1}}},
    {"Spline", 4, {{94, 3}, {73, 0}, {74, 0}, {95, 8}, {96, 4}, {40, 0}, {40, 0}, {40, 0}, {40, 0}, {40, 1}, {40, 1},
                   {40, 1}, {40, 1}, {10, 0}, {20, 0}, {10, 1}, {20, 2}, {10, 3}, {20, 2}, {10, 4}, {20, 0}, {97, 0}}},
};

bool isWhole(int code) { return code == 73 || code == 74 || (code >= 90 && code < 100); }

// A solid hatch with one external loop of two edges: the given one and a line.
VcDbObjectId addHatchOf(SdkDrawing& drawing, const EdgeKind& kind)
{
    auto hatch = std::make_unique<VcDbHatch>();
    GroupList g;
    g.text(100, "AcDbEntity");
    g.text(8, "0");
    g.text(100, "AcDbHatch");
    for (const auto& [code, value] : {std::pair(10, 0.0), {20, 0.0}, {30, 1.5}})
        g.real(code, value);
    g.text(2, "SOLID");
    for (const auto& [code, value] : {std::pair(70, 1), {71, 0}, {91, 1}, {92, 1}, {93, 2}, {72, kind.type}})
        g.integer(code, value);
    for (const auto& [code, value] : kind.groups)
        isWhole(code) ? g.integer(code, std::int64_t(value)) : g.real(code, value);
    g.integer(72, 1);
    for (const auto& [code, value] : {std::pair(10, 4.0), {20, 0.0}, {11, 0.0}, {21, 0.0}})
        g.real(code, value);
    for (const auto& [code, value] : {std::pair(97, 0), {75, 0}, {76, 1}, {98, 0}})
        g.integer(code, value);
    EXPECT_EQ(readGroups(*hatch, drawing.core(), g), 0);
    return drawing.add(std::move(hatch));
}

class HatchEdges : public testing::TestWithParam<EdgeKind> {
protected:
    SdkDrawing drawing;
    const VcDbObjectId id = addHatchOf(drawing, GetParam());
};

INSTANTIATE_TEST_SUITE_P(All, HatchEdges, testing::ValuesIn(kEdges),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(HatchEdges, AreGivenAsEdgesAndNotAsAPolyline)
{
    Opened<VcDbHatch> hatch(id);
    ASSERT_EQ(hatch->numLoops(), 1);
    EXPECT_EQ(hatch->loopTypeAt(0), VcDbHatch::kExternal);
    int type = -1;
    std::vector<Edge> edges;
    ASSERT_EQ(hatch->getLoopAt(0, type, edges), Vcad::eOk);
    EXPECT_EQ(type, VcDbHatch::kExternal);
    ASSERT_EQ(edges.size(), 2u);
    EXPECT_EQ(edges[0].type, GetParam().type);
    EXPECT_EQ(edges[0].spline.isSet(), GetParam().type == VcDbHatch::kSpline);
    EXPECT_EQ(edges[1].second, VcGePoint2d(0, 0));
    std::vector<VcGePoint2d> vertices{{9, 9}};
    std::vector<double> bulges;
    EXPECT_EQ(hatch->getLoopAt(0, type, vertices, bulges), Vcad::eNotApplicable);
    EXPECT_EQ(vertices.size(), 1u) << "a failure writes nothing";
    EXPECT_EQ(hatch->getLoopAt(1, type, edges), Vcad::eInvalidIndex);
    EXPECT_EQ(hatch->getLoopAt(-1, type, edges), Vcad::eInvalidIndex);
}

TEST_P(HatchEdges, SurviveChainsAndFiles)
{
    const std::string before = drawing.saidBy(id);
    vds_name name;
    vcdbGetVdsName(name, id);
    const RbPtr chain(vcdbEntGet(name));
    EXPECT_EQ(vcdbEntMod(chain.get()), RTNORM);
    EXPECT_EQ(drawing.saidBy(id), before);
    for (const DxfVersion version : {DxfVersion::R2000, DxfVersion::R2007, DxfVersion::R2010, DxfVersion::R2018})
        for (const bool binary : {false, true}) {
            WriteOptions options;
            options.version = version;
            options.binary = binary;
            std::string file;
            ASSERT_TRUE(writeDrawingBytes(drawing.database, file, options).ok());
            VcDbDatabase again(false);
            ASSERT_TRUE(readDrawingBytes(again, file).ok());
            VcDbObject* twin = again.core().object(again.core().findHandle(id.handle().value()));
            ASSERT_NE(twin, nullptr);
            EXPECT_EQ(dumpOf(*twin, again.core(), version), drawing.saidBy(id, version));
        }
}

// A mirror turns anticlockwise into clockwise and back: twice is nothing, but for rounding.
TEST_P(HatchEdges, MirroredTwiceStandWhereTheyStood)
{
    VcDbExtents before, once, twice;
    Writing<VcDbHatch> hatch(id);
    ASSERT_EQ(hatch->getGeomExtents(before), Vcad::eOk);
    const VcGeMatrix3d mirror = VcGeMatrix3d::mirroring(VcGePlane(VcGePoint3d(1, 1, 0), VcGeVector3d(1, 0, 0)));
    ASSERT_EQ(hatch->transformBy(mirror), Vcad::eOk);
    ASSERT_EQ(hatch->getGeomExtents(once), Vcad::eOk);
    VcDbExtents image = before;
    image.transformBy(mirror);
    EXPECT_LT(once.minPoint().distanceTo(image.minPoint()), 1e-9);
    EXPECT_LT(once.maxPoint().distanceTo(image.maxPoint()), 1e-9);
    ASSERT_EQ(hatch->transformBy(mirror), Vcad::eOk);
    ASSERT_EQ(hatch->getGeomExtents(twice), Vcad::eOk);
    EXPECT_LT(twice.minPoint().distanceTo(before.minPoint()), 1e-9);
    EXPECT_LT(twice.maxPoint().distanceTo(before.maxPoint()), 1e-9);
}

class Hatches : public testing::Test {
protected:
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "Hatch");
};

TEST_F(Hatches, TakePolylinesWithTheirBulges)
{
    Writing<VcDbHatch> hatch(id);
    const std::vector<VcGePoint2d> square{{0, 0}, {2, 0}, {2, 2}, {0, 2}};
    EXPECT_EQ(hatch->appendLoop(VcDbHatch::kOutermost, square, {0.5, 0, 0, -1}), Vcad::eOk);
    EXPECT_NE(hatch->appendLoop(0, {{0, 0}}, {}), Vcad::eOk);
    EXPECT_NE(hatch->appendLoop(0, square, {1, 2}), Vcad::eOk) << "bulges for some vertices only";
    EXPECT_NE(hatch->appendLoop(0, {{0, 0}, {NAN, 1}}, {}), Vcad::eOk);
    EXPECT_NE(hatch->appendLoop(0, square, {0, 0, INFINITY, 0}), Vcad::eOk);
    ASSERT_EQ(hatch->numLoops(), 3);
    int type = 0;
    std::vector<VcGePoint2d> vertices;
    std::vector<double> bulges;
    ASSERT_EQ(hatch->getLoopAt(2, type, vertices, bulges), Vcad::eOk);
    EXPECT_EQ(type, VcDbHatch::kOutermost | VcDbHatch::kPolyline);
    EXPECT_EQ(vertices, square);
    EXPECT_EQ(bulges, (std::vector<double>{0.5, 0, 0, -1}));
    std::vector<Edge> edges;
    EXPECT_EQ(hatch->getLoopAt(2, type, edges), Vcad::eNotApplicable);
    EXPECT_EQ(hatch->loopTypeAt(9), 0);
    EXPECT_EQ(hatch->removeLoopAt(3), Vcad::eInvalidIndex);
    EXPECT_EQ(hatch->removeLoopAt(0), Vcad::eOk);
    EXPECT_EQ(hatch->numLoops(), 2);
}

TEST_F(Hatches, LoopsAreUndone)
{
    drawing.undoAndRedo(id, [&] { Writing<VcDbHatch>(id)->removeLoopAt(0); });
    drawing.undoAndRedo(id, [&] { Writing<VcDbHatch>(id)->appendLoop(0, {{0, 0}, {1, 1}, {0, 1}}, {}); });
    drawing.undoAndRedo(id, [&] { Writing<VcDbHatch>(id)->setPatternDefinitions({}); });
    drawing.undoAndRedo(id, [&] { Writing<VcDbHatch>(id)->setSolidFill(true); });
}

TEST_F(Hatches, PatternLinesAreGivenAsTheyAreDrawn)
{
    Opened<VcDbHatch> hatch(id);
    EXPECT_EQ(taken(hatch->patternName()), L"ANSI31");
    EXPECT_EQ(hatch->patternType(), VcDbHatch::kPreDefined);
    EXPECT_FALSE(hatch->isSolidFill() || hatch->isGradient() || hatch->patternDouble());
    ASSERT_EQ(hatch->numPatternDefinitions(), 2);
    double angle = 0, baseX = 0, baseY = 0, offsetX = 0, offsetY = 0;
    std::vector<double> dashes;
    ASSERT_EQ(hatch->getPatternDefinitionAt(0, angle, baseX, baseY, offsetX, offsetY, dashes), Vcad::eOk);
    EXPECT_EQ(VcGePoint2d(baseX, baseY), VcGePoint2d(1, 2));
    EXPECT_EQ(VcGePoint2d(offsetX, offsetY), VcGePoint2d(-0.5, 0.5));
    EXPECT_EQ(dashes, (std::vector<double>{0.25, -0.125}));
    EXPECT_EQ(hatch->getPatternDefinitionAt(2, angle, baseX, baseY, offsetX, offsetY, dashes), Vcad::eInvalidIndex);
    EXPECT_EQ(hatch->getPatternDefinitionAt(-1, angle, baseX, baseY, offsetX, offsetY, dashes), Vcad::eInvalidIndex);
}

TEST_F(Hatches, AScaleScalesThePatternAndATurnTurnsIt)
{
    Writing<VcDbHatch> hatch(id);
    const double angle = hatch->patternAngle();
    ASSERT_EQ(hatch->transformBy(VcGeMatrix3d::scaling(3)), Vcad::eOk);
    EXPECT_NEAR(hatch->patternScale(), 6, 1e-9);
    EXPECT_NEAR(hatch->elevation(), 3, 1e-9);
    ASSERT_EQ(hatch->transformBy(VcGeMatrix3d::rotation(0.5, {0, 0, 1})), Vcad::eOk);
    EXPECT_NEAR(hatch->patternAngle(), angle + 0.5, 1e-9);
    EXPECT_EQ(hatch->transformBy(VcGeMatrix3d::scaling(VcGeScale3d(2, 1, 1))), Vcad::eCannotScaleNonUniformly);
}

TEST_F(Hatches, ForgetTheirSourcesWhenTheyNoLongerFollow)
{
    const VcDbObjectId circle = drawing.add(std::make_unique<VcDbCircle>());
    Writing<VcDbHatch> hatch(id);
    ASSERT_EQ(hatch->appendLoop(0, {{0, 0}, {1, 0}, {1, 1}}, {}, {circle}), Vcad::eOk);
    hatch->setAssociative(true);
    VcDbObjectIdArray sources;
    EXPECT_EQ(hatch->getAssocObjIds(sources), Vcad::eOk);
    EXPECT_EQ(sources, VcDbObjectIdArray{circle});
    EXPECT_TRUE(hatch->associative());
    hatch->setAssociative(false);
    EXPECT_EQ(hatch->getAssocObjIds(sources), Vcad::eOk);
    EXPECT_TRUE(sources.empty());
    EXPECT_FALSE(hatch->associative());
}

TEST_F(Hatches, NamesMustSaySomething)
{
    Writing<VcDbHatch> hatch(id);
    EXPECT_NE(hatch->setPatternName(nullptr), Vcad::eOk);
    EXPECT_NE(hatch->setPatternName(L""), Vcad::eOk);
    EXPECT_EQ(hatch->setPatternName(L"GRAVEL"), Vcad::eOk);
    EXPECT_EQ(taken(hatch->patternName()), L"GRAVEL");
}

TEST(HatchGradients, TellTheirColoursAngleAndShift)
{
    SdkDrawing drawing;
    const auto groups = [](int oneColor, const char* name, std::vector<std::pair<double, int>> colors) {
        GroupList g;
        g.text(100, "AcDbEntity");
        g.text(8, "0");
        g.text(100, "AcDbHatch");
        g.text(2, "SOLID");
        for (const auto& [code, value] :
             {std::pair(70, 1), {71, 0}, {91, 0}, {75, 0}, {76, 1}, {98, 0}, {450, 1}, {451, 0}})
            g.integer(code, value);
        g.real(460, 0.5);
        g.real(461, 0.25);
        g.integer(452, oneColor);
        g.real(462, 1);
        g.integer(453, std::int64_t(colors.size()));
        for (const auto& [value, rgb] : colors) {
            g.real(463, value);
            g.integer(421, rgb);
        }
        g.text(470, name);
        return g;
    };
    VcDbHatch two, one;
    GroupList twoGroups = groups(0, "MYSHADE", {{0, 0xff0000}, {1, 0x00ff00}}),
              oneGroups = groups(1, "LINEAR", {{0, 0x102030}});
    ASSERT_EQ(readGroups(two, drawing.core(), twoGroups), 0);
    ASSERT_EQ(readGroups(one, drawing.core(), oneGroups), 0);
    EXPECT_TRUE(two.isGradient());
    EXPECT_FALSE(two.gradientOneColorMode());
    EXPECT_EQ(two.gradientAngle(), 0.5);
    EXPECT_EQ(two.gradientShift(), 0.25);
    EXPECT_EQ(taken(two.gradientName()), L"MYSHADE");
    EXPECT_EQ(two.gradientType(), VcDbHatch::kUserDefinedGradient);
    EXPECT_EQ(two.gradientColors().first.rgb(), 0xff0000u);
    EXPECT_EQ(two.gradientColors().second.rgb(), 0x00ff00u);
    EXPECT_EQ(one.gradientType(), VcDbHatch::kPreDefinedGradient);
    EXPECT_TRUE(one.gradientOneColorMode());
    EXPECT_EQ(one.gradientColors().second.rgb(), 0xffffffu) << "a full tint is white";
}

}
