// Which handles objects get when a file lacks some: never one that the file gives to another object further on.
#include "host/db/database.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_database.h"
#include "sdk/vcdb_entity.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace {

std::string line(const char* handle, const char* layer)
{
    const std::string five = *handle ? fmt::format("5\n{}\n", handle) : "";
    return fmt::format("0\nLINE\n{}100\nAcDbEntity\n8\n{}\n100\nAcDbLine\n10\n0\n20\n0\n11\n5\n21\n5\n", five, layer);
}

std::string drawing(const char* seed, const std::string& entities)
{
    return fmt::format("0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n9\n$HANDSEED\n5\n{}\n0\nENDSEC\n"
                       "0\nSECTION\n2\nENTITIES\n{}0\nENDSEC\n0\nEOF\n",
                       seed, entities);
}

struct LowSeed {
    const char* what;
    std::string entities;
    std::vector<std::uint64_t> handles;  // of the entities, in order; 0 where any free one will do
};

void PrintTo(const LowSeed& c, std::ostream* out) { *out << c.what; }

class LowSeeds : public testing::TestWithParam<LowSeed> {};

TEST_P(LowSeeds, LeaveTheFilesOwnHandlesAlone)
{
    VcDbDatabase database(false);
    const ReadResult read = readDrawingBytes(database, drawing("5", GetParam().entities));
    ASSERT_TRUE(read.ok()) << read.message;
    const DatabaseCore& db = database.core();
    const auto& order = db.mainOrder();
    ASSERT_EQ(order.size(), GetParam().handles.size());
    std::uint64_t largest = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const std::uint64_t wanted = GetParam().handles[i], handle = db.handleOf(db.idAt(order[i]));
        EXPECT_EQ(handle, wanted ? wanted : handle);
    }
    for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot) {
        const std::uint64_t handle = db.handleOf(db.idAt(slot));
        EXPECT_NE(handle, 0u) << "slot " << slot;
        EXPECT_EQ(db.findHandle(handle), db.idAt(slot));
        largest = std::max(largest, handle);
    }
    EXPECT_GT(db.handleSeed(), largest);
}

// The file has no tables at all, and its seed is far below what it uses.
INSTANTIATE_TEST_SUITE_P(
    DxfHandles, LowSeeds,
    testing::Values(
        LowSeed{"missing tables", line("6", "0") + line("7", "0") + line("8", "0"), {6, 7, 8}},
        LowSeed{"layer of no record", line("6", "WALLS") + line("7", "0") + line("8", "0"), {6, 7, 8}},
        LowSeed{"entity without a handle", line("", "0") + line("6", "0") + line("7", "0"), {0, 6, 7}},
        LowSeed{"handle twice", line("6", "0") + line("6", "0") + line("7", "0"), {6, 0, 7}},
        LowSeed{"far beyond all others", line("6", "0") + line("7FFFFFFF", "0") + line("", "0"), {6, 0x7FFFFFFF, 0}}));

}
