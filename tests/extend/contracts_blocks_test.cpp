// What commands may lean on about blocks and the references to them.
#include "tests/extend/sdk_support.h"

namespace {

class BlockRules : public SdkTest {
protected:
    static VcDbObjectId recordId(const wchar_t* name)
    {
        VcDbBlockTable* table = nullptr;
        EXPECT_EQ(editor().drawing().getSymbolTable(table), Vcad::eOk);
        VcDbObjectId id;
        EXPECT_EQ(table->getAt(name, id), Vcad::eOk) << testing::PrintToString(std::wstring(name));
        table->close();
        return id;
    }
    static std::size_t references(const wchar_t* name, bool directOnly)
    {
        auto* record = opened<VcDbBlockTableRecord>(recordId(name));
        VcDbObjectIdArray ids;
        EXPECT_EQ(record->getBlockReferenceIds(ids, directOnly), Vcad::eOk);
        record->close();
        return ids.size();
    }
    static void nest(const wchar_t* outer, const wchar_t* inner)
    {
        const vds_point origin = {0, 0, 0};
        ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"BLOCK", 2, outer, 70, 0, 10, origin, RTNONE)).get()),
                  RTNORM);
        ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"INSERT", 8, L"0", 2, inner, 10, origin, RTNONE)).get()),
                  RTNORM);
        ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"ENDBLK", RTNONE)).get()), RTKWORD);
    }
    static std::wstring added(const wchar_t* name)
    {
        auto* record = new VcDbBlockTableRecord;
        EXPECT_EQ(record->setName(name), Vcad::eOk);
        VcDbBlockTable* table = nullptr;
        EXPECT_EQ(editor().drawing().getSymbolTable(table, VcDb::kForWrite), Vcad::eOk);
        EXPECT_EQ(table->add(record), Vcad::eOk);
        table->close();
        wchar_t* given = nullptr;
        EXPECT_EQ(record->getName(given), Vcad::eOk);
        const std::wstring copy = given;
        vcutDelString(given);
        EXPECT_EQ(record->isAnonymous(), copy.starts_with(L"*"));
        record->close();
        return copy;
    }
    // Types of what a reference explodes into, as the object interface gives it.
    static std::vector<VcDbEntity*> pieces(const Name& name)
    {
        auto* entity = opened<VcDbEntity>(idOf(name));
        std::vector<VcDbEntity*> all;
        EXPECT_EQ(entity->explode(all), Vcad::eOk);
        entity->close();
        return all;
    }
};

TEST_F(BlockRules, ReferencesAreCountedDirectlyOrOutward)
{
    block(L"IN");
    nest(L"MID", L"IN");
    nest(L"OUT", L"MID");
    EXPECT_EQ(references(L"IN", true), 1u) << "within MID";
    insert(L"IN", 0, 0);
    insert(L"OUT", 0, 0);
    const Name last = insert(L"OUT", 5, 5);
    EXPECT_EQ(references(L"IN", true), 2u);
    EXPECT_EQ(references(L"OUT", true), 2u);
    EXPECT_EQ(references(L"IN", false), 5u) << "those, the one to MID, the two to OUT";
    ASSERT_EQ(vcdbEntDel(last), RTNORM);
    EXPECT_EQ(references(L"IN", false), 4u);
    EXPECT_EQ(references(L"OUT", true), 1u);
}

TEST_F(BlockRules, ARecordWithReferencesIsNotErased)
{
    block(L"B");
    const Name reference = insert(L"B", 0, 0);
    auto* record = opened<VcDbBlockTableRecord>(recordId(L"B"), VcDb::kForWrite);
    EXPECT_NE(record->erase(), Vcad::eOk);
    record->close();
    ASSERT_EQ(vcdbEntDel(reference), RTNORM);
    record = opened<VcDbBlockTableRecord>(recordId(L"B"), VcDb::kForWrite);
    EXPECT_EQ(record->erase(), Vcad::eOk);
    record->close();
    EXPECT_FALSE(RbPtr(vcdbTblSearch(L"BLOCK", L"B", 0)));
}

TEST_F(BlockRules, NamesThatBeginWithAStarAreNumbered)
{
    EXPECT_EQ(added(L"*U"), L"*U1");
    EXPECT_EQ(added(L"*U1"), L"*U2");
    EXPECT_EQ(added(L"*D7"), L"*D1");
    EXPECT_EQ(added(L"Plain"), L"Plain");
}

TEST_F(BlockRules, UnevenScalesExplodeCirclesIntoEllipses)
{
    const vds_point origin = {0, 0, 0};
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"BLOCK", 2, L"ROUND", 70, 0, 10, origin, RTNONE)).get()),
              RTNORM);
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"CIRCLE", 8, L"0", 10, origin, 40, 2.0, RTNONE)).get()), RTNORM);
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"ENDBLK", RTNONE)).get()), RTKWORD);
    const vds_point at = {10, 0, 0};
    const Name uneven =
        made(vcutBuildList(RTDXF0, L"INSERT", 8, L"0", 2, L"ROUND", 10, at, 41, 3.0, 42, 1.0, 43, 1.0, RTNONE));
    const Name even =
        made(vcutBuildList(RTDXF0, L"INSERT", 8, L"0", 2, L"ROUND", 10, at, 41, 3.0, 42, 3.0, 43, 3.0, RTNONE));
    auto parts = pieces(uneven);
    ASSERT_EQ(parts.size(), 1u);
    const auto* ellipse = VcDbEllipse::cast(parts[0]);
    ASSERT_TRUE(ellipse);
    EXPECT_NEAR(ellipse->majorAxis().length(), 6, 1e-9);
    EXPECT_NEAR(ellipse->radiusRatio(), 1.0 / 3, 1e-9);
    EXPECT_TRUE(ellipse->center().isEqualTo({10, 0, 0}));
    delete parts[0];
    parts = pieces(even);
    ASSERT_EQ(parts.size(), 1u);
    ASSERT_TRUE(VcDbCircle::cast(parts[0]));
    EXPECT_NEAR(VcDbCircle::cast(parts[0])->radius(), 6, 1e-9);
    delete parts[0];
}

TEST_F(BlockRules, ExplodingKeepsWhatIsNotDrawn)
{
    const vds_point origin = {0, 0, 0};
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"BLOCK", 2, L"T", 70, 2, 10, origin, RTNONE)).get()), RTNORM);
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"ATTDEF", 8, L"0", 10, origin, 40, 2.0, 1, L"x", 3, L"P", 2,
                                              L"TAG", 70, 0, RTNONE))
                              .get()),
              RTNORM);
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"ENDBLK", RTNONE)).get()), RTKWORD);
    // A reference with an attribute, within a definition.
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"BLOCK", 2, L"HOLDS", 70, 0, 10, origin, RTNONE)).get()),
              RTNORM);
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"INSERT", 8, L"0", 66, 1, 2, L"T", 10, origin, RTNONE)).get()),
              RTNORM);
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"ATTRIB", 8, L"0", 10, origin, 40, 2.0, 1, L"17", 2, L"TAG", 70,
                                              0, RTNONE))
                              .get()),
              RTNORM);
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"SEQEND", 8, L"0", RTNONE)).get()), RTNORM);
    ASSERT_EQ(vcdbEntMake(RbPtr(vcutBuildList(RTDXF0, L"ENDBLK", RTNONE)).get()), RTKWORD);

    auto parts = pieces(insert(L"T", 3, 4));
    ASSERT_EQ(parts.size(), 1u);
    const auto* definition = VcDbAttributeDefinition::cast(parts[0]);
    ASSERT_TRUE(definition);
    EXPECT_TRUE(definition->position().isEqualTo({3, 4, 0}));
    EXPECT_STREQ(definition->tagConst(), L"TAG");
    delete parts[0];

    const Name outer = insert(L"HOLDS", 100, 0);
    EXPECT_EQ(vcedCommand(RTSTR, L"_.EXPLODE", RTENAME, outer.value, RTSTR, L"", RTNONE), RTNORM);
    EXPECT_FALSE(exists(outer));
    Name inner, attribute;
    ASSERT_EQ(vcdbEntLast(inner.value), RTNORM);
    EXPECT_EQ(textOf(inner, 0), L"INSERT");
    ASSERT_EQ(vcdbEntNext(inner, attribute.value), RTNORM);
    EXPECT_EQ(textOf(attribute, 0), L"ATTRIB");
    EXPECT_EQ(textOf(attribute, 1), L"17");
    EXPECT_EQ(pointOf(attribute, 10).x, 100);
    run("U\n");
}

TEST_F(BlockRules, ABlockMayForbidIt)
{
    block(L"B");
    auto* record = opened<VcDbBlockTableRecord>(recordId(L"B"), VcDb::kForWrite);
    record->setExplodable(false);
    record->close();
    const Name reference = insert(L"B", 0, 0);
    vcedCommand(RTSTR, L"_.EXPLODE", RTENAME, reference.value, RTSTR, L"", RTNONE);
    EXPECT_TRUE(exists(reference));
    EXPECT_EQ(shortVariable(L"CMDACTIVE"), 0);
}

TEST_F(BlockRules, AnAttributeDefinitionMeasuresAsItsTag)
{
    const vds_point at = {0, 0, 0};
    const Name shortTag = made(vcutBuildList(RTDXF0, L"ATTDEF", 8, L"0", 10, at, 40, 2.0, 1,
                                             L"a very long default text", 3, L"P", 2, L"T", 70, 0, RTNONE));
    const Name longTag = made(
        vcutBuildList(RTDXF0, L"ATTDEF", 8, L"0", 10, at, 40, 2.0, 1, L"", 3, L"P", 2, L"TAGTAGTAG", 70, 0, RTNONE));
    double widths[2] = {};
    for (int i = 0; i < 2; ++i) {
        auto* definition = opened<VcDbEntity>(idOf(i ? longTag : shortTag));
        VcDbExtents extents;
        ASSERT_EQ(definition->getGeomExtents(extents), Vcad::eOk);
        definition->close();
        widths[i] = extents.maxPoint().x - extents.minPoint().x;
    }
    EXPECT_GT(widths[0], 0);
    EXPECT_GT(widths[1], widths[0] * 4);
}

TEST_F(BlockRules, DrawOrderGoesDirectlyBeneathTheParent)
{
    const Name names[] = {line(0, 0, 1, 0), line(0, 0, 2, 0), line(0, 0, 3, 0), line(0, 0, 4, 0)};
    EXPECT_EQ(vcedDrawOrderInherit(idOf(names[1]), {idOf(names[3]), idOf(names[2])}, 3), Vcad::eOk);
    EXPECT_EQ(vcedDrawOrderInherit(idOf(names[0]), {}, 3), Vcad::eOk);
    EXPECT_NE(vcedDrawOrderInherit({}, {idOf(names[3])}, 3), Vcad::eOk);
    EXPECT_NE(vcedDrawOrderInherit(idOf(names[1]), {idOf(names[3])}, 7), Vcad::eOk);
    Name record;
    ASSERT_EQ(vcdbTblObjName(L"LAYER", L"0", record.value), RTNORM);
    EXPECT_NE(vcedDrawOrderInherit(idOf(record), {idOf(names[3])}, 3), Vcad::eOk) << "no entity";
    EXPECT_NE(vcedDrawOrderInherit(idOf(names[1]), {idOf(record)}, 3), Vcad::eOk);
}

}  // namespace
