#include "ent1_support.h"

using namespace ent1;

namespace {

std::unique_ptr<VcDbBlockReference> reference(Drawing& d, const char* block, const VcGePoint3d& at = {})
{
    return std::make_unique<VcDbBlockReference>(at, d.block(block).objectId());
}

TEST(Ent1Insert, ExplodesIntoMembersInTheirPlace)
{
    Drawing d;
    d.block("B").setOrigin({1, 1, 0});
    d.add("B", std::make_unique<VcDbLine>(VcGePoint3d(1, 1, 0), VcGePoint3d(2, 1, 0)));
    d.add("B", std::make_unique<VcDbCircle>(VcGePoint3d(1, 2, 0), VcGeVector3d(0, 0, 1), 1));
    auto r = reference(d, "B", {10, 20, 0});
    r->setRotation(kPi / 2);
    r->setScaleFactors(VcGeScale3d(2));
    const auto pieces = explode(*r);
    ASSERT_EQ(pieces.size(), 2u);
    expectNear(VcDbLine::cast(pieces[0].get())->endPoint(), {10, 22, 0});
    expectNear(VcDbCircle::cast(pieces[1].get())->center(), {8, 20, 0});
    EXPECT_EQ(VcDbCircle::cast(pieces[1].get())->radius(), 2);
    EXPECT_TRUE(pieces[0]->objectId().isNull());
    expectExtents(*r, {6, 18, 0}, {10, 22, 0});
}

TEST(Ent1Insert, AnUnevenScaleMakesEllipses)
{
    Drawing d;
    d.add("B", std::make_unique<VcDbCircle>(VcGePoint3d(0, 0, 0), VcGeVector3d(0, 0, 1), 1));
    auto bent = std::make_unique<VcDbPolyline>();
    bent->addVertexAt(0, {0, 0}, 1);
    bent->addVertexAt(1, {2, 0});
    bent->addVertexAt(2, {3, 0});
    d.add("B", std::move(bent));
    auto r = reference(d, "B");
    r->setScaleFactors(VcGeScale3d(3, -1, 1));
    const auto pieces = explode(*r);
    ASSERT_EQ(pieces.size(), 3u);
    const auto* round = VcDbEllipse::cast(pieces[0].get());
    ASSERT_TRUE(round);
    EXPECT_NEAR(round->majorAxis().length(), 3, 1e-9);
    EXPECT_NEAR(round->radiusRatio(), 1 / 3.0, 1e-9);
    EXPECT_TRUE(VcDbEllipse::cast(pieces[1].get()));
    expectNear(VcDbLine::cast(pieces[2].get())->endPoint(), {9, 0, 0});
    expectExtents(*r, {-3, -1, 0}, {9, 1, 0});
}

TEST(Ent1Insert, ANestedReferenceKeepsItsAttributes)
{
    Drawing d;
    d.add("INNER", std::make_unique<VcDbLine>(VcGePoint3d(0, 0, 0), VcGePoint3d(1, 0, 0)));
    auto inner = reference(d, "INNER", {5, 0, 0});
    auto* attribute = new VcDbAttribute;
    attribute->setTag(L"N");
    attribute->setPosition({5, 1, 0});
    inner->appendAttribute(attribute);
    const VcDbBlockReference& nested = d.add("OUTER", std::move(inner));
    ASSERT_EQ(nested.subEntities()->size(), 1u);
    EXPECT_FALSE(nested.endMark().isNull());

    const auto pieces = explode(*reference(d, "OUTER", {100, 0, 0}));
    ASSERT_EQ(pieces.size(), 1u);
    auto* moved = VcDbBlockReference::cast(pieces[0].get());
    ASSERT_TRUE(moved);
    expectNear(moved->position(), {105, 0, 0});
    ASSERT_EQ(moved->attributes().size(), 1u);
    const auto* copy = VcDbAttribute::cast(moved->attributes()[0]);
    expectNear(copy->position(), {105, 1, 0});
    EXPECT_STREQ(copy->tagConst(), L"N");
    // The original keeps its own.
    expectNear(VcDbAttribute::cast(nested.attributes()[0])->position(), {5, 1, 0});
}

// Turned by half a right angle, an uneven scale around the nested reference makes its axes oblique.
TEST(Ent1Insert, ANestedReferenceThatBecomesObliqueIsTakenApart)
{
    Drawing d;
    d.add("INNER", std::make_unique<VcDbLine>(VcGePoint3d(0, 0, 0), VcGePoint3d(1, 0, 0)));
    auto inner = reference(d, "INNER");
    inner->setRotation(kPi / 4);
    d.add("OUTER", std::move(inner));
    auto r = reference(d, "OUTER");
    r->setScaleFactors(VcGeScale3d(2, 1, 1));
    const auto pieces = explode(*r);
    ASSERT_EQ(pieces.size(), 1u);
    const auto* line = VcDbLine::cast(pieces[0].get());
    ASSERT_TRUE(line);
    expectNear(line->endPoint(), {2 * std::sqrt(0.5), std::sqrt(0.5), 0});
    EXPECT_EQ(VcDbBlockReference::cast(r.get())->transformBy(shear()), Vcad::eCannotScaleNonUniformly);
}

TEST(Ent1Insert, ABlockThatMayNotBeExplodedIsNot)
{
    Drawing d;
    d.add("B", std::make_unique<VcDbPoint>(VcGePoint3d(0, 0, 0)));
    d.block("B").setExplodable(false);
    std::vector<VcDbEntity*> none;
    EXPECT_NE(reference(d, "B")->explode(none), Vcad::eOk);
    EXPECT_TRUE(none.empty());
}

TEST(Ent1Insert, ABlockWithinItselfEnds)
{
    Drawing d;
    d.add("A", std::make_unique<VcDbLine>(VcGePoint3d(0, 0, 0), VcGePoint3d(1, 1, 0)));
    d.add("A", reference(d, "B", {2, 0, 0}));
    d.add("B", reference(d, "A", {3, 0, 0}));
    VcDbExtents box;
    EXPECT_EQ(reference(d, "A")->getGeomExtents(box), Vcad::eOk);
    EXPECT_GE(box.maxPoint().x, 1);
}

// Thirty levels of two references each would be a thousand million members.
TEST(Ent1Insert, ExtentsOfDeepNestingCostNoMoreThanItsDefinitions)
{
    Drawing d;
    d.add("L0", std::make_unique<VcDbLine>(VcGePoint3d(0, 0, 0), VcGePoint3d(1, 0, 0)));
    for (int level = 1; level <= 30; ++level)
        for (const double x : {0.0, 1.0})
            d.add(("L" + std::to_string(level)).c_str(),
                  reference(d, ("L" + std::to_string(level - 1)).c_str(), {x, 0, 0}));
    expectExtents(*reference(d, "L30"), {0, 0, 0}, {31, 0, 0});
}

TEST(Ent1Insert, AMirrorTurnsOneFactorNegative)
{
    Drawing d;
    d.add("B", std::make_unique<VcDbLine>(VcGePoint3d(0, 0, 0), VcGePoint3d(2, 1, 0)));
    auto r = reference(d, "B", {5, 5, 0});
    r->setRotation(0.5);
    const VcGeMatrix3d whole = mirrorInX() * r->blockTransform();
    ASSERT_EQ(r->transformBy(mirrorInX()), Vcad::eOk);
    EXPECT_TRUE(r->blockTransform().isEqualTo(whole, VcGeTol{1e-9, 1e-9}));
    EXPECT_EQ(r->normal(), VcGeVector3d(0, 0, 1));
    EXPECT_NE(r->setScaleFactors(VcGeScale3d(1, 0, 1)), Vcad::eOk);
}

TEST(Ent1MInsert, ExplodesIntoAReferenceForEachCell)
{
    Drawing d;
    d.add("B", std::make_unique<VcDbLine>(VcGePoint3d(0, 0, 0), VcGePoint3d(1, 1, 0)));
    VcDbMInsertBlock grid;
    grid.setBlockTableRecord(d.block("B").objectId());
    grid.setPosition({100, 0, 0});
    ASSERT_EQ(grid.setColumns(3), Vcad::eOk);
    ASSERT_EQ(grid.setRows(2), Vcad::eOk);
    ASSERT_EQ(grid.setColumnSpacing(10), Vcad::eOk);
    ASSERT_EQ(grid.setRowSpacing(-5), Vcad::eOk);
    EXPECT_NE(grid.setRows(0), Vcad::eOk);
    const auto cells = explode(grid);
    ASSERT_EQ(cells.size(), 6u);
    expectNear(VcDbBlockReference::cast(cells[2].get())->position(), {120, 0, 0});
    expectNear(VcDbBlockReference::cast(cells[4].get())->position(), {110, -5, 0});
    expectExtents(grid, {100, -5, 0}, {121, 1, 0});

    grid.setRotation(kPi / 2);
    expectNear(VcDbBlockReference::cast(explode(grid)[2].get())->position(), {100, 20, 0});
    ASSERT_EQ(grid.transformBy(VcGeMatrix3d::scaling(2)), Vcad::eOk);
    EXPECT_EQ(grid.columnSpacing(), 20);
    grid.setRows(32767);
    grid.setColumns(32767);
    std::vector<VcDbEntity*> none;
    EXPECT_NE(grid.explode(none), Vcad::eOk);
}

}
