// Areas over random figures take through the index, the extents and the chords what the bare curves say one by one.
#include "host/db/curve_of.h"
#include "host/edit/pick.h"
#include "host/geom/region.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_polylines.h"
#include "select_support.h"

#include <random>

using namespace vk;
using edit::SelectArea;

namespace {

class RandomSelection : public seltest::Drawing {
protected:
    double number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    VcGePoint3d point() { return {number(0, 100), number(0, 100), 0}; }

    VcDbEntity* figure(int kind)
    {
        const VcGePoint3d at = point();
        switch (kind % 5) {
        case 0:
            return new VcDbLine(at, at + VcGeVector3d(number(-20, 20), number(-20, 20), 0));
        case 1:
            return new VcDbCircle(at, VcGeVector3d::zAxis(), number(0.1, 15));
        case 2:
            return new VcDbArc(at, VcGeVector3d::zAxis(), number(0.1, 15), number(0, 6.28), number(0, 6.28));
        case 3:
            return new VcDbEllipse(at, VcGeVector3d::zAxis(), {number(1, 12), number(1, 12), 0}, number(0.1, 1), number(0, 3), number(3.1, 6));
        default: {
            auto* line = new VcDbPolyline;
            for (unsigned i = 0; i < 5; ++i)
                line->addVertexAt(i, {at.x + number(-8, 8), at.y + number(-8, 8)}, i % 2 ? number(-1, 1) : 0);
            return line;
        }
        }
    }

    void draw(int count)
    {
        for (int i = 0; i < count; ++i) {
            VcDbEntity* entity = figure(i);
            ASSERT_EQ(space().appendVcDbEntity(entity), Vcad::eOk);
            entity->close();
            m_figures.push_back(entity);
        }
    }

    // The answer of the curves alone.
    template <class Takes>
    std::vector<VcDbObjectId> byCurves(Takes takes) const
    {
        std::vector<VcDbObjectId> ids;
        for (const VcDbEntity* figure : m_figures)
            if (!figure->isErased() && takes(*curveOf(*figure)))
                ids.push_back(figure->objectId());
        return ids;
    }

    void compareRectangle()
    {
        const VcGePoint3d a = point(), b = a + VcGeVector3d(number(1, 40), number(1, 40), 0);
        const auto region = geom::Region::window({a.x, a.y}, {b.x, b.y});
        const edit::Picker picker = edit::Picker::of(ed());
        EXPECT_EQ(picker.takenBy(SelectArea::rectangle(picker.view(), a, b, SelectArea::Kind::Window)),
                  byCurves([&](const geom::Curve& c) { return region.contains(c); }));
        EXPECT_EQ(picker.takenBy(SelectArea::rectangle(picker.view(), a, b, SelectArea::Kind::Crossing)),
                  byCurves([&](const geom::Curve& c) { return region.touches(c); }));
    }

    void comparePolygon(unsigned corners)
    {
        std::vector<VcGePoint3d> points;
        std::vector<VcGePoint2d> flat;
        for (unsigned i = 0; i < corners; ++i) {
            points.push_back(point());
            flat.emplace_back(points.back().x, points.back().y);
        }
        const geom::Region region(flat);
        const edit::Picker picker = edit::Picker::of(ed());
        const auto taken = [&](SelectArea::Kind kind) { return picker.takenBy(SelectArea::polygon(picker.view(), points, kind)); };
        EXPECT_EQ(taken(SelectArea::Kind::Window), byCurves([&](const geom::Curve& c) { return region.contains(c); }));
        EXPECT_EQ(taken(SelectArea::Kind::Crossing), byCurves([&](const geom::Curve& c) { return region.touches(c); }));
        EXPECT_EQ(taken(SelectArea::Kind::Fence), byCurves([&](const geom::Curve& c) { return geom::fenceTouches(flat, c); }));
    }

    std::mt19937 m_random{11};
    std::vector<VcDbEntity*> m_figures;
};

TEST_F(RandomSelection, AreasAgreeWithTheCurves)
{
    draw(400);
    for (int i = 0; i < 60; ++i) {
        compareRectangle();
        comparePolygon(3 + unsigned(i) % 5);
    }
}

TEST_F(RandomSelection, AlsoAfterChanges)
{
    draw(200);
    for (int i = 0; i < 40; ++i) {
        VcDbEntity* moved = m_figures[std::size_t(i) * 3];
        moved->transformBy(VcGeMatrix3d::translation({number(-30, 30), number(-30, 30), 0}));
        m_figures[std::size_t(i) * 5]->erase(i % 3 != 0);
        compareRectangle();
        comparePolygon(4);
    }
}

}
