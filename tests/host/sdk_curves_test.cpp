// Curves by their properties, on random ones of every class: whatever the numbers are, these must hold.
#include "tests/host/sdk_samples.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace {

constexpr double kTurn = 6.28318530717958647693;

class Dice {
public:
    explicit Dice(unsigned seed) : m_engine(seed) {}
    double number(double from, double to) { return std::uniform_real_distribution<double>(from, to)(m_engine); }
    int count(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_engine); }
    VcGePoint3d point(double reach = 10)
    {
        return {number(-reach, reach), number(-reach, reach), number(-reach, reach)};
    }
    VcGePoint3d flatPoint(double reach = 10) { return {number(-reach, reach), number(-reach, reach), 0}; }
    VcGeVector3d direction() { return VcGeVector3d(number(-1, 1), number(-1, 1), number(0.2, 1)).normal(); }

private:
    std::mt19937 m_engine;
};

using Maker = std::unique_ptr<VcDbCurve> (*)(Dice& dice, bool flat);

VcGePoint3d place(Dice& dice, bool flat) { return flat ? dice.flatPoint() : dice.point(); }
VcGeVector3d up(Dice& dice, bool flat) { return flat ? VcGeVector3d::zAxis() : dice.direction(); }

std::unique_ptr<VcDbCurve> makeLine(Dice& dice, bool flat)
{
    return std::make_unique<VcDbLine>(place(dice, flat), place(dice, flat));
}

std::unique_ptr<VcDbCurve> makeCircle(Dice& dice, bool flat)
{
    return std::make_unique<VcDbCircle>(place(dice, flat), up(dice, flat), dice.number(0.5, 8));
}

std::unique_ptr<VcDbCurve> makeArc(Dice& dice, bool flat)
{
    const double start = dice.number(0, kTurn);
    const VcGePoint3d center = place(dice, flat);
    return std::make_unique<VcDbArc>(center, up(dice, flat), dice.number(0.5, 8), start,
                                     std::fmod(start + dice.number(0.3, 5.9), kTurn));
}

std::unique_ptr<VcDbCurve> makeEllipse(Dice& dice, bool flat)
{
    const VcGeVector3d normal = up(dice, flat);
    VcGeVector3d major = normal.perpVector() * dice.number(1, 8);
    major.rotateBy(dice.number(0, kTurn), normal);
    const double start = dice.number(0, 3);
    return std::make_unique<VcDbEllipse>(place(dice, flat), normal, major, dice.number(0.2, 0.95), start,
                                         start + dice.number(0.5, 6));
}

std::unique_ptr<VcDbCurve> makePolyline(Dice& dice, bool flat)
{
    auto p = std::make_unique<VcDbPolyline>();
    const int n = dice.count(2, 6);
    for (int i = 0; i < n; ++i)
        p->addVertexAt(unsigned(i), {dice.number(-10, 10), dice.number(-10, 10)},
                       dice.count(0, 2) ? 0 : dice.number(-1.5, 1.5));
    p->setNormal(up(dice, flat));
    p->setElevation(flat ? 0 : dice.number(-5, 5));
    return p;
}

std::unique_ptr<VcDbCurve> makeSpline(Dice& dice, bool flat)
{
    auto s = std::make_unique<VcDbSpline>();
    std::vector<VcGePoint3d> points;
    for (int i = 0; i < 6; ++i)
        points.push_back(place(dice, flat) + VcGeVector3d(i * 6, 0, 0));
    s->setNurbsData(3, false, false, points, {0, 0, 0, 0, 0.3, 0.7, 1, 1, 1, 1}, {});
    return s;
}

struct CurveKind {
    const char* name;
    Maker make;
};

const CurveKind kKinds[] = {{"Line", makeLine},       {"Circle", makeCircle},     {"Arc", makeArc},
                            {"Ellipse", makeEllipse}, {"Polyline", makePolyline}, {"Spline", makeSpline}};

constexpr unsigned kRounds = 25;

class RandomCurve : public testing::TestWithParam<CurveKind> {
protected:
    template <class Check>
    void each(Check&& check, bool flat = false)
    {
        for (unsigned seed = 1; seed <= kRounds; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            Dice dice(seed);
            const auto curve = GetParam().make(dice, flat);
            check(*curve, dice);
        }
    }
};

INSTANTIATE_TEST_SUITE_P(All, RandomCurve, testing::ValuesIn(kKinds),
                         [](const auto& info) { return std::string(info.param.name); });

struct Range {
    double from = 0, to = 0;
    double at(double part) const { return from + (to - from) * part; }
};

Range rangeOf(const VcDbCurve& curve)
{
    Range range;
    EXPECT_EQ(curve.getStartParam(range.from), Vcad::eOk);
    EXPECT_EQ(curve.getEndParam(range.to), Vcad::eOk);
    EXPECT_LT(range.from, range.to);
    return range;
}

VcGePoint3d pointAt(const VcDbCurve& curve, double param)
{
    VcGePoint3d p;
    EXPECT_EQ(curve.getPointAtParam(param, p), Vcad::eOk) << param;
    return p;
}

double lengthOf(const VcDbCurve& curve)
{
    double length = 0;
    EXPECT_EQ(curve.getDistAtParam(rangeOf(curve).to, length), Vcad::eOk);
    return length;
}

bool isOn(const VcDbCurve& curve, const VcGePoint3d& p, double tolerance = 1e-6, bool extend = false)
{
    VcGePoint3d near;
    return curve.getClosestPointTo(p, near, extend) == Vcad::eOk && near.distanceTo(p) < tolerance;
}

using Owned = std::vector<std::unique_ptr<VcDbEntity>>;

Owned owned(const std::vector<VcDbEntity*>& made) { return Owned(made.begin(), made.end()); }

TEST_P(RandomCurve, PointsParametersAndDistancesSayTheSame)
{
    each([](const VcDbCurve& curve, Dice& dice) {
        const Range range = rangeOf(curve);
        VcGePoint3d start, end;
        ASSERT_EQ(curve.getStartPoint(start), Vcad::eOk);
        ASSERT_EQ(curve.getEndPoint(end), Vcad::eOk);
        EXPECT_LT(start.distanceTo(pointAt(curve, range.from)), 1e-9);
        EXPECT_LT(end.distanceTo(pointAt(curve, range.to)), 1e-9);
        double last = 0;
        for (double part = dice.number(0.02, 0.1); part < 0.99; part += dice.number(0.05, 0.2)) {
            const double param = range.at(part);
            const VcGePoint3d p = pointAt(curve, param);
            double distance = 0, back = 0;
            ASSERT_EQ(curve.getDistAtParam(param, distance), Vcad::eOk);
            EXPECT_GT(distance, last);
            last = distance;
            ASSERT_EQ(curve.getParamAtDist(distance, back), Vcad::eOk);
            EXPECT_LT(pointAt(curve, back).distanceTo(p), 1e-6);
            ASSERT_EQ(curve.getParamAtPoint(p, back), Vcad::eOk);
            EXPECT_LT(pointAt(curve, back).distanceTo(p), 1e-6) << "where it crosses itself either will do";
            VcGePoint3d there;
            ASSERT_EQ(curve.getPointAtDist(distance, there), Vcad::eOk);
            EXPECT_LT(there.distanceTo(p), 1e-6);
        }
        double distance = 0;
        EXPECT_NE(curve.getParamAtDist(lengthOf(curve) + 1, distance), Vcad::eOk);
        EXPECT_NE(curve.getParamAtDist(-1, distance), Vcad::eOk);
    });
}

TEST_P(RandomCurve, DerivativesAreThoseOfThePoints)
{
    each([](const VcDbCurve& curve, Dice& dice) {
        const Range range = rangeOf(curve);
        const double h = 1e-5;
        for (int i = 0; i < 5; ++i) {
            const double param = range.at(dice.number(0.05, 0.95));
            if (curve.isKindOf(VcDbPolyline::desc()) && std::fabs(param - std::round(param)) < 1e-3)
                continue;
            VcGeVector3d first, second;
            ASSERT_EQ(curve.getFirstDeriv(param, first), Vcad::eOk);
            ASSERT_EQ(curve.getSecondDeriv(param, second), Vcad::eOk);
            const VcGePoint3d before = pointAt(curve, param - h), at = pointAt(curve, param),
                              after = pointAt(curve, param + h);
            EXPECT_LT((first - (after - before) / (2 * h)).length(), 1e-4 * (1 + first.length() + second.length()));
            const VcGeVector3d bend = ((after - at) - (at - before)) / (h * h);
            EXPECT_LT((second - bend).length(), 0.02 * (1 + second.length()));
        }
    });
}

TEST_P(RandomCurve, NothingOnItIsCloserThanTheClosestPoint)
{
    each([](const VcDbCurve& curve, Dice& dice) {
        const Range range = rangeOf(curve);
        for (int i = 0; i < 4; ++i) {
            const VcGePoint3d from = dice.point(20);
            VcGePoint3d near;
            ASSERT_EQ(curve.getClosestPointTo(from, near), Vcad::eOk);
            EXPECT_TRUE(isOn(curve, near));
            for (int step = 0; step <= 200; ++step)
                ASSERT_GE(pointAt(curve, range.at(step / 200.0)).distanceTo(from), near.distanceTo(from) - 1e-7);
        }
    });
}

TEST_P(RandomCurve, SplitPiecesJoinUpToTheWhole)
{
    each([](const VcDbCurve& curve, Dice& dice) {
        const Range range = rangeOf(curve);
        std::vector<double> params;
        for (double part = dice.number(0.1, 0.3); part < 0.95; part += dice.number(0.15, 0.4))
            params.push_back(range.at(part));
        std::vector<VcDbEntity*> made;
        ASSERT_EQ(curve.getSplitCurves(params, made), Vcad::eOk);
        const Owned pieces = owned(made);
        const bool closed = curve.isClosed();
        ASSERT_EQ(pieces.size(), params.size() + (closed && params.size() > 1 ? 0 : 1));
        double total = 0;
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            const auto& piece = *VcDbCurve::cast(pieces[i].get());
            total += lengthOf(piece);
            VcGePoint3d end, next;
            piece.getEndPoint(end);
            if (i + 1 == pieces.size() && !closed)
                continue;
            VcDbCurve::cast(pieces[(i + 1) % pieces.size()].get())->getStartPoint(next);
            EXPECT_LT(end.distanceTo(next), 1e-6);
        }
        EXPECT_NEAR(total, lengthOf(curve), 1e-5);
    });
}

TEST_P(RandomCurve, OffsetsLieAtTheirDistance)
{
    // A polyline or a spline that crosses itself comes near itself again.
    if (GetParam().make == makePolyline || GetParam().make == makeSpline)
        GTEST_SKIP() << "of random ones nothing holds";
    const auto check = [](const VcDbCurve& curve, Dice& dice) {
        const double distance = dice.number(0.01, 0.03) * (dice.count(0, 1) ? 1 : -1);
        std::vector<VcDbEntity*> made;
        ASSERT_EQ(curve.getOffsetCurves(distance, made), Vcad::eOk);
        for (const auto& piece : owned(made)) {
            const auto& parallel = *VcDbCurve::cast(piece.get());
            const Range range = rangeOf(parallel);
            for (double part = 0.03; part < 1; part += 0.117) {
                const VcGePoint3d p = pointAt(parallel, range.at(part));
                VcGePoint3d near;
                ASSERT_EQ(curve.getClosestPointTo(p, near), Vcad::eOk);
                EXPECT_NEAR(p.distanceTo(near), std::fabs(distance), 1e-4);
            }
        }
    };
    each(check, true);
}

TEST_P(RandomCurve, AMoveMovesEveryPointAndKeepsLengthAndArea)
{
    each([](VcDbCurve& curve, Dice& dice) {
        const VcGeMatrix3d m = VcGeMatrix3d::translation(dice.point().asVector()) *
                               VcGeMatrix3d::rotation(dice.number(0, 6), dice.direction());
        const Range range = rangeOf(curve);
        std::vector<VcGePoint3d> points;
        for (double part = 0; part <= 1; part += 0.125)
            points.push_back(m * pointAt(curve, range.at(part)));
        const double length = lengthOf(curve);
        double area = 0, moved = 0;
        const Vcad::ErrorStatus hasArea = curve.getArea(area);
        ASSERT_EQ(curve.transformBy(m), Vcad::eOk);
        EXPECT_NEAR(lengthOf(curve), length, 1e-6);
        EXPECT_EQ(curve.getArea(moved), hasArea);
        EXPECT_NEAR(moved, area, 1e-6);
        for (const VcGePoint3d& p : points)
            EXPECT_TRUE(isOn(curve, p));
    });
}

TEST_P(RandomCurve, ReversedItRunsTheOtherWay)
{
    each([](VcDbCurve& curve, Dice&) {
        VcGePoint3d start, end, newStart, newEnd;
        curve.getStartPoint(start);
        curve.getEndPoint(end);
        const double length = lengthOf(curve);
        const bool isRound = curve.isKindOf(VcDbCircle::desc()) || curve.isKindOf(VcDbArc::desc());
        ASSERT_EQ(curve.reverseCurve() == Vcad::eOk, !isRound);
        if (isRound)
            return;
        curve.getStartPoint(newStart);
        curve.getEndPoint(newEnd);
        EXPECT_LT(newStart.distanceTo(end), 1e-9);
        EXPECT_LT(newEnd.distanceTo(start), 1e-9);
        EXPECT_NEAR(lengthOf(curve), length, 1e-6);
    });
}

TEST_P(RandomCurve, ExtentsHoldEveryPoint)
{
    each([](const VcDbCurve& curve, Dice&) {
        VcDbExtents box;
        ASSERT_EQ(curve.getGeomExtents(box), Vcad::eOk);
        const Range range = rangeOf(curve);
        for (double part = 0; part <= 1; part += 1.0 / 64) {
            VcDbExtents grown = box;
            grown.addPoint(pointAt(curve, range.at(part)));
            EXPECT_LT(grown.minPoint().distanceTo(box.minPoint()) + grown.maxPoint().distanceTo(box.maxPoint()), 1e-8);
        }
    });
}

class RandomMeeting : public testing::TestWithParam<std::tuple<CurveKind, CurveKind>> {};

INSTANTIATE_TEST_SUITE_P(All, RandomMeeting, testing::Combine(testing::ValuesIn(kKinds), testing::ValuesIn(kKinds)),
                         [](const auto& info) {
                             return std::string(std::get<0>(info.param).name) + std::get<1>(info.param).name;
                         });

bool samePoints(std::vector<VcGePoint3d> a, const std::vector<VcGePoint3d>& b)
{
    return a.size() == b.size() && std::all_of(a.begin(), a.end(), [&](const VcGePoint3d& p) {
               return std::any_of(b.begin(), b.end(), [&](const VcGePoint3d& q) { return p.distanceTo(q) < 1e-4; });
           });
}

// Whichever is asked, the points are the same, and lie on what may be extended and what may not.
TEST_P(RandomMeeting, IsTheSameFromEitherSideInEveryMode)
{
    const VcDb::Intersect swapped[] = {VcDb::kOnBothOperands, VcDb::kExtendArg, VcDb::kExtendThis, VcDb::kExtendBoth};
    std::size_t found = 0;
    for (unsigned seed = 1; seed <= kRounds; ++seed) {
        Dice dice(seed);
        const auto a = std::get<0>(GetParam()).make(dice, true), b = std::get<1>(GetParam()).make(dice, true);
        std::vector<VcGePoint3d> inner;
        for (const VcDb::Intersect mode :
             {VcDb::kOnBothOperands, VcDb::kExtendThis, VcDb::kExtendArg, VcDb::kExtendBoth}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " mode " << mode);
            std::vector<VcGePoint3d> fromA, fromB;
            ASSERT_EQ(a->intersectWith(b.get(), mode, fromA), Vcad::eOk);
            ASSERT_EQ(b->intersectWith(a.get(), swapped[mode], fromB), Vcad::eOk);
            EXPECT_TRUE(samePoints(fromA, fromB)) << fromA.size() << " against " << fromB.size();
            for (const VcGePoint3d& p : fromA) {
                EXPECT_TRUE(isOn(*a, p, 1e-5, mode & VcDb::kExtendThis));
                EXPECT_TRUE(isOn(*b, p, 1e-5, mode & VcDb::kExtendArg));
            }
            if (mode == VcDb::kOnBothOperands)
                inner = fromA;
            EXPECT_GE(fromA.size(), inner.size()) << "extending takes nothing away";
            found += fromA.size();
        }
    }
    EXPECT_GT(found, 0u);
}

}
