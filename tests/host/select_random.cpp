// Areas over random figures take through the index, the extents and the chords what the bare curves say one by one.
#include "host/db/curve_of.h"
#include "host/edit/pick.h"
#include "host/geom/region.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_text.h"
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

    // Of the nearest within reach the topmost, found by asking every curve.
    void comparePick(const VcGePoint3d& at)
    {
        const edit::Picker picker = edit::Picker::of(ed());
        double nearest = picker.view().reach;
        const VcDbEntity* expected = nullptr;
        for (const VcDbEntity* figure : m_figures) {
            const auto close = figure->isErased() ? std::nullopt : geom::closestPoint(*curveOf(*figure), at);
            if (close && close->distance <= nearest) {
                nearest = close->distance;
                expected = figure;
            }
        }
        const auto* picked = VcDbEntity::cast(ed().db().object(picker.entityAt(at)));
        ASSERT_EQ(picked == nullptr, expected == nullptr) << at.x << ", " << at.y;
        if (picked && picked != expected) {
            EXPECT_NEAR(geom::closestPoint(*curveOf(*picked), at)->distance, nearest, 1e-9);
        }
    }

    // The lines of a text have more room than what is drawn of them, by which it is found.
    bool mayBeAt(const VcDbEntity& figure, const VcGePoint3d& at)
    {
        VcDbExtents e;
        figure.getGeomExtents(e);
        const double reach = edit::Picker::of(ed()).view().reach;
        return geom::Box3d{e.minPoint(), e.maxPoint()}.grown(reach).contains(at);
    }

    VcGePoint3d pointBeside(const VcDbEntity& figure)
    {
        const auto curve = curveOf(figure);
        const auto [low, high] = geom::paramRange(*curve);
        const double reach = 2 * edit::Picker::of(ed()).view().reach;
        return geom::pointAt(*curve, number(low, high)) + VcGeVector3d(number(-reach, reach), number(-reach, reach), 0);
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

TEST_F(RandomSelection, PicksAgreeWithTheCurves)
{
    draw(300);
    for (const VcDbEntity* figure : m_figures)
        comparePick(pointBeside(*figure));
}

// What is moved, erased, brought back and drawn anew after the index was made.
TEST_F(RandomSelection, PicksFollowChangesAndUndo)
{
    draw(100);
    comparePick(point());
    UndoJournal& undo = ed().db().undo();
    undo.setRecording(true);
    for (int round = 0; round < 10; ++round) {
        const std::size_t mark = undo.mark();
        for (int i = 0; i < 30; ++i) {
            VcDbEntity* figure = m_figures[std::size_t(number(0, double(m_figures.size())))];
            if (i % 3)
                figure->transformBy(VcGeMatrix3d::translation({number(-30, 30), number(-30, 30), 0}));
            else
                figure->erase(!figure->isErased());
        }
        draw(5);
        for (const VcDbEntity* figure : m_figures)
            comparePick(pointBeside(*figure));
        if (round % 2 == 0)
            continue;
        undo.rollback(mark);
        for (const VcDbEntity* figure : m_figures)
            comparePick(pointBeside(*figure));
    }
}

// The quick distances say what the outlines say, of texts and figures in blocks too, in a view that is turned as well.
TEST_F(RandomSelection, SomethingIsPickedWhereAnOutlineIs)
{
    draw(60);
    for (int i = 0; i < 60; ++i) {
        auto* text = new VcDbText(point(), L"Ag|", number(1, 4), i % 2 ? 0 : number(0, 6));
        auto* note = new VcDbMText;
        note->setContents(L"first\\Psecond line");
        note->setLocation(point());
        note->setTextHeight(number(0.5, 2));
        note->setAttachment(VcDbMText::AttachmentPoint(1 + i % 9));
        for (VcDbEntity* entity : {static_cast<VcDbEntity*>(text), static_cast<VcDbEntity*>(note)}) {
            ASSERT_EQ(space().appendVcDbEntity(entity), Vcad::eOk);
            entity->close();
            m_figures.push_back(entity);
        }
    }
    const edit::Picker picker = edit::Picker::of(ed());
    std::size_t hits = 0;
    for (int i = 0; i < 500; ++i) {
        const VcGePoint3d at = point();
        const VcDbObjectId picked = picker.entityAt(at);
        const bool any = std::any_of(m_figures.begin(), m_figures.end(), [&](const VcDbEntity* f) { return mayBeAt(*f, at) && picker.isAt(f->objectId(), at); });
        EXPECT_EQ(!picked.isNull(), any) << at.x << ", " << at.y;
        EXPECT_TRUE(picked.isNull() || picker.isAt(picked, at));
        hits += any;
    }
    EXPECT_GT(hits, 20u);
}

}
