// What still needs a record: erasing it is refused as long as anything does, and asking costs no walk over the drawing each time.
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_records.h"

#include <chrono>
#include <gtest/gtest.h>

namespace {

class NeededRecords : public testing::Test {
protected:
    VcDbLayerTableRecord& layer(const std::string& name)
    {
        return *db().objectAs<VcDbLayerTableRecord>(db().recordFor(NameTable::Layer, name));
    }
    VcDbLine& line()
    {
        auto made = std::make_unique<VcDbLine>();
        VcDbLine& added = *made;
        auto* space = db().objectAs<VcDbBlockTableRecord>(db().modelSpace());
        db().add(std::move(made), space->objectId());
        space->memberAdded(added);
        return added;
    }
    DatabaseCore& db() { return m_database.core(); }
    bool isNeeded(const VcDbSymbolTableRecord& record) { return recordIsNeeded(db(), record); }

    VcDbDatabase m_database;
};

}

TEST_F(NeededRecords, AReferenceThatComesCounts)
{
    VcDbLayerTableRecord& wall = layer("Wall");
    EXPECT_FALSE(isNeeded(wall));
    VcDbLine& first = line();
    EXPECT_FALSE(isNeeded(wall));
    first.setLayer(wall.objectId());
    EXPECT_TRUE(isNeeded(wall));
    EXPECT_EQ(wall.erase(), Vcad::eCannotBeErased);
}

TEST_F(NeededRecords, AReferenceThatGoesNoLongerCounts)
{
    VcDbLayerTableRecord& wall = layer("Wall");
    VcDbLine& first = line();
    first.setLayer(wall.objectId());
    ASSERT_TRUE(isNeeded(wall));
    first.setLayer(layer("0").objectId());
    EXPECT_FALSE(isNeeded(wall));
    first.setLayer(wall.objectId());
    ASSERT_TRUE(isNeeded(wall));
    ASSERT_EQ(first.erase(), Vcad::eOk);
    EXPECT_FALSE(isNeeded(wall));
    first.erase(false);
    EXPECT_TRUE(isNeeded(wall));
}

TEST_F(NeededRecords, UndoBringsTheReferenceBack)
{
    VcDbLayerTableRecord& wall = layer("Wall");
    VcDbLine& first = line();
    first.setLayer(wall.objectId());
    db().undo().setRecording(true);
    const std::size_t before = db().undo().mark();
    first.setLayer(layer("0").objectId());
    EXPECT_FALSE(isNeeded(wall));
    db().undo().rollback(before);
    EXPECT_TRUE(isNeeded(wall));
}

TEST_F(NeededRecords, AfterMoreChangesThanTheLogHolds)
{
    VcDbLayerTableRecord& wall = layer("Wall");
    VcDbLine& first = line();
    ASSERT_FALSE(isNeeded(wall));
    first.setLayer(wall.objectId());
    VcDbLine& other = line();
    for (int i = 0; i < 200000; ++i)
        other.setStartPoint(VcGePoint3d(i, 0, 0));
    EXPECT_TRUE(isNeeded(wall));
}

// A walk for each would take minutes.
TEST_F(NeededRecords, ManyUnusedRecordsAreErasedInOneWalk)
{
    constexpr int kLines = 20000, kLayers = 4000;
    for (int i = 0; i < kLines; ++i)
        line();
    VcDbObjectIdArray layers;
    for (int i = 0; i < kLayers; ++i)
        layers.push_back(layer("Unused " + std::to_string(i)).objectId());
    const auto start = std::chrono::steady_clock::now();
    m_database.purge(layers);
    EXPECT_EQ(layers.size(), std::size_t(kLayers));
    for (const VcDbObjectId id : layers)
        EXPECT_EQ(db().object(id)->erase(), Vcad::eOk);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}
