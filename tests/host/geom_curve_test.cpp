// What holds of every curve, and the values of some.
#include "host/geom/curve_edit.h"
#include "tests/host/geom_support.h"

using namespace vk::geom;
using namespace vk::geom::testing;

namespace {

class EveryCurve : public ::testing::TestWithParam<NamedCurve> {
protected:
    const Curve curve = GetParam().curve;
    const Interval range = paramRange(curve);
    const double size = extents(curve).diagonal();
};

double sampledLength(const Curve& curve, Interval range)
{
    const auto params = evenly(range, 20000);
    double sum = 0;
    for (size_t i = 1; i < params.size(); ++i)
        sum += pointAt(curve, params[i - 1]).distanceTo(pointAt(curve, params[i]));
    return sum;
}

}  // namespace

TEST_P(EveryCurve, PointsAreClosestToThemselves)
{
    for (double t : evenly(range, 37)) {
        const Point3 p = pointAt(curve, t);
        const auto found = closestPoint(curve, p);
        ASSERT_TRUE(found);
        EXPECT_LE(found->distance, 1e-11 * size) << t;
        expectNear(pointAt(curve, found->param), p, 1e-9 * size);
    }
}

TEST_P(EveryCurve, NoSampleIsCloserThanTheClosestPoint)
{
    for (const Point3& p : {Point3(0, 0, 0), Point3(3, 1, 2), Point3(-20, 9, 4), Point3(4, 2, 0), Point3(1, 1, 1)}) {
        const double found = closestPoint(curve, p)->distance;
        for (double t : evenly(range, 2000))
            ASSERT_GE(p.distanceTo(pointAt(curve, t)), found - 1e-12 * size) << t;
    }
}

TEST_P(EveryCurve, DerivativesMatchDifferences)
{
    for (double t : evenly(range, 23)) {
        const double h = 1e-5 * (range.to - range.from),
                     at = std::clamp(t + 0.013 * h, range.from + 2 * h, range.to - 2 * h);
        const Derivatives d = derivativesAt(curve, at);
        const Vector3 slope = (pointAt(curve, at + h) - pointAt(curve, at - h)) / (2 * h);
        const bool atCorner = std::fabs(at - std::round(at)) < 3 * h;
        if (!atCorner) {
            EXPECT_LE((slope - d.first).length(), 1e-6 * size) << at;
        }
    }
}

TEST_P(EveryCurve, LengthIsThatOfManyChords)
{
    EXPECT_NEAR(length(curve), sampledLength(curve, range), 1e-6 * size);
    const double mid = range.from + 0.37 * (range.to - range.from);
    EXPECT_NEAR(lengthBetween(curve, range.from, mid) + lengthBetween(curve, range.to, mid), length(curve),
                1e-11 * size);
    for (double part : {0.0, 0.2, 0.77, 1.0}) {
        const auto t = paramAtLength(curve, part * length(curve));
        ASSERT_TRUE(t);
        EXPECT_NEAR(lengthBetween(curve, range.from, *t), part * length(curve), 1e-10 * size);
    }
    EXPECT_FALSE(paramAtLength(curve, 1.01 * length(curve)));
}

TEST_P(EveryCurve, ExtentsHoldAndTouch)
{
    const Box3d box = extents(curve);
    Box3d sampled;
    for (double t : evenly(range, 20000)) {
        ASSERT_TRUE(box.grown(1e-12 * size).contains(pointAt(curve, t)));
        sampled.add(pointAt(curve, t));
    }
    EXPECT_TRUE(sampled.grown(1e-6 * size).contains(box));
}

TEST_P(EveryCurve, ReversedRunsBack)
{
    const Curve back = reversed(curve);
    expectSameShape(curve, back, 1e-11 * size);
    EXPECT_NEAR(length(curve), length(back), 1e-11 * size);
    if (!isClosed(curve)) {
        expectNear(*startPoint(back), *endPoint(curve), 1e-12 * size);
        expectNear(*endPoint(back), *startPoint(curve), 1e-12 * size);
    }
    EXPECT_TRUE((vectorArea(curve) + vectorArea(back)).isZeroLength({1e-9, 1e-9 * size * size}));
}

TEST_P(EveryCurve, PartsMakeUpTheWhole)
{
    const double span = range.to - range.from;
    const auto parts =
        splitAt(curve, {range.from + 0.8 * span, range.from + 0.25 * span, range.from - 1, range.to + 1});
    ASSERT_EQ(parts.size(), isClosed(curve) ? 2u : 3u);
    double sum = 0;
    for (size_t i = 0; i < parts.size(); ++i) {
        sum += length(parts[i]);
        if (i > 0)
            expectNear(*startPoint(parts[i]), *endPoint(parts[i - 1]), 1e-11 * size);
        for (double t : evenly(paramRange(parts[i]), 40))
            EXPECT_LE(distanceTo(curve, pointAt(parts[i], t)), 1e-11 * size);
    }
    EXPECT_NEAR(sum, length(curve), 1e-10 * size);
}

TEST_P(EveryCurve, OneCutOpensWhatIsClosed)
{
    const double at = range.from + 0.4 * (range.to - range.from);
    const auto parts = splitAt(curve, {at});
    ASSERT_EQ(parts.size(), isClosed(curve) ? 1u : 2u);
    expectNear(*startPoint(parts.back()), pointAt(curve, at), 1e-11 * size);
    expectNear(*endPoint(parts.front()), pointAt(curve, at), 1e-11 * size);
}

TEST_P(EveryCurve, ImagesCoverTheImages)
{
    for (const auto& m : {similarity(), mirror(), uneven(), mirror() * similarity()}) {
        const Curve image = transformed(curve, m);
        ASSERT_TRUE(isValid(image));
        const double tolerance = 1e-10 * extents(image).diagonal();
        for (double t : evenly(range, 57))
            EXPECT_LE(distanceTo(image, m * pointAt(curve, t)), tolerance);
        const auto inverse = m.inverse();
        for (double t : evenly(paramRange(image), 57))
            EXPECT_LE(distanceTo(curve, inverse * pointAt(image, t)), tolerance);
    }
}

TEST_P(EveryCurve, SimilarImagesKeepTheirKind)
{
    for (const auto& m : {similarity(), mirror()}) {
        const Curve image = transformed(curve, m);
        EXPECT_EQ(image.index(), curve.index());
        EXPECT_NEAR(length(image), m.scale() * length(curve), 1e-10 * length(curve));
        EXPECT_NEAR(area(image), m.scale() * m.scale() * area(curve), 1e-10 * size * size);
    }
}

// An area vector turns with the cofactors; its sign goes with the direction that the image runs in.
TEST_P(EveryCurve, AreasFollowDeterminants)
{
    const VcGeMatrix3d m = uneven();
    const Vector3 expected = m.inverse().transpose() * vectorArea(curve) * m.det();
    const Vector3 found = vectorArea(transformed(curve, m));
    EXPECT_LE(std::min((found - expected).length(), (found + expected).length()), 1e-9 * size * size);
}

TEST_P(EveryCurve, SplinesCanStandForIt)
{
    const auto nurbs = toNurbs(curve);
    ASSERT_TRUE(nurbs);
    expectSameShape(curve, *nurbs, 1e-11 * size);
    EXPECT_NEAR(length(*nurbs), length(curve), 1e-10 * size);
    EXPECT_NEAR(area(*nurbs), area(curve), 1e-9 * size * size);
}

TEST_P(EveryCurve, FlattensOntoAPlane)
{
    const VcGePlane plane({0, 0, 0}, VcGeVector3d(0, 0, 1));
    for (const Vector3& direction : {Vector3(0, 0, 1), Vector3(1, 0.3, 0.4)}) {
        const VcGeMatrix3d m = VcGeMatrix3d::projection(plane, direction);
        const Curve flat = transformed(curve, m);
        for (double t : evenly(range, 57))
            EXPECT_LE(distanceTo(flat, m * pointAt(curve, t)), 1e-9 * size * 3);
    }
}

INSTANTIATE_TEST_SUITE_P(Geom, EveryCurve, ::testing::ValuesIn(finiteCurves()), nameOf);

TEST(GeomCurve, KnownAreas)
{
    EXPECT_NEAR(area(Circle{{1e9, 0, 0}, 2, {0, 0, 1}}), 4 * kPi, 1e-12);
    EXPECT_NEAR(area(Ellipse{{0, 0, 0}, {3, 0, 0}, 0.5}), 4.5 * kPi, 1e-12);
    EXPECT_NEAR(area(Arc{{0, 0, 0}, 2, 0, kPi, {0, 0, 1}}), 2 * kPi, 1e-12);
    EXPECT_NEAR(area(Polyline{{{{0, 0}, 1}, {{2, 0}, 1}}, true, 0, {0, 0, 1}}), kPi, 1e-12);
    EXPECT_NEAR(area(Polyline{{{{0, 0}}, {{2, 0}}, {{2, 3}}}, false, 9, {0, 0, 1}}), 3, 1e-12);
    EXPECT_EQ(area(XLine{{0, 0, 0}, {1, 0, 0}}), 0);
    EXPECT_EQ(area(Segment{{0, 0, 0}, {1, 0, 0}}), 0);
}

TEST(GeomCurve, EllipseLength)
{
    // The complete elliptic integral for a = 5, b = 3.
    EXPECT_NEAR(length(Ellipse{{0, 0, 0}, {5, 0, 0}, 0.6}), 25.526998863398113, 1e-10);
    EXPECT_NEAR(length(Ellipse{{0, 0, 0}, {1, 0, 0}, 1e-6}), 4, 1e-9);
}

TEST(GeomCurve, WidePolylinesCountTheirWidths)
{
    const Polyline line{{{{0, 0}, 0, 2, 4}, {{10, 0}}}, false, 0, {0, 0, 1}};
    EXPECT_EQ(extents(line).min, Point3(0, -2, 0));
    EXPECT_EQ(extents(line).max, Point3(10, 2, 0));
    const Polyline donut{{{{-1, 0}, 1, 0.5, 0.5}, {{1, 0}, 1, 0.5, 0.5}}, true, 0, {0, 0, 1}};
    EXPECT_NEAR(extents(donut).max.y, 1.25, 1e-9);
    EXPECT_NEAR(extents(donut).min.x, -1.25, 1e-9);
    const Polyline taper{{{{1, 0}, std::tan(kPi / 8), 0, 2}, {{0, 1}}}, false, 0, {0, 0, 1}};
    EXPECT_NEAR(extents(taper).max.y, 2, 1e-9);
    // The widening edge is 1 + t / 90 degrees from the center.
    double furthest = 0;
    for (double t = 0; t < kPi / 2; t += 1e-4)
        furthest = std::max(furthest, (1 + 2 * t / kPi) * std::cos(t));
    EXPECT_NEAR(extents(taper).max.x, furthest, 1e-8);
}

TEST(GeomCurve, MirroredArcsKeepTheirNormal)
{
    const auto m = VcGeMatrix3d::mirroring(VcGePlane({0, 0, 0}, VcGeVector3d(1, 0, 0)));
    const auto arc = std::get<Arc>(transformed(Arc{{1, 0, 0}, 2, 0, kPi / 2, {0, 0, 1}}, m));
    EXPECT_EQ(arc.normal, Vector3(0, 0, 1));
    EXPECT_NEAR(arc.start, kPi / 2, 1e-15);
    EXPECT_NEAR(arc.end, kPi, 1e-15);
    const auto p = std::get<Polyline>(transformed(Polyline{{{{0, 0}, 0.5, 1, 2}, {{1, 0}}}}, m));
    EXPECT_EQ(p.vertices[0].bulge, -0.5);
    EXPECT_EQ(p.normal, Vector3(0, 0, 1));
}

TEST(GeomCurve, UnevenScalesMakeEllipses)
{
    const auto m = VcGeMatrix3d::scaling(VcGeScale3d(1, 3, 1));
    const auto e = std::get<Ellipse>(transformed(Circle{{1, 1, 0}, 2}, m));
    expectNear(e.center, {1, 3, 0}, 1e-15);
    EXPECT_NEAR(std::fabs(e.major.y), 6, 1e-14);
    EXPECT_NEAR(e.ratio, 1.0 / 3, 1e-15);
    EXPECT_TRUE(std::holds_alternative<Circle>(transformed(e, m.inverse())));
    EXPECT_TRUE(std::holds_alternative<Segment>(
        transformed(Circle{{1, 1, 0}, 2}, VcGeMatrix3d::scaling(VcGeScale3d(0, 1, 1)))));
}

TEST(GeomCurve, InfiniteCurves)
{
    const Ray ray{{1, 2, 3}, {0, 2, 0}};
    EXPECT_EQ(extents(ray).max.y, Box3d::kInfinite);
    EXPECT_EQ(extents(ray).min, Point3(1, 2, 3));
    EXPECT_EQ(length(ray), Box3d::kInfinite);
    EXPECT_EQ(closestPoint(ray, {5, -7, 3})->param, 0);
    EXPECT_EQ(closestPoint(XLine{{1, 2, 3}, {0, 2, 0}}, {5, -8, 3})->param, -5);
    EXPECT_FALSE(endPoint(ray));
    const auto parts = splitAt(XLine{{0, 0, 0}, {1, 0, 0}}, {2, 5});
    ASSERT_EQ(parts.size(), 3u);
    EXPECT_EQ(std::get<Ray>(parts[0]).direction.x, -1);
    EXPECT_EQ(std::get<Segment>(parts[1]).end.x, 5);
}

TEST(GeomCurve, WhatIsNoCurveAnswersNothing)
{
    const double bad = std::nan("");
    const Curve curves[] = {Segment{{bad, 0, 0}, {1, 0, 0}},
                            Ray{{0, 0, 0}, {0, 0, 0}},
                            Circle{{0, 0, 0}, -1},
                            Polyline{},
                            Polyline3{},
                            Nurbs{},
                            Nurbs{2, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, {0, 0, 0, 1, 1}, {}},
                            Nurbs{1, {{0, 0, 0}, {1, 0, 0}}, {0, 0, 1, 1}, {1, 0}},
                            Nurbs{1, {{0, 0, 0}, {1, 0, 0}}, {1, 1, 1, 1}, {}}};
    for (const Curve& c : curves) {
        EXPECT_FALSE(isValid(c));
        EXPECT_FALSE(closestPoint(c, {0, 0, 0}));
        EXPECT_FALSE(startPoint(c));
        EXPECT_FALSE(subCurve(c, 0, 1));
        EXPECT_EQ(length(c), 0);
        EXPECT_TRUE(extents(c).isEmpty());
        EXPECT_EQ(reversed(transformed(c, similarity())).index(), c.index());
    }
}

TEST(GeomCurve, PointsOfNoSize)
{
    const Point3 at(3, 4, 5);
    const Curve curves[] = {Segment{at, at},        Circle{at, 0},
                            Arc{at, 0, 1, 2},       Ellipse{at, {0, 0, 0}, 1},
                            Polyline3{{at}, false}, Polyline{{{{3, 4}}}, true, 5, {0, 0, 1}}};
    for (const Curve& c : curves) {
        EXPECT_NEAR(closestPoint(c, {3, 4, 7})->distance, 2, 1e-15) << c.index();
        EXPECT_EQ(length(c), 0);
        expectNear(extents(c).center(), at, 1e-15);
        expectNear(extents(transformed(c, uneven())).center(), uneven() * at, 1e-14);
    }
}

TEST(GeomCurve, FarAndSmall)
{
    const Vector3 far(1e9, -1e9, 1e8);
    const auto shift = VcGeMatrix3d::translation(far);
    const auto shrink = VcGeMatrix3d::scaling(1e-9);
    for (const auto& [name, curve] : finiteCurves()) {
        const Curve away = transformed(curve, shift), tiny = transformed(curve, shrink);
        EXPECT_NEAR(length(away), length(curve), 1e-5) << name;
        EXPECT_NEAR(length(tiny) * 1e9, length(curve), 1e-9 * length(curve)) << name;
        for (double t : evenly(paramRange(tiny), 11))
            EXPECT_LE(distanceTo(tiny, pointAt(tiny, t)), 1e-20) << name;
    }
}

TEST(GeomCurve, PlanesOfCurves)
{
    EXPECT_FALSE(planeOf(Segment{{0, 0, 0}, {1, 1, 1}}));
    EXPECT_FALSE(planeOf(wave()));
    EXPECT_TRUE(planeOf(flatWave())->normal().isParallelTo({0, 0, 1}));
    EXPECT_NEAR(planeOf(Circle{{0, 0, 5}, 1, {0, 0, 2}})->distanceTo({9, 9, 5}), 0, 1e-15);
}
