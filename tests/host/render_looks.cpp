// Colours, layers, linetypes and lineweights of what is drawn, also inside blocks.
#include "host/base/rb.h"
#include "render_support.h"

using namespace rendertest;

using RenderLooks = Picture;

TEST_F(RenderLooks, ColourSevenIsBlackOnWhiteAndWhiteOnBlack)
{
    line(0, 100, 1000, 100);
    paint();
    EXPECT_EQ(at(500, 100), kBlack);
    paint("", 0xff000000);
    EXPECT_EQ(at(500, 100), 0xffffffff);
}

TEST_F(RenderLooks, ByLayerAndOwnColours)
{
    layer("WALL").setColor(VcCmColor::fromIndex(1));
    line(0, 100, 1000, 100, {.layer = "WALL"});
    line(0, 200, 1000, 200, {.layer = "WALL", .colour = 3});
    VcCmColor colour;
    colour.setRGB(1, 2, 3);
    line(0, 300, 1000, 300).setColor(colour);
    paint();
    EXPECT_EQ(at(500, 100), kRed);
    EXPECT_EQ(at(500, 200), kGreen);
    EXPECT_EQ(at(500, 300), 0xff010203);
}

TEST_F(RenderLooks, LayersThatAreOffOrFrozenAreNotSeen)
{
    layer("OFF").setIsOff(true);
    layer("COLD").setIsFrozen(true);
    layer("NOPLOT").setIsPlottable(false);
    line(0, 100, 1000, 100, {.layer = "OFF"});
    line(0, 200, 1000, 200, {.layer = "COLD"});
    line(0, 300, 1000, 300, {.layer = "NOPLOT"});
    line(0, 400, 1000, 400).setVisibility(VcDb::kInvisible);
    paint();
    EXPECT_FALSE(isInk(500, 100));
    EXPECT_FALSE(isInk(500, 200));
    EXPECT_TRUE(isInk(500, 300));
    EXPECT_FALSE(isInk(500, 400));
}

TEST_F(RenderLooks, Transparency)
{
    constexpr int kHalf = 0x02000080;
    RbBuilder data;
    data.addUtf8(1001, "AcCmTransparency");
    data.addInteger(1071, kHalf);
    db().recordFor(NameTable::AppId, "AcCmTransparency");
    ASSERT_EQ(layer("GLASS").setXData(data.take().get()), Vcad::eOk);
    line(0, 100, 1000, 100, {.layer = "GLASS"});
    VcDbLine& own = line(0, 200, 1000, 200, {.layer = "GLASS"});
    EntityProps props = own.props();
    props.hasTransparency = true;
    props.transparency = 0x020000ff;
    own.setProps(props);
    paint();
    EXPECT_EQ(at(500, 100) >> 24, 0x80u);
    EXPECT_EQ(at(500, 200) >> 24, 0xffu);
}

// In a block: layer 0 is that of the reference, by block is the reference's, all else holds.
TEST_F(RenderLooks, BlocksTakeWhatIsLeftToThem)
{
    layer("WALL").setColor(VcCmColor::fromIndex(1));
    layer("OWN").setColor(VcCmColor::fromIndex(3));
    VcDbBlockTableRecord& inner = block("INNER");
    line(0, 0, 100, 0, {.layer = "0"}, &inner);
    line(0, 10, 100, 10, {.layer = "OWN"}, &inner);
    line(0, 20, 100, 20, {.layer = "OWN", .colour = 0}, &inner);
    line(0, 30, 100, 30, {.layer = "OWN", .colour = 5}, &inner);
    VcDbBlockTableRecord& outer = block("OUTER");
    add(new VcDbBlockReference({0, 0, 0}, inner.objectId()), {.layer = "0", .colour = 0}, &outer);
    add(new VcDbBlockReference({100, 100, 0}, outer.objectId()), {.layer = "WALL", .colour = 6});
    add(new VcDbBlockReference({300, 100, 0}, inner.objectId()), {.layer = "WALL"});
    paint();
    const std::uint32_t kMagenta = 0xffff00ff;
    EXPECT_EQ(at(150, 100), kRed) << "layer 0 twice down";
    EXPECT_EQ(at(150, 110), kGreen);
    EXPECT_EQ(at(150, 120), kMagenta) << "by block twice down";
    EXPECT_EQ(at(150, 130), kBlue);
    EXPECT_EQ(at(350, 120), kRed) << "by block of a reference that is by layer";
}

TEST_F(RenderLooks, ReferencesOnHiddenLayers)
{
    VcDbBlockTableRecord& b = block("B");
    line(0, 0, 100, 0, {.layer = "0"}, &b);
    line(0, 10, 100, 10, {.layer = "OTHER"}, &b);
    layer("OFF").setIsOff(true);
    layer("COLD").setIsFrozen(true);
    add(new VcDbBlockReference({100, 100, 0}, b.objectId()), {.layer = "OFF"});
    add(new VcDbBlockReference({100, 200, 0}, b.objectId()), {.layer = "COLD"});
    paint();
    EXPECT_FALSE(isInk(150, 100));
    EXPECT_TRUE(isInk(150, 110)) << "what is on a layer of its own stays when the reference's is off";
    EXPECT_FALSE(isInk(150, 200));
    EXPECT_FALSE(isInk(150, 210)) << "a frozen reference takes all with it";
}

TEST_F(RenderLooks, Lineweights)
{
    layer("HEAVY").setLineWeight(VcDb::LineWeight(200));
    line(0, 100, 1000, 100, {.weight = 50});
    line(0, 200, 1000, 200, {.layer = "HEAVY"});
    line(0, 300, 1000, 300, {.weight = -3});
    paint();
    const double pixelsPerMm = 96 / 25.4;
    EXPECT_NEAR(sheet.widthAt({500, kSide - 100}), 0.5 * pixelsPerMm, 1e-9);
    EXPECT_NEAR(sheet.widthAt({500, kSide - 200}), 2 * pixelsPerMm, 1e-9);
    EXPECT_NEAR(sheet.widthAt({500, kSide - 300}), 0.25 * pixelsPerMm, 1e-9);
}

// The inked stretches of a horizontal line, as "from-to" in whole units.
std::string dashesAt(const Sheet& sheet, double y)
{
    std::string all;
    for (const Sheet::Mark& mark : sheet.marks)
        if (mark.line.size() > 1 && std::fabs(mark.line.front().y - y) < 0.01)
            all += (all.empty() ? "" : " ") + std::to_string(std::lround(mark.line.front().x)) + "-" +
                   std::to_string(std::lround(mark.line.back().x));
    return all;
}

// 60 long and 40 apart: both ends get what is left over, a line that is too short is whole.
TEST_F(RenderLooks, LinetypesEndInDashes)
{
    linetype("DASHED", {60, -40});
    line(100, 500, 400, 500, {.linetype = "DASHED"});
    line(100, 400, 180, 400, {.linetype = "DASHED"});
    paint();
    EXPECT_EQ(dashesAt(sheet, 500), "100-130 170-230 270-330 370-400");
    EXPECT_EQ(dashesAt(sheet, 600), "100-180");
}

TEST_F(RenderLooks, LinetypeScales)
{
    linetype("DASHED", {6, -4});
    db().header().setReal("$LTSCALE", 40, 5);
    line(100, 500, 400, 500, {.linetype = "DASHED"}).setLinetypeScale(2);
    layer("DASHES").setLinetypeObjectId(db().findRecord(NameTable::Linetype, "DASHED"));
    VcDbBlockTableRecord& b = block("B");
    line(0, 0, 30, 0, {.layer = "DASHES"}, &b);
    auto& reference = add(new VcDbBlockReference({100, 300, 0}, b.objectId()));
    reference.setScaleFactors(VcGeScale3d(10));
    paint();
    EXPECT_EQ(dashesAt(sheet, 500), "100-130 170-230 270-330 370-400");
    EXPECT_EQ(dashesAt(sheet, 700), "100-400") << "the pattern grows with the block";
}

TEST_F(RenderLooks, PolylinesBeginTheirLinetypeAtEachVertexUnlessTold)
{
    linetype("DASHED", {60, -40});
    for (const bool runsOn : {false, true}) {
        auto* polyline = new VcDbPolyline;
        for (const double x : {100, 180, 400})
            polyline->addVertexAt(polyline->numVerts(), {x, runsOn ? 500.0 : 400.0});
        polyline->setPlinegen(runsOn);
        add(polyline, {.linetype = "DASHED"});
    }
    paint();
    EXPECT_EQ(dashesAt(sheet, 500), "100-130 170-230 270-330 370-400");
    EXPECT_EQ(dashesAt(sheet, 600).substr(0, 16), "100-180 180-220 ");
}
