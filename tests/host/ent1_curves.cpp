#include "ent1_support.h"
#include "host/db/ent_factories.h"

using namespace ent1;

namespace {

// Setters and their ranges

struct SetterCase {
    const char* name;
    Vcad::ErrorStatus (*set)(double value);
    double good, bad;
};

VcDbCircle s_circle;
VcDbEllipse s_ellipse;
VcDbLine s_line;
VcDbText s_text;
VcDbMText s_mtext;
VcDb2dVertex s_vertex;

const SetterCase kSetters[] = {
    {"CircleRadius", [](double v) { return s_circle.setRadius(v); }, 2, 0},
    {"CircleRadiusNegative", [](double v) { return s_circle.setRadius(v); }, 1e-9, -1},
    {"EllipseRatio", [](double v) { return s_ellipse.setRadiusRatio(v); }, 1, 1.5},
    {"EllipseRatioFlat", [](double v) { return s_ellipse.setRadiusRatio(v); }, 1e-6, 0},
    {"LineThickness", [](double v) { return s_line.setThickness(v); }, -3, NAN},
    {"TextHeight", [](double v) { return s_text.setHeight(v); }, 2.5, 0},
    {"TextWidthFactor", [](double v) { return s_text.setWidthFactor(v); }, 0.8, -1},
    {"TextOblique", [](double v) { return s_text.setOblique(v); }, 1.4, 1.5},
    {"MTextSpacing", [](double v) { return s_mtext.setLineSpacingFactor(v); }, 4, 4.1},
    {"MTextSpacingSmall", [](double v) { return s_mtext.setLineSpacingFactor(v); }, 0.25, 0.2},
    {"MTextWidth", [](double v) { return s_mtext.setWidth(v); }, 0, -1},
    {"MTextHeight", [](double v) { return s_mtext.setTextHeight(v); }, 1, INFINITY},
    {"VertexWidth", [](double v) { return s_vertex.setStartWidth(v); }, 0, -0.5},
    {"VertexBulge", [](double v) { return s_vertex.setBulge(v); }, -1, NAN},
};

class Ent1Setter : public testing::TestWithParam<SetterCase> {};

TEST_P(Ent1Setter, TakesWhatIsInRangeAndRefusesTheRest)
{
    EXPECT_EQ(GetParam().set(GetParam().good), Vcad::eOk);
    EXPECT_NE(GetParam().set(GetParam().bad), Vcad::eOk);
}

INSTANTIATE_TEST_SUITE_P(All, Ent1Setter, testing::ValuesIn(kSetters), [](const auto& i) { return i.param.name; });

TEST(Ent1Curves, ARefusedValueChangesNothing)
{
    VcDbCircle circle({1, 2, 3}, {0, 0, 1}, 4);
    circle.setRadius(-4);
    circle.setCenter({NAN, 0, 0});
    circle.setNormal({0, 0, 0});
    EXPECT_EQ(circle.radius(), 4);
    expectNear(circle.center(), {1, 2, 3}, 0);
}

// Moves

struct Sample {
    const char* name;
    std::unique_ptr<VcDbEntity> (*make)();
};

template <class T, class... Args>
std::unique_ptr<VcDbEntity> make(Args... args)
{
    return std::make_unique<T>(args...);
}

std::unique_ptr<VcDbEntity> polyline()
{
    auto p = std::make_unique<VcDbPolyline>();
    p->addVertexAt(0, {0, 0}, 1);
    p->addVertexAt(1, {2, 0}, -0.5, 0.1, 0.2);
    p->addVertexAt(2, {2, 3});
    p->setElevation(1.5);
    p->setClosed(true);
    return p;
}

std::unique_ptr<VcDbEntity> text()
{
    auto t = std::make_unique<VcDbText>(VcGePoint3d(1, 2, 0), L"Slanted", 2.0, 0.3);
    t->setOblique(0.2);
    t->setWidthFactor(0.7);
    return t;
}

const VcGeVector3d kTilted(0.3, -0.4, 0.866);

const Sample kSamples[] = {
    {"Line", [] { return make<VcDbLine>(VcGePoint3d(1, 2, 3), VcGePoint3d(-4, 5, 6)); }},
    {"Point", [] { return make<VcDbPoint>(VcGePoint3d(1, 2, 3)); }},
    {"Circle", [] { return make<VcDbCircle>(VcGePoint3d(1, 2, 3), VcGeVector3d(0, 0, 1), 2.0); }},
    {"CircleTilted", [] { return make<VcDbCircle>(VcGePoint3d(1, 2, 3), kTilted, 2.0); }},
    {"Arc", [] { return make<VcDbArc>(VcGePoint3d(1, 2, 0), VcGeVector3d(0, 0, 1), 2.0, 0.5, 2.0); }},
    {"ArcTilted", [] { return make<VcDbArc>(VcGePoint3d(1, 2, 7), kTilted, 2.0, 3.0, 1.0); }},
    {"Ellipse",
     [] {
         return make<VcDbEllipse>(VcGePoint3d(1, 2, 0), VcGeVector3d(0, 0, 1), VcGeVector3d(3, 1, 0), 0.4, 0.5, 2.5);
     }},
    {"Polyline", &polyline},
    {"Text", &text},
    {"Solid",
     [] {
         return make<VcDbSolid>(VcGePoint3d(0, 0, 0), VcGePoint3d(2, 0, 0), VcGePoint3d(0, 1, 0), VcGePoint3d(2, 1, 0));
     }},
    {"Face",
     [] {
         return make<VcDbFace>(VcGePoint3d(0, 0, 0), VcGePoint3d(2, 0, 1), VcGePoint3d(2, 1, 2), VcGePoint3d(0, 1, 3));
     }},
};

class Ent1Move : public testing::TestWithParam<Sample> {};
INSTANTIATE_TEST_SUITE_P(All, Ent1Move, testing::ValuesIn(kSamples), [](const auto& i) { return i.param.name; });

void expectSameExtents(const VcDbEntity& a, const VcDbEntity& b, double tolerance)
{
    VcDbExtents box;
    ASSERT_EQ(a.getGeomExtents(box), Vcad::eOk);
    expectExtents(b, box.minPoint(), box.maxPoint(), tolerance);
}

TEST_P(Ent1Move, MirroredTwiceIsTheSame)
{
    const auto original = GetParam().make(), moved = GetParam().make();
    const VcGeMatrix3d mirror = VcGeMatrix3d::mirroring(VcGePlane({3, -1, 2}, VcGeVector3d(1, 2, 0.5)));
    ASSERT_EQ(moved->transformBy(mirror), Vcad::eOk);
    ASSERT_EQ(moved->transformBy(mirror), Vcad::eOk);
    expectSameExtents(*original, *moved, 1e-8);
}

TEST_P(Ent1Move, AMirrorAcrossAnAxisMirrorsTheExtents)
{
    const auto original = GetParam().make(), moved = GetParam().make();
    VcDbExtents box;
    ASSERT_EQ(original->getGeomExtents(box), Vcad::eOk);
    ASSERT_EQ(moved->transformBy(mirrorInX()), Vcad::eOk);
    const VcGePoint3d low = box.minPoint(), high = box.maxPoint();
    expectExtents(*moved, {-high.x, low.y, low.z}, {-low.x, high.y, high.z}, 1e-8);
}

TEST_P(Ent1Move, AScaleScalesTheExtents)
{
    const auto original = GetParam().make(), moved = GetParam().make();
    VcDbExtents box;
    ASSERT_EQ(original->getGeomExtents(box), Vcad::eOk);
    ASSERT_EQ(moved->transformBy(VcGeMatrix3d::scaling(3)), Vcad::eOk);
    expectExtents(*moved, VcGePoint3d() + box.minPoint().asVector() * 3, VcGePoint3d() + box.maxPoint().asVector() * 3,
                  1e-8);
}

TEST_P(Ent1Move, AFlatMatrixIsRefused)
{
    const auto original = GetParam().make(), moved = GetParam().make();
    EXPECT_NE(moved->transformBy(VcGeMatrix3d::scaling(VcGeScale3d(1, 1, 0))), Vcad::eOk);
    expectSameExtents(*original, *moved, 0);
}

TEST_P(Ent1Move, ATranslationLeavesAnglesAndNormalsToTheBit)
{
    const auto there = GetParam().make();
    there->transformBy(VcGeMatrix3d::translation({16, -32, 8}));
    there->transformBy(VcGeMatrix3d::translation({-16, 32, -8}));
    expectSameExtents(*GetParam().make(), *there, 1e-12);
    if (const auto* arc = VcDbArc::cast(there.get())) {
        const auto original = GetParam().make();
        EXPECT_EQ(arc->startAngle(), VcDbArc::cast(original.get())->startAngle());
        EXPECT_EQ(arc->normal(), VcDbArc::cast(original.get())->normal());
    }
}

TEST(Ent1Curves, AnUnevenScaleOfARoundThingIsToldAndChangesNothing)
{
    VcDbCircle circle({1, 1, 0}, {0, 0, 1}, 2);
    VcDbArc arc({1, 1, 0}, {0, 0, 1}, 2, 0, 1);
    EXPECT_EQ(circle.transformBy(uneven()), Vcad::eCannotScaleNonUniformly);
    EXPECT_EQ(arc.transformBy(shear()), Vcad::eCannotScaleNonUniformly);
    EXPECT_EQ(polyline()->transformBy(uneven()), Vcad::eCannotScaleNonUniformly);
    EXPECT_EQ(circle.radius(), 2);
    // Only along its normal, a circle stays round.
    EXPECT_EQ(circle.transformBy(VcGeMatrix3d::scaling(VcGeScale3d(1, 1, 5))), Vcad::eOk);
}

TEST(Ent1Curves, AnEllipseGoesThroughTheImagesOfACirclesPoints)
{
    const VcDbArc arc({1, 2, 0}, {0, 0, 1}, 3, 0.4, 2.9);
    for (const VcGeMatrix3d& m :
         {uneven(), shear(), shear() * mirrorInX(), VcGeMatrix3d::rotation(0.7, {1, 1, 0}) * uneven()}) {
        VcDbEllipse ellipse;
        ASSERT_EQ(ellipse.setFromArc(arc, m), Vcad::eOk);
        EXPECT_NEAR(ellipse.majorAxis().dotProduct(ellipse.minorAxis()), 0, 1e-9);
        const bool reversed = m.det() < 0;
        expectNear(ellipse.pointAt(ellipse.startParam()), m * (reversed ? arc.endPoint() : arc.startPoint()));
        expectNear(ellipse.pointAt(ellipse.endParam()), m * (reversed ? arc.startPoint() : arc.endPoint()));
    }
}

TEST(Ent1Curves, AnEllipsesAnglesDifferFromItsParameters)
{
    const VcDbEllipse ellipse({0, 0, 0}, {0, 0, 1}, {2, 0, 0}, 0.5, 0, kPi / 4);
    EXPECT_EQ(ellipse.startAngle(), 0);
    EXPECT_NEAR(ellipse.endAngle(), std::atan(0.5), 1e-12);
    EXPECT_FALSE(ellipse.isClosed());
    EXPECT_NEAR(VcDbEllipse({0, 0, 0}, {0, 0, 1}, {2, 0, 0}, 0.5).endAngle(), 2 * kPi, 1e-12);
}

TEST(Ent1Curves, ExtentsOfArcsAreTight)
{
    expectExtents(VcDbCircle({1, 2, 3}, {0, 0, 1}, 2), {-1, 0, 3}, {3, 4, 3});
    expectExtents(VcDbArc({0, 0, 0}, {0, 0, 1}, 1, 0, kPi / 2), {0, 0, 0}, {1, 1, 0});
    expectExtents(VcDbArc({0, 0, 0}, {0, 0, 1}, 1, kPi / 4, 3 * kPi / 4), {-std::sqrt(0.5), std::sqrt(0.5), 0},
                  {std::sqrt(0.5), 1, 0});
    expectExtents(VcDbArc({0, 0, 0}, {0, 0, 1}, 1, 3 * kPi / 2, kPi / 2), {0, -1, 0}, {1, 1, 0});
    // Seen from below, angles run the other way.
    expectExtents(VcDbArc({0, 0, 0}, {0, 0, -1}, 1, 0, kPi / 2), {-1, 0, 0}, {0, 1, 0});
    expectExtents(VcDbEllipse({0, 0, 0}, {0, 0, 1}, {2, 2, 0}, 1), {-std::sqrt(8.0), -std::sqrt(8.0), 0},
                  {std::sqrt(8.0), std::sqrt(8.0), 0});
}

TEST(Ent1Curves, AMirroredArcStillRunsAnticlockwise)
{
    VcDbArc arc({0, 0, 0}, {0, 0, 1}, 1, 0, kPi / 2);
    arc.transformBy(mirrorInX());
    EXPECT_NEAR(arc.startAngle(), kPi / 2, 1e-12);
    EXPECT_NEAR(arc.endAngle(), kPi, 1e-12);
    EXPECT_EQ(arc.normal(), VcGeVector3d(0, 0, 1));
}

TEST(Ent1Curves, RaysHaveNoExtents)
{
    VcDbRay ray;
    VcDbExtents box;
    EXPECT_EQ(ray.setUnitDir({0, 3, 0}), Vcad::eOk);
    EXPECT_EQ(ray.unitDir(), VcGeVector3d(0, 1, 0));
    EXPECT_NE(ray.setUnitDir({0, 0, 0}), Vcad::eOk);
    EXPECT_NE(ray.getGeomExtents(box), Vcad::eOk);
}

TEST(Ent1Curves, SplineDataMustFitTogether)
{
    VcDbSpline spline;
    const std::vector<VcGePoint3d> points{{0, 0, 0}, {1, 2, 0}, {3, 2, 0}, {4, 0, 0}};
    EXPECT_NE(spline.setNurbsData(3, false, false, points, {0, 0, 0, 1, 1, 1}, {}), Vcad::eOk);
    EXPECT_NE(spline.setNurbsData(3, false, false, points, {0, 0, 0, 1, 0, 1, 1, 1}, {}), Vcad::eOk);
    EXPECT_NE(spline.setNurbsData(3, false, false, points, {0, 0, 0, 0, 1, 1, 1, 1}, {1, 1, 0, 1}), Vcad::eOk);
    ASSERT_EQ(spline.setNurbsData(3, false, false, points, {0, 0, 0, 0, 1, 1, 1, 1}, {}), Vcad::eOk);
    EXPECT_TRUE(spline.isPlanar());
    EXPECT_EQ(spline.numControlPoints(), 4);
    VcGePoint3d p;
    EXPECT_EQ(spline.getControlPointAt(4, p), Vcad::eInvalidIndex);
    ASSERT_EQ(spline.getControlPointAt(2, p), Vcad::eOk);
    EXPECT_EQ(p, VcGePoint3d(3, 2, 0));
}

// Polylines

TEST(Ent1Polyline, WidthsAreOneValueUntilTheyDiffer)
{
    VcDbPolyline p;
    for (unsigned i = 0; i < 3; ++i)
        ASSERT_EQ(p.addVertexAt(i, {double(i), 0}), Vcad::eOk);
    ASSERT_EQ(p.setConstantWidth(0.5), Vcad::eOk);
    double width = 0, start = 0, end = 0;
    EXPECT_EQ(p.getConstantWidth(width), Vcad::eOk);
    EXPECT_EQ(width, 0.5);
    p.addVertexAt(3, {3, 0}, 0, 0.5, 1);
    EXPECT_NE(p.getConstantWidth(width), Vcad::eOk);
    p.getWidthsAt(0, start, end);
    EXPECT_EQ(end, 0.5);
    p.getWidthsAt(3, start, end);
    EXPECT_EQ(end, 1);
    p.addVertexAt(0, {-1, 0});
    p.getWidthsAt(4, start, end);
    EXPECT_EQ(end, 1);
    EXPECT_EQ(p.getPointAt(5, *std::make_unique<VcGePoint2d>()), Vcad::eInvalidIndex);
}

TEST(Ent1Polyline, BulgesFollowTheirVertices)
{
    VcDbPolyline p;
    p.addVertexAt(0, {0, 0});
    p.addVertexAt(1, {1, 0}, 1);
    p.addVertexAt(1, {0.5, 0});
    double bulge = 0;
    p.getBulgeAt(2, bulge);
    EXPECT_EQ(bulge, 1);
    p.removeVertexAt(0);
    p.getBulgeAt(1, bulge);
    EXPECT_EQ(bulge, 1);
    p.setBulgeAt(1, 0);
    EXPECT_FALSE(p.hasBulges());
}

TEST(Ent1Polyline, ExplodesIntoLinesAndArcsEndToEnd)
{
    const auto whole = polyline();
    const auto pieces = explode(*whole);
    ASSERT_EQ(pieces.size(), 3u);
    const auto* half = VcDbArc::cast(pieces[0].get());
    const auto* shallow = VcDbArc::cast(pieces[1].get());
    const auto* line = VcDbLine::cast(pieces[2].get());
    ASSERT_TRUE(half && shallow && line);
    // A bulge of 1 is a half circle to the right of the way.
    expectNear(half->center(), {1, 0, 1.5});
    expectNear(half->startPoint(), {0, 0, 1.5});
    expectNear(half->endPoint(), {2, 0, 1.5});
    // A negative bulge runs from its end to its start.
    expectNear(shallow->startPoint(), {2, 3, 1.5});
    expectNear(shallow->endPoint(), {2, 0, 1.5});
    EXPECT_NEAR(std::tan(shallow->totalAngle() / 4), 0.5, 1e-12);
    expectNear(line->startPoint(), {2, 3, 1.5});
    expectNear(line->endPoint(), {0, 0, 1.5});
}

TEST(Ent1Polyline, ExtentsHoldTheBellyOfAnArc)
{
    VcDbPolyline p;
    p.addVertexAt(0, {0, 0}, 1);
    p.addVertexAt(1, {2, 0});
    expectExtents(p, {0, -1, 0}, {2, 0, 0});
    p.setBulgeAt(0, -1);
    expectExtents(p, {0, 0, 0}, {2, 1, 0});
    // The last bulge counts when the polyline is closed.
    p.setBulgeAt(1, -1);
    expectExtents(p, {0, 0, 0}, {2, 1, 0});
    p.setClosed(true);
    expectExtents(p, {0, -1, 0}, {2, 1, 0});
}

TEST(Ent1Polyline, OldPolylinesKeepVerticesMadeBeforeTheyAreInADrawing)
{
    VcDb2dPolyline p;
    VcDbObjectId id;
    for (const VcGePoint3d& at : {VcGePoint3d(0, 0, 0), VcGePoint3d(2, 0, 0), VcGePoint3d(2, 2, 0)})
        ASSERT_EQ(p.appendVertex(id, new VcDb2dVertex(at, at.x == 0 ? 1 : 0)), Vcad::eOk);
    EXPECT_TRUE(id.isNull());
    p.setClosed(true);
    expectExtents(p, {0, -1, 0}, {2, 2, 0});
    EXPECT_EQ(explode(p).size(), 3u);
    ASSERT_EQ(p.transformBy(mirrorInX()), Vcad::eOk);
    expectExtents(p, {-2, -1, 0}, {0, 2, 0});
    EXPECT_EQ(p.transformBy(uneven()), Vcad::eCannotScaleNonUniformly);
}

TEST(Ent1Polyline, AMeshIsAFaceForEachCell)
{
    VcDbPolygonMesh mesh;
    VcDbObjectId id;
    mesh.setMSize(3);
    mesh.setNSize(2);
    for (int m = 0; m < 3; ++m)
        for (int n = 0; n < 2; ++n)
            mesh.appendVertex(id, new VcDbPolygonMeshVertex(VcGePoint3d(m, n, m * n)));
    EXPECT_EQ(explode(mesh).size(), 2u);
    mesh.setMClosed(true);
    EXPECT_EQ(explode(mesh).size(), 3u);
    // A mesh that says more vertices than it has cannot be taken apart.
    mesh.setNSize(200);
    std::vector<VcDbEntity*> none;
    EXPECT_NE(mesh.explode(none), Vcad::eOk);
    EXPECT_TRUE(none.empty());
}

TEST(Ent1Polyline, AFaceMeshHidesTheEdgesOfNegativeNumbers)
{
    VcDbPolyFaceMesh mesh;
    VcDbObjectId id;
    for (const VcGePoint3d& at :
         {VcGePoint3d(0, 0, 0), VcGePoint3d(1, 0, 0), VcGePoint3d(1, 1, 0), VcGePoint3d(0, 1, 0)})
        mesh.appendVertex(id, new VcDbPolyFaceMeshVertex(at));
    mesh.appendFaceRecord(id, new VcDbFaceRecord(1, -2, 3, 4));
    mesh.appendFaceRecord(id, new VcDbFaceRecord(1, 2, -3, 0));
    mesh.appendFaceRecord(id, new VcDbFaceRecord(4, 99, 1, 0));
    EXPECT_EQ(mesh.numFaces(), 3);
    const auto pieces = explode(mesh);
    ASSERT_EQ(pieces.size(), 3u);
    const auto edges = [&](std::size_t i) {
        std::string out;
        for (unsigned e = 0; e < 4; ++e) {
            bool visible = false;
            VcDbFace::cast(pieces[i].get())->isEdgeVisibleAt(e, visible);
            out += visible ? '+' : '-';
        }
        return out;
    };
    EXPECT_EQ(edges(0), "+-++");
    EXPECT_EQ(edges(1), "+++-");
    EXPECT_TRUE(VcDbLine::cast(pieces[2].get()));
}

struct KindCase {
    const char* name;
    std::int64_t flags;
    const char* marker;
    const char* cls;
};

const KindCase kPolylines[] = {
    {"Plain", 1, "", "VcDb2dPolyline"},
    {"Space", 9, "", "VcDb3dPolyline"},
    {"Mesh", 16 | 32, "", "VcDbPolygonMesh"},
    {"Faces", 64, "", "VcDbPolyFaceMesh"},
    {"MarkerWins", 64, "AcDb3dPolyline", "VcDb3dPolyline"},
    {"StrangeMarker", 8, "AcDbCurve", "VcDb3dPolyline"},
};
const KindCase kVertices[] = {
    {"Plain", 0, "", "VcDb2dVertex"},          {"Space", 32, "", "VcDb3dPolylineVertex"},
    {"Mesh", 64, "", "VcDbPolygonMeshVertex"}, {"FaceVertex", 192, "", "VcDbPolyFaceMeshVertex"},
    {"FaceRecord", 128, "", "VcDbFaceRecord"}, {"MarkerWins", 0, "AcDbFaceRecord", "VcDbFaceRecord"},
};

TEST(Ent1Kinds, AreChosenByMarkerThenFlags)
{
    for (const KindCase& c : kPolylines)
        EXPECT_STREQ(createPolyline(c.flags, c.marker)->isA()->name(), c.cls) << c.name;
    for (const KindCase& c : kVertices)
        EXPECT_STREQ(createVertex(c.flags, c.marker)->isA()->name(), c.cls) << c.name;
    EXPECT_STREQ(createInsert(1, 1, "")->isA()->name(), "VcDbBlockReference");
    EXPECT_STREQ(createInsert(0, 0, "AcDbBlockReference")->isA()->name(), "VcDbBlockReference");
    EXPECT_STREQ(createInsert(1, 2, "AcDbBlockReference")->isA()->name(), "VcDbMInsertBlock");
    EXPECT_STREQ(createInsert(1, 1, "AcDbMInsertBlock")->isA()->name(), "VcDbMInsertBlock");
}

}
