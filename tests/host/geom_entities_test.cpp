// Entities as curves: there and back, where they meet, what can be asked of them.
#include "ent1_support.h"
#include "host/db/curve_of.h"
#include "host/geom/curve_edit.h"
#include "sdk/vcdb_hatch.h"

#include <algorithm>
#include <functional>

using namespace ent1;
namespace g = vk::geom;

namespace {

const VcGeVector3d kZ(0, 0, 1);

std::unique_ptr<VcDbPolyline> bulged(bool closed)
{
    auto p = std::make_unique<VcDbPolyline>();
    p->addVertexAt(0, {0, 0}, 1);
    p->addVertexAt(1, {4, 0});
    p->addVertexAt(2, {4, 3}, 0, 0.5, 1);
    p->setClosed(closed);
    p->setElevation(2);
    return p;
}

std::unique_ptr<VcDbSpline> spline()
{
    auto s = std::make_unique<VcDbSpline>();
    s->setNurbsData(3, false, false, {{0, 0, 0}, {1, 3, 0}, {3, -3, 0}, {4, 0, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {});
    return s;
}

struct Kind {
    const char* name;
    std::function<std::unique_ptr<VcDbCurve>()> make;
};

const Kind kKinds[] = {
    {"Line", [] { return std::make_unique<VcDbLine>(VcGePoint3d(1, 2, 3), VcGePoint3d(5, 7, 1)); }},
    {"Circle", [] { return std::make_unique<VcDbCircle>(VcGePoint3d(1, 2, 3), VcGeVector3d(0, 0.6, 0.8), 2.5); }},
    {"Arc", [] { return std::make_unique<VcDbArc>(VcGePoint3d(1, 2, 3), VcGeVector3d(0, 0, -1), 2.5, 5.5, 1.0); }},
    {"Ellipse", [] { return std::make_unique<VcDbEllipse>(VcGePoint3d(1, 1, 0), kZ, VcGeVector3d(3, 4, 0), 0.4); }},
    {"EllipticalArc",
     [] { return std::make_unique<VcDbEllipse>(VcGePoint3d(1, 1, 0), kZ, VcGeVector3d(3, 4, 0), 0.4, 1.0, 4.0); }},
    {"Polyline", [] { return bulged(false); }},
    {"ClosedPolyline", [] { return bulged(true); }},
    {"Spline", [] { return spline(); }},
};

class EntityCurve : public testing::TestWithParam<Kind> {};

TEST_P(EntityCurve, ComesBackAsItWas)
{
    const auto entity = GetParam().make();
    const auto curve = curveOf(*entity);
    ASSERT_TRUE(curve);
    const auto again = makeEntityOf(*curve, *entity);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->isA(), entity->isA());
    const auto back = curveOf(*again);
    ASSERT_TRUE(back);
    for (const double share : {0.0, 0.21, 0.5, 0.83, 1.0}) {
        const g::Interval r = g::paramRange(*curve);
        const double t = r.from + (r.to - r.from) * share;
        expectNear(g::pointAt(*back, t), g::pointAt(*curve, t), 1e-12);
    }
}

TEST_P(EntityCurve, PartsMakeUpTheWhole)
{
    const auto entity = GetParam().make();
    double from = 0, to = 0, whole = 0, parts = 0;
    ASSERT_EQ(entity->getStartParam(from), Vcad::eOk);
    ASSERT_EQ(entity->getEndParam(to), Vcad::eOk);
    ASSERT_EQ(entity->getDistAtParam(to, whole), Vcad::eOk);
    std::vector<VcDbEntity*> raw;
    ASSERT_EQ(entity->getSplitCurves({from + (to - from) * 0.3, from + (to - from) * 0.6}, raw), Vcad::eOk);
    const Pieces pieces(raw.begin(), raw.end());
    EXPECT_EQ(pieces.size(), entity->isClosed() ? 2u : 3u);
    for (const auto& piece : pieces) {
        double end = 0, length = 0;
        auto* curve = VcDbCurve::cast(piece.get());
        ASSERT_TRUE(curve);
        curve->getEndParam(end);
        EXPECT_EQ(curve->getDistAtParam(end, length), Vcad::eOk);
        parts += length;
    }
    EXPECT_NEAR(parts, whole, 1e-9 * whole);
}

TEST_P(EntityCurve, DistancesAndParametersAgree)
{
    const auto entity = GetParam().make();
    for (const double distance : {0.5, 1.7, 3.0}) {
        VcGePoint3d p, near;
        double back = 0;
        ASSERT_EQ(entity->getPointAtDist(distance, p), Vcad::eOk);
        ASSERT_EQ(entity->getDistAtPoint(p, back), Vcad::eOk);
        EXPECT_NEAR(back, distance, 1e-8);
        ASSERT_EQ(entity->getClosestPointTo(p, near), Vcad::eOk);
        expectNear(near, p, 1e-9);
    }
    VcGePoint3d p;
    EXPECT_NE(entity->getPointAtDist(-1, p), Vcad::eOk);
    EXPECT_NE(entity->getPointAtDist(1e6, p), Vcad::eOk);
    double param = 0;
    EXPECT_NE(entity->getParamAtPoint({1e3, 1e3, 0}, param), Vcad::eOk);
}

TEST_P(EntityCurve, ExtentsTouchTheCurveOnEverySide)
{
    const auto entity = GetParam().make();
    const auto curve = curveOf(*entity);
    VcDbExtents e;
    ASSERT_EQ(entity->getGeomExtents(e), Vcad::eOk);
    const g::Box3d tight = g::extents(*curve);
    expectNear(e.minPoint(), tight.min, 1e-9);
    expectNear(e.maxPoint(), tight.max, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(All, EntityCurve, testing::ValuesIn(kKinds),
                         [](const auto& info) { return std::string(info.param.name); });

std::vector<VcGePoint3d> meet(const VcDbEntity& a, const VcDbEntity& b, VcDb::Intersect mode = VcDb::kOnBothOperands)
{
    std::vector<VcGePoint3d> points;
    EXPECT_EQ(a.intersectWith(&b, mode, points), Vcad::eOk);
    std::sort(points.begin(), points.end(),
              [](const auto& p, const auto& q) { return p.x < q.x || (p.x == q.x && p.y < q.y); });
    return points;
}

TEST(IntersectWith, ExtendsWhatTheModeSays)
{
    const VcDbLine a({0, 0, 0}, {10, 0, 0}), b({5, 1, 0}, {5, 4, 0}), c({20, -1, 0}, {20, 1, 0});
    EXPECT_EQ(meet(a, b).size(), 0u);
    EXPECT_EQ(meet(a, b, VcDb::kExtendThis).size(), 0u);
    ASSERT_EQ(meet(a, b, VcDb::kExtendArg).size(), 1u);
    expectNear(meet(a, b, VcDb::kExtendArg)[0], {5, 0, 0});
    EXPECT_EQ(meet(a, c, VcDb::kExtendArg).size(), 0u);
    expectNear(meet(a, c, VcDb::kExtendThis).at(0), {20, 0, 0});
    EXPECT_EQ(meet(a, c, VcDb::kExtendBoth).size(), 1u);
}

TEST(IntersectWith, AnEntityHasNoPointsWithItself)
{
    const VcDbCircle c({0, 0, 0}, kZ, 5);
    EXPECT_TRUE(meet(c, c).empty());
}

TEST(IntersectWith, MeetsAlongThePlanesNormal)
{
    const VcDbLine a({0, 0, 0}, {10, 0, 0}), above({5, -1, 7}, {5, 1, 7});
    EXPECT_TRUE(meet(a, above).empty());
    std::vector<VcGePoint3d> points;
    ASSERT_EQ(above.intersectWith(&a, VcDb::kOnBothOperands, VcGePlane({0, 0, 0}, kZ), points), Vcad::eOk);
    ASSERT_EQ(points.size(), 1u);
    expectNear(points[0], {5, 0, 7});
    // A circle that stands tilted is met where it is seen, and the point is its own.
    const VcDbCircle tilted({5, 0, 3}, VcGeVector3d(0, -0.6, 0.8), 2);
    points.clear();
    ASSERT_EQ(tilted.intersectWith(&a, VcDb::kOnBothOperands, VcGePlane({0, 0, 0}, kZ), points), Vcad::eOk);
    ASSERT_EQ(points.size(), 2u);
    for (const VcGePoint3d& p : points) {
        EXPECT_NEAR(p.y, 0, 1e-9);
        EXPECT_NEAR(p.distanceTo({5, 0, 3}), 2, 1e-9);
    }
}

TEST(IntersectWith, SeesIntoBlocksAndOutlines)
{
    Drawing drawing;
    drawing.add("B", std::make_unique<VcDbCircle>(VcGePoint3d(0, 0, 0), kZ, 1));
    drawing.add("B", std::make_unique<VcDbLine>(VcGePoint3d(0, 5, 0), VcGePoint3d(1, 5, 0)));
    auto reference = std::make_unique<VcDbBlockReference>(VcGePoint3d(10, 0, 0), drawing.block("B").objectId());
    reference->setScaleFactors(VcGeScale3d(2, 1, 1));
    auto& placed = drawing.add("Holder", std::move(reference));
    const VcDbLine line({0, 0, 0}, {20, 0, 0});
    const auto points = meet(line, placed);
    ASSERT_EQ(points.size(), 2u);
    expectNear(points[0], {8, 0, 0});
    expectNear(points[1], {12, 0, 0});
    const VcDbSolid solid({5, -1, 0}, {6, -1, 0}, {5, 1, 0}, {6, 1, 0});
    EXPECT_EQ(meet(line, solid).size(), 2u);
}

TEST(CurveCalls, ExtendGoesOnBeyondTheEnds)
{
    VcDbLine line({0, 0, 0}, {10, 0, 0});
    EXPECT_EQ(line.extend(false, {15, 0, 0}), Vcad::eOk);
    expectNear(line.endPoint(), {15, 0, 0});
    EXPECT_EQ(line.extend(true, {-2, 0, 0}), Vcad::eOk);
    expectNear(line.startPoint(), {-2, 0, 0});
    EXPECT_NE(line.extend(false, {3, 0, 0}), Vcad::eOk) << "within the line";
    EXPECT_NE(line.extend(false, {30, 4, 0}), Vcad::eOk) << "beside the line";
    VcDbCircle circle({0, 0, 0}, kZ, 1);
    EXPECT_NE(circle.extend(9.0), Vcad::eOk);
    EXPECT_NE(circle.reverseCurve(), Vcad::eOk);
    EXPECT_EQ(line.reverseCurve(), Vcad::eOk);
    expectNear(line.startPoint(), {15, 0, 0});
}

TEST(CurveCalls, TheEndsOfAPolylineGoOnForItsClosestPoint)
{
    VcDbPolyline p;
    p.addVertexAt(0, {0, 0});
    p.addVertexAt(1, {10, 0});
    p.addVertexAt(2, {10, 5});
    VcGePoint3d near;
    ASSERT_EQ(p.getClosestPointTo({-3, 2, 0}, near), Vcad::eOk);
    expectNear(near, {0, 0, 0});
    ASSERT_EQ(p.getClosestPointTo({-3, 2, 0}, near, true), Vcad::eOk);
    expectNear(near, {-3, 0, 0});
    ASSERT_EQ(p.getClosestPointTo({11, 9, 0}, near, true), Vcad::eOk);
    expectNear(near, {10, 9, 0});
    p.setClosed(true);
    ASSERT_EQ(p.getClosestPointTo({-3, 2, 0}, near, true), Vcad::eOk);
    expectNear(near, {0, 0, 0});
}

TEST(CurveCalls, OffsetsGrowToTheRight)
{
    const VcDbCircle circle({0, 0, 0}, kZ, 5);
    std::vector<VcDbEntity*> raw;
    ASSERT_EQ(circle.getOffsetCurves(2, raw), Vcad::eOk);
    const Pieces grown(raw.begin(), raw.end());
    ASSERT_EQ(grown.size(), 1u);
    EXPECT_NEAR(static_cast<VcDbCircle&>(*grown[0]).radius(), 7, 1e-12);
    raw.clear();
    EXPECT_NE(circle.getOffsetCurves(-6, raw), Vcad::eOk) << "nothing is left of it";
    EXPECT_TRUE(raw.empty());
}

TEST(CurveCalls, AreaOfWhatIsOpenClosesByItsChord)
{
    double area = 0;
    EXPECT_EQ(VcDbArc({0, 0, 0}, kZ, 2, 0, kPi).getArea(area), Vcad::eOk);
    EXPECT_NEAR(area, 2 * kPi, 1e-9);
    VcDbXline endless;
    EXPECT_NE(endless.getArea(area), Vcad::eOk);
}

}
