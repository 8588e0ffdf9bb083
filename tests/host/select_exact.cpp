// Windows, fences and picks hold curves to where they run, not to chords beside them.
#include "host/edit/pick.h"
#include "select_support.h"

using namespace vk::edit;

namespace {

class ExactSelection : public seltest::Drawing {
protected:
    std::string taken(SelectArea::Kind kind, std::vector<VcGePoint3d> points)
    {
        const Picker picker = Picker::of(ed());
        return letters(picker.takenBy(SelectArea::polygon(picker.view(), points, kind)));
    }
    std::string window(SelectArea::Kind kind, double x1, double y1, double x2, double y2)
    {
        const Picker picker = Picker::of(ed());
        return letters(picker.takenBy(SelectArea::rectangle(picker.view(), {x1, y1, 0}, {x2, y2, 0}, kind)));
    }
};

TEST_F(ExactSelection, AWindowAtTheEdgeOfACircle)
{
    circle(0, 0, 100);
    EXPECT_EQ(window(SelectArea::Kind::Window, -100, -100, 100, 100), "a");
    EXPECT_EQ(window(SelectArea::Kind::Window, -100, -100, 100, 99.9999), "");
    // The gap between a chord and its arc takes neither.
    const double edge = 100 * std::cos(0.3), high = 100 * std::sin(0.3);
    EXPECT_EQ(window(SelectArea::Kind::Crossing, edge - 1e-7, high - 1e-7, edge - 2e-7, high - 2e-7), "");
    EXPECT_EQ(window(SelectArea::Kind::Crossing, edge - 1e-7, high - 1e-7, edge + 1e-7, high + 1e-7), "a");
}

TEST_F(ExactSelection, AFenceThatGrazesAnArc)
{
    add(new VcDbArc({0, 0, 0}, VcGeVector3d::zAxis(), 1000, 0.2, 1.2));
    const VcGePoint3d on(1000 * std::cos(0.7), 1000 * std::sin(0.7), 0);
    const VcGeVector3d along(-std::sin(0.7), std::cos(0.7), 0), out(std::cos(0.7), std::sin(0.7), 0);
    EXPECT_EQ(taken(SelectArea::Kind::Fence, {on - along * 10 - out * 1e-4, on + along * 10 - out * 1e-4}), "a");
    EXPECT_EQ(taken(SelectArea::Kind::Fence, {on - along * 10 + out * 1e-6, on + along * 10 + out * 1e-6}), "");
}

TEST_F(ExactSelection, CurvesWithinBlocksToo)
{
    auto* inner = new VcDbCircle({0, 0, 0}, VcGeVector3d::zAxis(), 10);
    add(inner, "0", &block("B"));
    insert("B", 50, 0);
    EXPECT_EQ(window(SelectArea::Kind::Window, 40, -10, 60, 10), "a");
    EXPECT_EQ(window(SelectArea::Kind::Window, 40, -10, 60, 9.99999), "");
    EXPECT_EQ(window(SelectArea::Kind::Crossing, 42.5, -1, 57.5, 1), "") << "within the circle nothing is touched";
}

TEST_F(ExactSelection, TheIndexFollowsChanges)
{
    VcDbCircle& c = circle(0, 0, 10);
    EXPECT_EQ(window(SelectArea::Kind::Crossing, 9, -1, 11, 1), "a");
    c.setCenter({100, 0, 0});
    EXPECT_EQ(window(SelectArea::Kind::Crossing, 9, -1, 11, 1), "");
    EXPECT_EQ(window(SelectArea::Kind::Crossing, 89, -1, 91, 1), "a");
    c.erase();
    EXPECT_EQ(window(SelectArea::Kind::Crossing, 89, -1, 91, 1), "");
    c.erase(false);
    EXPECT_EQ(window(SelectArea::Kind::Crossing, 89, -1, 91, 1), "a");
}

TEST_F(ExactSelection, PicksFindASplineWhereItRuns)
{
    auto* spline = new VcDbSpline;
    spline->setNurbsData(3, false, false, {{0, 0, 0}, {0, 100, 0}, {100, 100, 0}, {100, 0, 0}},
                         {0, 0, 0, 0, 1, 1, 1, 1}, {});
    add(spline);
    const Picker picker = Picker::of(ed());
    EXPECT_FALSE(picker.entityAt({50, 75, 0}).isNull());
    EXPECT_TRUE(picker.entityAt({50, 75 + 2 * picker.view().reach, 0}).isNull());
}

}
