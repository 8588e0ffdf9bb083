// Picks, windows, crossings and fences on objects of every simple kind.
#include "host/edit/pick.h"
#include "host/edit/pick_service.h"
#include "host/edit/view.h"
#include "sdk/vcdb_faces.h"
#include "tests/host/select_support.h"

#include <chrono>

using namespace seltest;
using namespace vk::edit;

namespace {

class Pick : public Drawing {
protected:
    // A view 100 high: a pick reaches 0.28.
    static void setView() { currentView(ed()).height = 100; }
    std::string at(double x, double y)
    {
        setView();
        const VcDbObjectId id = pickEntity(ed(), {x, y, 0}, false);
        return id.isNull() ? "" : letterOf(id);
    }
    std::string rectangle(SelectArea::Kind kind, double x1, double y1, double x2, double y2)
    {
        setView();
        const Picker picker = Picker::of(ed());
        return letters(picker.takenBy(SelectArea::rectangle(picker.view(), {x1, y1, 0}, {x2, y2, 0}, kind)));
    }
    std::string window(double x1, double y1, double x2, double y2)
    {
        return rectangle(SelectArea::Kind::Window, x1, y1, x2, y2);
    }
    std::string crossing(double x1, double y1, double x2, double y2)
    {
        return rectangle(SelectArea::Kind::Crossing, x1, y1, x2, y2);
    }
    std::string polygon(SelectArea::Kind kind, const std::vector<VcGePoint3d>& points)
    {
        setView();
        const Picker picker = Picker::of(ed());
        return letters(picker.takenBy(SelectArea::polygon(picker.view(), points, kind)));
    }
    VcDbPolyline& polyline(const std::vector<VcGePoint2d>& points, bool closed, double bulge = 0)
    {
        auto* p = new VcDbPolyline;
        for (unsigned i = 0; i < points.size(); ++i)
            p->addVertexAt(i, points[i], bulge);
        p->setClosed(closed);
        return add(p);
    }
};

struct PickCase {
    const char* name;
    double x, y;
    const char* hit;
};

TEST_F(Pick, EachKindByItsOwnShape)
{
    line(0, 0, 10, 10);                                                         // a
    circle(30, 0, 10);                                                          // b
    add(new VcDbArc({60, 0, 0}, VcGeVector3d::zAxis(), 10, 0, kPi / 2));        // c
    polyline({{0, 30}, {10, 30}, {10, 40}}, false);                             // d
    polyline({{30, 30}, {40, 30}}, false, 1);                                   // e: half a circle below
    add(new VcDbPoint({60, 30, 0}));                                            // f
    text(0, 60, L"Text");                                                       // g
    add(new VcDbEllipse({60, 60, 0}, VcGeVector3d::zAxis(), {10, 0, 0}, 0.5));  // h
    add(new VcDbSolid({80, 0, 0}, {90, 0, 0}, {80, 10, 0}, {90, 10, 0}));       // i
    polyline({{80, 30}, {90, 30}}, false).setConstantWidth(4);                  // j
    auto* ray = new VcDbRay;
    ray->setBasePoint({0, 90, 0});
    ray->setUnitDir({1, 0, 0});
    add(ray);  // k
    const PickCase cases[] = {
        {"OnTheLine", 5, 5, "a"},          {"BesideIt", 5, 5.3, "a"},         {"InItsBoxButOff", 8, 2, ""},
        {"BeyondItsEnd", 10.5, 10.5, ""},  {"OnTheCircle", 40, 0, "b"},       {"WithinTheCircle", 30, 0, ""},
        {"CircleSlant", 37.07, 7.07, "b"}, {"OnTheArc", 60, 10, "c"},         {"WhereTheArcIsNot", 60, -10, ""},
        {"OnThePolyline", 10, 35, "d"},    {"NotAcrossIt", 5, 35, ""},        {"OnTheBulge", 35, 25, "e"},
        {"NotOnItsChord", 35, 30, ""},     {"Point", 60.2, 30, "f"},          {"WithinTheText", 0.5, 60.5, "g"},
        {"OnTheEllipse", 60, 65, "h"},     {"EllipseIsNoCircle", 60, 70, ""}, {"WithinTheSolid", 85, 5, "i"},
        {"WithinTheWidth", 85, 31.5, "j"}, {"BesideTheWidth", 85, 32.5, ""},  {"FarAlongTheRay", 5000, 90, "k"},
        {"BehindTheRay", -5, 90, ""},
    };
    for (const PickCase& c : cases)
        EXPECT_EQ(at(c.x, c.y), c.hit) << c.name;
}

TEST_F(Pick, TheNearestWinsAndOfEqualsTheLast)
{
    line(0, 0, 10, 0);
    line(0, 0.2, 10, 0.2);
    line(0, 0, 10, 0);
    EXPECT_EQ(at(5, 0), "c");
    EXPECT_EQ(at(5, 0.15), "b");
}

TEST_F(Pick, WhatIsNotSeenIsNotPicked)
{
    line(0, 0, 10, 0, "Off");
    line(0, 5, 10, 5, "Frozen");
    line(0, 10, 10, 10, "Locked");
    line(0, 15, 10, 15).setVisibility(VcDb::kInvisible);
    line(0, 20, 10, 20).erase();
    layer("Off").setIsOff(true);
    ASSERT_EQ(layer("Frozen").setIsFrozen(true), Vcad::eOk);
    layer("Locked").setIsLocked(true);
    EXPECT_EQ(at(5, 0), "");
    EXPECT_EQ(at(5, 5), "");
    EXPECT_EQ(at(5, 10), "c");
    EXPECT_EQ(at(5, 15), "");
    EXPECT_EQ(at(5, 20), "");
    EXPECT_EQ(crossing(-1, -1, 11, 21), "c");
}

TEST_F(Pick, ChangesAreSeenAtOnce)
{
    VcDbLine& a = line(0, 0, 10, 0);
    EXPECT_EQ(at(5, 0), "a");
    a.setStartPoint({0, 50, 0});
    a.setEndPoint({10, 50, 0});
    EXPECT_EQ(at(5, 0), "");
    EXPECT_EQ(at(5, 50), "a");
    a.erase();
    EXPECT_EQ(at(5, 50), "");
    a.erase(false);
    EXPECT_EQ(at(5, 50), "a");
    line(0, 70, 10, 70);
    EXPECT_EQ(at(5, 70), "b");
}

TEST_F(Pick, AReferenceFollowsItsBlock)
{
    VcDbLine* inner = &add(new VcDbLine({0, 0, 0}, {1, 0, 0}), "0", &block("B"));
    insert("B", 10, 10);
    EXPECT_EQ(at(10.5, 10), "a");
    inner->setEndPoint({50, 0, 0});
    EXPECT_EQ(at(40, 10), "a");
}

TEST_F(Pick, WindowsHoldAndCrossingsTouch)
{
    line(0, 0, 10, 10);     // a
    line(20, 0, 30, 10);    // b
    circle(50, 5, 5);       // c
    line(-5, 50, 100, 50);  // d
    EXPECT_EQ(window(-1, -1, 31, 11), "ab");
    EXPECT_EQ(window(31, 11, -1, -1), "ab") << "the corners in any order";
    EXPECT_EQ(window(0, 0, 10, 10), "a") << "touching from inside is within";
    EXPECT_EQ(window(-1, -1, 9, 9), "");
    EXPECT_EQ(crossing(-1, -1, 9, 9), "a");
    EXPECT_EQ(crossing(6, 0, 10, 4), "") << "its box is touched, the line is not";
    EXPECT_EQ(crossing(49, 4, 51, 6), "") << "within a circle is not on it";
    EXPECT_EQ(crossing(54, 4, 60, 6), "c");
    EXPECT_EQ(crossing(20, 40, 30, 60), "d");
    EXPECT_EQ(window(44, -1, 56, 11), "c");
    EXPECT_EQ(window(45.1, -1, 56, 11), "");
}

TEST_F(Pick, PolygonsAndFences)
{
    using Kind = SelectArea::Kind;
    line(1, 1, 2, 1);  // a: in the left arm
    line(8, 1, 9, 1);  // b: in the right arm
    line(1, 8, 9, 8);  // c: across the gap
    line(4, 8, 6, 8);  // d: in the gap
    const std::vector<VcGePoint3d> u{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {7, 10, 0},
                                     {7, 3, 0}, {3, 3, 0},  {3, 10, 0},  {0, 10, 0}};
    EXPECT_EQ(polygon(Kind::Window, u), "ab") << "both ends within, but the middle is not";
    EXPECT_EQ(polygon(Kind::Crossing, u), "abc");
    std::vector<VcGePoint3d> closed = u;
    closed.push_back(u.front());
    EXPECT_EQ(polygon(Kind::Crossing, closed), "abc") << "the first point once more at the end";
    EXPECT_EQ(polygon(Kind::Fence, {{5, 20, 0}, {5, 5, 0}}), "cd");
    EXPECT_EQ(polygon(Kind::Fence, {{5, 20, 0}, {5, 9, 0}}), "");
    EXPECT_EQ(polygon(Kind::Fence, {{1.5, 0, 0}, {1.5, 2, 0}, {8.5, 2, 0}, {8.5, 0, 0}}), "ab");
}

TEST_F(Pick, MembersOfBlocksByTheReference)
{
    add(new VcDbCircle({0, 0, 0}, VcGeVector3d::zAxis(), 2), "0", &block("RING"));
    VcDbBlockReference& ring = insert("RING", 20, 20);
    ring.setScaleFactors(VcGeScale3d(2, 2, 2));
    EXPECT_EQ(at(24, 20), "a");
    EXPECT_EQ(at(20, 20), "");
    EXPECT_EQ(crossing(19, 19, 21, 21), "");
    EXPECT_EQ(crossing(23, 19, 25, 21), "a");
    EXPECT_EQ(window(15, 15, 25, 25), "a");
    layer("0").setIsOff(true);
    EXPECT_EQ(at(24, 20), "") << "members on layer 0 go with their reference";
}

TEST_F(Pick, AReferenceOnAHiddenLayerShowsOtherLayersOfItsBlock)
{
    add(new VcDbLine({0, 0, 0}, {10, 0, 0}), "Seen", &block("B"));
    add(new VcDbLine({0, 5, 0}, {10, 5, 0}), "0", &block("B"));
    insert("B", 0, 0, "Ref");
    layer("Ref").setIsOff(true);
    EXPECT_EQ(at(5, 0), "a");
    EXPECT_EQ(at(5, 5), "");
    layer("Ref").setIsFrozen(true);
    EXPECT_EQ(at(5, 0), "");
}

TEST_F(Pick, BlocksThatHoldThemselvesEnd)
{
    VcDbBlockTableRecord& loop = block("LOOP");
    add(new VcDbLine({0, 0, 0}, {10, 0, 0}), "0", &loop);
    insert("LOOP", 0, 0);
    add(new VcDbBlockReference({1, 1, 0}, loop.objectId()), "0", &loop);
    EXPECT_EQ(at(5, 0), "a");
}

TEST_F(Pick, NestedGivesThePathAndTheMatrix)
{
    VcDbLine& inner = add(new VcDbLine({0, 0, 0}, {1, 0, 0}), "0", &block("INNER"));
    auto& middle = add(new VcDbBlockReference({10, 0, 0}, block("INNER").objectId()), "0", &block("OUTER"));
    VcDbBlockReference& outer = insert("OUTER", 0, 50);
    outer.setScaleFactors(VcGeScale3d(3, 3, 3));
    setView();
    const auto pick = Picker::of(ed()).nestedAt({31.5, 50, 0});
    ASSERT_TRUE(pick);
    EXPECT_EQ(pick->entity, inner.objectId());
    EXPECT_EQ(pick->containers, (std::vector<VcDbObjectId>{middle.objectId(), outer.objectId()}));
    const VcGePoint3d end = pick->toWorld * VcGePoint3d(1, 0, 0);
    EXPECT_NEAR(end.x, 33, 1e-9);
    EXPECT_NEAR(end.y, 50, 1e-9);
}

TEST_F(Pick, EveryCellOfAGrid)
{
    add(new VcDbLine({0, 0, 0}, {1, 0, 0}), "0", &block("TICK"));
    auto* grid = new VcDbMInsertBlock;
    grid->setBlockTableRecord(block("TICK").objectId());
    grid->setColumns(3);
    grid->setRows(2);
    grid->setColumnSpacing(10);
    grid->setRowSpacing(20);
    grid->setRotation(kPi / 2);
    add(grid);
    EXPECT_EQ(at(0, 20.5), "a") << "third column, turned upwards";
    EXPECT_EQ(at(-20, 10.5), "a") << "second row, turned to the left";
    EXPECT_EQ(at(20.5, 0), "");
    setView();
    const auto pick = Picker::of(ed()).nestedAt({-20, 10.5, 0});
    ASSERT_TRUE(pick);
    EXPECT_NEAR((pick->toWorld * VcGePoint3d(1, 0, 0)).distanceTo({-20, 11, 0}), 0, 1e-9);
}

TEST_F(Pick, AnAttributeStandsForItselfNestedAndForItsReferenceOtherwise)
{
    block("TITLE");
    VcDbBlockReference& title = insert("TITLE", 0, 0);
    auto* attribute = new VcDbAttribute;
    attribute->setTag(L"NAME");
    attribute->setPosition({40, 40, 0});
    attribute->setHeight(2);
    attribute->setTextString(L"VALUE");
    attribute->setLayer(layer("0").objectId());
    VcDbObjectId id;
    title.assertWriteEnabled();
    ASSERT_EQ(title.appendAttribute(id, attribute), Vcad::eOk);
    attribute->close();
    EXPECT_EQ(at(41, 41), "a");
    setView();
    const auto pick = Picker::of(ed()).nestedAt({41, 41, 0});
    ASSERT_TRUE(pick);
    EXPECT_EQ(pick->entity, id);
    EXPECT_TRUE(pick->containers.empty());
    EXPECT_EQ(pick->toWorld, VcGeMatrix3d());
    attribute->setInvisible(true);
    EXPECT_EQ(at(41, 41), "");
}

TEST_F(Pick, APickOfANamedObjectMissesUnlessThePointLiesOnIt)
{
    line(0, 0, 10, 0);
    line(0, 0, 10, 0);
    setView();
    EXPECT_TRUE(entityIsAt(ed(), idOf('a'), {5, 0.1, 0})) << "whatever lies above it";
    EXPECT_FALSE(entityIsAt(ed(), idOf('a'), {5, 1, 0}));
    EXPECT_FALSE(entityIsAt(ed(), {}, {5, 0, 0}));
}

// What an index that followed every change finds is what a fresh look at the drawing finds.
TEST_F(Pick, TheIndexFollowsWhateverHappens)
{
    std::vector<VcDbLine*> lines;
    for (int i = 0; i < 200; ++i)
        lines.push_back(&add(new VcDbLine({i * 1.0, 0, 0}, {i * 1.0, 1, 0})));
    add(new VcDbCircle({0, 0, 0}, VcGeVector3d::zAxis(), 1), "0", &block("DOT"));
    VcDbBlockReference& dot = insert("DOT", 50, 0);
    unsigned seed = 7;
    const auto random = [&](unsigned below) { return (seed = seed * 1103515245u + 12345u) / 65536u % below; };
    const std::size_t start = db().undo().mark();
    setView();
    for (int round = 0; round < 60; ++round) {
        VcDbLine& line = *lines[random(200)];
        switch (random(5)) {
        case 0:
            line.erase(!line.isErased());
            break;
        case 1:
            line.setEndPoint({double(random(200)), double(random(50)), 0});
            break;
        case 2:
            lines[random(200)] = &add(new VcDbLine({double(random(200)), 0, 0}, {double(random(200)), 9, 0}));
            break;
        case 3:
            dot.setPosition({double(random(200)), 0, 0});
            break;
        default:
            if (db().undo().size() > start + 4)
                db().undo().rollback(db().undo().size() - 3);
        }
        const Picker picker = Picker::of(ed());
        const auto area = SelectArea::rectangle(picker.view(), {40, -1, 0}, {90, 20, 0}, SelectArea::Kind::Crossing);
        std::vector<VcDbObjectId> expected;
        for (const std::uint32_t slot : space().memberSlots())
            if (auto* e = VcDbEntity::cast(db().objectAt(slot));
                !e->isErased() && area.takes(db(), picker.layers(), *e))
                expected.push_back(e->objectId());
        ASSERT_EQ(picker.takenBy(area), expected) << "round " << round;
    }
}

TEST_F(Pick, AWindowHoldsTheWidthToo)
{
    polyline({{0, 10}, {10, 10}}, false).setConstantWidth(4);
    EXPECT_EQ(window(-1, 9, 11, 11), "");
    EXPECT_EQ(window(-1, 7, 11, 13), "a");
    EXPECT_EQ(crossing(-1, 11.5, 11, 20), "a");
}

TEST_F(Pick, APickInALargeDrawingLooksAtFewObjects)
{
    for (int i = 0; i < 100000; ++i)
        space().appendVcDbEntity(new VcDbLine({i * 1.0, 0, 0}, {i * 1.0, 10, 0}));
    setView();
    const Picker picker = Picker::of(ed());
    EXPECT_FALSE(picker.entityAt({5000, 5, 0}).isNull());
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 2000; ++i) {
        auto* line = VcDbLine::cast(db().objectAt(space().memberSlots()[std::size_t(i)]));
        line->setEndPoint({i * 1.0, 11, 0});
        EXPECT_FALSE(picker.entityAt({i * 40.0, 5, 0}).isNull());
    }
    EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 2.0);
}

TEST_F(Pick, TextsOfAnyRotation)
{
    VcDbText& slanted = text(0, 0, L"MMMMMMMMMM");
    slanted.setRotation(kPi / 4);
    EXPECT_EQ(at(3, 3.5), "a");
    EXPECT_EQ(at(3, 0.5), "") << "in its box, beside the text";
    EXPECT_EQ(at(1, 5), "");
}

TEST_F(Pick, SeenFromTheSide)
{
    add(new VcDbLine({0, 0, 5}, {10, 0, 5}));
    setView();
    currentView(ed()).direction = {0, -1, 0};
    const Picker picker = Picker::of(ed());
    EXPECT_EQ(letterOf(picker.entityAt({5, 77, 5})), "a") << "the distance along the line of sight does not count";
    EXPECT_TRUE(picker.entityAt({5, 0, 0}).isNull());
    EXPECT_EQ(
        letters(picker.takenBy(SelectArea::rectangle(picker.view(), {-1, 0, 4}, {11, 0, 6}, SelectArea::Kind::Window))),
        "a");
}

}
