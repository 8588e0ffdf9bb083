// What follows the cursor while commands ask, as the runner records it.
#include "command_support.h"
#include "host/edit/display.h"

#include <algorithm>

using namespace vk::edit;

namespace {

class DragPreviews : public seltest::Commands {
protected:
    void SetUp() override
    {
        Commands::SetUp();
        Display::instance().reset();
        line(0, 0, 10, 0);
        circle(5, 5, 2);
    }

    static const Dragged& last() { return Display::instance().dragged().back(); }
    static std::size_t count() { return Display::instance().dragged().size(); }
};

struct Moving {
    const char* what;
    const char* script;
    std::size_t moved;
    VcGePoint3d cursor;  // the last one
    VcGePoint3d from, to;
};
const Moving kMovings[] = {
    {"Move", "MOVE\nALL\n\n1,1\n4,5\n", 2, {4, 5, 0}, {0, 0, 0}, {3, 4, 0}},
    {"MoveByDistance", "MOVE\nALL\n\n1,1\n@2<0\n", 2, {3, 1, 0}, {0, 0, 0}, {2, 0, 0}},
    {"Copy", "COPY\nALL\n\n0,0\n1,2\n\n", 2, {1, 2, 0}, {5, 5, 0}, {6, 7, 0}},
    {"Rotate", "ROTATE\nALL\n\n1,0\n90\n", 2, {1, 1, 0}, {3, 0, 0}, {1, 2, 0}},
    {"Scale", "SCALE\nALL\n\n1,0\n3\n", 2, {4, 0, 0}, {2, 0, 0}, {4, 0, 0}},
    {"Mirror", "MIRROR\nALL\n\n0,0\n0,5\nN\n", 2, {0, 5, 0}, {3, 4, 0}, {-3, 4, 0}},
    {"InAnotherSystem", "UCS\n100,0\n\nMOVE\nALL\n\n0,0\n1,0\nUCS\nW\n", 2, {1, 0, 0}, {100, 0, 0}, {101, 0, 0}},
};

class MovedObjects : public DragPreviews, public testing::WithParamInterface<Moving> {};

}

TEST_P(MovedObjects, AreShownWhereTheyWillBe)
{
    const Moving& c = GetParam();
    run(c.script);
    ASSERT_GT(count(), 0u);
    EXPECT_EQ(last().band, Drag::Band::Line);
    EXPECT_EQ(last().moved, c.moved);
    EXPECT_TRUE(last().cursor.isEqualTo(c.cursor)) << last().cursor.x << "," << last().cursor.y;
    ASSERT_TRUE(last().by);
    const VcGePoint3d to = *last().by * c.from;
    EXPECT_TRUE(to.isEqualTo(c.to)) << to.x << "," << to.y;
}
INSTANTIATE_TEST_SUITE_P(, MovedObjects, testing::ValuesIn(kMovings), [](const auto& info) { return info.param.what; });

TEST_F(DragPreviews, BlocksAreShownAtTheirInsertionPoint)
{
    run("-BLOCK\nB\n0,0\nALL\n\n-INSERT\nB\n7,8\n1\n1\n0\n");
    const auto& all = Display::instance().dragged();
    const auto shown = std::find_if(all.begin(), all.end(), [](const Dragged& d) { return d.moved == 2; });
    ASSERT_NE(shown, all.end());
    EXPECT_TRUE((*shown->by * VcGePoint3d()).isEqualTo({7, 8, 0}));
}

TEST_F(DragPreviews, FiguresGrowWithTheCursor)
{
    run("RECTANG\n1,1\n4,3\n");
    ASSERT_EQ(last().lines.size(), 1u);
    ASSERT_EQ(last().lines[0].size(), 5u);
    EXPECT_TRUE(last().lines[0][2].isEqualTo({4, 3, 0}));
    run("CIRCLE\n0,0\n3\n");
    ASSERT_EQ(last().lines.size(), 1u);
    for (const VcGePoint3d& p : last().lines[0])
        EXPECT_NEAR(p.distanceTo({0, 0, 0}), 3, 1e-9);
    run("CIRCLE\n0,0\nD\n3\n");
    EXPECT_NEAR(last().lines[0][0].distanceTo({0, 0, 0}), 1.5, 1e-9);
    run("LINE\n0,0\n5,5\n\n");
    EXPECT_EQ(last().band, Drag::Band::Line);
    EXPECT_TRUE(last().base.isEqualTo({0, 0, 0}) && last().cursor.isEqualTo({5, 5, 0}));
}

// Nothing is shown with a question of a transparent command, and what was to be shown still is, after it.
TEST_F(DragPreviews, TransparentCommandsHaveTheirOwnQuestions)
{
    run("MOVE\nALL\n\n0,0\n'ZOOM\nW\n0,0\n20,20\n3,0\n");
    EXPECT_EQ(last().moved, 2u);
    EXPECT_TRUE((*last().by * VcGePoint3d()).isEqualTo({3, 0, 0}));
    for (std::size_t i = 0; i + 1 < count(); ++i)
        EXPECT_EQ(Display::instance().dragged()[i].moved, 0u);
    EXPECT_EQ(Display::instance().drag(), nullptr);
}

TEST_F(DragPreviews, EscLeavesNothing)
{
    type("MOVE\nALL\n\n0,0\n(cancel)\n");
    ed().run();
    EXPECT_EQ(count(), 0u);
    EXPECT_EQ(Display::instance().drag(), nullptr);
}

namespace {

int s_sampled = 0;
int sampleTwice(vds_point point, vds_matrix matrix)
{
    ++s_sampled;
    matrix[0][3] = 2 * point[0];
    return RTNORM;
}

}

TEST_F(DragPreviews, ModulesMoveWhatTheirSamplerSays)
{
    vds_name set;
    ASSERT_EQ(vcedSSGet(L"_X", nullptr, nullptr, nullptr, set), RTNORM);
    type("5,1\n");
    s_sampled = 0;
    vds_point point;
    EXPECT_EQ(vcedDragGen(set, L"Where: ", 0, sampleTwice, point), RTNORM);
    EXPECT_EQ(point[0], 5);
    EXPECT_GE(s_sampled, 1);
    EXPECT_EQ(last().moved, 2u);
    EXPECT_EQ((*last().by * VcGePoint3d()).x, 10);
    vcedSSFree(set);
}

namespace {

bool goesThrough(const Preview::Lines& lines, const VcGePoint3d& p)
{
    for (const auto& line : lines)
        for (std::size_t i = 0; i + 1 < line.size(); ++i) {
            const VcGeVector3d along = line[i + 1] - line[i];
            const double length = along.length();
            const double at = length > 0 ? (p - line[i]).dotProduct(along) / (length * length) : 0;
            if ((line[i] + along * std::clamp(at, 0.0, 1.0)).distanceTo(p) < 0.05)
                return true;
        }
    return false;
}

struct Growing {
    const char* what;
    const char* script;
    std::vector<VcGePoint3d> on;  // points of what is shown last
    VcGePoint3d off;
};
const Growing kGrowings[] = {
    {"ArcThroughThree", "ARC\n20,0\n25,5\n30,0\n", {{20, 0, 0}, {25, 5, 0}, {30, 0, 0}}, {25, -5, 0}},
    {"ArcAboutCentre", "ARC\nC\n20,0\n25,0\n20,9\n", {{25, 0, 0}, {20, 5, 0}}, {15, 0, 0}},
    {"ArcByAngle", "ARC\nC\n20,0\n25,0\nA\n90\n", {{25, 0, 0}, {20, 5, 0}}, {15, 0, 0}},
    {"ArcByDirection", "ARC\n20,0\nE\n30,0\nD\n90\n", {{20, 0, 0}, {25, 5, 0}, {30, 0, 0}}, {25, -5, 0}},
    {"Polygon", "POLYGON\n4\n50,0\nI\n55,0\n", {{55, 0, 0}, {50, 5, 0}, {52.5, 2.5, 0}}, {53.5, 3.5, 0}},
    {"PolygonAbout", "POLYGON\n4\n50,0\nC\n55,0\n", {{55, 0, 0}, {55, 5, 0}}, {50, 6, 0}},
    {"PolygonOnEdge", "POLYGON\n4\nE\n50,0\n53,0\n", {{51, 0, 0}, {53, 1, 0}, {51, 3, 0}}, {51, -3, 0}},
    {"Ellipse", "ELLIPSE\n60,0\n80,0\n70,4\n", {{60, 0, 0}, {70, 4, 0}, {70, -4, 0}}, {70, 5, 0}},
    {"LinearDimension", "DIMLINEAR\n0,0\n10,0\n5,20\n", {{3, 20, 0}, {0, 10, 0}, {10, 10, 0}}, {5, 15, 0}},
    {"VerticalDimension", "DIMLINEAR\n0,0\n10,8\nV\n30,4\n", {{30, 2.7, 0}, {20, 0, 0}, {20, 8, 0}}, {20, 4, 0}},
    {"AlignedDimension", "DIMALIGNED\n0,0\n0,10\n-20,5\n", {{-20, 3, 0}, {-10, 0, 0}}, {-10, 5, 0}},
    {"OrdinateDimension", "DIMORDINATE\n5,5\n5,30\n", {{5, 20, 0}}, {9, 20, 0}},
    {"Stretched", "STRETCH\nC\n-1,-1\n1,1\n\n0,0\n0,7\n", {{0, 7, 0}, {5, 3.5, 0}, {10, 0, 0}}, {5, 0, 0}},
};

class GrowingFigures : public DragPreviews, public testing::WithParamInterface<Growing> {};

}

TEST_P(GrowingFigures, AreShownAsTheyWillBe)
{
    const Growing& c = GetParam();
    run(c.script);
    ASSERT_GT(count(), 0u);
    for (const VcGePoint3d& p : c.on)
        EXPECT_TRUE(goesThrough(last().lines, p)) << p.x << "," << p.y;
    EXPECT_FALSE(goesThrough(last().lines, c.off));
}
INSTANTIATE_TEST_SUITE_P(, GrowingFigures, testing::ValuesIn(kGrowings),
                         [](const auto& info) { return info.param.what; });

// A place of the cursor that allows no figure shows none.
TEST_F(DragPreviews, WhereThereIsNoArcNoneIsShown)
{
    type("ARC\n0,0\n5,0\n10,0\n");
    ed().run();
    ASSERT_GT(count(), 0u);
    EXPECT_TRUE(last().lines.empty());
}

// What a window did not take moves whole.
TEST_F(DragPreviews, StretchMovesWhatWasPickedForItself)
{
    run("STRETCH\nC\n-1,-1\n1,1\n5,7\n\n0,0\n3,0\n");
    EXPECT_EQ(last().moved, 1u);
    ASSERT_TRUE(last().by);
    EXPECT_TRUE((*last().by * VcGePoint3d()).isEqualTo({3, 0, 0}));
    EXPECT_TRUE(goesThrough(last().lines, {3, 0, 0}));
}
