// Splines through points.
#include "geom_support.h"
#include "host/geom/spline_fit.h"

using namespace vk::geom;
using namespace vk::geom::testing;

namespace {

const std::vector<Point3> kZigzag{{0, 0, 0}, {3, 4, 1}, {7, -2, 0}, {9, 5, 2}, {14, 0, 0}};

double farthest(const Curve& curve, const std::vector<Point3>& points)
{
    double away = 0;
    for (const Point3& p : points)
        away = std::max(away, distanceTo(curve, p));
    return away;
}

// The largest jump of the second derivative at the knots within.
double worstJump(const Nurbs& n)
{
    double worst = 0;
    for (size_t i = 4; i + 4 < n.knots.size(); ++i) {
        const double t = n.knots[i], step = 1e-7;
        worst = std::max(worst, (derivativesAt(n, t + step).second - derivativesAt(n, t - step).second).length());
    }
    return worst;
}

TEST(SplineFit, RunsThroughAllPointsWithEvenCurvature)
{
    const auto n = fittedThrough(kZigzag, false);
    ASSERT_TRUE(n && isValid(*n));
    EXPECT_LE(farthest(*n, kZigzag), 1e-9);
    EXPECT_EQ(n->poles.size(), kZigzag.size() + 2);
    EXPECT_LE(worstJump(*n), 1e-4);
    EXPECT_LE(derivativesAt(*n, paramRange(*n).from).second.length(), 1e-9) << "it begins straight";
}

TEST(SplineFit, LeavesInTheGivenDirections)
{
    const auto n = fittedThrough(kZigzag, false, {Vector3(0, 5, 0), Vector3(1, 0, 0)});
    ASSERT_TRUE(n);
    EXPECT_LE(farthest(*n, kZigzag), 1e-9);
    const Interval r = paramRange(*n);
    EXPECT_LE((derivativesAt(*n, r.from).first.normal() - Vector3(0, 1, 0)).length(), 1e-9);
    EXPECT_LE((derivativesAt(*n, r.to).first.normal() - Vector3(1, 0, 0)).length(), 1e-9);
}

TEST(SplineFit, AClosedOneComesRoundSmoothly)
{
    const auto n = fittedThrough({{5, 0, 0}, {0, 5, 0}, {-5, 0, 0}, {0, -5, 0}}, true);
    ASSERT_TRUE(n && isClosed(*n));
    const Interval r = paramRange(*n);
    EXPECT_LE((derivativesAt(*n, r.from).first - derivativesAt(*n, r.to).first).length(), 1e-9);
    EXPECT_LE((derivativesAt(*n, r.from).second - derivativesAt(*n, r.to).second).length(), 1e-9);
    for (const double t : evenly(r, 40))
        EXPECT_NEAR(pointAt(*n, t).asVector().length(), 5, 0.15) << "nearly a circle";
}

TEST(SplineFit, OddInput)
{
    EXPECT_FALSE(fittedThrough({}, false));
    EXPECT_FALSE(fittedThrough({{1, 1, 1}, {1, 1, 1}}, true));
    const auto line = fittedThrough({{0, 0, 0}, {0, 0, 0}, {10, 0, 0}}, true);
    ASSERT_TRUE(line && isValid(*line));
    const auto far = fittedThrough({{1e9, 0, 0}, {1e9 + 1, 1, 0}, {1e9 + 2, 0, 0}}, false);
    ASSERT_TRUE(far);
    EXPECT_LE(distanceTo(*far, {1e9 + 1, 1, 0}), 1e-5);
}

}  // namespace
