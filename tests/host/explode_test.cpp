// What hatches and multilines are as lines.
#include "host/db/database.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_hatch.h"
#include "sdk/vcdb_misc.h"

#include <gtest/gtest.h>
#include <memory>
#include <numeric>

namespace {

using Pieces = std::vector<std::unique_ptr<VcDbEntity>>;

Pieces piecesOf(const VcDbEntity& entity)
{
    std::vector<VcDbEntity*> made;
    EXPECT_EQ(entity.explode(made), Vcad::eOk);
    return Pieces(made.begin(), made.end());
}

double totalLength(const Pieces& pieces)
{
    return std::accumulate(pieces.begin(), pieces.end(), 0.0, [](double sum, const auto& piece) {
        const auto* line = VcDbLine::cast(piece.get());
        return sum + (line ? line->startPoint().distanceTo(line->endPoint()) : 0);
    });
}

std::vector<VcGePoint2d> square(double from, double to) { return {{from, from}, {to, from}, {to, to}, {from, to}}; }

struct HatchCase {
    const char* name;
    VcDbHatch::HatchStyle style;
    double angle;
    std::vector<double> dashes;
    double perArea;  // length of lines for each unit of area hatched
    double area;
};

class HatchLines : public testing::TestWithParam<HatchCase> {};

// A square of 12 with one of 8 in it and one of 4 in that: lines at a distance of 0.01 measure the area.
TEST_P(HatchLines, MeasureTheHatchedArea)
{
    const HatchCase& c = GetParam();
    constexpr double kStep = 0.01;
    VcDbHatch hatch;
    hatch.setPatternDefinitions(
        {{c.angle, 0.003, 0.005, -kStep * std::sin(c.angle), kStep * std::cos(c.angle), c.dashes}});
    hatch.setHatchStyle(c.style);
    for (const double margin : {0.0, 2.0, 4.0})
        hatch.appendLoop(VcDbHatch::kExternal, square(margin, 12 - margin), {});
    const Pieces pieces = piecesOf(hatch);
    EXPECT_NEAR(totalLength(pieces) * kStep, c.area * c.perArea, 0.02 * c.area);
    for (const auto& piece : pieces) {
        VcDbExtents box;
        ASSERT_EQ(piece->getGeomExtents(box), Vcad::eOk);
        EXPECT_GE(box.minPoint().x, -1e-9);
        EXPECT_LE(box.maxPoint().y, 12 + 1e-9);
    }
}

INSTANTIATE_TEST_SUITE_P(Styles, HatchLines,
                         testing::Values(HatchCase{"Normal", VcDbHatch::kNormal, 0, {}, 1, 144 - 64 + 16},
                                         HatchCase{"Outer", VcDbHatch::kOuter, 0.3, {}, 1, 144 - 64},
                                         HatchCase{"Ignore", VcDbHatch::kIgnore, 1.1, {}, 1, 144},
                                         HatchCase{"Dashes", VcDbHatch::kIgnore, 0, {0.02, -0.06}, 0.25, 144}),
                         [](const auto& info) { return info.param.name; });

TEST(HatchExplode, ArcsBoundIt)
{
    VcDbHatch hatch;
    hatch.setPatternDefinitions({{0, 0, 0.0005, 0, 0.001, {}}});
    hatch.appendLoop(VcDbHatch::kExternal, {{-1, 0}, {1, 0}}, {1, 1});
    EXPECT_NEAR(totalLength(piecesOf(hatch)) * 0.001, M_PI, 1e-3);
}

TEST(HatchExplode, WithoutLinesItIsRefused)
{
    VcDbHatch solid;
    solid.setSolidFill(true);
    solid.appendLoop(VcDbHatch::kExternal, square(0, 1), {});
    std::vector<VcDbEntity*> pieces;
    EXPECT_NE(solid.explode(pieces), Vcad::eOk);
    EXPECT_TRUE(pieces.empty());
}

// Lines beyond number are refused, not made.
TEST(HatchExplode, APatternTooFineIsRefused)
{
    VcDbHatch hatch;
    hatch.setPatternDefinitions({{0, 0, 0, 0, 1e-12, {}}});
    hatch.appendLoop(VcDbHatch::kExternal, square(0, 1), {});
    std::vector<VcDbEntity*> pieces;
    EXPECT_NE(hatch.explode(pieces), Vcad::eOk);
    EXPECT_TRUE(pieces.empty());
}

TEST(MlineExplode, WithoutVerticesItIsRefused)
{
    VcDbMline mline;
    std::vector<VcDbEntity*> pieces;
    EXPECT_NE(mline.explode(pieces), Vcad::eOk);
}

}
