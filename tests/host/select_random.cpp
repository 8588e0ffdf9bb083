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
            return new VcDbEllipse(at, VcGeVector3d::zAxis(), {number(1, 12), number(1, 12), 0}, number(0.1, 1),
                                   number(0, 3), number(3.1, 6));
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
        const auto taken = [&](SelectArea::Kind kind) {
            return picker.takenBy(SelectArea::polygon(picker.view(), points, kind));
        };
        EXPECT_EQ(taken(SelectArea::Kind::Window), byCurves([&](const geom::Curve& c) { return region.contains(c); }));
        EXPECT_EQ(taken(SelectArea::Kind::Crossing), byCurves([&](const geom::Curve& c) { return region.touches(c); }));
        EXPECT_EQ(taken(SelectArea::Kind::Fence),
                  byCurves([&](const geom::Curve& c) { return geom::fenceTouches(flat, c); }));
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

// The quick distances say what the outlines say, of texts, notes and references that are turned, mirrored and stretched.
class RandomPicks : public RandomSelection {
protected:
    template <class T>
    T& add(T* entity, VcDbBlockTableRecord& owner)
    {
        EXPECT_EQ(owner.appendVcDbEntity(entity), Vcad::eOk);
        entity->close();
        return *entity;
    }
    VcDbText* text() { return new VcDbText(point(), L"Ag|", number(1, 4), m_random() % 2 ? 0 : number(0, 6)); }
    VcDbMText* note()
    {
        auto* note = new VcDbMText;
        note->setContents(L"first\\Psecond line");
        note->setLocation(point());
        note->setTextHeight(number(0.5, 2));
        note->setAttachment(VcDbMText::AttachmentPoint(1 + m_random() % 9));
        return note;
    }
    VcDbObjectId smallBlock()
    {
        auto& block = *ed().db().objectAs<VcDbBlockTableRecord>(ed().db().recordFor(NameTable::Block, "SMALL"));
        add(new VcDbLine({0, 0, 0}, {4, 3, 0}), block);
        add(new VcDbCircle({5, 0, 0}, VcGeVector3d::zAxis(), 2), block);
        add(new VcDbArc({0, 5, 0}, VcGeVector3d::zAxis(), 2, 1, 4), block);
        add(new VcDbText({3, 5, 0}, L"in", 1.5, 0), block);
        return block.objectId();
    }
    VcDbBlockReference* reference(VcDbObjectId block)
    {
        constexpr double kScales[][2] = {{1, 1}, {-2, 2}, {0.5, -0.5}, {1, 3}};
        const auto& [sx, sy] = kScales[m_random() % 4];
        auto* reference = new VcDbBlockReference(point(), block);
        reference->setScaleFactors({sx, sy, 1});
        reference->setRotation(number(0, 6));
        return reference;
    }
    void drawAll()
    {
        const VcDbObjectId block = smallBlock();
        for (int i = 0; i < 40; ++i)
            for (VcDbEntity* entity : {static_cast<VcDbEntity*>(text()), static_cast<VcDbEntity*>(note()),
                                       static_cast<VcDbEntity*>(reference(block))})
                m_figures.push_back(&add(entity, space()));
    }

    static double toPiece(const VcGePoint3d& p, const VcGePoint3d& a, const VcGePoint3d& b)
    {
        const VcGeVector3d along = b - a;
        const double t =
            along.lengthSqrd() > 0 ? std::clamp((p - a).dotProduct(along) / along.lengthSqrd(), 0.0, 1.0) : 0;
        return p.distanceTo(a + along * t);
    }
    static double toOutline(const VcGePoint3d& p, const edit::Outline& outline)
    {
        double nearest = 1e300;
        bool inside = false;
        const std::size_t n = outline.points.size();
        for (std::size_t i = 0; i < (outline.filled ? n : n - 1); ++i) {
            const VcGePoint3d &a = outline.points[i], &b = outline.points[(i + 1) % n];
            nearest = std::min(nearest, toPiece(p, a, b));
            if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (b.x - a.x) * (p.y - a.y) / (b.y - a.y))
                inside = !inside;
        }
        return outline.filled && inside ? 0 : nearest;
    }
    double distanceTo(const VcDbEntity& figure, const VcGePoint3d& at)
    {
        const edit::SeenLayers layers = edit::SeenLayers::of(ed());
        double nearest = 1e300;
        edit::ShapeWalk(ed().db(), layers, {.tolerance = 1e-6, .area = {}})
            .walk(figure, [&](const edit::Outline& outline) {
                nearest = std::min(nearest, toOutline(at, outline));
                return true;
            });
        return nearest;
    }
};

TEST_F(RandomPicks, TheNearestOutlineIsPicked)
{
    drawAll();
    const edit::Picker picker = edit::Picker::of(ed());
    const double reach = picker.view().reach;
    std::size_t hits = 0;
    for (int i = 0; i < 600; ++i) {
        const VcGePoint3d at = point();
        double nearest = 1e300;
        for (const VcDbEntity* figure : m_figures)
            if (mayBeAt(*figure, at))
                nearest = std::min(nearest, distanceTo(*figure, at));
        if (std::fabs(nearest - reach) < 1e-4)
            continue;
        const auto* picked = VcDbEntity::cast(ed().db().object(picker.entityAt(at)));
        ASSERT_EQ(picked != nullptr, nearest < reach) << at.x << ", " << at.y;
        if (picked) {
            ++hits;
            EXPECT_NEAR(distanceTo(*picked, at), nearest, 1e-5);
        }
    }
    EXPECT_GT(hits, 50u);
}

}
