// Comparisons with their uneven tolerances, angles, vectors, matrices, points on lines.
#include "core/Geometry.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Reals, EqualityIsRelativeToTheSecond)
{
    const struct {
        double a, b, tolerance;
        bool equal;
    } kCases[] = {
        {0, 0, 0, true},         {0.1, 0, 0.1, true},     {0.11, 0, 0.1, false},   {0.05, 0.1, 0.1, true},
        {110, 100, 0.1, true},   {111, 100, 0.1, false},  {90, 100, 0.1, true},    {100, 111, 0.1, true},
        {100, 90, 0.1, false},   {-100, 100, 0.1, false}, {-105, -100, 0.1, true}, {0.2, 0.11, 0.1, false},
        {0.11, 0.1, 0.1, false}, {0.1, 0.11, 0.1, true},  {1e300, 1e300, 0, true},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(vcutRealEqual(c.a, c.b, c.tolerance), c.equal) << c.a << " " << c.b << " " << c.tolerance;
}

TEST(Reals, EqualityOfTheModule)
{
    EXPECT_TRUE(VkRealEqual(0.0, 0.0));
    EXPECT_TRUE(VkRealEqual(-0.0, 0.0));
    EXPECT_TRUE(VkRealEqual(1e-11, 0.0));
    EXPECT_TRUE(VkRealEqual(1e-10, 1e-10));
    EXPECT_FALSE(VkRealEqual(0.0, 1e-9));
    EXPECT_FALSE(VkRealEqual(1e-9, 0.0));
    EXPECT_TRUE(VkRealEqual(1e9, 1e9 + 0.05));
    EXPECT_FALSE(VkRealEqual(1e9, 1e9 + 0.2));
}

TEST(Reals, ZeroTakesItsBounds)
{
    EXPECT_TRUE(vcutIsZero(0.5, 0.5));
    EXPECT_TRUE(vcutIsZero(-0.5, 0.5));
    EXPECT_FALSE(vcutIsZero(0.50001, 0.5));
    EXPECT_FALSE(vcutIsZero(0.0, -1.0));
    EXPECT_FALSE(vcutIsZero(std::nan(""), 1.0));
}

TEST(Reals, ValidityIsReadFromTheBits)
{
    const struct {
        double value;
        bool valid;
    } kCases[] = {
        {0.0, true},     {-0.0, true},     {1.0, true},        {-1e308, true},      {2.2250738585072014e-308, true},
        {1e-320, false}, {-1e-320, false}, {kInfinity, false}, {-kInfinity, false}, {std::nan(""), false},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(IsvalidReal(c.value), c.valid) << c.value;
        EXPECT_EQ(vk_isvalid_real(c.value), c.valid) << c.value;
    }
}

TEST(Points, EachComparisonHasItsOwnBound)
{
    const vds_point origin = {0, 0, 0}, p = {100, 200, 300};
    const struct {
        double shift;
        bool module, tenth, fixed;
    } kCases[] = {
        {0, true, true, true},      {1e-9, true, true, true},  {1e-6, false, true, true},
        {1e-5, false, true, false}, {9.9, false, true, false}, {10, false, false, false},
    };
    for (const auto& c : kCases) {
        const vds_point q = {100 + c.shift, 200, 300};
        EXPECT_EQ(VkPointEqual(q, p), c.module) << c.shift;
        EXPECT_EQ(isPointEqual(q, p, 0.1), c.tenth) << c.shift;
        EXPECT_EQ(is_equal_point(q, p), c.fixed) << c.shift;
    }
    for (int axis = 0; axis < 3; ++axis) {
        vds_point q = {0, 0, 0};
        q[axis] = 0.5;
        EXPECT_FALSE(VkPointEqual(q, origin)) << axis;
        EXPECT_FALSE(is_equal_point(q, origin)) << axis;
        EXPECT_TRUE(isPointEqual(q, origin, 0.5)) << axis;
        EXPECT_FALSE(isPointEqual(q, origin, 0.49)) << axis;
    }
}

TEST(Angles, WholeTurnsDoNotCount)
{
    const struct {
        double a, b;
        bool exact, loose;
    } kCases[] = {
        {0, 0, true, true},           {kTwoPi, 0, true, true},
        {-kTwoPi, 0, false, false},   {-kTwoPi, kTwoPi, false, false},
        {1, 1 + kTwoPi, true, true},  {1, 1 - kTwoPi, true, true},
        {-1, kTwoPi - 1, true, true}, {1, 1 + 1e-7, false, true},
        {1, 1 + 1e-5, false, false},  {1e-11, 0, true, true},
        {-1e-11, 0, false, false},    {3, 3 + 5 * kTwoPi, true, true},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(VkAngleEqual(c.a, c.b), c.exact) << c.a << " " << c.b;
        EXPECT_EQ(vkadAngleEqual(c.a, c.b), c.loose) << c.a << " " << c.b;
    }
}

TEST(Angles, NormalizingBringsTheEndAfterTheStart)
{
    const struct {
        double start, end, wantedStart, wantedEnd;
    } kCases[] = {
        {0, 1, 0, 1},
        {1, 0.5, 1, 0.5 + kTwoPi},
        {-1, 1, kTwoPi - 1, 1 + kTwoPi},
        {kTwoPi, kTwoPi, 0, kTwoPi},
        {0, kTwoPi, 0, kTwoPi},
        {7 * kTwoPi + 1, 2, 1, 2},
        {1e7, 1, 0, 1},
        {1, 1e7, 1, kTwoPi},
        {kInfinity, 1, 0, 1},
        {0, -1e-11, 0, -1e-11},
        {0, 1e-320, 0, 0},
        {2, 2, 2, 2},
    };
    for (const auto& c : kCases) {
        for (const auto normalize : {&normlizedAng, &vk_normang}) {
            double start = c.start, end = c.end;
            normalize(start, &end);
            EXPECT_NEAR(start, c.wantedStart, 1e-9) << c.start << " " << c.end;
            EXPECT_NEAR(end, c.wantedEnd, 1e-9) << c.start << " " << c.end;
        }
    }
}

TEST(Angles, OnlyTheStartSnapsToZeroJustBelowATurn)
{
    double start = kTwoPi - 5e-11, end = kTwoPi - 5e-11;
    normlizedAng(start, &end);
    EXPECT_NEAR(start, 0, 1e-9);
    EXPECT_NEAR(end, kTwoPi, 1e-9);
    double beyond = kTwoPi + 5e-11, zero = 0;
    normlizedAng(zero, &beyond);
    EXPECT_NEAR(beyond, kTwoPi, 1e-9);
}

TEST(Angles, TheTwoNormalizersDifferInWhatTheyTakeForEqual)
{
    double start = 1 + 1e-7, end = 1;
    normlizedAng(start, &end);
    EXPECT_NEAR(end, 1 + kTwoPi, 1e-9);
    end = 1;
    vk_normang(start, &end);
    EXPECT_EQ(end, 1);
}

TEST(Angles, AStartAloneIsEnough)
{
    double start = -0.5;
    normlizedAng(start, nullptr);
    EXPECT_NEAR(start, kTwoPi - 0.5, 1e-12);
    start = 999999;
    vk_normang(start, nullptr);
    EXPECT_NEAR(std::sin(start), std::sin(999999.0), 1e-8);
    EXPECT_TRUE(start >= 0 && start < kTwoPi);
}

TEST(Vectors, OutputsMayBeOperands)
{
    const vds_point a = {1, 2, 3}, b = {4, 6, 9};
    vds_point out;
    EXPECT_EQ(vds_point_add(a, b, out), RTNORM);
    EXPECT_EQ(asPnt3d(out), VcGePoint3d(5, 8, 12));
    EXPECT_EQ(vds_point_sub(b, a, out), RTNORM);
    EXPECT_EQ(asPnt3d(out), VcGePoint3d(3, 4, 6));
    EXPECT_EQ(vds_piont_mul(a, -2, out), RTNORM);
    EXPECT_EQ(asPnt3d(out), VcGePoint3d(-2, -4, -6));
    EXPECT_EQ(vds_mid_pt(a, b, out), 1);
    EXPECT_EQ(asPnt3d(out), VcGePoint3d(2.5, 4, 6));
    EXPECT_EQ(vc_dotProduct(a, b), 43);
    cross_product(a, b, out);
    EXPECT_EQ(asPnt3d(out), VcGePoint3d(0, 3, -2));
    for (const auto cross : {&vk_crossproduct, &vc_crossProduct}) {
        vds_point both = {1, 2, 3};
        cross(both, b, both);
        EXPECT_EQ(asPnt3d(both), VcGePoint3d(0, 3, -2));
    }
}

TEST(Vectors, ViewsShareThePoint)
{
    vds_point raw = {1, 2, 3};
    asPnt3d(raw).y = 7;
    asPnt2d(raw).x = 5;
    EXPECT_EQ(asPnt3d(raw), VcGePoint3d(5, 7, 3));
    VcGePoint3d point(1, 2, 3);
    asDblArray(point)[2] = 9;
    EXPECT_EQ(point.z, 9);
}

TEST(Matrices, ProductsTakeTheirOperandsAsOutput)
{
    double small[3][3];
    vc_identity(small);
    EXPECT_EQ(small[1][1], 1);
    EXPECT_EQ(small[1][2], 0);
    vds_matrix m, shift;
    vk_idmat(m);
    vk_idmat(shift);
    m[0][0] = 2;
    shift[0][3] = 5;
    multMtx2Mtx(m, shift, m);
    EXPECT_EQ(m[0][0], 2);
    EXPECT_EQ(m[0][3], 10);
    EXPECT_EQ(m[3][3], 1);
}

TEST(Lines, CollinearWithinAHundredth)
{
    const vds_point a = {0, 0, 0}, b = {10, 0, 0};
    const struct {
        vds_point c;
        bool collinear, onLine;
    } kCases[] = {
        {{5, 0, 0}, true, true},    {{20, 0, 0}, true, false},  {{-5, 0, 0}, true, false}, {{5, 1, 0}, false, false},
        {{5, 0.1, 0}, true, false}, {{5, 0, 0.2}, true, false}, {{5, 0, 1}, false, false}, {{0, 0, 0}, true, true},
        {{10, 0, 0}, true, true},   {{5, 1e-7, 0}, true, true},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(vds_dyl_colin(a, b, c.c), c.collinear) << c.c[0] << " " << c.c[1] << " " << c.c[2];
        EXPECT_EQ(isPtOnLine(c.c, a, b), c.onLine) << c.c[0] << " " << c.c[1] << " " << c.c[2];
    }
}

TEST(Lines, ThreePointsWithinAUnit)
{
    const vds_point a = {0, 0, 0}, near = {0.5, 0, 0}, b = {10, 0, 0}, far = {3, 700, 9};
    const vds_point above = {5, 1, 0}, higher = {5, 4, 0}, beyond = {30, 0, 0};
    EXPECT_TRUE(_3PointsInSameLine(a, near, far));
    EXPECT_FALSE(_3PointsInSameLine(a, b, far));
    EXPECT_TRUE(_3PointsInSameLine(a, b, above));
    EXPECT_FALSE(_3PointsInSameLine(a, b, higher));
    EXPECT_TRUE(_3PointsInSameLine(a, b, beyond));
    EXPECT_TRUE(_3PointsInSameLine(a, b, near));
}

TEST(Lines, BulgesOfArcs)
{
    const vds_point start = {-1, 0, 0}, end = {1, 0, 0};
    const double sagitta = 1 - std::sqrt(0.5);
    const struct {
        vds_point through;
        double bulge;
    } kCases[] = {
        {{0, -1, 0}, 1}, {{0, 1, 0}, -1},    {{0, -0.5, 0}, 0.5},
        {{0, 0, 0}, 0},  {{0, 0.001, 0}, 0}, {{0, -sagitta, 0}, sagitta},
    };
    for (const auto& c : kCases)
        EXPECT_NEAR(cal_bulge(start, end, c.through), c.bulge, 1e-12) << c.through[1];
    const vds_point through = {0.2, 0.4, 0};
    EXPECT_DOUBLE_EQ(cal_bulge(start, end, through), -cal_bulge(end, start, through));
    EXPECT_EQ(cal_bulge(start, start, through), 0);
}

}  // namespace
