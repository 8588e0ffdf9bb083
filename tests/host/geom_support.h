// Curves and maps that the tests of the curve engine share.
#pragma once

#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve.h"

#include <gtest/gtest.h>
#include <numbers>
#include <string>
#include <vector>

namespace vk::geom::testing {

inline constexpr double kPi = std::numbers::pi;

struct NamedCurve {
    std::string name;
    Curve curve;
};

inline void PrintTo(const NamedCurve& c, std::ostream* os) { *os << c.name; }

inline Nurbs wave()
{
    return {
        3, {{0, 0, 0}, {2, 5, 1}, {4, -6, 0}, {7, 5, 2}, {9, 0, 0}, {12, 3, 1}}, {0, 0, 0, 0, 1, 2.5, 3, 3, 3, 3}, {}};
}

inline Nurbs flatWave()
{
    return {
        3, {{0, 0, 0}, {2, 5, 0}, {4, -6, 0}, {7, 5, 0}, {9, 0, 0}, {12, 3, 0}}, {0, 0, 0, 0, 1, 2.5, 3, 3, 3, 3}, {}};
}

inline Nurbs weighted()
{
    return {2,
            {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {-1, 1, 0}, {-1, 0, 0}},
            {0, 0, 0, 1, 1, 2, 2, 2},
            {1, std::sqrt(0.5), 1, std::sqrt(0.5), 1}};
}

// Closed through its knots alone: no knot is repeated.
inline Nurbs periodic()
{
    Nurbs n{3, {}, {}, {}};
    for (int i = 0; i < 9; ++i)
        n.poles.push_back({5 * std::cos(i * kPi / 3), 4 * std::sin(i * kPi / 3), 0});
    for (int i = 0; i < 13; ++i)
        n.knots.push_back(i);
    return n;
}

inline Polyline bulgy(bool closed)
{
    return {{{{0, 0}, 0.5}, {{4, 0}, 0}, {{6, 3}, -1.2}, {{2, 5}, 0}, {{-1, 4}, 0.3}}, closed, 2, {0.3, -0.2, 0.8}};
}

inline std::vector<NamedCurve> finiteCurves()
{
    return {{"Segment", Segment{{1, 2, 3}, {5, -2, 4}}},
            {"Circle", Circle{{1, 1, 1}, 2.5, {1, 2, 3}}},
            {"Arc", Arc{{3, 1, 0}, 2, 0.4, 3.9, {0, 0, 1}}},
            {"ArcOverTheSeam", Arc{{3, 1, 0}, 2, 5.0, 1.0, {0, -1, 0.2}}},
            {"Ellipse", Ellipse{{1, 2, 3}, {4, 0, 0}, 0.4, 0, kTwoPi, {0, 0, 1}}},
            {"EllipseTurned", Ellipse{{1, 2, 3}, {2, 2, 1}, 0.7, 0, kTwoPi, {1, -1, 0}}},
            {"EllipticalArc", Ellipse{{0, 0, 0}, {0, 3, 0}, 0.2, 2.5, 7.0, {0, 0, -1}}},
            {"Wave", wave()},
            {"FlatWave", flatWave()},
            {"Weighted", weighted()},
            {"Periodic", periodic()},
            {"OpenPolyline", bulgy(false)},
            {"ClosedPolyline", bulgy(true)},
            {"Polyline3", Polyline3{{{0, 0, 0}, {1, 4, 2}, {5, 4, -1}, {5, 4, -1}, {3, 0, 3}}, true}}};
}

inline std::vector<double> evenly(Interval range, int steps)
{
    std::vector<double> params;
    for (int i = 0; i <= steps; ++i)
        params.push_back(range.from + (range.to - range.from) * i / steps);
    return params;
}

inline VcGeMatrix3d similarity()
{
    return VcGeMatrix3d::translation({30, -20, 5}) * VcGeMatrix3d::rotation(0.9, {1, -2, 0.5}) *
           VcGeMatrix3d::scaling(1.7);
}

inline VcGeMatrix3d mirror() { return VcGeMatrix3d::mirroring(VcGePlane({1, 0, 2}, VcGeVector3d(1, 0.5, 0))); }

inline VcGeMatrix3d uneven()
{
    VcGeMatrix3d shear;
    shear.entry[0][1] = 0.6;
    shear.entry[2][0] = -0.3;
    return VcGeMatrix3d::scaling(VcGeScale3d(2, 0.5, -1.3)) * shear;
}

inline double distanceTo(const Curve& curve, const Point3& p)
{
    const auto c = closestPoint(curve, p);
    return c ? c->distance : Box3d::kInfinite;
}

// Each lies on the other, as far as samples tell.
inline void expectSameShape(const Curve& a, const Curve& b, double tolerance)
{
    for (double t : evenly(paramRange(a), 57))
        EXPECT_LE(distanceTo(b, pointAt(a, t)), tolerance) << "at " << t;
    for (double t : evenly(paramRange(b), 57))
        EXPECT_LE(distanceTo(a, pointAt(b, t)), tolerance) << "back at " << t;
}

inline void expectNear(const Point3& a, const Point3& b, double tolerance)
{
    EXPECT_LE(a.distanceTo(b), tolerance)
        << a.x << ',' << a.y << ',' << a.z << " and " << b.x << ',' << b.y << ',' << b.z;
}

inline std::string nameOf(const ::testing::TestParamInfo<NamedCurve>& info) { return info.param.name; }

}  // namespace vk::geom::testing
