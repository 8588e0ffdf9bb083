// Offsets: known areas, and that every point keeps its distance and none is missing.
#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"
#include "host/geom/offset.h"
#include "tests/host/geom_support.h"

#include <random>

using namespace vk::geom;
using namespace vk::geom::testing;

namespace {

Polyline outline(std::vector<Point2> points, bool closed = true)
{
    Polyline p;
    p.closed = closed;
    for (const Point2& q : points)
        p.vertices.push_back({q});
    return p;
}

const Polyline kSquare = outline({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
const double kQuarter = std::tan(kPi / 8);

Polyline roundedSquare()
{
    Polyline p;
    p.closed = true;
    for (int i = 0; i < 4; ++i) {
        const auto turn = VcGeMatrix2d::rotation(i * kPi / 2, {5, 5});
        p.vertices.push_back({turn * Point2(1, 0)});
        p.vertices.push_back({turn * Point2(9, 0), kQuarter});
    }
    return p;
}

Polyline circleOfTwoArcs() { return {{{{-2, 0}, 1}, {{2, 0}, 1}}, true}; }

// Two chambers joined by a passage one wide.
const Polyline kDumbbell = outline(
    {{0, 0}, {6, 0}, {6, 2.5}, {10, 2.5}, {10, 0}, {16, 0}, {16, 6}, {10, 6}, {10, 3.5}, {6, 3.5}, {6, 6}, {0, 6}});
const Polyline kHook = outline({{0, 0}, {10, 0}, {10, 4}, {3, 4}}, false);

struct Known {
    const char* name;
    Curve curve;
    double distance;
    GapFill gap;
    size_t parts;
    double area;  // of all parts
};

void PrintTo(const Known& k, std::ostream* os) { *os << k.name; }

const std::vector<Known> kKnown{
    {"SquareOut", kSquare, 1, GapFill::Extend, 1, 144},
    {"SquareOutRound", kSquare, 1, GapFill::Fillet, 1, 140 + kPi},
    {"SquareOutCut", kSquare, 1, GapFill::Chamfer, 1, 142},
    {"SquareIn", kSquare, -1, GapFill::Extend, 1, 64},
    {"SquareInFar", kSquare, -4.999, GapFill::Fillet, 1, 4e-6},
    {"SquareGone", kSquare, -5.001, GapFill::Extend, 0, 0},
    {"SquareGoneExactly", kSquare, -5, GapFill::Extend, 0, 0},
    {"SquareGoneFar", kSquare, -500, GapFill::Extend, 0, 0},
    {"Backwards", reversed(kSquare), 1, GapFill::Extend, 1, 64},
    {"RoundedOut", roundedSquare(), 1, GapFill::Extend, 1, 144 - (4 - kPi) * 4},
    {"RoundedIn", roundedSquare(), -0.5, GapFill::Extend, 1, 81 - (4 - kPi) * 0.25},
    {"RoundedInToItsCenters", roundedSquare(), -1, GapFill::Extend, 1, 64},
    {"RoundedInSharp", roundedSquare(), -2, GapFill::Fillet, 1, 36},
    {"CircleOut", circleOfTwoArcs(), 1, GapFill::Extend, 1, 9 * kPi},
    {"CircleIn", circleOfTwoArcs(), -1, GapFill::Extend, 1, kPi},
    {"CircleGone", circleOfTwoArcs(), -2.5, GapFill::Extend, 0, 0},
    {"CircleGoneFar", circleOfTwoArcs(), -7, GapFill::Extend, 0, 0},
    {"DumbbellSplits", kDumbbell, -1, GapFill::Extend, 2, 32},
    {"DumbbellKeepsItsPassage", kDumbbell, -0.25, GapFill::Extend, 1, 2 * 5.5 * 5.5 + 4.5 * 0.5},
    {"DumbbellPassageShutExactly", kDumbbell, -0.5, GapFill::Extend, 2, 50},
    {"WholeCircle", Circle{{0, 0, 0}, 2}, 1, GapFill::Extend, 1, 9 * kPi},
    {"WholeCircleIn", Circle{{0, 0, 0}, 2}, -1, GapFill::Extend, 1, kPi},
    {"WholeCircleGone", Circle{{0, 0, 0}, 2}, -2, GapFill::Extend, 0, 0},
    // Of a convex outline: area + distance * perimeter + pi * distance squared.
    {"EllipseOut", Ellipse{{0, 0, 0}, {5, 0, 0}, 0.6}, 1, GapFill::Extend, 1, 15 * kPi + 25.526998863398113 + kPi},
    {"EllipseGone", Ellipse{{0, 0, 0}, {5, 0, 0}, 0.6}, -3.1, GapFill::Extend, 0, 0},
};

class KnownOffset : public ::testing::TestWithParam<Known> {};

double areaOf(const OffsetResult& r)
{
    double sum = 0;
    for (const Curve& c : r.curves)
        sum += area(c);
    return sum;
}

}  // namespace

TEST_P(KnownOffset, HasItsArea)
{
    const Known& k = GetParam();
    const OffsetResult r = offset(k.curve, k.distance, k.gap);
    ASSERT_EQ(r.curves.size(), k.parts);
    EXPECT_EQ(r.failure, k.parts == 0 ? OffsetFailure::Vanished : OffsetFailure::None);
    EXPECT_NEAR(areaOf(r), k.area, 1e-6);
    for (const Curve& c : r.curves)
        EXPECT_TRUE(isClosed(c));
}

TEST_P(KnownOffset, MovesWithTheDrawing)
{
    const Known& k = GetParam();
    for (const auto& m :
         {similarity(), mirror(), VcGeMatrix3d::scaling(1e-6), VcGeMatrix3d::translation({1e6, 1e6, 0})}) {
        const Curve image = transformed(k.curve, m);
        // A mirrored outline runs the other way about its normal.
        const bool turned =
            m.det() < 0 && !std::holds_alternative<Circle>(k.curve) && !std::holds_alternative<Ellipse>(k.curve);
        const OffsetResult r = offset(image, k.distance * m.scale() * (turned ? -1 : 1), k.gap);
        ASSERT_EQ(r.curves.size(), k.parts);
        EXPECT_NEAR(areaOf(r), k.area * m.scale() * m.scale(), 1e-5 * m.scale() * m.scale());
    }
}

INSTANTIATE_TEST_SUITE_P(Geom, KnownOffset, ::testing::ValuesIn(kKnown),
                         [](const auto& info) { return info.param.name; });

namespace {

struct Subject {
    const char* name;
    Curve curve;
    std::vector<double> distances;
};

void PrintTo(const Subject& s, std::ostream* os) { *os << s.name; }

// A ring of random spokes, some sides bulging: narrow necks, tight bends, sharp tips.
Polyline randomOutline(unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> spoke(3, 10), bulge(-0.8, 0.8);
    Polyline p;
    p.closed = true;
    const int count = 12 + int(seed % 7);
    for (int i = 0; i < count; ++i) {
        const double r = spoke(random), t = kTwoPi * i / count;
        p.vertices.push_back({{r * std::cos(t), r * std::sin(t)}, i % 3 == 0 ? bulge(random) : 0});
    }
    return p;
}

Polyline opened(Polyline p)
{
    p.closed = false;
    return p;
}

const std::vector<Subject> kSubjects{
    {"Hook", kHook, {0.5, -0.5, 1.9, -1.9, 3, -3}},
    {"Dumbbell", kDumbbell, {0.2, -0.2, 1, -1, -2.9, 3}},
    {"Random1", randomOutline(1), {0.3, -0.3, 1, -1, 2}},
    {"Random2", randomOutline(2), {0.3, -0.3, 1, -1, 2}},
    {"Random3", randomOutline(3), {0.3, -0.3, 1, -1, 2}},
    {"Random4", opened(randomOutline(4)), {0.3, -0.3, 1, -1, 2}},
    {"Random5", opened(randomOutline(5)), {0.3, -0.3, 1, -1, 2}},
    {"Crossed", outline({{0, 0}, {8, 6}, {8, 0}, {0, 6}}), {0.5, -0.5, 1.4, -1.4}},
    {"Bulgy",
     Polyline{{{{0, 0}, 0.5}, {{4, 0}, 0}, {{6, 3}, -1.2}, {{2, 5}, 0}, {{-1, 4}, 0.3}}, true},
     {0.3, -0.3, 1, -1}},
    {"Ellipse", Ellipse{{1, 2, 0}, {5, 0, 0}, 0.6}, {1, -1, -1.9, -2.5}},
    {"EllipticalArc", Ellipse{{0, 0, 0}, {0, 3, 0}, 0.4, 1, 5}, {0.5, -0.4, -1}},
    {"Wave", flatWave(), {0.3, -0.3, 1, -1}},
    {"Periodic", periodic(), {0.5, -0.5, -1.5}},
    {"CornerSpline", *toNurbs(Polyline{{{{0, 0}, 0.5}, {{4, 0}, 0}, {{6, 3}, 0}, {{2, 5}, 0}}}), {0.3, -0.3}},
};

class EveryOffset : public ::testing::TestWithParam<Subject> {
protected:
    const Curve curve = GetParam().curve;
    const double size = extents(curve).diagonal();
};

double distanceToAny(const std::vector<Curve>& curves, const Point3& p)
{
    double best = Box3d::kInfinite;
    for (const Curve& c : curves)
        best = std::min(best, distanceTo(c, p));
    return best;
}

}  // namespace

TEST_P(EveryOffset, KeepsItsDistance)
{
    for (double d : GetParam().distances) {
        for (const Curve& c : offset(curve, d, GapFill::Fillet).curves)
            for (double t : evenly(paramRange(c), 300))
                EXPECT_NEAR(distanceTo(curve, pointAt(c, t)), std::fabs(d), 2e-7 * size) << "at distance " << d;
        for (const Curve& c : offset(curve, d, GapFill::Extend).curves)
            for (double t : evenly(paramRange(c), 300))
                EXPECT_GE(distanceTo(curve, pointAt(c, t)), std::fabs(d) - 2e-7 * size) << "at distance " << d;
    }
}

// Beside each place of the source there is a point of the offset, unless another place of it is closer.
TEST_P(EveryOffset, LeavesNothingOut)
{
    for (double d : GetParam().distances) {
        const auto result = offset(curve, d, GapFill::Fillet);
        for (double t : evenly(paramRange(curve), 400)) {
            const Derivatives at = derivativesAt(curve, t + 1e-7);
            const Vector3 right = at.first.crossProduct({0, 0, 1}).normal();
            const Point3 beside = at.point + right * d;
            if (distanceTo(curve, beside) < std::fabs(d) - 1e-5 * size)
                continue;
            EXPECT_LE(distanceToAny(result.curves, beside), 2e-5 * size) << "at distance " << d << " beside " << t;
        }
    }
}

TEST_P(EveryOffset, OpensOnlyWhatIsOpen)
{
    if (!isClosed(curve) || !selfCrossings(curve).empty())
        return;
    for (double d : GetParam().distances)
        for (GapFill gap : {GapFill::Extend, GapFill::Fillet, GapFill::Chamfer})
            for (const Curve& c : offset(curve, d, gap).curves)
                EXPECT_TRUE(isClosed(c)) << d;
}

TEST_P(EveryOffset, IsTheSameBackwards)
{
    for (double d : GetParam().distances) {
        const auto there = offset(curve, d, GapFill::Fillet), back = offset(reversed(curve), -d, GapFill::Fillet);
        // An ellipse turned around looks along the other normal, which swaps the sides again.
        const bool ownNormal = std::holds_alternative<Ellipse>(curve);
        const auto& same = ownNormal ? offset(reversed(curve), d, GapFill::Fillet) : back;
        ASSERT_EQ(there.curves.size(), same.curves.size()) << d;
        for (const Curve& c : there.curves)
            for (double t : evenly(paramRange(c), 100))
                EXPECT_LE(distanceToAny(same.curves, pointAt(c, t)), 1e-6 * size) << d;
    }
}

INSTANTIATE_TEST_SUITE_P(Geom, EveryOffset, ::testing::ValuesIn(kSubjects),
                         [](const auto& info) { return info.param.name; });

TEST(GeomOffset, LinesGoToTheRight)
{
    const auto s = std::get<Segment>(offset(Segment{{0, 0, 0}, {4, 0, 0}}, 1).curves.at(0));
    EXPECT_EQ(s.start, Point3(0, -1, 0));
    EXPECT_EQ(std::get<Ray>(offset(Ray{{0, 0, 0}, {0, 4, 0}}, 2).curves.at(0)).base, Point3(2, 0, 0));
    EXPECT_EQ(offset(Segment{{0, 0, 0}, {0, 0, 1}}, 1).failure, OffsetFailure::NotPlanar);
    EXPECT_EQ(offset(Segment{{0, 0, 0}, {0, 0, 0}}, 1).failure, OffsetFailure::NotPlanar);
    EXPECT_EQ(std::get<Arc>(offset(Arc{{0, 0, 0}, 2, 1, 2}, 1).curves.at(0)).radius, 3);
    EXPECT_EQ(offset(wave(), 1).failure, OffsetFailure::NotPlanar);
    EXPECT_EQ(offset(Circle{{0, 0, 0}, std::nan("")}, 1).failure, OffsetFailure::Invalid);
    EXPECT_EQ(offset(kSquare, Box3d::kInfinite).failure, OffsetFailure::Invalid);
}

TEST(GeomOffset, ThroughAPoint)
{
    const Curve square = kSquare;
    for (const auto& [p, d] : {std::pair(Point3(5, -2, 0), 2.0), std::pair(Point3(5, 1, 0), -1.0),
                               std::pair(Point3(13, 14, 0), 5.0), std::pair(Point3(12, 5, 0), 2.0)})
        EXPECT_NEAR(*offsetDistanceThrough(square, p), d, 1e-9);
    EXPECT_NEAR(*offsetDistanceThrough(Circle{{0, 0, 0}, 2}, {0, 5, 0}), 3, 1e-12);
    EXPECT_NEAR(*offsetDistanceThrough(Circle{{0, 0, 0}, 2}, {0, 1, 0}), -1, 1e-12);
    EXPECT_NEAR(*offsetDistanceThrough(XLine{{0, 0, 0}, {1, 0, 0}}, {7, -3, 0}), 3, 1e-12);
}

TEST(GeomOffset, ArcsAndWidthsStay)
{
    Polyline p = roundedSquare();
    for (PolyVertex& v : p.vertices)
        v.startWidth = v.endWidth = 0.25;
    const auto r = std::get<Polyline>(offset(p, 1).curves.at(0));
    ASSERT_EQ(r.vertices.size(), 8u);
    int arcs = 0;
    for (const PolyVertex& v : r.vertices) {
        EXPECT_EQ(v.startWidth, 0.25);
        if (v.bulge != 0) {
            EXPECT_NEAR(v.bulge, kQuarter, 1e-12);
            ++arcs;
        }
    }
    EXPECT_EQ(arcs, 4);
}

TEST(GeomOffset, OpenEndsStaySquare)
{
    const auto r = offset(kHook, 1, GapFill::Extend);
    ASSERT_EQ(r.curves.size(), 1u);
    const auto p = std::get<Polyline>(r.curves[0]);
    ASSERT_EQ(p.vertices.size(), 4u);
    EXPECT_TRUE(p.vertices[0].point.isEqualTo({0, -1}));
    EXPECT_TRUE(p.vertices[1].point.isEqualTo({11, -1}));
    EXPECT_TRUE(p.vertices[3].point.isEqualTo({3, 5}));
}

TEST(GeomOffset, RepeatedVerticesDoNotMatter)
{
    Polyline p = kSquare;
    p.vertices.insert(p.vertices.begin() + 2, p.vertices[2]);
    EXPECT_NEAR(area(offset(p, 1).curves.at(0)), 144, 1e-9);
    EXPECT_EQ(offset(outline({{1, 1}, {1, 1}}), 1).failure, OffsetFailure::Vanished);
}

TEST(GeomOffset, ManySegmentsInReasonableTime)
{
    Polyline p;
    p.closed = true;
    for (int i = 0; i < 20000; ++i) {
        const double t = kTwoPi * i / 20000, r = 100 + std::sin(40 * t);
        p.vertices.push_back({{r * std::cos(t), r * std::sin(t)}});
    }
    EXPECT_EQ(offset(p, 0.5).curves.size(), 1u);
    EXPECT_EQ(offset(p, -0.5).curves.size(), 1u);
}
