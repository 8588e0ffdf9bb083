// Known meetings, and what holds of all: order, mirrors, places and sizes change nothing but themselves.
#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"
#include "tests/host/geom_support.h"

#include <algorithm>

using namespace vk::geom;
using namespace vk::geom::testing;

namespace {

const Curve kUnit = Circle{{0, 0, 0}, 1};

Segment seg(double x1, double y1, double x2, double y2) { return {{x1, y1, 0}, {x2, y2, 0}}; }

struct Case {
    const char* name;
    Curve a, b;
    std::vector<Point3> points;
    Extend extend = Extend::Neither;
    bool tangent = false;
    double slack = 1e-9;  // where contact is so close that its place is vague
};

void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }

const double kHalf = std::sqrt(0.5);

const std::vector<Case> kCases{
    {"SegmentsCross", seg(0, 0, 2, 2), seg(0, 2, 2, 0), {{1, 1, 0}}},
    {"SegmentsMiss", seg(0, 0, 2, 2), seg(3, 2, 5, 0), {}},
    {"SegmentsShareAnEnd", seg(0, 0, 2, 2), seg(2, 2, 5, 0), {{2, 2, 0}}},
    {"SegmentsInLineShareAnEnd", seg(0, 0, 2, 2), seg(2, 2, 5, 5), {{2, 2, 0}}, Extend::Neither, true},
    {"SegmentTouchesTheMiddle", seg(0, 0, 4, 0), seg(1, 0, 1, 5), {{1, 0, 0}}},
    {"ParallelSegments", seg(0, 0, 4, 0), seg(0, 1e-3, 4, 1e-3), {}},
    {"SkewInSpace", seg(0, 0, 2, 2), Segment{{0, 2, 1}, {2, 0, 1}}, {}},
    {"CrossInSpace", Segment{{0, 0, 0}, {2, 2, 2}}, Segment{{0, 2, 1}, {2, 0, 1}}, {{1, 1, 1}}},
    {"FirstGoesOn", seg(0, 0, 1, 0), seg(3, -1, 3, 1), {{3, 0, 0}}, Extend::First},
    {"FirstGoingOnIsNotEnough", seg(0, 0, 1, 0), seg(3, 1, 3, 2), {}, Extend::First},
    {"SecondGoesOn", seg(3, -1, 3, 1), seg(0, 0, 1, 0), {{3, 0, 0}}, Extend::Second},
    {"BothGoOn", seg(0, 0, 1, 0), seg(3, 1, 3, 2), {{3, 0, 0}}, Extend::Both},
    {"RayForwards", Ray{{0, 0, 0}, {1, 0, 0}}, seg(3, -1, 3, 1), {{3, 0, 0}}},
    {"RayNotBackwards", Ray{{0, 0, 0}, {1, 0, 0}}, seg(-3, -1, -3, 1), {}},
    {"RayExtended", Ray{{0, 0, 0}, {1, 0, 0}}, seg(-3, -1, -3, 1), {{-3, 0, 0}}, Extend::First},
    {"Xlines", XLine{{0, 0, 0}, {1, 1, 0}}, XLine{{10, 0, 0}, {0, -3, 0}}, {{10, 10, 0}}},
    {"PointOnSegment", seg(0, 0, 4, 0), seg(1, 0, 1, 0), {{1, 0, 0}}},
    {"PointBesideSegment", seg(0, 0, 4, 0), seg(1, 1e-6, 1, 1e-6), {}},
    {"PointOnPoint", seg(1, 1, 1, 1), seg(1, 1, 1, 1), {{1, 1, 0}}},
    {"PointOnCircle", kUnit, Circle{{0, 1, 0}, 0}, {{0, 1, 0}}},

    {"LineThroughCircle", kUnit, XLine{{0, 0, 0}, {1, 1, 0}}, {{kHalf, kHalf, 0}, {-kHalf, -kHalf, 0}}},
    {"SegmentIntoCircle", kUnit, seg(0, 0, 2, 2), {{kHalf, kHalf, 0}}},
    {"SegmentFromCircleOutwards", kUnit, seg(1, 0, 2, 0), {{1, 0, 0}}},
    {"LineTouchesCircle", kUnit, XLine{{5, 1, 0}, {1, 0, 0}}, {{0, 1, 0}}, Extend::Neither, true},
    {"LineJustShortOfCircle", kUnit, XLine{{5, 1 + 1e-6, 0}, {1, 0, 0}}, {}},
    {"LineJustInsideCircle",
     kUnit,
     XLine{{5, 1 - 5e-9, 0}, {1, 0, 0}},
     {{1e-4, 1, 0}, {-1e-4, 1, 0}},
     Extend::Neither,
     false,
     1e-8},
    {"LineThroughThePlaneOnCircle", kUnit, Segment{{1, 0, -1}, {1, 0, 1}}, {{1, 0, 0}}},
    {"LineThroughThePlaneInCircle", kUnit, Segment{{0.5, 0, -1}, {0.5, 0, 1}}, {}},
    {"LineOverTheCircle", kUnit, Segment{{-2, 0, 1e-3}, {2, 0, 1e-3}}, {}},
    {"SeamOfTheCircleOnce", kUnit, seg(0.5, 0, 2, 0), {{1, 0, 0}}},

    {"ArcMissed", Arc{{0, 0, 0}, 1, 0, kPi}, seg(0, 0, 0, -2), {}},
    {"ArcGoesOn", Arc{{0, 0, 0}, 1, 0, kPi}, seg(0, 0, 0, -2), {{0, -1, 0}}, Extend::First},
    {"ArcEnd", Arc{{0, 0, 0}, 1, 0, kPi}, seg(-1, 0, -5, 0), {{-1, 0, 0}}},

    {"CirclesCross", kUnit, Circle{{1, 0, 0}, 1}, {{0.5, std::sqrt(0.75), 0}, {0.5, -std::sqrt(0.75), 0}}},
    {"CirclesTouchOutside", kUnit, Circle{{3, 0, 0}, 2}, {{1, 0, 0}}, Extend::Neither, true},
    {"CirclesTouchInside", kUnit, Circle{{-0.5, 0, 0}, 0.5}, {{-1, 0, 0}}, Extend::Neither, true},
    {"CirclesApart", kUnit, Circle{{3, 0, 0}, 1.999}, {}},
    {"CirclesConcentric", kUnit, Circle{{0, 0, 0}, 2}, {}},
    {"CirclesInCrossingPlanes", kUnit, Circle{{0, 0, 0}, 1, {1, 0, 0}}, {{0, 1, 0}, {0, -1, 0}}},
    {"CirclesLinked", kUnit, Circle{{1, 0, 0}, 1, {0, 1, 0}}, {}},
    {"CirclesOneAbove", kUnit, Circle{{0, 0, 1e-3}, 1}, {}},
    {"OppositeNormals",
     kUnit,
     Circle{{1, 0, 0}, 1, {0, 0, -1}},
     {{0.5, std::sqrt(0.75), 0}, {0.5, -std::sqrt(0.75), 0}}},

    {"EllipseAndLine", Ellipse{{0, 0, 0}, {2, 0, 0}, 0.5}, XLine{{0, 0, 0}, {0, 1, 0}}, {{0, 1, 0}, {0, -1, 0}}},
    {"EllipseTouchedByLine",
     Ellipse{{0, 0, 0}, {2, 0, 0}, 0.5},
     XLine{{2, 0, 0}, {0, 1, 0}},
     {{2, 0, 0}},
     Extend::Neither,
     true},
    {"EllipseInFourPoints",
     Ellipse{{0, 0, 0}, {2, 0, 0}, 0.5},
     Ellipse{{0, 0, 0}, {0, 2, 0}, 0.5},
     {{2 / std::sqrt(5), 2 / std::sqrt(5), 0},
      {-2 / std::sqrt(5), 2 / std::sqrt(5), 0},
      {2 / std::sqrt(5), -2 / std::sqrt(5), 0},
      {-2 / std::sqrt(5), -2 / std::sqrt(5), 0}}},
    {"CircleTouchesEllipseTwice",
     Ellipse{{0, 0, 0}, {2, 0, 0}, 0.5},
     kUnit,
     {{0, 1, 0}, {0, -1, 0}},
     Extend::Neither,
     true},
    {"CircleOsculatesEllipse",
     Ellipse{{0, 0, 0}, {2, 0, 0}, 0.5},
     Circle{{1.5, 0, 0}, 0.5},
     {{2, 0, 0}},
     Extend::Neither,
     true,
     1e-3},
    {"EllipticalArcMissed", Ellipse{{0, 0, 0}, {2, 0, 0}, 0.5, 0, kPi}, seg(0, 0, 0, -3), {}},
    {"EllipticalArcGoesOn", Ellipse{{0, 0, 0}, {2, 0, 0}, 0.5, 0, kPi}, seg(0, 0, 0, -3), {{0, -1, 0}}, Extend::First},

    {"SplineAndAxis",
     Nurbs{3, {{-1, -1, 0}, {0, 3, 0}, {0, -3, 0}, {1, 1, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}},
     XLine{{0, 0, 0}, {0, 1, 0}},
     {{0, 0, 0}}},
    {"ParabolaTouched",
     Nurbs{2, {{-1, 1, 0}, {0, -1, 0}, {1, 1, 0}}, {0, 0, 0, 1, 1, 1}, {}},
     XLine{{7, 0, 0}, {1, 0, 0}},
     {{0, 0, 0}},
     Extend::Neither,
     true},
    {"ParabolasTouch",
     Nurbs{2, {{-1, 1, 0}, {0, -1, 0}, {1, 1, 0}}, {0, 0, 0, 1, 1, 1}, {}},
     Nurbs{2, {{-1, -2, 0}, {0, 2, 0}, {1, -2, 0}}, {0, 0, 0, 1, 1, 1}, {}},
     {{0, 0, 0}},
     Extend::Neither,
     true},
    {"SplineEndOnCircle", kUnit, Nurbs{2, {{1, 0, 0}, {2, 0, 0}, {3, 3, 0}}, {0, 0, 0, 1, 1, 1}, {}}, {{1, 0, 0}}},
    {"SplineDoesNotGoOn", Nurbs{1, {{0, 0, 0}, {1, 0, 0}}, {0, 0, 1, 1}, {}}, seg(3, -1, 3, 1), {}, Extend::Both},
    {"RationalSplineIsTheCircle", weighted(), seg(0, 0, 0, 5), {{0, 1, 0}}},

    {"PolylineVertexOnce", Polyline3{{{0, 0, 0}, {2, 2, 0}, {4, 0, 0}}}, seg(2, 0, 2, 5), {{2, 2, 0}}},
    {"PolylineVertexTouched", Polyline3{{{0, 0, 0}, {2, 2, 0}, {4, 0, 0}}}, seg(0, 2, 5, 2), {{2, 2, 0}}},
    {"PolylineGoesOnAtItsEndsOnly",
     Polyline3{{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}}},
     XLine{{0, 5, 0}, {1, 0, 0}},
     {{2, 5, 0}},
     Extend::First},
    {"ClosedPolylineDoesNotGoOn",
     Polyline3{{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}}, true},
     XLine{{0, 5, 0}, {1, 0, 0}},
     {},
     Extend::First},
    {"ClosedPolylineSeamOnce",
     Polyline3{{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}}, true},
     XLine{{0, 0, 0}, {-1, 1, 0}},
     {{0, 0, 0}}},
    {"BulgeIsRound", Polyline{{{{-1, 0}, 1}, {{1, 0}, 0}}}, seg(0, 0, 0, -5), {{0, -1, 0}}},
    {"BulgeGoesOnRound", Polyline{{{{-1, 0}, 1}, {{1, 0}, 0}}}, seg(0, 0, 0, 5), {{0, 1, 0}}, Extend::First},
    {"TwoSquares",
     Polyline3{{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, true},
     Polyline3{{{1, 1, 0}, {3, 1, 0}, {3, 3, 0}, {1, 3, 0}}, true},
     {{2, 1, 0}, {1, 2, 0}}},
};

class KnownMeeting : public ::testing::TestWithParam<Case> {};

void expectPoints(const Meeting& m, std::vector<Point3> expected, double tolerance)
{
    EXPECT_EQ(m.points.size(), expected.size());
    EXPECT_TRUE(m.overlaps.empty());
    for (const Crossing& c : m.points) {
        const auto nearest = std::min_element(expected.begin(), expected.end(), [&](const Point3& p, const Point3& q) {
            return c.point.distanceTo(p) < c.point.distanceTo(q);
        });
        ASSERT_NE(nearest, expected.end()) << c.point.x << ',' << c.point.y << ',' << c.point.z;
        expectNear(c.point, *nearest, tolerance);
        expected.erase(nearest);
    }
}

std::vector<Point3> mapped(std::vector<Point3> points, const VcGeMatrix3d& m)
{
    for (Point3& p : points)
        p.transformBy(m);
    return points;
}

Extend turned(Extend e) { return e == Extend::First ? Extend::Second : e == Extend::Second ? Extend::First : e; }

}  // namespace

TEST_P(KnownMeeting, IsFound)
{
    const Case& c = GetParam();
    const Meeting m = intersect(c.a, c.b, c.extend);
    expectPoints(m, c.points, c.slack);
    for (const Crossing& found : m.points)
        EXPECT_EQ(found.tangent, c.tangent);
}

TEST_P(KnownMeeting, DoesNotDependOnTheOrder)
{
    const Case& c = GetParam();
    const Meeting m = intersect(c.a, c.b, c.extend), s = intersect(c.b, c.a, turned(c.extend));
    ASSERT_EQ(m.points.size(), s.points.size());
    for (const Crossing& p : m.points)
        EXPECT_TRUE(std::any_of(s.points.begin(), s.points.end(), [&](const Crossing& q) {
            return p.point == q.point && p.first == q.second && p.second == q.first;
        }));
}

TEST_P(KnownMeeting, MovesWithTheDrawing)
{
    const Case& c = GetParam();
    const VcGeMatrix3d maps[] = {similarity(),
                                 mirror(),
                                 VcGeMatrix3d::translation({1e5, -1e5, 1e5}),
                                 VcGeMatrix3d::scaling(1e-9),
                                 VcGeMatrix3d::scaling(1e9),
                                 VcGeMatrix3d::rotation(1, {1, 1, 1})};
    for (const auto& m : maps) {
        const bool far = m.translation().length() > 1e4;
        const double tolerance = (far ? 2e-5 : 10 * c.slack) * m.scale();
        if (far && c.slack > 1e-9)
            continue;  // closer than such coordinates tell
        expectPoints(intersect(transformed(c.a, m), transformed(c.b, m), c.extend), mapped(c.points, m), tolerance);
    }
}

TEST_P(KnownMeeting, ParametersGiveThePoint)
{
    const Case& c = GetParam();
    for (const Crossing& found : intersect(c.a, c.b, c.extend).points) {
        expectNear(pointAt(c.a, found.first), found.point, 1e-8);
        expectNear(pointAt(c.b, found.second), found.point, 1e-8);
    }
}

INSTANTIATE_TEST_SUITE_P(Geom, KnownMeeting, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return info.param.name; });

namespace {

std::vector<NamedCurve> planarCurves()
{
    return {{"Segment", seg(-3, -2, 5, 3)},
            {"Ray", Ray{{-2, 3, 0}, {1, -0.7, 0}}},
            {"XLine", XLine{{0.3, 0.2, 0}, {0.4, 1, 0}}},
            {"Circle", Circle{{1, 0.5, 0}, 2.2}},
            {"Arc", Arc{{0, -1, 0}, 3, 0.3, 4.4, {0, 0, -1}}},
            {"Ellipse", Ellipse{{0.5, 0.5, 0}, {3, 1, 0}, 0.35}},
            {"EllipticalArc", Ellipse{{0, 0, 0}, {-1, 3.3, 0}, 0.6, 1, 6}},
            {"Spline",
             Nurbs{3, {{-4, 0, 0}, {-2, 6, 0}, {0, -6, 0}, {2, 5, 0}, {4, -3, 0}}, {0, 0, 0, 0, 1, 2, 2, 2, 2}, {}}},
            {"Loop", Nurbs{3, {{-3, -2, 0}, {6, 4, 0}, {-6, 4, 0}, {3, -2, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}}},
            {"Periodic", transformed(periodic(), VcGeMatrix3d::scaling(0.6))},
            {"Polyline", Polyline{{{{-3, 1}, 0.4}, {{-1, -2}, 0}, {{2, 2}, -0.9}, {{3, -1}, 0}, {{-2, 0}, 0}}}},
            {"Closed", Polyline{{{{-3, -1}, 0.2}, {{3, -1.5}, -0.3}, {{2, 2.5}, 0}, {{-2, 2}, 1}}, true}}};
}

std::vector<Point3> chordsOf(const Curve& curve, int steps)
{
    Interval r = paramRange(curve);
    r = {std::max(r.from, -20.0), std::min(r.to, 20.0)};
    std::vector<Point3> points;
    for (double t : evenly(r, steps))
        points.push_back(pointAt(curve, t));
    return points;
}

// Crossings of chords, found the plain way.
std::vector<Point3> chordCrossings(const std::vector<Point3>& a, const std::vector<Point3>& b)
{
    std::vector<Point3> found;
    for (size_t i = 0; i + 1 < a.size(); ++i)
        for (size_t j = 0; j + 1 < b.size(); ++j) {
            const Vector3 u = a[i + 1] - a[i], v = b[j + 1] - b[j], w = b[j] - a[i];
            const double det = u.x * v.y - u.y * v.x;
            const double s = (w.x * v.y - w.y * v.x) / det, t = (w.x * u.y - w.y * u.x) / det;
            if (det != 0 && s >= 0 && s <= 1 && t >= 0 && t <= 1)
                found.push_back(a[i] + u * s);
        }
    return found;
}

class EveryPair : public ::testing::TestWithParam<std::tuple<NamedCurve, NamedCurve>> {
protected:
    const Curve a = std::get<0>(GetParam()).curve, b = std::get<1>(GetParam()).curve;
};

}  // namespace

TEST_P(EveryPair, PointsLieOnBothAndNoneIsMissing)
{
    const Meeting m = intersect(a, b);
    for (const Crossing& c : m.points) {
        EXPECT_LE(distanceTo(a, c.point), 1e-9);
        EXPECT_LE(distanceTo(b, c.point), 1e-9);
        expectNear(pointAt(a, c.first), c.point, 1e-9);
        expectNear(pointAt(b, c.second), c.point, 1e-9);
    }
    for (const Point3& p : chordCrossings(chordsOf(a, 600), chordsOf(b, 600))) {
        const bool known = std::any_of(m.points.begin(), m.points.end(),
                                       [&](const Crossing& c) { return c.point.distanceTo(p) < 0.05; });
        EXPECT_TRUE(known) << p.x << ',' << p.y;
    }
}

TEST_P(EveryPair, ChangesOnlyPlaces)
{
    for (Extend e : {Extend::Neither, Extend::First, Extend::Both}) {
        std::vector<Point3> points;
        for (const Crossing& c : intersect(a, b, e).points)
            points.push_back(c.point);
        expectPoints(intersect(b, a, turned(e)), points, 0);
        for (const auto& m : {similarity(), mirror()})
            expectPoints(intersect(transformed(a, m), transformed(b, m), e), mapped(points, m), 1e-7);
    }
}

TEST_P(EveryPair, ThroughAnUnevenScale)
{
    std::vector<Point3> points;
    for (const Crossing& c : intersect(a, b).points)
        points.push_back(c.point);
    expectPoints(intersect(transformed(a, uneven()), transformed(b, uneven())), mapped(points, uneven()), 1e-7);
}

static std::vector<std::tuple<NamedCurve, NamedCurve>> differentPairs()
{
    std::vector<std::tuple<NamedCurve, NamedCurve>> pairs;
    for (const NamedCurve& a : planarCurves())
        for (const NamedCurve& b : planarCurves())
            if (a.name != b.name)
                pairs.emplace_back(a, b);
    return pairs;
}

INSTANTIATE_TEST_SUITE_P(Geom, EveryPair, ::testing::ValuesIn(differentPairs()), [](const auto& info) {
    return std::get<0>(info.param).name + "And" + std::get<1>(info.param).name;
});

namespace {

struct OverlapCase {
    const char* name;
    Curve a, b;
    double shared;  // length in common
    size_t points = 0;
};

const std::vector<OverlapCase> kOverlaps{
    {"SegmentsPartly", seg(0, 0, 4, 0), seg(3, 0, 9, 0), 1},
    {"SegmentsBackwards", seg(0, 0, 4, 0), seg(9, 0, 3, 0), 1},
    {"SegmentWithin", seg(0, 0, 4, 4), seg(1, 1, 2, 2), std::sqrt(2)},
    {"SameSegment", seg(0, 0, 4, 0), seg(0, 0, 4, 0), 4},
    {"SegmentOnLine", seg(0, 0, 4, 0), XLine{{9, 0, 0}, {-2, 0, 0}}, 4},
    {"OpposedRays", Ray{{0, 0, 0}, {1, 0, 0}}, Ray{{5, 0, 0}, {-1, 0, 0}}, 5},
    {"SameCircle", kUnit, Circle{{0, 0, 0}, 1}, kTwoPi},
    {"SameCircleTurnedOver", kUnit, Circle{{0, 0, 0}, 1, {0, 0, -1}}, kTwoPi},
    {"ArcOnCircle", kUnit, Arc{{0, 0, 0}, 1, 5, 7}, 2},
    {"ArcsPartly", Arc{{0, 0, 0}, 1, 0, 2}, Arc{{0, 0, 0}, 1, 1.5, 3}, 0.5},
    {"ArcsAtBothEnds", Arc{{0, 0, 0}, 1, 0, 4}, Arc{{0, 0, 0}, 1, 3, kTwoPi + 1}, 2},
    {"ArcsEndToEnd", Arc{{0, 0, 0}, 1, 0, 2}, Arc{{0, 0, 0}, 1, 2, 3}, 0, 1},
    {"ArcsOfOneCircleApart", Arc{{0, 0, 0}, 1, 0, 2}, Arc{{0, 0, 0}, 1, 2.5, 3}, 0, 0},
    {"SameEllipse", Ellipse{{0, 0, 0}, {5, 0, 0}, 0.6}, Ellipse{{0, 0, 0}, {-5, 0, 0}, 0.6}, 25.526998863398113},
    {"SameSpline", flatWave(), flatWave(), 0},
    {"SplineOnItsPart", flatWave(), *subCurve(flatWave(), 0.5, 2.7), 0},
    {"SplineOnCircle", weighted(), kUnit, kPi},
    {"StraightSpline", Nurbs{3, {{0, 0, 0}, {1, 0, 0}, {3, 0, 0}, {4, 0, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}},
     seg(1, 0, 9, 0), 3},
    {"PolylineAlongSegment", Polyline3{{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 5, 0}}}, seg(0.5, 0, 9, 0), 1.5},
    {"SquaresShareASide", Polyline3{{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, true},
     Polyline3{{{2, 0, 0}, {4, 0, 0}, {4, 2, 0}, {2, 2, 0}}, true}, 2},
};

void PrintTo(const OverlapCase& c, std::ostream* os) { *os << c.name; }

class KnownOverlap : public ::testing::TestWithParam<OverlapCase> {};

double sharedLength(const Meeting& m, const Curve& a)
{
    double sum = 0;
    for (const Overlap& o : m.overlaps)
        sum += lengthBetween(a, o.first.from, o.first.to);
    return sum;
}

}  // namespace

TEST_P(KnownOverlap, IsFoundEitherWay)
{
    const OverlapCase& c = GetParam();
    double shared = c.shared;
    if (std::string(c.name) == "SameSpline")
        shared = length(c.a);
    if (std::string(c.name) == "SplineOnItsPart")
        shared = length(c.b);
    for (const VcGeMatrix3d& m :
         {VcGeMatrix3d(), similarity(), mirror(), VcGeMatrix3d::scaling(1e-9), VcGeMatrix3d::scaling(1e9)}) {
        const Curve a = transformed(c.a, m), b = transformed(c.b, m);
        const Meeting there = intersect(a, b), back = intersect(b, a);
        EXPECT_EQ(there.points.size(), c.points);
        EXPECT_EQ(back.points.size(), c.points);
        EXPECT_NEAR(sharedLength(there, a), shared * m.scale(), 1e-7 * m.scale());
        EXPECT_NEAR(sharedLength(back, b), shared * m.scale(), 1e-7 * m.scale());
        for (const Overlap& o : there.overlaps) {
            expectNear(pointAt(a, o.first.from), pointAt(b, o.second.from), 1e-8 * m.scale());
            expectNear(pointAt(a, o.first.to), pointAt(b, o.second.to), 1e-8 * m.scale());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Geom, KnownOverlap, ::testing::ValuesIn(kOverlaps),
                         [](const auto& info) { return info.param.name; });

TEST(GeomIntersect, LinesOnOneLineGoOnForEver)
{
    const Meeting m = intersect(XLine{{0, 0, 0}, {1, 0, 0}}, Ray{{3, 0, 0}, {2, 0, 0}});
    ASSERT_EQ(m.overlaps.size(), 1u);
    EXPECT_EQ(m.overlaps[0].first.from, 3);
    EXPECT_EQ(m.overlaps[0].first.to, Box3d::kInfinite);
    EXPECT_EQ(contactPoints(m).size(), 1u);
}

TEST(GeomIntersect, NearCoincidentSplinesEnd)
{
    Nurbs a = flatWave(), b = flatWave();
    for (Point3& p : b.poles)
        p.y += 1e-7 * std::sin(p.x * 3);
    EXPECT_LE(intersect(a, b).points.size(), 40u);
}

TEST(GeomIntersect, SplinesInSpace)
{
    const Nurbs a = wave();
    const Point3 on = pointAt(a, 1.3);
    const Nurbs b{2, {on + Vector3(-1, 2, 3), on, on + Vector3(4, 1, -2)}, {0, 0, 0, 1, 1, 1}, {}};
    const Point3 mid = pointAt(b, 0.5);
    const Curve through = transformed(b, VcGeMatrix3d::translation(on - mid));
    const Meeting m = intersect(a, through);
    ASSERT_EQ(m.points.size(), 1u);
    EXPECT_NEAR(m.points[0].first, 1.3, 1e-9);
    EXPECT_TRUE(intersect(a, transformed(through, VcGeMatrix3d::translation({0, 0, 1e-3}))).empty());
}

TEST(GeomIntersect, SelfCrossings)
{
    const Curve loop = Nurbs{3, {{-3, -2, 0}, {6, 4, 0}, {-6, 4, 0}, {3, -2, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}};
    const auto c = selfCrossings(loop);
    ASSERT_EQ(c.size(), 1u);
    EXPECT_NEAR(c[0].point.x, 0, 1e-12);
    EXPECT_NEAR(c[0].first + c[0].second, 1, 1e-12);
    EXPECT_EQ(selfCrossings(Polyline3{{{0, 0, 0}, {2, 2, 0}, {2, 0, 0}, {0, 2, 0}}, true}).size(), 1u);
    EXPECT_TRUE(selfCrossings(Polyline3{{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, true}).empty());
    EXPECT_TRUE(selfCrossings(kUnit).empty());
    EXPECT_TRUE(selfCrossings(flatWave()).empty());
    EXPECT_TRUE(selfCrossings(periodic()).empty());
}
