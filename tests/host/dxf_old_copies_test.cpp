// Copies of R12 files as R12: nothing is added that the file does without, and the second save is the first.
#include "host/db/database.h"
#include "tests/host/dxf_samples.h"

#include <gtest/gtest.h>

namespace {

// A header of two variables, no handles, and a dimension style that names a block which stands last among the blocks.
constexpr std::string_view kOldFile =
    "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1009\n9\n$LTSCALE\n40\n2.5\n0\nENDSEC\n"
    "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nDIMSTYLE\n70\n1\n0\nDIMSTYLE\n2\nSITE\n70\n0\n5\n_"
    "ArchTick\n0\nENDTAB\n0\nENDSEC\n"
    "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n8\n0\n2\nDOOR\n70\n0\n10\n0.0\n20\n0.0\n0\nLINE\n8\n0\n10\n0.0\n20\n0.0\n11\n1."
    "0\n21\n0.0\n0\nENDBLK\n8\n0\n"
    "0\nBLOCK\n8\n0\n2\n_ArchTick\n70\n0\n10\n0.0\n20\n0.0\n0\nENDBLK\n8\n0\n0\nENDSEC\n"
    "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n0.0\n20\n0.0\n11\n5.0\n21\n5.0\n0\nENDSEC\n0\nEOF\n";

std::string copyAsR12(std::string_view file, void (*change)(DatabaseCore&) = nullptr)
{
    VcDbDatabase database(false);
    const ReadResult read = readDrawingBytes(database, file);
    EXPECT_TRUE(read.ok()) << read.message;
    if (change)
        change(database.core());
    WriteOptions options;
    options.version = DxfVersion::R12;
    return saved(database, options);
}

bool has(const std::string& file, std::string_view text) { return file.find(text) != std::string::npos; }

TEST(DxfOldCopies, TheSecondSaveIsTheFirst)
{
    const std::string first = copyAsR12(kOldFile);
    EXPECT_EQ(first, copyAsR12(first));
}

TEST(DxfOldCopies, AddNothingToTheHeader)
{
    const std::string copy = copyAsR12(kOldFile);
    EXPECT_TRUE(has(copy, "$LTSCALE"));
    EXPECT_FALSE(has(copy, "$ORTHOMODE"));
    EXPECT_FALSE(has(copy, "$TDCREATE"));
}

TEST(DxfOldCopies, SayWhatWasSet)
{
    const std::string copy = copyAsR12(kOldFile, [](DatabaseCore& db) { db.header().setInteger("$ORTHOMODE", 70, 1); });
    EXPECT_TRUE(has(copy, "$ORTHOMODE"));
    EXPECT_FALSE(has(copy, "$FILLMODE"));
}

TEST(DxfOldCopies, GiveNoHandlesToWhatHadNone)
{
    const std::string copy = copyAsR12(kOldFile);
    const std::size_t entities = copy.find("ENTITIES");
    ASSERT_NE(entities, std::string::npos);
    EXPECT_EQ(copy.find("LINE\n  5\n", entities), std::string::npos);
    EXPECT_NE(copy.find("LINE\n  8\n", entities), std::string::npos);
}

TEST(DxfOldCopies, KeepTheOrderOfBlocks)
{
    const std::string copy = copyAsR12(kOldFile);
    const std::size_t blocks = copy.find("BLOCKS");
    EXPECT_LT(copy.find("DOOR", blocks), copy.find("_ArchTick", blocks));
}

}
