// Whatever a reference shows, its pieces show: mirrored, scaled unevenly, turned out of the plane, nested.
#include "host/db/curve_of.h"
#include "host/geom/curve_edit.h"
#include "sdk/vcdb_polylines.h"
#include "select_support.h"

#include <random>

using namespace vk;

namespace {

class RandomExplosion : public seltest::Drawing {
protected:
    double number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    VcGePoint3d point() { return {number(-10, 10), number(-10, 10), number(-2, 2)}; }
    VcGeVector3d normal()
    {
        return number(0, 1) < 0.5 ? VcGeVector3d::zAxis()
                                  : VcGeVector3d(number(-1, 1), number(-1, 1), number(0.1, 1)).normal();
    }

    VcDbEntity* figure()
    {
        switch (std::uniform_int_distribution<int>(0, 6)(m_random)) {
        case 0:
            return new VcDbLine(point(), point());
        case 1:
            return new VcDbCircle(point(), normal(), number(1, 5));
        case 2:
            return new VcDbArc(point(), normal(), number(1, 5), number(0, 6.28), number(0, 6.28));
        case 3:
            return new VcDbEllipse(point(), VcGeVector3d::zAxis(), {number(1, 5), number(1, 5), 0}, number(0.1, 1),
                                   number(0, 3), number(3.1, 6));
        case 4: {
            auto* spline = new VcDbSpline;
            spline->setNurbsData(3, false, false, {point(), point(), point(), point()}, {0, 0, 0, 0, 1, 1, 1, 1}, {});
            return spline;
        }
        case 5: {
            auto* line = new VcDb3dPolyline;
            VcDbObjectId none;
            for (int i = 0; i < 4; ++i)
                line->appendVertex(none, new VcDb3dPolylineVertex(point()));
            return line;
        }
        default: {
            auto* line = new VcDbPolyline;
            for (unsigned i = 0; i < 4; ++i)
                line->addVertexAt(i, {number(-8, 8), number(-8, 8)}, number(0, 1) < 0.5 ? number(-1, 1) : 0);
            line->setNormal(normal());
            return line;
        }
        }
    }

    std::unique_ptr<VcDbBlockReference> reference(const char* name)
    {
        auto made = std::make_unique<VcDbBlockReference>(point(), block(name).objectId());
        const double x = number(0.2, 3) * (number(0, 1) < 0.4 ? -1 : 1);
        const bool even = number(0, 1) < 0.4;
        made->setScaleFactors({x, even ? x : number(-3, -0.2), even ? x : number(0.2, 3)});
        made->setRotation(number(0, 6.28));
        made->setNormal(normal());
        return made;
    }

    // A block of figures, and one that holds references to it beside figures of its own.
    void defineBlocks()
    {
        for (const char* name : {"INNER", "OUTER"})
            for (int i = 0; i < 4; ++i)
                add(figure(), "0", &block(name));
        for (int i = 0; i < 2; ++i)
            add(reference("INNER").release(), "0", &block("OUTER"));
    }

    // Down to what has no parts, nested references included.
    void explodeWholly(const VcDbEntity& entity, std::vector<geom::Curve>& curves)
    {
        std::vector<VcDbEntity*> pieces;
        ASSERT_EQ(entity.explode(pieces), Vcad::eOk);
        for (VcDbEntity* raw : pieces) {
            const std::unique_ptr<VcDbEntity> piece(raw);
            if (VcDbBlockReference::cast(raw))
                explodeWholly(*raw, curves);
            else if (auto curve = curveOf(*raw))
                curves.push_back(*curve);
        }
    }

    static double distanceTo(const std::vector<geom::Curve>& curves, const VcGePoint3d& p)
    {
        double least = HUGE_VAL;
        for (const geom::Curve& curve : curves)
            if (const auto near = geom::closestPoint(curve, p))
                least = std::min(least, near->distance);
        return least;
    }

    static void expectCovered(const std::vector<geom::Curve>& what, const std::vector<geom::Curve>& by)
    {
        for (const geom::Curve& curve : what) {
            const auto range = geom::paramRange(curve);
            for (int i = 0; i <= 12; ++i)
                EXPECT_LE(distanceTo(by, geom::pointAt(curve, range.from + (range.to - range.from) * i / 12)), 1e-6)
                    << "kind " << curve.index();
        }
    }

    std::mt19937 m_random{5};
};

TEST_F(RandomExplosion, CoversTheSamePoints)
{
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(round);
        ed().closeDrawing();
        ed().openDrawing(std::make_unique<VcDbDatabase>());
        defineBlocks();
        VcDbBlockReference& whole = add(reference("OUTER").release());
        const std::vector<geom::Curve> shown = drawnCurves(whole);
        std::vector<geom::Curve> pieces;
        explodeWholly(whole, pieces);
        EXPECT_EQ(shown.empty(), pieces.empty());
        expectCovered(shown, pieces);
        expectCovered(pieces, shown);
    }
}

}
