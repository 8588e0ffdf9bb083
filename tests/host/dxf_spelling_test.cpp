// Names of records that a file spells in another letter case than the records: a copy spells them as the file did.
#include "host/db/database.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_records.h"
#include "tests/host/dxf_samples.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

constexpr std::string_view kLines = "0\nLINE\n8\nWall\n0\nLINE\n8\nWALL\n6\nDASHED\n0\nLINE\n8\nwall\n6\nDashed\n";

constexpr std::string_view kLateLinetype =
    "0\nSECTION\n2\nTABLES\n"
    "0\nTABLE\n2\nLAYER\n70\n3\n0\nLAYER\n2\nWall\n70\n0\n62\n1\n6\nDASHED\n0\nLAYER\n2\nDoor\n70\n0\n62\n1\n6\ndashed"
    "\n"
    "0\nLAYER\n2\nRoof\n70\n0\n62\n1\n6\nDashed\n0\nENDTAB\n"
    "0\nTABLE\n2\nLTYPE\n70\n1\n0\nLTYPE\n2\nDashed\n70\n0\n3\n\n72\n65\n73\n0\n40\n0.0\n0\nENDTAB\n0\nENDSEC\n";

void load(VcDbDatabase& database, std::string_view tables = {})
{
    const ReadResult read = readDrawingBytes(database, std::string(tables) + preliminary(kLines));
    ASSERT_TRUE(read.ok()) << read.message;
}

// The values of a group in the records of a kind, in order: "Wall WALL wall".
std::string valuesOf(std::string_view file, std::string_view kind, int code)
{
    std::string values, record;
    std::istringstream lines{std::string(file)};
    for (std::string group, value; std::getline(lines, group) && std::getline(lines, value);) {
        if (value.ends_with('\r'))
            value.pop_back();
        if (std::stoi(group) == 0)
            record = value;
        else if (std::stoi(group) == code && record == kind)
            values += (values.empty() ? "" : " ") + value;
    }
    return values;
}

VcDbLine* firstLine(VcDbDatabase& database)
{
    return VcDbLine::cast(database.core().objectAt(database.core().mainOrder().front()));
}

}

TEST(DxfSpelling, IsKeptOfEachReference)
{
    for (const bool binary : {false, true}) {
        VcDbDatabase first(false);
        load(first, kLateLinetype);
        WriteOptions options;
        options.binary = binary;
        VcDbDatabase second(false);
        ASSERT_TRUE(readDrawingBytes(second, saved(first, options)).ok());
        options.binary = false;
        const std::string copy = saved(second, options);
        EXPECT_EQ(valuesOf(copy, "LINE", 8), "Wall WALL wall");
        EXPECT_EQ(valuesOf(copy, "LINE", 6), "DASHED Dashed");
    }
}

TEST(DxfSpelling, IsKeptWhereTheRecordComesLater)
{
    VcDbDatabase database(false);
    load(database, kLateLinetype);
    const std::string copy = saved(database);
    EXPECT_NE(valuesOf(copy, "LTYPE", 2).find("Dashed"), std::string::npos);
    EXPECT_EQ(valuesOf(copy, "LAYER", 6).substr(0, 20), "DASHED dashed Dashed");
}

TEST(DxfSpelling, GoesWhenTheReferenceChanges)
{
    VcDbDatabase database(false);
    load(database, kLateLinetype);
    ASSERT_EQ(firstLine(database)->setLayer(L"door"), Vcad::eOk);
    EXPECT_EQ(valuesOf(saved(database), "LINE", 8), "Door WALL wall");
}

TEST(DxfSpelling, GoesWhenTheRecordIsRenamed)
{
    VcDbDatabase database(false);
    load(database);
    DatabaseCore& db = database.core();
    auto* layer = db.objectAs<VcDbLayerTableRecord>(db.findRecord(NameTable::Layer, "Wall"));
    ASSERT_NE(layer, nullptr);
    ASSERT_EQ(layer->setName(L"Gone"), Vcad::eOk);
    EXPECT_EQ(valuesOf(saved(database), "LINE", 8), "Gone Gone Gone");
}

TEST(DxfSpelling, TheRecordsOwnNameIsNotTouched)
{
    VcDbDatabase database(false);
    load(database);
    EXPECT_NE(valuesOf(saved(database), "LAYER", 2).find("Wall"), std::string::npos);
}
