// The modeller's data: what is read from its forms, what moving it writes, and that broken data does no harm.
#include "tests/host/model_support.h"

#include "host/geom/model_edit.h"
#include "host/geom/model_records.h"
#include "host/geom/model_shape.h"

#include <gtest/gtest.h>

#include <random>

using namespace vk::geom;
using namespace modeltest;

namespace {

ModelShape shapeOf(std::string data) { return readModelShape(ModelRecords(std::move(data))); }

Box3d boxOf(const std::vector<Curve>& curves)
{
    Box3d box;
    for (const Curve& c : curves)
        box.add(extents(c));
    return box;
}

void expectBox(const Box3d& box, const VcGePoint3d& min, const VcGePoint3d& max, double tolerance = 1e-9)
{
    EXPECT_LE(box.min.distanceTo(min), tolerance) << box.min.x << ' ' << box.min.y << ' ' << box.min.z;
    EXPECT_LE(box.max.distanceTo(max), tolerance) << box.max.x << ' ' << box.max.y << ' ' << box.max.z;
}

struct Form {
    const char* name;
    std::string (*write)(const Body&);
};

const Form kForms[] = {
    {"Text106", [](const Body& b) { return b.text(106); }},     {"Text400", [](const Body& b) { return b.text(400); }},
    {"Text21800", [](const Body& b) { return b.text(21800); }}, {"Binary4", [](const Body& b) { return b.binary(4); }},
    {"Binary8", [](const Body& b) { return b.binary(8); }},
};

class InEveryForm : public testing::TestWithParam<Form> {};

TEST_P(InEveryForm, EdgesAreThoseOfTheBody)
{
    const ModelShape cube = shapeOf(GetParam().write(box(3, 4, 5)));
    EXPECT_EQ(cube.edges.size(), 12u);
    EXPECT_EQ(cube.faces.size(), 6u);
    expectBox(boxOf(cube.edges), {0, 0, 0}, {3, 4, 5});

    const ModelShape tin = shapeOf(GetParam().write(cylinder(2, 7)));
    EXPECT_EQ(tin.edges.size(), 2u);
    expectBox(boxOf(tin.edges), {-2, -2, 0}, {2, 2, 7});

    const ModelShape half = shapeOf(GetParam().write(halfDisc()));
    EXPECT_EQ(half.unread, 0u);
    expectBox(boxOf(half.edges), {-5, 0, 0}, {5, 5, 0});
}

TEST_P(InEveryForm, MovedDataIsReadAsTheMovedBody)
{
    const VcGeMatrix3d turn = VcGeMatrix3d::translation({10, 20, 30}) * VcGeMatrix3d::rotation(kTwoPi / 4, {0, 0, 1}) *
                              VcGeMatrix3d::scaling(2);
    const auto once = transformedModel(ModelRecords(GetParam().write(box(3, 4, 5))), turn);
    ASSERT_TRUE(once);
    expectBox(boxOf(shapeOf(*once).edges), {2, 20, 30}, {10, 26, 40});
    // Now there is a transform, which is changed in its place.
    const auto mirrored = transformedModel(ModelRecords(*once), VcGeMatrix3d::mirroring(VcGePoint3d(0, 0, 0)));
    ASSERT_TRUE(mirrored);
    EXPECT_EQ(ModelRecords(*mirrored).size(), ModelRecords(*once).size());
    expectBox(boxOf(shapeOf(*mirrored).edges), {-10, -26, -40}, {-2, -20, -30});
    const auto back =
        transformedModel(ModelRecords(*mirrored), turn.inverse() * VcGeMatrix3d::mirroring(VcGePoint3d(0, 0, 0)));
    ASSERT_TRUE(back);
    expectBox(boxOf(shapeOf(*back).edges), {0, 0, 0}, {3, 4, 5});
}

TEST_P(InEveryForm, SplinesAreReadInBothDirections)
{
    for (const char* sense : {"forward", "reversed"}) {
        const ModelShape shape = shapeOf(GetParam().write(splineFace(sense)));
        ASSERT_EQ(shape.edges.size(), 2u) << sense;
        expectBox(boxOf(shape.edges), {0, 0, 0}, {4, 1.5, 0});
    }
}

INSTANTIATE_TEST_SUITE_P(Model, InEveryForm, testing::ValuesIn(kForms),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(ModelRecordsTest, CountsTheRecordThatMovingAdds)
{
    const std::string moved = *transformedModel(ModelRecords(halfDisc().text()), VcGeMatrix3d::translation({1, 0, 0}));
    EXPECT_EQ(moved.substr(0, moved.find('\n')), "400 17 1 0");
    EXPECT_NE(moved.find("body $-1 $1 $-1 $16 #"), std::string::npos);
    EXPECT_NE(moved.find("transform $-1 1 0 0 0 1 0 0 0 1 1 0 0 1 no_rotate no_reflect no_shear #"), std::string::npos);
}

TEST(ModelRecordsTest, MovesDataWithoutAMarkOfItsEndAgainAndAgain)
{
    std::string data = halfDisc().text();
    data.resize(data.find("\nEnd-of"));
    for (int i = 1; i <= 3; ++i) {
        const auto moved = transformedModel(ModelRecords(data), VcGeMatrix3d::translation({10, 0, 0}));
        ASSERT_TRUE(moved);
        data = *moved;
        expectBox(boxOf(shapeOf(data).edges), {10.0 * i - 5, 0, 0}, {10.0 * i + 5, 5, 0});
    }
}

TEST(ModelRecordsTest, RefusesWhatDoesNotKeepProportions)
{
    const ModelRecords half(halfDisc().text());
    EXPECT_FALSE(transformedModel(half, VcGeMatrix3d::scaling(VcGeScale3d(1, 2, 1))));
    EXPECT_FALSE(transformedModel(half, VcGeMatrix3d::scaling(VcGeScale3d(1, 1, 0))));
    EXPECT_FALSE(transformedModel(ModelRecords(""), VcGeMatrix3d()));
    EXPECT_FALSE(transformedModel(ModelRecords("400 0 1 0\n\n\nEnd-of-ACIS-data"), VcGeMatrix3d()));
}

TEST(ModelRecordsTest, TextsOfStatedLengthHoldAnything)
{
    Body b = halfDisc();
    b.add("name-attrib", "@9 a # b { c 5");
    const ModelRecords records(b.text(700));
    ASSERT_EQ(records.size(), 17u);
    const auto tokens = records.tokens(records[16]);
    EXPECT_EQ(tokens[3].bytes, "a # b { c");
    EXPECT_EQ(tokens[4].value, 5);
}

TEST(ModelRecordsTest, ReferencesNameWhatStandsInBracesFurtherUp)
{
    Body b = splineFace();
    b.records[15].first = "intcurve-curve";
    b.records[15].second = "forward { ref 0 } I I";
    const ModelShape shape = shapeOf(b.text());
    ASSERT_EQ(shape.edges.size(), 2u);
    EXPECT_TRUE(std::holds_alternative<Nurbs>(shape.edges[1]));
    b.records[15].second = "forward { ref 7 } I I";
    EXPECT_EQ(shapeOf(b.text()).unread, 1u);
}

TEST(ModelRecordsTest, AnEdgeThatCannotBeReadIsCountedAndTheRestStays)
{
    const ModelShape shape = shapeOf(splineFace("forward", "{ exactcur nullbs }").text());
    EXPECT_EQ(shape.unread, 1u);
    EXPECT_EQ(shape.edges.size(), 1u);
    EXPECT_FALSE(shape.faces.at(0).isWhole);
}

TEST(ModelRecordsTest, TextIsExchangedBothWays)
{
    EXPECT_EQ(modelTextExchanged("body $-1 #"), "=0;& {rn |");
    EXPECT_EQ(modelTextExchanged("=0;& {rn |"), "body $-1 #");
}

TEST(ModelIsolines, RunBetweenTheCirclesOfACylinder)
{
    const ModelShape shape = shapeOf(cylinder(2, 7).text());
    const auto lines = isolines(shape, 4);
    ASSERT_EQ(lines.size(), 4u);
    for (const Curve& line : lines) {
        ASSERT_TRUE(std::holds_alternative<Segment>(line));
        EXPECT_NEAR(length(line), 7, 1e-6);
        EXPECT_NEAR(std::hypot(startPoint(line)->x, startPoint(line)->y), 2, 1e-6);
    }
    EXPECT_TRUE(isolines(shape, 0).empty());
}

TEST(ModelIsolines, CoverAWholeSphere)
{
    const auto lines = isolines(shapeOf(sphere("1 2 3 5").binary()), 4);
    EXPECT_EQ(lines.size(), 5u);  // four meridians and the equator
    expectBox(boxOf(lines), {-4, -3, -2}, {6, 7, 8}, 1e-5);
}

// Above the equator, below it, or outside of either seen from inside.
TEST(ModelIsolines, KeepToTheirHalfOfASphere)
{
    const struct {
        const char *coedge, *face;
        double bottom, top;
    } cases[] = {{"forward", "forward", 0, 5}, {"reversed", "forward", -5, 0}, {"forward", "reversed", -5, 0}};
    for (const auto& c : cases) {
        Body b = shellBody();
        b.add("face", std::string("$-1 $5 $2 $-1 $4 ") + c.face + " single");
        b.add("sphere-surface", "0 0 0 5 1 0 0 0 0 1 forward_v I I I I");
        b.add("loop", "$-1 $6 $3");
        b.add("coedge", std::string("$6 $6 $-1 $7 ") + c.coedge + " $5 $-1");
        b.add("edge", "$8 $8 $6 $10 forward");
        b.add("vertex", "$7 $9");
        b.add("point", "5 0 0");
        b.add("ellipse-curve", "0 0 0 0 0 1 5 0 0 1 I I");
        const auto lines = isolines(shapeOf(b.text()), 4);
        const Box3d reach = boxOf(lines);
        EXPECT_NEAR(reach.min.z, c.bottom, 1e-3) << c.coedge << c.face;
        EXPECT_NEAR(reach.max.z, c.top, 1e-3) << c.coedge << c.face;
    }
}

TEST(ModelIsolines, AConeRunsToItsTipWhicheverWayItsFileTurnsTheAngle)
{
    for (const char* angle : {"-0.44721359549995793 0.89442719099991586", "0.44721359549995793 0.89442719099991586"}) {
        Body b = shellBody();
        b.add("face", "$-1 $5 $2 $-1 $4 forward single");
        b.add("cone-surface", std::string("0 0 0 0 0 1 4 0 0 1 I I ") + angle + " forward I I I I");
        b.add("loop", "$-1 $6 $3");
        b.add("coedge", "$6 $6 $-1 $7 forward $5 $-1");
        b.add("edge", "$8 $8 $6 $10 forward");
        b.add("vertex", "$7 $9");
        b.add("point", "2 0 4");
        b.add("ellipse-curve", "0 0 4 0 0 1 2 0 0 1 I I");
        const auto lines = isolines(shapeOf(b.text()), 4);
        ASSERT_EQ(lines.size(), 4u);
        expectBox(boxOf(lines), {-2, -2, 4}, {2, 2, 8}, 1e-5);
    }
}

// The circle of its base alone does not say which way it opens.
TEST(ModelIsolines, AConeOverItsBaseOpensAsStated)
{
    Body b = cone(4, 8);
    b.records[0].second = "$1 $-1 $11";
    for (int degrees = 10; degrees < 180; degrees += 7) {
        const double c = std::cos(degrees * kTwoPi / 360), s = std::sin(degrees * kTwoPi / 360);
        std::ostringstream turn;
        turn.precision(17);
        turn << "1 0 0 0 " << c << ' ' << s << " 0 " << -s << ' ' << c << " 1000 0 0 1 rotate no_reflect no_shear";
        b.records.resize(11);
        b.add("transform", turn.str());
        const auto lines = isolines(shapeOf(b.text()), 4);
        ASSERT_EQ(lines.size(), 4u);
        EXPECT_LE(endPoint(lines[0])->distanceTo({1000, -8 * s, 8 * c}), 1e-4) << degrees;
    }
}

// A quarter of a ring: tubes at both ends.
TEST(ModelIsolines, ATorusIsCutByItsEnds)
{
    Body b = shellBody();
    b.add("face", "$-1 $5 $2 $-1 $4 forward single");
    b.add("torus-surface", "0 0 0 0 0 1 10 2 1 0 0 forward_v I I I I");
    b.add("loop", "$6 $7 $3");
    b.add("loop", "$-1 $8 $3");
    b.add("coedge", "$7 $7 $-1 $9 reversed $5 $-1");
    b.add("coedge", "$8 $8 $-1 $10 forward $6 $-1");
    b.add("edge", "$11 $11 $7 $15 forward");
    b.add("edge", "$12 $12 $8 $16 forward");
    b.add("vertex", "$9 $13");
    b.add("vertex", "$10 $14");
    b.add("point", "12 0 0");
    b.add("point", "0 12 0");
    b.add("ellipse-curve", "10 0 0 0 -1 0 2 0 0 1 I I");
    b.add("ellipse-curve", "0 10 0 1 0 0 0 2 0 1 I I");
    const auto lines = isolines(shapeOf(b.text()), 8);
    EXPECT_EQ(lines.size(), 8u + 2u);  // eight along, and the tubes at 0 and 45 degrees
    expectBox(boxOf(lines), {0, 0, -2}, {12, 12, 2}, 1e-5);
}

// Broken data

std::string broken(std::string data, std::mt19937& random)
{
    const auto below = [&](std::size_t n) { return std::size_t(random() % std::max<std::size_t>(n, 1)); };
    for (std::size_t times = 1 + below(6); times > 0 && !data.empty(); --times)
        switch (below(5)) {
        case 0:
            data.resize(below(data.size()));
            break;
        case 1:
            data.erase(below(data.size()), below(20));
            break;
        case 2:
            data.insert(below(data.size()), data.substr(below(data.size()), below(60)));
            break;
        case 3:
            data[below(data.size())] = "{}#$@-9e. \n\x0c\x0d\x0f\x10\x11\xff"[below(17)];
            break;
        default:
            data[below(data.size())] = char(random());
            break;
        }
    return data;
}

TEST(ModelBroken, NoDataDoesHarm)
{
    std::mt19937 random(20);
    const Body bodies[] = {box(3, 4, 5), cylinder(2, 7), sphere("0 0 0 5"), halfDisc(), splineFace()};
    for (int round = 0; round < 4000; ++round) {
        const std::string data =
            broken(kForms[random() % std::size(kForms)].write(bodies[random() % std::size(bodies)]), random);
        const ModelRecords records(data);
        const ModelShape shape = readModelShape(records);
        EXPECT_LE(shape.edges.size(), data.size());
        for (const Curve& c : shape.edges)
            EXPECT_TRUE(isValid(c));
        for (const Curve& c : isolines(shape, 4))
            EXPECT_TRUE(isValid(c));
        if (const auto moved = transformedModel(records, VcGeMatrix3d::translation({1, 2, 3}))) {
            EXPECT_EQ(readModelShape(ModelRecords(*moved)).edges.size(), shape.edges.size());
        }
    }
}

// Ends that are not where the data says, counts and lengths that promise more than there is.
TEST(ModelBroken, StatedSizesAreNotTrusted)
{
    const char* texts[] = {"400",
                           "400 9 1 0\n\n\nbody",
                           "700 1 1 0\n\n\nbody $-1 -1 $-1 @999999999 x #",
                           "400 1 1 0\n\n\nbody $99999999999999 #",
                           "400 1 1 0\n\n\nbody $-1 $0 $0 $0 #",
                           "106 1 1 0\ntransform $-1 #"};
    for (const char* text : texts)
        EXPECT_TRUE(shapeOf(text).isEmpty()) << text;
    const ModelShape deep = shapeOf(splineFace("forward", "{ exactcur nubs 3 open 2000000000 0 3 }").text());
    EXPECT_EQ(deep.unread, 1u);
    EXPECT_TRUE(shapeOf("ASM BinaryFile4").isEmpty());
    EXPECT_LE(ModelRecords("ASM BinaryFile4").endAt(), 15u);
    EXPECT_TRUE(shapeOf(std::string("ASM BinaryFile8") + std::string(64, '\x09') + std::string(8, '\xff')).isEmpty());
}

}
