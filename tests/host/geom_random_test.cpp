// What must hold for every curve and every pair of curves, over thousands of random ones.
#include "geom_any_figure.h"
#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"
#include "host/geom/offset.h"

using namespace vk::geom;
using namespace vk::geom::testing;

namespace {

constexpr double kShare = 1e-9;  // of the drawing's size: how far results may be off

bool isEndless(const Curve& curve)
{
    return std::holds_alternative<Ray>(curve) || std::holds_alternative<XLine>(curve);
}

// Rounds are spread over a few tests so that each has its own random numbers and its own name.
class AnyCurve : public ::testing::TestWithParam<int> {
protected:
    static constexpr unsigned kRounds = 60;

    template <class Check>
    void eachRound(Check check)
    {
        for (unsigned i = 0; i < kRounds; ++i) {
            const unsigned seed = unsigned(GetParam()) * 1000 + i;
            SCOPED_TRACE("seed " + std::to_string(seed));
            AnyFigure figures(seed);
            check(figures, figures.curve());
            if (HasFailure())
                return;
        }
    }
};

TEST_P(AnyCurve, HoldsItsOwnPointsAndNoneIsNearer)
{
    eachRound([](AnyFigure& f, const Curve& c) {
        const double tolerance = kShare * extentOf(c);
        const Point3 q = f.point();
        const double nearest = distanceTo(c, q);
        for (double t : evenly(finiteRange(c), 60)) {
            const Point3 p = pointAt(c, t);
            EXPECT_LE(distanceTo(c, p), tolerance);
            EXPECT_LE(nearest, p.distanceTo(q) + tolerance);
        }
    });
}

TEST_P(AnyCurve, PartsAddUp)
{
    eachRound([](AnyFigure& f, const Curve& c) {
        if (isEndless(c))
            return;
        const Interval r = paramRange(c);
        const double tolerance = kShare * extentOf(c), whole = length(c);
        std::vector<double> cuts;
        for (int i = f.whole(1, 3); i > 0; --i)
            cuts.push_back(f.number(r.from, r.to));
        double sum = 0;
        for (const Curve& part : splitAt(c, cuts)) {
            sum += length(part);
            for (double t : evenly(paramRange(part), 9))
                EXPECT_LE(distanceTo(c, pointAt(part, t)), 4 * tolerance);
        }
        EXPECT_NEAR(sum, whole, kShare * whole + tolerance);
        const double t = f.number(r.from, r.to);
        const auto back = paramAtLength(c, lengthBetween(c, r.from, t));
        ASSERT_TRUE(back);
        EXPECT_NEAR(lengthBetween(c, r.from, *back), lengthBetween(c, r.from, t), kShare * whole + tolerance);
    });
}

// Where a curve may have corners, its ends among them.
std::vector<double> corners(const Curve& c)
{
    const Interval r = paramRange(c);
    std::vector<double> at{r.from, r.to};
    if (const auto* n = std::get_if<Nurbs>(&c))
        at.insert(at.end(), n->knots.begin() + n->degree, n->knots.begin() + long(n->poles.size()));
    if (std::holds_alternative<Polyline>(c) || std::holds_alternative<Polyline3>(c))
        for (double t = r.from + 1; t < r.to; ++t)
            at.push_back(t);
    std::sort(at.begin(), at.end());
    at.erase(std::unique(at.begin(), at.end()), at.end());
    return at;
}

// The area of the chords between ever more points, led on to where it would end.
Vector3 areaOfChords(const Curve& c, int perSpan)
{
    const std::vector<double> at = corners(c);
    const Point3 start = pointAt(c, at.front());
    Point3 last = start;
    Vector3 sum;
    for (size_t i = 1; i < at.size(); ++i)
        for (double t : evenly({at[i - 1], at[i]}, perSpan)) {
            const Point3 p = pointAt(c, t);
            sum += (last - start).crossProduct(p - start) * 0.5;
            last = p;
        }
    return sum;
}

TEST_P(AnyCurve, AreaIsThatOfManyChordsAndTurnsOverBackwards)
{
    eachRound([](AnyFigure&, const Curve& c) {
        if (isEndless(c))
            return;
        const double size = extentOf(c), all = length(c);
        const Vector3 coarse = areaOfChords(c, 500), fine = areaOfChords(c, 1000), area = vectorArea(c);
        const double slack = 1e-6 * all * all + 1e-12 * size * size;
        EXPECT_LE((area - fine - (fine - coarse) / 3.0).length(), slack + (fine - coarse).length() / 2);
        EXPECT_LE((area + vectorArea(reversed(c))).length(), 1e-9 * all * all + 1e-12 * size * size);
    });
}

TEST_P(AnyCurve, ImagesHoldTheImagesOfItsPoints)
{
    eachRound([](AnyFigure& f, const Curve& c) {
        const VcGeMatrix3d map = f.map();
        const Curve image = transformed(c, map);
        const double tolerance = kShare * std::max(extentOf(c), extentOf(image));
        for (double t : evenly(finiteRange(c), 23))
            EXPECT_LE(distanceTo(image, map * pointAt(c, t)), tolerance);
    });
}

TEST_P(AnyCurve, SplinesStandForIt)
{
    eachRound([](AnyFigure&, const Curve& c) {
        if (isEndless(c))
            return;
        const auto spline = toNurbs(c);
        ASSERT_TRUE(spline && isValid(*spline));
        const double tolerance = 2 * kShare * extentOf(c);
        for (double t : evenly(paramRange(*spline), 60))
            EXPECT_LE(distanceTo(c, pointAt(*spline, t)), tolerance);
        EXPECT_NEAR(length(*spline), length(c), 1e-7 * length(c) + tolerance);
    });
}

INSTANTIATE_TEST_SUITE_P(Random, AnyCurve, ::testing::Range(0, 8));

// One that touches the other, runs along it, ends on it, is the same or the same backwards.
Curve related(AnyFigure& f, const Curve& c)
{
    const Interval r = finiteRange(c);
    const double t = f.chance(0.3) ? r.from : f.chance(0.3) ? r.to : f.number(r.from, r.to);
    const Derivatives d = derivativesAt(c, t);
    const auto plane = planeOf(c);
    const Vector3 normal = plane ? plane->normal() : f.normal(), along = d.first.normal(),
                  aside = along.crossProduct(normal);
    switch (f.whole(0, 6)) {
    case 0:
        return Segment{d.point, d.point + aside * f.number(-1, 1) * f.size()};
    case 1:
        return Segment{d.point - along * f.number(0.1, 1) * f.size(), d.point + along * f.number(0.1, 1) * f.size()};
    case 2: {
        const double radius = f.number(0.05, 1) * f.size();
        return Circle{d.point + aside * radius, radius, normal};
    }
    case 3:
        return subCurve(c, f.number(r.from, r.to), f.number(r.from, r.to)).value_or(c);
    case 4:
        return reversed(c);
    case 5: {
        const Curve other = f.curve();
        return transformed(other, VcGeMatrix3d::translation(d.point - pointAt(other, finiteRange(other).from)));
    }
    default:
        return f.curve();
    }
}

class AnyPair : public ::testing::TestWithParam<int> {
protected:
    static constexpr unsigned kRounds = 150;

    template <class Check>
    void eachRound(Check check)
    {
        for (unsigned i = 0; i < kRounds; ++i) {
            const unsigned seed = unsigned(GetParam()) * 1000 + i;
            SCOPED_TRACE("seed " + std::to_string(seed));
            AnyFigure f(seed);
            const Curve a = f.curve(), b = f.chance(0.5) ? related(f, a) : f.curve();
            check(f, a, b, std::max(extentOf(a), extentOf(b)));
            if (HasFailure())
                return;
        }
    }
};

bool isOneOf(const Point3& p, const std::vector<Point3>& places, double tolerance)
{
    return std::any_of(places.begin(), places.end(), [&](const Point3& q) { return q.distanceTo(p) <= tolerance; });
}

Extend turned(int extend) { return Extend((extend >> 1 & 1) | (extend << 1 & 2)); }

bool beyondItsEnds(const Curve& c, double t)
{
    const Interval r = paramRange(c);
    return t < r.from || t > r.to;
}

// Beyond the ends of an arc that is all but straight the rounding of its far center counts.
bool isUnsure(const Curve& c, double t)
{
    const auto* p = std::get_if<Polyline>(&c);
    if (!p || !beyondItsEnds(c, t))
        return false;
    const double bulge = p->vertices[t < 0 ? 0 : p->vertices.size() - 2].bulge;
    return bulge != 0 && std::fabs(bulge) < 1e-6;
}

void expectPlaceOf(const Curve& c, double t, const Point3& p, double size)
{
    if (!isUnsure(c, t)) {
        EXPECT_LE(pointAt(c, t).distanceTo(p), kShare * std::max(size, p.asVector().length()));
    }
}

// How much of a curve's parameters is shared, infinite or not.
double shared(const Meeting& meeting, Interval Overlap::*side)
{
    double sum = 0;
    for (const Overlap& o : meeting.overlaps)
        sum += std::min(std::fabs((o.*side).to - (o.*side).from), 1e3);
    return sum;
}

TEST_P(AnyPair, MeetsWhereItsParametersSayInEitherOrder)
{
    eachRound([](AnyFigure&, const Curve& a, const Curve& b, double size) {
        for (int extend = 0; extend < 4; ++extend) {
            const Meeting ab = intersect(a, b, Extend(extend)), ba = intersect(b, a, turned(extend));
            EXPECT_EQ(ab.points.size(), ba.points.size());
            EXPECT_NEAR(shared(ab, &Overlap::first), shared(ba, &Overlap::second), 1e-6);
            const auto others = contactPoints(ba);
            for (const Crossing& c : ab.points) {
                expectPlaceOf(a, c.first, c.point, size);
                expectPlaceOf(b, c.second, c.point, size);
                EXPECT_TRUE(isOneOf(c.point, others, kShare * std::max(size, c.point.asVector().length())));
                EXPECT_FALSE(!(extend & 1) && beyondItsEnds(a, c.first));
                EXPECT_FALSE(!(extend & 2) && beyondItsEnds(b, c.second));
            }
            for (const Overlap& o : ab.overlaps)
                EXPECT_LE(o.first.from, o.first.to);
        }
    });
}

TEST_P(AnyPair, OverlapsLieOnBoth)
{
    eachRound([](AnyFigure&, const Curve& a, const Curve& b, double size) {
        for (const Overlap& o : intersect(a, b).overlaps)
            for (double t : evenly({std::max(o.first.from, -20.0), std::min(o.first.to, 20.0)}, 8))
                EXPECT_LE(distanceTo(b, pointAt(a, t)), kShare * size);
    });
}

// Where the sides of two chains of chords cross at a slant.
std::vector<Point3> chordCrossings(const Curve& a, const Curve& b, int chords)
{
    std::vector<Point3> found, p, q;
    for (double t : evenly(finiteRange(a), chords))
        p.push_back(pointAt(a, t));
    for (double t : evenly(finiteRange(b), chords))
        q.push_back(pointAt(b, t));
    for (size_t i = 1; i < p.size(); ++i)
        for (size_t j = 1; j < q.size(); ++j) {
            const Vector3 d = p[i] - p[i - 1], e = q[j] - q[j - 1], w = q[j - 1] - p[i - 1];
            const double cross = d.x * e.y - d.y * e.x;
            if (!(std::fabs(cross) > 0.05 * d.length() * e.length()))
                continue;
            const double s = (w.x * e.y - w.y * e.x) / cross, t = (w.x * d.y - w.y * d.x) / cross;
            if (s >= 0 && s <= 1 && t >= 0 && t <= 1)
                found.push_back(p[i - 1] + d * s);
        }
    return found;
}

TEST_P(AnyPair, MissesNoCrossingOfTheirChords)
{
    eachRound([](AnyFigure& f, const Curve& a, const Curve& b, double size) {
        const Meeting meeting = intersect(a, b);
        if (!f.flat() || !meeting.overlaps.empty())
            return;
        const auto points = contactPoints(meeting);
        for (const Point3& p : chordCrossings(a, b, 200))
            EXPECT_TRUE(isOneOf(p, points, 0.05 * size));
    });
}

TEST_P(AnyPair, MeetsInTheImagesWhereTheyMeet)
{
    eachRound([](AnyFigure& f, const Curve& a, const Curve& b, double size) {
        const VcGeMatrix3d maps[] = {VcGeMatrix3d::mirroring(VcGePlane(f.at(), Vector3(1, 0.5, f.flat() ? 0 : 0.3))),
                                     VcGeMatrix3d::rotation(0.7, Vector3(0.2, 0.3, 1), f.at()),
                                     VcGeMatrix3d::scaling(VcGeScale3d(2, 0.7, 1.3))};
        const Meeting meeting = intersect(a, b);
        if (!meeting.overlaps.empty())
            return;
        for (const VcGeMatrix3d& map : maps) {
            const Curve imageA = transformed(a, map), imageB = transformed(b, map);
            const auto images = contactPoints(intersect(imageA, imageB));
            const double reach = 1e-8 * std::max({size, extentOf(imageA), extentOf(imageB)});
            for (const Crossing& c : meeting.points) {
                const Vector3 u = derivativesAt(a, c.first).first.normal(),
                              v = derivativesAt(b, c.second).first.normal();
                if (u.crossProduct(v).length() > 0.05) {
                    EXPECT_TRUE(isOneOf(map * c.point, images, reach));
                }
            }
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Random, AnyPair, ::testing::Range(0, 10));

double totalLength(const std::vector<Curve>& curves)
{
    double sum = 0;
    for (const Curve& c : curves)
        sum += length(c);
    return sum;
}

class AnyOffset : public ::testing::TestWithParam<int> {};

// Rounded corners keep the distance exactly, and what is offset backwards to the other side is the same.
TEST_P(AnyOffset, KeepsItsDistanceEitherWay)
{
    for (unsigned i = 0; i < 40; ++i) {
        const unsigned seed = unsigned(GetParam()) * 1000 + i;
        SCOPED_TRACE("seed " + std::to_string(seed));
        AnyFigure f(seed);
        f.setFlat();
        const Polyline p = f.polyline();
        const double away = f.number(0.005, 0.6) * f.size(), side = f.chance(0.5) ? 1 : -1;
        const OffsetResult result = offset(p, side * away, GapFill::Fillet),
                           back = offset(reversed(p), -side * away, GapFill::Fillet);
        EXPECT_EQ(result.curves.empty(), result.failure != OffsetFailure::None);
        EXPECT_EQ(result.curves.size(), back.curves.size());
        const double size = extentOf(p) + away;
        EXPECT_NEAR(totalLength(result.curves), totalLength(back.curves), 1e-6 * size);
        for (const Curve& c : result.curves)
            for (double t : evenly(paramRange(c), 100))
                EXPECT_NEAR(distanceTo(p, pointAt(c, t)), away, 1e-7 * size);
    }
}

INSTANTIATE_TEST_SUITE_P(Random, AnyOffset, ::testing::Range(0, 8));

// What random rounds have found

// Bulges that rounding has left behind must not make corners come apart.
TEST(GeomFound, ArcsThatAreAllButStraightAreOffsetAsTheirChords)
{
    for (double bulge : {1e-11, 1e-9, -8.76e-9, 1e-7, 1e-6})
        for (double away : {2.7, -2.7})
            for (GapFill gap : {GapFill::Extend, GapFill::Fillet, GapFill::Chamfer}) {
                Polyline p{{{{0.7, 14.3}}, {{-3.2, 4.3}, bulge}, {{-7.2, 12.3}}, {{5, 30}, bulge}}, true};
                const OffsetResult result = offset(p, away, gap);
                for (PolyVertex& v : p.vertices)
                    v.bulge = 0;
                const OffsetResult straight = offset(p, away, gap);
                ASSERT_EQ(result.curves.size(), straight.curves.size()) << bulge;
                EXPECT_NEAR(totalLength(result.curves), totalLength(straight.curves), 1e-6 + 1000 * std::fabs(bulge))
                    << bulge;
            }
}

TEST(GeomFound, OneCutOpensAClosedCurveWherever)
{
    const Circle circle{{-8.9222554407414556e-05, 9.1090681113851216e-05, 0}, 7.3612376022415054e-05};
    AnyFigure f(1);
    for (int i = 0; i < 2000; ++i) {
        const auto parts = splitAt(circle, {f.number(0, kTwoPi)});
        ASSERT_EQ(parts.size(), 1u);
        EXPECT_NEAR(length(parts[0]), length(circle), 1e-15);
    }
}

TEST(GeomFound, AnArcThatIsAllButStraightKeepsItsDigits)
{
    for (double bulge : {1e-11, 1e-9, -1e-8, 1e-7, 1e-6, -2e-5}) {
        const Polyline p{{{{0, 0}, bulge}, {{10, 0}}}};
        const Point3 middle = pointAt(p, 0.5);
        expectNear(middle, {5, -5 * bulge, 0}, 1e-11);
        EXPECT_LE(distanceTo(p, middle), 1e-14);
        EXPECT_NEAR(area(p), 100 * std::fabs(bulge) / 3, 1e-8 * std::fabs(bulge));
        const auto met = intersect(p, Segment{{3, -1, 0}, {3, 1, 0}}).points;
        ASSERT_EQ(met.size(), 1u);
        EXPECT_NEAR(met[0].point.y, -4 * bulge * 0.3 * 0.7 * 5, 1e-12 + std::fabs(bulge * bulge * bulge) * 10);
    }
}

TEST(GeomFound, AWideArcThatIsAllButStraightHasABox)
{
    const Polyline p{{{{0, 0}, 1e-8, 2, 2}, {{10, 0}, 0, 2, 2}}};
    const Box3d box = extents(p);
    expectNear(box.min, {0, -1, 0}, 1e-6);
    expectNear(box.max, {10, 1, 0}, 1e-6);
}

TEST(GeomFound, AnUnevenlyWeightedSplineHasItsArea)
{
    const Nurbs n{2, {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {0, 0, 0, 1, 1, 1}, {1, std::sqrt(0.5), 1}};
    Nurbs heavy = n;  // the same quarter circle, run through at a very uneven pace
    heavy.weights = {1, std::sqrt(0.5) * 30, 900};
    EXPECT_NEAR(area(n), kPi / 4 - 0.5, 1e-13);
    EXPECT_NEAR(area(heavy), kPi / 4 - 0.5, 1e-13);
}

// Newton's steps from the middle of the first parts run out of them.
TEST(GeomFound, ACrossingNearTheStartOfAHeavySplineIsNotLost)
{
    const Polyline3 line{{{200, -400, 0}, {-200, -800, 0}, {-1000, 600, 0}, {800, -600, 0}}};
    const Nurbs spline{
        5,
        {{0, -1000, 0}, {0, 0, 0}, {-800, 0, 0}, {0, -800, 0}, {200, -600, 0}, {200, 1000, 0}, {600, -800, 0}},
        {0, 0, 0, 0, 0, 0, 1, 2, 2, 2, 2, 2, 2},
        {0.30556860453684254, 1.8081262760777408, 2.4839109611115275, 7.1792946447200459, 0.28602852307309296,
         0.58094759627123327, 3.7451192028384064}};
    const VcGeMatrix3d map = VcGeMatrix3d::scaling(VcGeScale3d(2, 0.7, 1.3));
    EXPECT_EQ(intersect(line, spline).points.size(),
              intersect(transformed(line, map), transformed(spline, map)).points.size());
}

// Both ends of what whole circles share are counted in the same round.
TEST(GeomFound, ExtendedArcsShareAscendingStretches)
{
    const Arc arc{{0, 0, 0}, 5, 1, 4};
    for (const Curve& other : {Curve(arc), Curve(reversed(arc)), Curve(Arc{{0, 0, 0}, 5, 5, 6})})
        for (const Overlap& o : intersect(arc, other, Extend::Both).overlaps)
            EXPECT_LT(o.first.from, o.first.to);
}

// The first segment goes on before the start alone, the last one after the end alone.
TEST(GeomFound, ArcsAtTheEndsOfAPolylineGoOnAwayFromIt)
{
    const Polyline p{{{{0, 0}, 0.5}, {{4, 0}}, {{8, 0}, 0.5}, {{12, 0}}}};
    for (const Crossing& c : intersect(p, XLine{{0, 2, 0}, {1, 0, 0}}, Extend::First).points) {
        EXPECT_TRUE(c.first < 0 || c.first > 3) << c.first;
        expectNear(pointAt(p, c.first), c.point, 1e-9);
    }
}

// The rounding of their ends makes two pieces of one line cross at a random place, were they taken as they are.
TEST(GeomFound, PiecesOfOneLineThatGoOnRunTogether)
{
    const Segment whole{{-419358.68935979705, 182296.69703080162, 0}, {-419357.28935979708, 182297.89703080160, 0}};
    const Segment part =
        std::get<Segment>(*subCurve(Segment{whole.start, whole.start + (whole.end - whole.start) * 30}, 0.7, 0.9));
    for (Extend extend : {Extend::First, Extend::Second, Extend::Both})
        EXPECT_EQ(intersect(whole, part, extend).overlaps.size(), 1u);
}

// Directions that differ in the eighth digit still cross.
TEST(GeomFound, LinesAtASlightAngleCross)
{
    const auto met = intersect(XLine{{0, 1e-6, 0}, {1, 0, 0}}, XLine{{0, 0, 0}, {1, 1e-8, 0}});
    ASSERT_EQ(met.points.size(), 1u);
    EXPECT_NEAR(met.points[0].point.x, 100, 1e-4);
}

}  // namespace
