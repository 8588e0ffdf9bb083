#include "db_support.h"

#include "host/db/chain.h"
#include "host/db/obj_tag_chain.h"
#include "sdk/vcdb_objects.h"

#include <gtest/gtest.h>

namespace {

struct Xrecords : testing::Test {
    Xrecords()
        : record(static_cast<VcDbXrecord&>(*db.core().object(db.core().add(std::make_unique<VcDbXrecord>(), {}))))
    {
    }

    bool set(RbBuilder& chain) { return record.setFromRbChain(*chain.take(), &db) == Vcad::eOk; }
    RbPtr get() const
    {
        resbuf* chain = nullptr;
        EXPECT_EQ(record.rbChain(&chain), Vcad::eOk);
        return RbPtr(chain);
    }

    VcDbDatabase db;
    VcDbXrecord& record;
};

TEST_F(Xrecords, GiveBackEveryKindOfValue)
{
    vds_name name;
    idToName(db.layerTableId(), name);
    RbBuilder chain;
    chain.addUtf8(1, "täxt");
    chain.addUtf8(102, "{BRACE");
    chain.addReal(40, 2.5);
    chain.addInteger(70, -32768);
    chain.addInteger(90, 2147483647);
    chain.addInteger(290, 1);
    chain.addPoint(10, 1, 2, 3);
    chain.addPoint(11, 4, 5);
    chain.addPoint(210, 0, 0, 1);
    chain.addName(330, name);
    chain.addBytes(310, std::string_view("\0\xff\x7f", 3));
    chain.addUtf8(300, "");
    const RbPtr given = chain.take();
    ASSERT_EQ(record.setFromRbChain(*given), Vcad::eOk);
    const RbPtr got = get();
    const resbuf* g = got.get();
    for (const resbuf* node = given.get(); node; node = node->rbnext, g = g->rbnext) {
        ASSERT_NE(g, nullptr);
        EXPECT_EQ(g->restype, node->restype);
        EXPECT_TRUE(sameRbValue(*g, *node)) << node->restype;
    }
    EXPECT_EQ(g, nullptr);
}

TEST_F(Xrecords, RefuseCodesThatAreNoData)
{
    RbBuilder good;
    good.addUtf8(1, "kept");
    ASSERT_TRUE(set(good));
    for (const int code : {0, 5, 100, 105, -1, 370, 1000, 5005}) {
        RbBuilder chain;
        chain.addUtf8(1, "x");
        chain.add(code);
        EXPECT_FALSE(set(chain)) << code;
    }
    EXPECT_EQ(rbUtf8(*get()), "kept");
}

TEST_F(Xrecords, RefuseReferencesIntoAnotherDrawing)
{
    VcDbDatabase other;
    vds_name name;
    idToName(other.layerTableId(), name);
    RbBuilder chain;
    chain.addName(330, name);
    EXPECT_FALSE(set(chain));
}

TEST_F(Xrecords, WithoutDataGiveNoChain) { EXPECT_EQ(get(), nullptr); }

TEST_F(Xrecords, CoordinatesThatStandAloneAreNumbers)
{
    TagList data;
    data.addReal(10, 1);
    data.addReal(10, 2);
    data.addReal(20, 3);
    data.addReal(20, 4);
    record.setData(data);
    const RbPtr chain = get();
    ASSERT_EQ(nodesOf(chain.get(), 10).size(), 2u);
    EXPECT_EQ(nodesOf(chain.get(), 10)[1]->resval.rpoint[1], 3);
    ASSERT_EQ(nodesOf(chain.get(), 20).size(), 1u);
    EXPECT_EQ(nodesOf(chain.get(), 20)[0]->resval.rreal, 4);
}

TEST_F(Xrecords, AFilesGroupsComeBackInOrder)
{
    GroupList came;
    came.text(100, "AcDbXrecord");
    came.integer(280, 1);
    came.text(102, "SHADOW");
    came.integer(280, 0);
    came.integer(280, 7);
    came.real(10, 1.5);
    came.handle(360, db.core().handleOf(db.layerTableId()));
    came.text(102, "}");
    const std::string before = came.dump();
    EXPECT_EQ(readGroups(record, db.core(), came), 0);
    EXPECT_EQ(record.data().count(), 6u);
    EXPECT_EQ(dumpOf(record, db.core()), before);
}

TEST_F(Xrecords, UndoBringsTheDataBack)
{
    RbBuilder first, second;
    first.addUtf8(1, "first");
    second.addUtf8(1, "second");
    set(first);
    const std::size_t before = db.core().undo().mark();
    set(second);
    EXPECT_EQ(rbUtf8(*get()), "second");
    db.core().undo().rollback(before);
    EXPECT_EQ(rbUtf8(*get()), "first");
}

TEST_F(Xrecords, AnObjectsChainHasTheDataToo)
{
    vds_name name;
    idToName(db.layerTableId(), name);
    RbBuilder data;
    data.addUtf8(102, "{X");
    data.addPoint(10, 1, 2, 3);
    data.addName(330, name);
    data.addUtf8(102, "}");
    const RbPtr given = data.take();
    ASSERT_EQ(record.setFromRbChain(*given), Vcad::eOk);
    const RbPtr chain = chainOf(record);
    ChainGroups groups(chain.get());
    std::unique_ptr<VcDbObject> copy = objectOfChain(db.core(), groups);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(static_cast<VcDbXrecord&>(*copy).data(), record.data());
}

}
