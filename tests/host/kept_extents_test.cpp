// Extents that are kept follow every change that they hang on: each case asks, changes, and asks again.
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_tables.h"
#include "select_support.h"

#include <functional>

namespace {

class KeptExtents : public seltest::Drawing {
protected:
    void SetUp() override
    {
        Drawing::SetUp();
        member = &add(new VcDbLine({0, 0, 0}, {10, 5, 0}), "0", &block("B"));
        lone = &text(100, 0, L"ABC");
        reference = &insert("B", 50, 50);
        auto* tag = new VcDbAttribute;
        tag->setPosition({50, 60, 0});
        tag->setHeight(1);
        tag->setTextString(L"TAG");
        ASSERT_EQ(reference->appendAttribute(tag), Vcad::eOk);
        tag->close();
        attribute = tag;
        add(new VcDbBlockReference({7, 0, 0}, block("B").objectId()), "0", &block("OUTER"));
        outer = &insert("OUTER", 200, 0);
    }

    static VcDbExtents extentsOf(const VcDbEntity& entity)
    {
        VcDbExtents extents;
        entity.getGeomExtents(extents);
        return extents;
    }
    static bool same(const VcDbExtents& a, const VcDbExtents& b)
    {
        return a.minPoint() == b.minPoint() && a.maxPoint() == b.maxPoint();
    }

    // The extents change, and come back with the undo.
    void expectFollows(const VcDbEntity& entity, const std::function<void()>& change)
    {
        const VcDbExtents before = extentsOf(entity);
        const std::size_t mark = db().undo().mark();
        change();
        EXPECT_FALSE(same(extentsOf(entity), before));
        db().undo().rollback(mark);
        EXPECT_TRUE(same(extentsOf(entity), before));
    }

    VcDbLine* member = nullptr;
    VcDbText* lone = nullptr;
    VcDbBlockReference *reference = nullptr, *outer = nullptr;
    VcDbAttribute* attribute = nullptr;
};

TEST_F(KeptExtents, OfATextFollowItsContentAndItsStyle)
{
    expectFollows(*lone, [&] { lone->setTextString(L"ABCDEFG"); });
    expectFollows(*lone, [&] { lone->transformBy(VcGeMatrix3d::translation({0, 0, 3})); });
    auto* style = db().objectAs<VcDbTextStyleTableRecord>(lone->textStyle());
    expectFollows(*lone, [&] { style->setFileName(L"romant.shx"); });
}

TEST_F(KeptExtents, OfAReferenceFollowItsMembersAndAttributes)
{
    expectFollows(*reference, [&] { member->setEndPoint({10, 25, 0}); });
    expectFollows(*reference, [&] { member->erase(); });
    expectFollows(*reference, [&] { attribute->setTextString(L"A MUCH LONGER TAG"); });
    expectFollows(*reference, [&] { reference->setRotation(1); });
    expectFollows(*reference, [&] { add(new VcDbLine({0, 0, 0}, {-30, 0, 0}), "0", &block("B")); });
}

TEST_F(KeptExtents, OfANestedReferenceFollowTheInnermostMember)
{
    expectFollows(*outer, [&] { member->setStartPoint({-40, 0, 0}); });
    expectFollows(*outer, [&] {
        add(new VcDbBlockReference({0, 70, 0}, block("B").objectId()), "0", &block("OUTER"));
    });
}

}
