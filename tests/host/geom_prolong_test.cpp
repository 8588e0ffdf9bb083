// Curves with other ends.
#include "geom_support.h"
#include "host/geom/curve_edit.h"
#include "host/geom/prolong.h"

using namespace vk::geom;
using namespace vk::geom::testing;

namespace {

class Prolonged : public ::testing::TestWithParam<NamedCurve> {};
class Open : public Prolonged {};

std::vector<NamedCurve> openCurves()
{
    auto curves = finiteCurves();
    std::erase_if(curves, [](const NamedCurve& c) { return !canProlong(c.curve, true); });
    return curves;
}

// The longer curve runs through the places that the parameters beyond the ends mean, and keeps the old part.
TEST_P(Open, KeepsWhatItWas)
{
    const Curve& c = GetParam().curve;
    const Interval r = paramRange(c);
    const double by = 0.11 * (r.to - r.from) / std::max(1.0, r.to - r.from);
    for (const auto& [from, to] :
         {std::pair(r.from - by, r.to), std::pair(r.from, r.to + by), std::pair(r.from - by, r.to + 2 * by)}) {
        const auto longer = betweenEnds(c, from, to);
        ASSERT_TRUE(longer);
        expectNear(*startPoint(*longer), pointAt(c, from), 1e-9);
        expectNear(*endPoint(*longer), pointAt(c, to), 1e-9);
        EXPECT_GT(length(*longer), length(c));
        for (const double t : evenly(r, 40))
            EXPECT_LE(distanceTo(*longer, pointAt(c, t)), 1e-9) << "at " << t;
    }
}

TEST_P(Prolonged, CutsLikeSubCurve)
{
    const Curve& c = GetParam().curve;
    const Interval r = paramRange(c);
    const double from = r.from + 0.3 * (r.to - r.from), to = r.from + 0.7 * (r.to - r.from);
    const auto cut = betweenEnds(c, from, to), part = subCurve(c, from, to);
    ASSERT_TRUE(cut && part);
    expectSameShape(*cut, *part, 1e-9);
}

TEST_P(Open, LengthsBeyondTheEnds)
{
    const Curve& c = GetParam().curve;
    const Interval r = paramRange(c);
    const double whole = length(c), more = 0.05 * whole;
    const auto before = paramAtLengthBeyond(c, -more), after = paramAtLengthBeyond(c, whole + more);
    ASSERT_TRUE(before && after);
    EXPECT_NEAR(length(*betweenEnds(c, *before, r.to)), whole + more, 1e-8 * whole);
    EXPECT_NEAR(length(*betweenEnds(c, r.from, *after)), whole + more, 1e-8 * whole);
}

INSTANTIATE_TEST_SUITE_P(All, Open, ::testing::ValuesIn(openCurves()), nameOf);
INSTANTIATE_TEST_SUITE_P(All, Prolonged, ::testing::ValuesIn(finiteCurves()), nameOf);

TEST(Prolong, OneBulgedSegmentGoesOnBothWays)
{
    const Polyline half{{{{0, 0}, std::tan(kPi / 8)}, {{2, 0}, 0}}, false};
    const auto longer = betweenEnds(half, -0.5, 1.5);
    ASSERT_TRUE(longer);
    EXPECT_NEAR(std::get<Polyline>(*longer).vertices[0].bulge, std::tan(kPi / 4), 1e-12);
    EXPECT_NEAR(length(*longer), 2 * length(half), 1e-9);
}

TEST(Prolong, AnArcThatComesRoundIsACircle)
{
    const auto whole = betweenEnds(Arc{{0, 0, 0}, 3, 0, 1}, 0, 20);
    ASSERT_TRUE(whole);
    EXPECT_TRUE(std::holds_alternative<Circle>(*whole));
}

TEST(Prolong, NothingIsLeftBetweenTheSameEnds)
{
    EXPECT_FALSE(betweenEnds(Segment{{0, 0, 0}, {1, 0, 0}}, 0.5, 0.5));
    EXPECT_FALSE(betweenEnds(Segment{{0, 0, 0}, {1, 0, 0}}, 2, 1));
}

}  // namespace
