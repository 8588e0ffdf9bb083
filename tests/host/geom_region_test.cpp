#include "host/geom/region.h"
#include "tests/host/geom_support.h"

using namespace vk::geom;
using namespace vk::geom::testing;

namespace {

enum Take { Outside, Crosses, Inside };

struct Case {
    const char* name;
    Curve curve;
    Take window;   // 0,0 to 10,10
    Take polygon;  // an L: the window without its upper right quarter
};

void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }

Segment seg(double x1, double y1, double x2, double y2) { return {{x1, y1, 0}, {x2, y2, 0}}; }

const std::vector<Case> kCases{
    {"Within", seg(1, 1, 4, 4), Inside, Inside},
    {"AcrossTheNotch", seg(1, 9, 9, 1), Inside, Inside},
    {"OverTheNotch", seg(3, 9, 9, 3), Inside, Crosses},
    {"InTheNotch", seg(6, 6, 9, 9), Inside, Outside},
    {"Through", seg(-1, 5, 11, 5), Crosses, Crosses},
    {"PastACorner", seg(-3, 8, 2, 14), Outside, Outside},
    {"PastThatCornerCloser", seg(-1, 9.01, 1, 11.01), Outside, Outside},
    {"ThroughACorner", seg(-1, 9, 1, 11), Crosses, Crosses},
    {"AlongASide", seg(2, 0, 4, 0), Inside, Inside},
    {"AlongASideAndOut", seg(2, 0, 14, 0), Crosses, Crosses},
    {"APoint", seg(3, 3, 3, 3), Inside, Inside},
    {"APointInTheNotch", seg(7, 7, 7, 7), Inside, Outside},
    {"ACircleInside", Circle{{2.5, 2.5, 0}, 2}, Inside, Inside},
    {"ACircleTouchingFromInside", Circle{{2.5, 2.5, 0}, 2.5}, Inside, Inside},
    {"ACircleInTheBend", Circle{{3, 3, 0}, 2.8}, Inside, Inside},
    {"ACircleIntoTheNotch", Circle{{3, 3, 0}, 2.9}, Inside, Crosses},
    {"ACircleAround", Circle{{5, 5, 0}, 20}, Outside, Outside},
    {"ACircleTouchingFromOutside", Circle{{-2, 5, 0}, 2}, Crosses, Crosses},
    {"AnArcWhoseCircleIsNotInside", Arc{{5, -3, 0}, 5, 1, 2}, Inside, Inside},
    {"AnEllipse", Ellipse{{5, 2, 0}, {4.9, 0, 0}, 0.3}, Inside, Inside},
    {"ASplineWhosePolesAreOutside", Nurbs{2, {{1, 1, 0}, {5, -1, 0}, {9, 1, 0}}, {0, 0, 0, 1, 1, 1}, {}}, Inside,
     Inside},
    {"ALineWithoutEnds", XLine{{0, 20, 0}, {1, -1, 0}}, Crosses, Outside},
    {"ALineWithoutEndsBesides", XLine{{0, 21, 0}, {1, -1, 0}}, Outside, Outside},
    {"ARayAway", Ray{{-1, 5, 0}, {-1, 0, 0}}, Outside, Outside},
    {"ABulge", Polyline{{{{8, 2}, 1}, {{8, 8}, 0}}}, Crosses, Crosses},
    {"SeenFromAbove", Segment{{1, 1, -50}, {4, 4, 90}}, Inside, Inside},
    {"StraightUp", Ray{{1, 1, 0}, {0, 0, 1}}, Inside, Inside},
    {"ACircleOnEdge", Circle{{3, 3, 0}, 2, {0, 1, 0}}, Inside, Inside},
};

const std::vector<Point2> kL{{0, 0}, {10, 0}, {10, 5}, {5, 5}, {5, 10}, {0, 10}};

Take taken(const Region& region, const Curve& curve)
{
    if (region.contains(curve)) {
        EXPECT_TRUE(region.touches(curve));
        return Inside;
    }
    return region.touches(curve) ? Crosses : Outside;
}

class KnownRegion : public ::testing::TestWithParam<Case> {};

}  // namespace

TEST_P(KnownRegion, TakesWhatItShould)
{
    const Case& c = GetParam();
    EXPECT_EQ(taken(Region::window({0, 0}, {10, 10}), c.curve), c.window);
    EXPECT_EQ(taken(Region::window({10, 0}, {0, 10}), c.curve), c.window);
    EXPECT_EQ(taken(Region({{0, 0}, {10, 0}, {10, 10}, {0, 10}}), c.curve), c.window);
    EXPECT_EQ(taken(Region(kL), c.curve), c.polygon);
}

INSTANTIATE_TEST_SUITE_P(Geom, KnownRegion, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return info.param.name; });

TEST(GeomRegion, SeenFromTheSide)
{
    // The view's X is the world's Y, its Y the world's Z.
    const VcGeMatrix3d side = VcGeMatrix3d::worldToPlane(VcGeVector3d(1, 0, 0));
    const Region region = Region::window({0, 0}, {10, 10}, side);
    EXPECT_TRUE(region.contains(Point3(99, 5, 5)));
    EXPECT_FALSE(region.contains(Point3(5, 5, -1)));
    EXPECT_TRUE(region.contains(Curve(Segment{{-50, 1, 1}, {50, 9, 9}})));
    EXPECT_FALSE(region.touches(Segment{{1, 1, -1}, {9, 9, -1}}));
}

TEST(GeomRegion, AStarIsHollow)
{
    std::vector<Point2> star;
    for (int i = 0; i < 5; ++i)
        star.push_back({10 * std::sin(i * 4 * kPi / 5), 10 * std::cos(i * 4 * kPi / 5)});
    const Region region(star);
    EXPECT_FALSE(region.contains(Point3(0, 0, 0)));
    EXPECT_TRUE(region.contains(Point3(0, 7, 0)));
    EXPECT_FALSE(region.touches(Circle{{0, 0, 0}, 1}));
}

TEST(GeomRegion, Fences)
{
    const std::vector<Point2> fence{{0, 0}, {10, 0}, {10, 10}};
    EXPECT_TRUE(fenceTouches(fence, seg(5, -1, 5, 1)));
    EXPECT_TRUE(fenceTouches(fence, Circle{{11, 5, 0}, 1}));
    EXPECT_FALSE(fenceTouches(fence, seg(1, 5, 4, 5)));
    EXPECT_FALSE(fenceTouches(fence, seg(-1, 4, 4, 11)));
    EXPECT_FALSE(fenceTouches({}, seg(-1, 4, 4, 11)));
}

TEST(GeomRegion, TooFewCorners)
{
    EXPECT_FALSE(Region({}).touches(seg(0, 0, 1, 1)));
    EXPECT_FALSE(Region({{0, 0}}).touches(seg(0, 0, 1, 1)));
    EXPECT_FALSE(Region({}).contains(Point3(0, 0, 0)));
    EXPECT_FALSE(Region(kL).touches(Nurbs{}));
}
