// Dimensions, hatches and their kin: what a file says comes back the same, and accessors say what it means.
#include "ent1_support.h"
#include "group_list.h"
#include "host/db/ent_factories.h"
#include "host/db/field_reader.h"
#include "host/db/field_writer.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_hatch.h"
#include "sdk/vcdb_images.h"
#include "sdk/vcdb_misc.h"

#include <fmt/format.h>

using namespace ent1;

namespace {

bool read(VcDbObject& object, Drawing& d, const std::string& list, DxfVersion version = DxfVersion::R2018)
{
    std::vector<Tag> tags;
    for (std::size_t at = 0; at < list.size();) {
        const std::size_t end = std::min(list.find(" | ", at), list.size()), blank = list.find(' ', at);
        tags.push_back(Tag::ofChars(std::stoi(list.substr(at)), Tag::Form::Raw,
                                    std::string_view(list).substr(blank + 1, end - blank - 1)));
        at = end + 3;
    }
    FieldReader reader(FieldVisitor::Purpose::ReadFile, version, d.core());
    reader.begin(tags);
    object.fields(reader);
    const bool all = reader.tookAll();
    reader.finish(object);
    return all;
}

std::string written(VcDbObject& object, Drawing& d, DxfVersion version = DxfVersion::R2018)
{
    ListSink sink;
    FieldWriter writer(FieldVisitor::Purpose::WriteFile, version, d.core(), sink);
    writer.begin(object);
    object.fields(writer);
    writer.finish();
    return sink.list;
}

const std::string kHatchHead = "100 AcDbEntity | 8 0 | 100 AcDbHatch | 10 0 | 20 0 | 30 2 | 2 ";
const std::string kSolidTail = " | 75 1 | 76 1 | 98 1 | 10 1 | 20 1";
const std::string kLineEdge = "72 1 | 10 0 | 20 0 | 11 4 | 21 0";

struct Case {
    const char* name;
    std::string groups;
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class HatchLoops : public testing::TestWithParam<Case> {};

TEST_P(HatchLoops, ComeBackTheSame)
{
    Drawing d;
    VcDbHatch hatch;
    const std::string list = kHatchHead + "SOLID | 70 1 | 71 0 | " + GetParam().groups + kSolidTail;
    EXPECT_TRUE(read(hatch, d, list));
    EXPECT_EQ(written(hatch, d), list);
    EXPECT_EQ(hatch.elevation(), 2);
}

INSTANTIATE_TEST_SUITE_P(
    Hatch, HatchLoops,
    testing::Values(
        Case{"None", "91 0"},
        Case{"PolylineWithBulges", "91 1 | 92 7 | 72 1 | 73 1 | 93 2 | 10 0 | 20 0 | 42 1 | 10 4 | 20 0 | 42 1 | 97 0"},
        Case{"Lines", "91 1 | 92 1 | 93 2 | " + kLineEdge + " | " + kLineEdge + " | 97 0"},
        Case{"Arc", "91 1 | 92 1 | 93 1 | 72 2 | 10 0 | 20 0 | 40 2 | 50 0 | 51 90 | 73 1 | 97 0"},
        Case{"Ellipse", "91 1 | 92 1 | 93 1 | 72 3 | 10 0 | 20 0 | 11 2 | 21 0 | 40 0.5 | 50 0 | 51 360 | 73 0 | 97 0"},
        Case{"SplineWithFitData",
             "91 1 | 92 1 | 93 2 | 72 4 | 94 1 | 73 0 | 74 0 | 95 4 | 96 2 | 40 0 | 40 0 | 40 1 | 40 1 | "
             "10 0 | 20 0 | 10 4 | 20 0 | 97 2 | 11 0 | 21 0 | 11 4 | 21 0 | 12 1 | 22 0 | 13 1 | 23 0 | " +
                 kLineEdge + " | 97 0"},
        Case{"WeightedSpline",
             "91 1 | 92 1 | 93 1 | 72 4 | 94 1 | 73 1 | 74 0 | 95 4 | 96 2 | 40 0 | 40 0 | 40 1 | 40 1 | 10 0 | "
             "20 0 | 42 2 | 10 4 | 20 0 | 42 1 | 97 0 | 97 0"},
        Case{"SourcesOfEachLoop", "91 2 | 92 1 | 93 1 | " + kLineEdge + " | 97 2 | 330 A1 | 330 A2 | 92 16 | 93 1 | " +
                                      kLineEdge + " | 97 1 | 330 A3"}),
    [](const auto& info) { return std::string(info.param.name); });

// Wrong counts are mended without losing a group.
TEST(Hatch, CountsAreNotTrusted)
{
    Drawing d;
    VcDbHatch hatch;
    const std::string edges = kLineEdge + " | " + kLineEdge;
    EXPECT_TRUE(
        read(hatch, d,
             kHatchHead + "SOLID | 70 1 | 71 0 | 91 2000000000 | 92 1 | 93 1 | " + edges + " | 97 9" + kSolidTail));
    EXPECT_EQ(written(hatch, d),
              kHatchHead + "SOLID | 70 1 | 71 0 | 91 1 | 92 1 | 93 2 | " + edges + " | 97 0" + kSolidTail);
}

TEST(Hatch, KeepsWhatItCannotParse)
{
    Drawing d;
    VcDbHatch hatch;
    EXPECT_FALSE(
        read(hatch, d,
             kHatchHead + "SOLID | 70 1 | 71 0 | 91 1 | 92 1 | 93 1 | 72 2 | 10 0 | 20 0 | 46 7 | 63 3" + kSolidTail));
    const std::string out = written(hatch, d);
    EXPECT_NE(out.find("46 7"), std::string::npos) << out;
    EXPECT_NE(out.find("63 3"), std::string::npos) << out;
}

TEST(Hatch, PatternLinesAndGradient)
{
    Drawing d;
    VcDbHatch hatch;
    const std::string list =
        kHatchHead +
        "ANSI31 | 70 0 | 71 0 | 91 0 | 75 0 | 76 1 | 52 90 | 41 2 | 77 0 | 78 1 | 53 45 | 43 1 | 44 2 | 45 3 | 46 4 | "
        "79 2 | "
        "49 1 | 49 -1 | 98 0 | 450 1 | 451 0 | 460 0.5 | 461 1 | 452 0 | 462 0 | 453 2 | 463 0 | 63 5 | 421 255 | "
        "463 1 | 63 2 | 421 16776960 | 470 SPHERICAL";
    ASSERT_TRUE(read(hatch, d, list));
    EXPECT_EQ(written(hatch, d), list);
    double angle, x, y, dx, dy;
    std::vector<double> dashes;
    ASSERT_EQ(hatch.getPatternDefinitionAt(0, angle, x, y, dx, dy, dashes), Vcad::eOk);
    EXPECT_NEAR(angle, kPi / 4, 1e-12);
    EXPECT_EQ(dashes, (std::vector<double>{1, -1}));
    EXPECT_EQ(hatch.getPatternDefinitionAt(1, angle, x, y, dx, dy, dashes), Vcad::eInvalidIndex);
    EXPECT_TRUE(hatch.isGradient());
    EXPECT_EQ(hatch.gradientType(), VcDbHatch::kPreDefinedGradient);
    EXPECT_EQ(hatch.gradientAngle(), 0.5);
    EXPECT_NE(hatch.setPatternScale(0), Vcad::eOk);
    EXPECT_EQ(hatch.patternScale(), 2);
}

TEST(Hatch, MirroredTwiceIsTheSame)
{
    VcDbHatch hatch;
    ASSERT_EQ(hatch.appendLoop(0, {{0, 0}, {4, 0}, {4, 4}}, {1, 0, 0}), Vcad::eOk);
    expectExtents(hatch, {0, -2, 0}, {4, 4, 0});
    ASSERT_EQ(hatch.transformBy(mirrorInX()), Vcad::eOk);
    expectExtents(hatch, {-4, -2, 0}, {0, 4, 0});
    ASSERT_EQ(hatch.transformBy(mirrorInX()), Vcad::eOk);
    expectExtents(hatch, {0, -2, 0}, {4, 4, 0});
    EXPECT_NE(hatch.transformBy(uneven()), Vcad::eOk);
}

struct Choice {
    int flags;
    const char* marker;
    VcRxClass* (*cls)();
};

TEST(Dimension, ClassIsChosenByMarkerThenFlags)
{
    const Choice choices[] = {
        {32, "AcDbRotatedDimension", &VcDbRotatedDimension::desc},
        {32, "AcDbAlignedDimension", &VcDbRotatedDimension::desc},
        {33, "AcDbAlignedDimension", &VcDbAlignedDimension::desc},
        {161, "", &VcDbAlignedDimension::desc},
        {34, "", &VcDb2LineAngularDimension::desc},
        {0, "AcDb3PointAngularDimension", &VcDb3PointAngularDimension::desc},
        {163, "", &VcDbDiametricDimension::desc},
        {4, "AcDbRadialDimension", &VcDbRadialDimension::desc},
        {102, "", &VcDbOrdinateDimension::desc},
        {7, "", &VcDbRotatedDimension::desc},
    };
    for (const Choice& c : choices)
        EXPECT_EQ(createDimension(c.flags, c.marker)->isA(), c.cls()) << c.flags << c.marker;
}

const std::string kDimHead =
    "100 AcDbEntity | 8 0 | 100 AcDbDimension | 280 0 | 10 1 | 20 2 | 30 0 | 11 3 | 21 4 | 31 0 | 70 ";

TEST(Dimension, RotationIsFoundWhereverItStands)
{
    const std::string points = " | 71 5 | 42 7.5 | 100 AcDbAlignedDimension | 13 1 | 23 0 | 33 0 | 14 5 | 24 0 | 34 0";
    for (const char* tail : {" | 50 90 | 100 AcDbRotatedDimension", " | 100 AcDbRotatedDimension | 50 90"}) {
        Drawing d;
        VcDbRotatedDimension dim;
        const std::string list = kDimHead + "32" + points + tail;
        EXPECT_TRUE(read(dim, d, list));
        EXPECT_NEAR(dim.rotation(), kPi / 2, 1e-12);
        EXPECT_EQ(dim.measurement(), 7.5);
        expectNear(dim.xLine2Point(), {5, 0, 0});
        expectNear(dim.textPosition(), {3, 4, 0});
        EXPECT_EQ(written(dim, d), list);
    }
}

TEST(Dimension, OverridesAreTypedAndKeepTheRest)
{
    Drawing d;
    VcDbFcf frame;
    EXPECT_NE(frame.setDimscale(0), Vcad::eOk);
    VcDbDimOverrides overrides(frame);
    EXPECT_FALSE(overrides.has(40));
    ASSERT_EQ(frame.setDimscale(4), Vcad::eOk);
    ASSERT_EQ(frame.setDimclrt(VcCmColor::fromIndex(3)), Vcad::eOk);
    ASSERT_EQ(overrides.setText(3, "<> mm"), Vcad::eOk);
    EXPECT_EQ(frame.dimscale(), 4);
    EXPECT_EQ(frame.dimVars().dimclrt, 3);
    EXPECT_EQ(frame.dimVars().dimpost, "<> mm");
    EXPECT_EQ(frame.dimtxt(), VcDbDimVars().dimtxt);
    ASSERT_EQ(frame.setDimscale(2), Vcad::eOk);
    EXPECT_EQ(overrides.number(40), 2.0);
    ASSERT_EQ(overrides.remove(40), Vcad::eOk);
    EXPECT_EQ(overrides.remove(40), Vcad::eKeyNotFound);
    EXPECT_EQ(frame.dimVars().dimclrt, 3);
    EXPECT_EQ(overrides.setReal(9999, 1), Vcad::eInvalidInput);
}

TEST(Wipeout, CornersInTheWorld)
{
    VcDbWipeout wipeout;
    ASSERT_EQ(wipeout.setOrientation({10, 20, 0}, {4, 0, 0}, {0, 4, 0}), Vcad::eOk);
    expectExtents(wipeout, {10, 20, 0}, {14, 24, 0});
    ASSERT_EQ(wipeout.setClipBoundary(VcDbRasterImage::kPoly, {{-0.5, -0.5}, {0.5, -0.5}, {0, 0}}), Vcad::eOk);
    EXPECT_TRUE(wipeout.isClipped());
    expectExtents(wipeout, {10, 22, 0}, {14, 24, 0});
    EXPECT_NE(wipeout.setClipBoundary(VcDbRasterImage::kRect, {{0, 0}}), Vcad::eOk);
    wipeout.setDisplayOpt(VcDbRasterImage::kShow, false);
    EXPECT_FALSE(wipeout.isSetDisplayOpt(VcDbRasterImage::kShow));
    EXPECT_NE(wipeout.setFade(101), Vcad::eOk);
}

TEST(Mline, ElementsComeBackTheSame)
{
    Drawing d;
    VcDbMline mline;
    const std::string list = "100 AcDbEntity | 8 0 | 100 AcDbMline | 2 STANDARD | 340 0 | 40 2 | 70 1 | 71 1 | 72 1 | "
                             "73 2 | 10 0 | 20 0 | 30 0 | "
                             "210 0 | 220 0 | 230 1 | 11 5 | 21 6 | 31 0 | 12 1 | 22 0 | 32 0 | 13 0 | 23 1 | 33 0 | "
                             "74 2 | 41 0 | 41 1 | 75 0 | "
                             "74 1 | 41 3 | 75 1 | 42 4";
    EXPECT_TRUE(read(mline, d, list));
    EXPECT_EQ(written(mline, d), list);
    EXPECT_EQ(mline.justification(), VcDbMline::kZero);
    expectNear(mline.vertexAt(0), {5, 6, 0});
    expectNear(mline.vertexAt(1), {0, 0, 0});
}

}
