#include "host/geom/arbitrary_axis.h"
#include "host/geom/box.h"
#include "vcge.h"

#include <gtest/gtest.h>
#include <memory>
#include <numbers>

using namespace vk::geom;

namespace {

constexpr double kPi = std::numbers::pi;

const VcGeVector3d kNormals[] = {
    {0, 0, 1},        {0, 0, -1},       {1, 0, 0},           {0, -1, 0},        {1, 1, 1},
    {1.0 / 64, 0, 1}, {0.01, -0.01, 1}, {1e-9, 2e-9, -3e-9}, {1e200, 1e200, 0}, {-3, 4, 12},
};

void expectNear(const VcGePoint3d& a, const VcGePoint3d& b, double tol = 1e-12)
{
    EXPECT_LE(a.distanceTo(b), tol) << a.x << ',' << a.y << ',' << a.z << " and " << b.x << ',' << b.y << ',' << b.z;
}

VcGeMatrix3d skewed()
{
    return VcGeMatrix3d::translation({3, -2, 7}) * VcGeMatrix3d::rotation(0.7, {1, 2, 3}, {4, 5, 6}) *
           VcGeMatrix3d::scaling(VcGeScale3d(2, -3, 0.5), {1, 1, 1});
}

}  // namespace

TEST(GeomValues, ArbitraryAxisSwitchesAtOneSixtyFourth)
{
    const double below = 1.0 / 64 - 1e-9, above = 1.0 / 64 + 1e-9;
    const auto at = [](double x) { return VcGeVector3d(x, 0, std::sqrt(1 - x * x)).perpVector(); };
    EXPECT_GT(at(below).x, 0.99);
    EXPECT_GT(at(above).y, 0.99);
    EXPECT_EQ(VcGeVector3d(0, 0, -1).perpVector(), VcGeVector3d(-1, 0, 0));
    EXPECT_EQ(VcGeVector3d().perpVector(), VcGeVector3d(1, 0, 0));
}

TEST(GeomValues, ArbitraryFramesAreOrthonormalAndGoBothWays)
{
    for (const auto& n : kNormals) {
        const Frame f = arbitraryFrame(n);
        EXPECT_NEAR(f.x.crossProduct(f.y).dotProduct(f.z), 1, 1e-14);
        EXPECT_NEAR(f.x.dotProduct(f.y), 0, 1e-14);
        const VcGePoint3d p(3, -4, 5);
        expectNear(toWorld(fromWorld(p, n), n), p);
        expectNear(VcGeMatrix3d::planeToWorld(n) * p, toWorld(p, n));
        expectNear(VcGeMatrix3d::worldToPlane(n) * p, fromWorld(p, n));
    }
}

TEST(GeomValues, AngleInPlaneCountsFromTheArbitraryAxis)
{
    EXPECT_NEAR(angleInPlane({0, 1, 0}, {0, 0, 1}), kPi / 2, 1e-15);
    EXPECT_NEAR(angleInPlane({0, 1, 0}, {0, 0, -1}), kPi / 2, 1e-15);
    EXPECT_NEAR(angleInPlane({1, 0, 0}, {0, 0, -1}), kPi, 1e-15);
    EXPECT_NEAR(angleInPlane({0, -1, 0}, {0, 0, 1}), 3 * kPi / 2, 1e-15);
}

TEST(GeomValues, AnglesBetweenVectors)
{
    const VcGeVector3d x(2, 0, 0), y(0, 3, 0), z(0, 0, 1);
    EXPECT_NEAR(x.angleTo(y), kPi / 2, 1e-15);
    EXPECT_NEAR(y.angleTo(x, z), 3 * kPi / 2, 1e-15);
    EXPECT_NEAR(x.angleTo(y, z), kPi / 2, 1e-15);
    EXPECT_NEAR(x.angleTo(-x), kPi, 1e-15);
    EXPECT_NEAR(VcGeVector3d(1, 1e-9, 0).angleTo({1, 0, 0}), 1e-9, 1e-20);
}

TEST(GeomValues, ZeroVectorsAreParallelToNothing)
{
    EXPECT_FALSE(VcGeVector3d().isParallelTo({1, 0, 0}));
    EXPECT_FALSE(VcGeVector3d().isPerpendicularTo({1, 0, 0}));
    EXPECT_TRUE(VcGeVector3d(1e-9, 0, 0).isParallelTo({-1e9, 0, 0}));
    EXPECT_FALSE(VcGeVector3d(1e-9, 0, 0).isCodirectionalTo({-1e9, 0, 0}));
}

TEST(GeomValues, QuarterTurnsAreExact)
{
    EXPECT_EQ(VcGePoint3d(5, 0, 1).rotateBy(kPi / 2, {0, 0, 1}), VcGePoint3d(0, 5, 1));
    EXPECT_EQ(VcGePoint3d(5, 2, 1).rotateBy(-kPi, {0, 0, 3}, {1, 1, 1}), VcGePoint3d(-3, 0, 1));
    EXPECT_NE(VcGePoint3d(5, 0, 0).rotateBy(kPi / 2 + 1e-12, {0, 0, 1}).x, 0);
}

TEST(GeomValues, MatricesInvert)
{
    const VcGeMatrix3d m = skewed();
    EXPECT_TRUE((m * m.inverse()).isEqualTo({}, {1e-12, 1e-12}));
    EXPECT_NEAR(m.det(), -3, 1e-12);
    const VcGeMatrix3d tiny = VcGeMatrix3d::scaling(1e-9, {1e3, 0, 0});
    EXPECT_FALSE(tiny.isSingular());
    expectNear(tiny.inverse() * (tiny * VcGePoint3d(1, 2, 3)), {1, 2, 3}, 1e-3);
    const VcGeMatrix3d flat = VcGeMatrix3d::scaling(VcGeScale3d(1, 1, 0));
    EXPECT_TRUE(flat.isSingular());
    EXPECT_EQ(flat.inverse(), VcGeMatrix3d());
    const VcGeMatrix2d m2 = VcGeMatrix2d::rotation(0.3, {2, 1}) * VcGeMatrix2d::scaling(4, {9, 9});
    EXPECT_TRUE((m2.inverse() * m2).isEqualTo({}, {1e-12, 1e-12}));
}

TEST(GeomValues, MatricesKeepTheirCenters)
{
    const VcGePoint3d c(4, -5, 6);
    expectNear(VcGeMatrix3d::rotation(1.1, {1, 1, 0}, c) * c, c);
    expectNear(VcGeMatrix3d::scaling(7, c) * c, c);
    expectNear(VcGeMatrix3d::mirroring(VcGePlane(c, {1, 2, 3})) * c, c);
    const VcGeMatrix2d mirror = VcGeMatrix2d::mirroring({0, 1}, {1, 1});
    EXPECT_TRUE((mirror * VcGePoint2d(2, 1)).isEqualTo({0, 3}));
    EXPECT_TRUE((mirror * mirror).isEqualTo({}));
}

TEST(GeomValues, MatrixKinds)
{
    EXPECT_TRUE(VcGeMatrix3d::mirroring(VcGePlane({1, 2, 3}, {1, 1, 1})).isUniScaledOrtho());
    EXPECT_TRUE(VcGeMatrix3d::scaling(1e-8).isUniScaledOrtho());
    EXPECT_FALSE(skewed().isUniScaledOrtho());
    EXPECT_EQ(VcGeMatrix3d::scaling(5).scale(), 5);
}

TEST(GeomValues, AlignedSystemsMapOntoEachOther)
{
    const Frame a = arbitraryFrame({1, 2, 3}, {4, 5, 6}), b = arbitraryFrame({-1, 0, 2}, {7, 8, 9});
    const auto m = VcGeMatrix3d::alignCoordSys(a.origin, a.x, a.y, a.z, b.origin, b.x, b.y, b.z);
    expectNear(m * a.toWorld(VcGePoint3d(1, -2, 3)), b.toWorld(VcGePoint3d(1, -2, 3)));
    VcGePoint3d o;
    VcGeVector3d x, y, z;
    VcGeMatrix3d().setCoordSystem(a.origin, a.x, a.y, a.z).getCoordSystem(o, x, y, z);
    EXPECT_EQ(o, a.origin);
    EXPECT_EQ(z, a.z);
}

TEST(GeomPlanes, CoefficientsGoBothWays)
{
    double a, b, c, d;
    VcGePlane(2, 0, 0, -6).getCoefficients(a, b, c, d);
    EXPECT_EQ(VcGePoint3d(a, b, c), VcGePoint3d(1, 0, 0));
    EXPECT_EQ(d, -3);
    EXPECT_TRUE(VcGePlane(1, 2, 3, 4).isOn(VcGePoint3d(-4, 0, 0)));
}

TEST(GeomPlanes, ParametersOfSkewAxes)
{
    const VcGePlane plane({1, 1, 1}, VcGeVector3d(2, 0, 0), VcGeVector3d(1, 1, 0));
    const VcGePoint2d uv = plane.paramOf({6, 3, 9});
    EXPECT_TRUE(uv.isEqualTo({1.5, 2}));
    EXPECT_EQ(plane.evalPoint(uv), VcGePoint3d(6, 3, 1));
    EXPECT_EQ(VcGePoint3d(6, 3, 9).orthoProject(plane), VcGePoint3d(6, 3, 1));
    EXPECT_EQ(VcGePoint3d(6, 3, 9).project(plane, {1, 0, 2}), VcGePoint3d(2, 3, 1));
    expectNear(VcGeMatrix3d::projection(plane, {1, 0, 2}) * VcGePoint3d(6, 3, 9), {2, 3, 1});
}

TEST(GeomPlanes, DegenerateInputFallsBack)
{
    EXPECT_EQ(VcGePlane({1, 2, 3}, VcGeVector3d()).normal(), VcGeVector3d(0, 0, 1));
    EXPECT_EQ(VcGePlane({0, 0, 0}, {1, 1, 1}, VcGePoint3d(2, 2, 2)).normal(), VcGeVector3d(0, 0, 1));
}

TEST(GeomPlanes, PlanesMeetInALineOnBoth)
{
    const VcGePlane a({1, 2, 3}, VcGeVector3d(1, 0, 1)), b({-4, 0, 1}, VcGeVector3d(0, 1, 1));
    VcGeLine3d line;
    ASSERT_TRUE(a.intersectWith(b, line));
    for (double t : {-10.0, 0.0, 3.0}) {
        EXPECT_NEAR(a.distanceTo(line.evalPoint(t)), 0, 1e-12);
        EXPECT_NEAR(b.distanceTo(line.evalPoint(t)), 0, 1e-12);
    }
    EXPECT_FALSE(a.intersectWith(VcGePlane({9, 9, 9}, VcGeVector3d(-1, 0, -1)), line));
}

TEST(GeomLines, ClosestPointsStayOnASegment)
{
    const VcGeLineSeg3d seg({0, 0, 0}, VcGePoint3d(10, 0, 0));
    EXPECT_EQ(seg.closestPointTo({-5, 3, 0}), VcGePoint3d(0, 0, 0));
    EXPECT_EQ(seg.getLine().closestPointTo({-5, 3, 0}), VcGePoint3d(-5, 0, 0));
    EXPECT_EQ(seg.midPoint(), VcGePoint3d(5, 0, 0));
    EXPECT_EQ(VcGeLineSeg3d({1, 1, 1}, VcGePoint3d(1, 1, 1)).closestPointTo({9, 9, 9}), VcGePoint3d(1, 1, 1));
}

TEST(GeomLines, Meetings)
{
    const VcGeLineSeg3d seg({0, 0, 0}, VcGePoint3d(10, 0, 0));
    VcGePoint3d p;
    EXPECT_TRUE(seg.intersectWith(VcGeLine3d({3, 5, 0}, VcGeVector3d(0, 1, 0)), p));
    EXPECT_EQ(p, VcGePoint3d(3, 0, 0));
    EXPECT_FALSE(seg.intersectWith(VcGeLine3d({13, 5, 0}, VcGeVector3d(0, 1, 0)), p));
    EXPECT_FALSE(seg.intersectWith(VcGeLine3d({3, 5, 1}, VcGeVector3d(0, 1, 0)), p));
    EXPECT_FALSE(seg.intersectWith(VcGeLine3d({3, 0, 0}, VcGeVector3d(1, 0, 0)), p));
    EXPECT_TRUE(seg.intersectWith(VcGePlane({4, 4, 4}, VcGeVector3d(1, 1, 0)), p));
    expectNear(p, {8, 0, 0});
}

TEST(GeomLines, TransformThroughTheBase)
{
    std::unique_ptr<VcGeEntity3d> seg(VcGeLineSeg3d({0, 0, 0}, VcGePoint3d(1, 0, 0)).copy());
    seg->transformBy(VcGeMatrix3d::translation({0, 0, 5}));
    EXPECT_TRUE(seg->isOn({0.5, 0, 5}));
    EXPECT_EQ(static_cast<VcGeLineSeg3d&>(*seg).endPoint(), VcGePoint3d(1, 0, 5));
}

TEST(GeomBox, EmptyAndFull)
{
    Box3d box;
    EXPECT_TRUE(box.isEmpty());
    EXPECT_FALSE(box.contains(VcGePoint3d()));
    EXPECT_FALSE(box.touches(box));
    EXPECT_TRUE(box.grown(5).isEmpty());
    box.add(VcGePoint3d(1, 2, 3));
    EXPECT_TRUE(box.contains(VcGePoint3d(1, 2, 3)));
    box.add(VcGePoint3d(-1, 0, 0));
    EXPECT_EQ(box.center(), VcGePoint3d(0, 1, 1.5));
    EXPECT_TRUE(box.touches(Box3d::around({2, 2, 3}, 1)));
    EXPECT_FALSE(box.contains(Box3d::around({2, 2, 3}, 1)));
    EXPECT_EQ(box.magnitude(), 3);
}
