// Cutting, reaching, rounding and joining over random figures.
#include "geom_support.h"
#include "host/geom/apparent.h"
#include "host/geom/corner.h"
#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"
#include "host/geom/join.h"
#include "host/geom/offset.h"
#include "host/geom/prolong.h"
#include "host/geom/tangent_circle.h"
#include "host/geom/trim.h"

#include <random>

using namespace vk::geom;
using namespace vk::geom::testing;

namespace {

// Figures of a plane, of a size and at a place that a test chooses.
class Figures {
public:
    Figures(unsigned seed, double size, const Point3& at) : m_random(seed), m_size(size), m_at(at) {}

    double number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    Point3 point() { return m_at + Vector3(number(-1, 1), number(-1, 1), 0) * m_size; }
    Curve curve()
    {
        switch (std::uniform_int_distribution<int>(0, 5)(m_random)) {
        case 0:
            return Segment{point(), point()};
        case 1:
            return Circle{point(), number(0.1, 1) * m_size};
        case 2: {
            const double start = number(0, kTwoPi);
            return Arc{point(), number(0.1, 1) * m_size, start, start + number(0.3, 6)};
        }
        case 3: {
            const double start = number(0, kTwoPi), turn = number(0, kTwoPi);
            return Ellipse{point(), Vector3(std::cos(turn), std::sin(turn), 0) * number(0.3, 1) * m_size,
                           number(0.1, 1), start, start + number(0.3, 6)};
        }
        case 4:
            return polyline();
        default:
            return Nurbs{3, {point(), point(), point(), point(), point()}, {0, 0, 0, 0, 1, 2, 2, 2, 2}, {}};
        }
    }
    Polyline polyline()
    {
        Polyline p{{}, number(0, 1) < 0.3, m_at.z};
        for (int i = 0; i < 5; ++i) {
            const Point3 v = point();
            p.vertices.push_back({{v.x, v.y}, number(0, 1) < 0.4 ? number(-1, 1) : 0});
        }
        return p;
    }

private:
    std::mt19937 m_random;
    double m_size;
    Point3 m_at;
};

struct Scale {
    const char* name;
    double size;
    Point3 at;
};

const Scale kScales[] = {
    {"Plain", 10, {0, 0, 0}}, {"Huge", 1e9, {0, 0, 0}}, {"Tiny", 1e-9, {0, 0, 0}}, {"FarAway", 10, {1e6, -2e6, 5}}};

class RandomFigures : public ::testing::TestWithParam<Scale> {
protected:
    static constexpr int kRounds = 600;
    Figures figures(unsigned seed) const { return Figures(seed, GetParam().size, GetParam().at); }
    double slack(const Curve& a, const Curve& b) const { return 1e-9 * GetParam().size + 20 * meetingTolerance(a, b); }
};

std::vector<double> cutsOf(const Curve& target, const Curve& edge)
{
    std::vector<double> cuts;
    for (const Crossing& c : intersect(target, edge).points)
        cuts.push_back(c.first);
    return cuts;
}

bool isOneOf(const Point3& p, const std::vector<Point3>& places, double tolerance)
{
    return std::any_of(places.begin(), places.end(), [&](const Point3& q) { return q.distanceTo(p) <= tolerance; });
}

TEST_P(RandomFigures, WhatIsTrimmedEndsOnTheCutter)
{
    Figures f = figures(1);
    int trimmed = 0;
    for (int i = 0; i < kRounds; ++i) {
        const Curve target = f.curve(), edge = f.curve();
        const Interval r = paramRange(target);
        const double at = f.number(r.from, r.to), tolerance = slack(target, edge);
        const Trimmed result = trimmedAround(target, cutsOf(target, edge), at, 4 * meetingTolerance(target, target));
        if (result.failure != TrimFailure::None)
            continue;
        ++trimmed;
        double rest = 0;
        const std::vector<Point3> ends{*startPoint(target), *endPoint(target)};
        for (const Curve& part : result.kept) {
            rest += length(part);
            for (const Point3& p : {*startPoint(part), *endPoint(part)})
                EXPECT_TRUE(isOneOf(p, ends, tolerance) || distanceTo(edge, p) <= tolerance) << "round " << i;
            for (const double t : evenly(paramRange(part), 7))
                EXPECT_LE(distanceTo(target, pointAt(part, t)), tolerance) << "round " << i;
            EXPECT_GT(std::fabs(closestPoint(part, pointAt(target, at))->distance), 0)
                << "the part that was shown is gone, round " << i;
        }
        EXPECT_LT(rest, length(target) * (1 + 1e-9));
    }
    EXPECT_GT(trimmed, kRounds / 4);
}

TEST_P(RandomFigures, WhatIsExtendedEndsOnTheEdge)
{
    Figures f = figures(2);
    int extended = 0;
    for (int i = 0; i < kRounds; ++i) {
        const Curve target = f.curve(), edge = f.curve();
        const Interval r = paramRange(target);
        std::vector<double> places;
        for (const Crossing& c : intersect(target, edge, Extend::First).points)
            places.push_back(c.first);
        const Trimmed result =
            extendedTowards(target, places, f.number(0, 1) < 0.5 ? r.from : r.to, 4 * meetingTolerance(target, target));
        if (result.failure != TrimFailure::None)
            continue;
        ++extended;
        const double tolerance = slack(target, edge);
        const Curve& longer = result.kept.front();
        EXPECT_GT(length(longer), length(target));
        const bool moved = startPoint(longer)->distanceTo(*startPoint(target)) > tolerance;
        // A whole circle has come round to its own start.
        if (!isClosed(longer)) {
            EXPECT_LE(distanceTo(edge, moved ? *startPoint(longer) : *endPoint(longer)), 100 * tolerance)
                << "round " << i;
        }
    }
    EXPECT_GT(extended, kRounds / 10);
}

TEST_P(RandomFigures, MeetingsAreTheSameWhicheverComesFirst)
{
    Figures f = figures(3);
    for (int i = 0; i < kRounds; ++i) {
        const Curve a = f.curve(), b = f.curve();
        const auto ab = contactPoints(intersect(a, b)), ba = contactPoints(intersect(b, a));
        ASSERT_EQ(ab.size(), ba.size()) << "round " << i;
        for (const Point3& p : ab)
            EXPECT_TRUE(isOneOf(p, ba, 1e-9 * GetParam().size)) << "round " << i;
    }
}

// Crossings at a slant come out the same however the figure is moved; grazing ones may come or go by rounding.
TEST_P(RandomFigures, MeetingsMoveWithTheFigures)
{
    Figures f = figures(4);
    const VcGeMatrix3d maps[] = {VcGeMatrix3d::mirroring(VcGePlane(GetParam().at, Vector3(1, 0.5, 0))),
                                 VcGeMatrix3d::rotation(0.7, Vector3::zAxis(), GetParam().at),
                                 VcGeMatrix3d::rotation(1.1, Vector3(1, 2, 3), GetParam().at)};
    for (int i = 0; i < kRounds / 2; ++i) {
        const Curve a = f.curve(), b = f.curve();
        std::vector<Point3> before;
        for (const Crossing& c : intersect(a, b).points) {
            const Vector3 u = derivativesAt(a, c.first).first.normal(), v = derivativesAt(b, c.second).first.normal();
            if (u.crossProduct(v).length() > 0.01)
                before.push_back(c.point);
        }
        for (const VcGeMatrix3d& m : maps) {
            const auto after = contactPoints(intersect(transformed(a, m), transformed(b, m)));
            for (const Point3& p : before)
                EXPECT_TRUE(isOneOf(m * p, after, 100 * slack(a, b))) << "round " << i;
        }
    }
}

TEST_P(RandomFigures, AnOffsetKeepsItsDistanceOrSaysThatItVanished)
{
    Figures f = figures(5);
    for (int i = 0; i < kRounds / 8; ++i) {
        const Curve source = f.curve();
        const double distance = f.number(-0.6, 0.6) * GetParam().size, away = std::fabs(distance);
        const OffsetResult result = offset(source, distance, GapFill::Fillet);
        EXPECT_NE(result.curves.empty(), result.failure == OffsetFailure::None) << "round " << i;
        const double tolerance = 1e-6 * (extents(source).diagonal() + away) + 1e-9 * GetParam().at.asVector().length();
        for (const Curve& curve : result.curves)
            for (const double t : evenly(paramRange(curve), 23))
                EXPECT_NEAR(distanceTo(source, pointAt(curve, t)), away, tolerance) << "round " << i << " at " << t;
    }
}

TEST_P(RandomFigures, RoundedCornersTouchBothSides)
{
    Figures f = figures(6);
    int done = 0;
    for (int i = 0; i < kRounds / 2; ++i) {
        const Curve a = Segment{f.point(), f.point()}, b = Segment{f.point(), f.point()};
        const double radius = f.number(0.01, 0.2) * GetParam().size;
        const CornerResult result = filleted({a, f.number(0, 1)}, {b, f.number(0, 1)}, radius, Vector3::zAxis());
        if (result.failure != CornerFailure::None)
            continue;
        ++done;
        const Curve& arc = *result.corner.between;
        const double tolerance = 1e-6 * GetParam().size + 100 * meetingTolerance(a, b);
        EXPECT_NEAR(std::get<Arc>(arc).radius, radius, tolerance);
        for (const auto& side : {result.corner.first, result.corner.second}) {
            const Point3 s = *startPoint(arc), e = *endPoint(arc);
            const bool meets =
                isOneOf(*startPoint(*side), {s, e}, tolerance) || isOneOf(*endPoint(*side), {s, e}, tolerance);
            EXPECT_TRUE(meets) << "round " << i;
        }
    }
    EXPECT_GT(done, kRounds / 8);
}

TEST_P(RandomFigures, PartsThatAreJoinedMakeTheWhole)
{
    Figures f = figures(7);
    for (int i = 0; i < kRounds / 4; ++i) {
        const Curve whole = f.polyline();
        auto parts = splitAt(whole, {f.number(0.1, 3.9), f.number(0.1, 3.9), f.number(0.1, 3.9)});
        std::swap(parts.front(), parts.back());
        for (std::size_t k = 1; k < parts.size(); k += 2)
            parts[k] = reversed(parts[k]);
        if (parts.size() < 2)
            continue;
        const auto joined = joinedToFirst(parts, slack(whole, whole));
        ASSERT_TRUE(joined) << "round " << i;
        EXPECT_EQ(joined->used.size(), parts.size());
        EXPECT_NEAR(length(joined->curve), length(whole), 1e-7 * length(whole) + slack(whole, whole));
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, RandomFigures, ::testing::ValuesIn(kScales),
                         [](const auto& info) { return std::string(info.param.name); });

// Cases with edges

struct TrimCase {
    const char* name;
    Curve target;
    std::vector<double> cuts;
    double at;
    TrimFailure failure;
    std::size_t parts;
};

const TrimCase kTrims[] = {
    {"NoCuts", Segment{{0, 0, 0}, {10, 0, 0}}, {}, 0.5, TrimFailure::NoCut, 0},
    {"CutsAtTheEndsAreNone", Segment{{0, 0, 0}, {10, 0, 0}}, {0, 1}, 0.5, TrimFailure::NoCut, 0},
    {"OneCut", Segment{{0, 0, 0}, {10, 0, 0}}, {0.5}, 0.7, TrimFailure::None, 1},
    {"TheMiddle", Segment{{0, 0, 0}, {10, 0, 0}}, {0.3, 0.6, 0.3}, 0.5, TrimFailure::None, 2},
    {"RayKeepsItsFarSide", Ray{{0, 0, 0}, {1, 0, 0}}, {5}, 2, TrimFailure::None, 1},
    {"LineBecomesTwoRays", XLine{{0, 0, 0}, {1, 0, 0}}, {5, -5}, 2, TrimFailure::None, 2},
    {"CircleCutOnce", Circle{{0, 0, 0}, 5}, {1}, 2, TrimFailure::OnlyOneCut, 0},
    {"CircleOverTheSeam", Circle{{0, 0, 0}, 5}, {1, 6}, 0, TrimFailure::None, 1},
    {"CircleCutTwiceInOnePlace", Circle{{0, 0, 0}, 5}, {1, 1 + 1e-13}, 2, TrimFailure::OnlyOneCut, 0},
    {"ClosedPolyline", Polyline{{{{0, 0}}, {{4, 0}}, {{4, 4}}, {{0, 4}}}, true}, {0.5, 2.5}, 3.5, TrimFailure::None, 1},
    {"ZeroLength", Segment{{1, 1, 0}, {1, 1, 0}}, {0.5}, 0.5, TrimFailure::NoCut, 0},
};

TEST(Trim, Cases)
{
    for (const TrimCase& c : kTrims) {
        SCOPED_TRACE(c.name);
        const Trimmed result = trimmedAround(c.target, c.cuts, c.at, 1e-9);
        EXPECT_EQ(result.failure, c.failure);
        EXPECT_EQ(result.kept.size(), c.parts);
    }
}

TEST(TangentCircles, OfALineAndACircleThatTheyGraze)
{
    const auto circles = tangentCircles(XLine{{0, 0, 0}, {1, 0, 0}}, Circle{{0, 5, 0}, 3}, 1, Vector3::zAxis());
    ASSERT_FALSE(circles.empty());
    for (const TangentCircle& c : circles) {
        EXPECT_NEAR(std::fabs(c.center.y), 1, 1e-9);
        EXPECT_NEAR(c.center.distanceTo({0, 5, 0}), 4, 1e-6);
    }
    EXPECT_TRUE(tangentCircles(XLine{{0, 0, 0}, {1, 0, 0}}, Circle{{0, 50, 0}, 2}, 1, Vector3::zAxis()).empty());
}

TEST(CenterThrough, ThreePoints)
{
    const auto center = centerThrough({5, 0, 2}, {0, 5, 2}, {-5, 0, 2});
    ASSERT_TRUE(center);
    expectNear(*center, {0, 0, 2}, 1e-12);
    EXPECT_FALSE(centerThrough({0, 0, 0}, {1, 1, 0}, {2, 2, 0}));
    EXPECT_FALSE(centerThrough({1, 1, 0}, {1, 1, 0}, {1, 1, 0}));
}

TEST(Apparent, PointsLieOnTheFirstCurve)
{
    Figures f(8, 10, {0, 0, 0});
    int found = 0;
    for (int i = 0; i < 300; ++i) {
        const VcGeMatrix3d tilt =
            VcGeMatrix3d::rotation(f.number(-1, 1), Vector3(f.number(-1, 1), f.number(-1, 1), f.number(-1, 1)));
        const Curve a = transformed(f.curve(), tilt), b = f.curve();
        for (const Crossing& c : apparentCrossings(a, b, Vector3::zAxis())) {
            ++found;
            EXPECT_LE(distanceTo(a, c.point), 1e-6);
            const Point3 onB = pointAt(b, c.second);
            EXPECT_LE(std::hypot(onB.x - c.point.x, onB.y - c.point.y), 1e-6) << "round " << i;
        }
    }
    EXPECT_GT(found, 100);
}

}  // namespace
