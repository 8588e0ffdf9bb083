// Whole drawings through files.
#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/kept_object.h"
#include "host/io/audit.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"
#include "tests/host/dxf_samples.h"

#include <gtest/gtest.h>

namespace {

std::string copyOf(std::string_view file, const WriteOptions& options = {})
{
    VcDbDatabase database(false);
    const ReadResult read = readDrawingBytes(database, file);
    EXPECT_TRUE(read.ok()) << read.message;
    return saved(database, options);
}

ReadResult readOnly(std::string_view file, bool recover = false)
{
    VcDbDatabase database(false);
    ReadOptions options;
    options.recover = recover;
    return readDrawingBytes(database, file, options);
}

bool tells(const ReadResult& result, std::string_view words)
{
    for (const ReadProblem& problem : result.problems.items())
        if (problem.text.find(words) != problem.text.npos)
            return true;
    return false;
}

std::size_t countOf(std::string_view text, std::string_view word)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(word); at != text.npos; at = text.find(word, at + word.size()))
        ++count;
    return count;
}

std::string withCrLf(std::string_view text)
{
    std::string changed;
    for (const char c : text)
        changed += c == '\n' ? "\r\n" : std::string(1, c);
    return changed;
}

struct Format {
    DxfVersion version;
    bool binary;
};

}

class DxfFormats : public testing::TestWithParam<Format> {};
INSTANTIATE_TEST_SUITE_P(All, DxfFormats, testing::ValuesIn([] {
                             std::vector<Format> all;
                             for (const DxfVersion v :
                                  {DxfVersion::R12, DxfVersion::R2000, DxfVersion::R2004, DxfVersion::R2007,
                                   DxfVersion::R2010, DxfVersion::R2013, DxfVersion::R2018})
                                 for (const bool binary : {false, true})
                                     all.push_back({v, binary});
                             return all;
                         }()),
                         [](const auto& info) {
                             return std::string(info.param.version == DxfVersion::R12 ? "" : "R") +
                                    releaseName(info.param.version) + (info.param.binary ? "binary" : "ascii");
                         });

TEST_P(DxfFormats, TheSecondSaveIsTheFirst)
{
    WriteOptions same;
    same.version = GetParam().version;
    const std::string first = copyOf(convertedSample(GetParam().version, GetParam().binary), same);
    const std::string second = copyOf(first, same);
    const auto differ = std::mismatch(first.begin(), first.end(), second.begin(), second.end());
    EXPECT_TRUE(first == second) << std::string(differ.first, std::min(differ.first + 80, first.end())) << "\nbecame\n"
                                 << std::string(differ.second, std::min(differ.second + 80, second.end()));
}

TEST_P(DxfFormats, NamesItsRelease)
{
    const ReadResult result = readOnly(convertedSample(GetParam().version, GetParam().binary));
    EXPECT_TRUE(result.ok()) << result.message;
    EXPECT_EQ(result.version, GetParam().version);
    EXPECT_EQ(result.problems.total(), 0u) << result.problems.items().front().text;
}

TEST(DxfRoundTrip, BinaryAndAsciiSayTheSame)
{
    VcDbDatabase database(false);
    readDrawingBytes(database, withCrLf(preliminary(kSampleEntities)));
    WriteOptions options;
    options.binary = true;
    const std::string binary = saved(database, options);
    options.binary = false;
    EXPECT_TRUE(copyOf(binary, options) == saved(database, options));
}

TEST(DxfRoundTrip, APreliminaryFileBecomesADrawing)
{
    VcDbDatabase database(false);
    const ReadResult result = readDrawingBytes(database, preliminary(kSampleEntities));
    ASSERT_TRUE(result.ok()) << result.message;
    EXPECT_EQ(result.entities, 8u);
    DatabaseCore& db = database.core();
    EXPECT_FALSE(db.findRecord(NameTable::Layer, "wall").isNull());
    EXPECT_FALSE(db.findRecord(NameTable::Block, "DOOR").isNull());
    EXPECT_FALSE(db.modelSpace().isNull());
    EXPECT_FALSE(db.rootDictionary().isNull());
    EXPECT_EQ(db.mainOrder().size(), 8u);
    EXPECT_EQ(auditDrawing(database).total, 0u);
}

TEST(DxfRoundTrip, SubEntitiesGoToTheirOwner)
{
    VcDbDatabase database(false);
    readDrawingBytes(database, preliminary(kSampleEntities));
    DatabaseCore& db = database.core();
    const auto* polyline = VcDbEntity::cast(db.objectAt(db.mainOrder()[4]));
    const auto* insert = db.objectAs<VcDbBlockReference>(db.idAt(db.mainOrder()[5]));
    ASSERT_TRUE(polyline && insert);
    EXPECT_EQ(polyline->subEntities()->size(), 2u);
    EXPECT_EQ(insert->subEntities()->size(), 1u);
    EXPECT_FALSE(insert->endMark().isNull());
    EXPECT_EQ(db.object((*insert->subEntities())[0])->ownerId(), insert->objectId());
}

// Some programs write grids under the marker of plain references, or the other way round.
TEST(DxfRoundTrip, ReferencesKeepTheirBlockUnderEitherMarker)
{
    const struct {
        const char *marker, *columns;
        bool isGrid;
    } cases[] = {
        {"AcDbBlockReference", "70\n3\n", true}, {"AcDbMInsertBlock", "", true}, {"AcDbBlockReference", "", false}};
    for (const auto& example : cases) {
        VcDbDatabase database(false);
        readDrawingBytes(database, preliminary(std::string("0\nINSERT\n100\nAcDbEntity\n8\n0\n100\n") + example.marker +
                                               "\n2\nDOOR\n10\n3.0\n20\n4.0\n" + example.columns));
        DatabaseCore& db = database.core();
        ASSERT_EQ(db.mainOrder().size(), 1u);
        const auto* insert = VcDbBlockReference::cast(db.objectAt(db.mainOrder()[0]));
        EXPECT_EQ(insert->blockTableRecord(), db.findRecord(NameTable::Block, "DOOR"));
        EXPECT_EQ(VcDbMInsertBlock::cast(insert) != nullptr, example.isGrid);
        const std::string copy = saved(database);
        EXPECT_EQ(copy.find("AcDbBlockReference") == copy.npos, example.isGrid);
        EXPECT_NE(copy.find(example.isGrid ? "AcDbMInsertBlock" : "AcDbBlockReference"), copy.npos);
    }
}

TEST(DxfRoundTrip, UnknownClassesAreKeptWhole)
{
    const std::string copy = asciiSample();
    const std::size_t at = copy.find("MYSTERY");
    ASSERT_NE(at, copy.npos);
    EXPECT_NE(copy.find("AcDbMystery\n 40\n1.5\n330\n1F\n310\n00FF\n", at), copy.npos);
}

TEST(DxfRoundTrip, ExtendedDataAndCaretsSurvive)
{
    const std::string copy = asciiSample();
    EXPECT_NE(copy.find("\nSome ^ text\n"), copy.npos);
    EXPECT_NE(copy.find("1001\nACAD\n1000\nkept\n1070\n     7\n"), copy.npos);
}

TEST(DxfRoundTrip, LineEndsStayAsTheyCame)
{
    const std::string lf = asciiSample();
    EXPECT_EQ(copyOf(withCrLf(lf)), withCrLf(lf));
}

TEST(DxfRoundTrip, CommentsAheadAndUnknownSectionsAreKept)
{
    std::string file = "999\nmade by a program\n" + asciiSample();
    file.insert(file.rfind("  0\nEOF"),
                "  0\nSECTION\n  2\nNOVELTY\n 90\n       12\n  0\nTHING\n  5\n1F\n  0\nENDSEC\n");
    const std::string copy = copyOf(file);
    EXPECT_EQ(copy, file);
}

TEST(DxfRoundTrip, CodePagesOfOldFilesAreKept)
{
    const std::string file =
        "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n9\n$DWGCODEPAGE\n3\nANSI_1251\n0\nENDSEC\n"
        "0\nSECTION\n2\nENTITIES\n0\nTEXT\n8\n\xC4\xE0\n10\n0\n20\n0\n40\n1\n1\n\xCF\xF0 \\U+03B1\n0\nENDSEC\n0\nEOF\n";
    VcDbDatabase database(false);
    ASSERT_TRUE(readDrawingBytes(database, file).ok());
    EXPECT_FALSE(database.core().findRecord(NameTable::Layer, "\xD0\x94\xD0\xB0").isNull());
    EXPECT_NE(saved(database).find("\xCF\xF0 \\U+03B1\n"), std::string::npos);
    WriteOptions newer;
    newer.version = DxfVersion::R2018;
    EXPECT_NE(saved(database, newer).find("\xD0\x9F\xD1\x80 \xCE\xB1\n"), std::string::npos);
}

TEST(DxfRoundTrip, EveryNumberComesBackToTheBit)
{
    for (const char* number :
         {"0.1", "1e-300", "123456789.12345679", "-7.0e22", "4.9406564584124654e-324", "0.30000000000000004"}) {
        VcDbDatabase database(false);
        const std::string line = std::string("0\nLINE\n8\n0\n10\n") + number + "\n20\n0.0\n11\n1.0\n21\n1.0\n";
        ASSERT_TRUE(readDrawingBytes(database, preliminary(line)).ok());
        const std::string copy = saved(database);
        VcDbDatabase again(false);
        readDrawingBytes(again, copy);
        const auto startOf = [](VcDbDatabase& d) {
            return d.core().objectAs<VcDbLine>(d.core().idAt(d.core().mainOrder()[0]))->startPoint().x;
        };
        EXPECT_EQ(startOf(again), std::strtod(number, nullptr)) << number;
        EXPECT_EQ(startOf(database), startOf(again));
    }
}

// What is refused, and why

struct Refusal {
    const char* name;
    std::string file;
    FileStatus status;
    std::uint32_t line;
    const char* words;
};

class DxfRefusals : public testing::TestWithParam<Refusal> {};
INSTANTIATE_TEST_SUITE_P(
    Cases, DxfRefusals,
    testing::Values(
        Refusal{"Dwg", "AC1015\0\0\0\0", FileStatus::Unsupported, 0, "DWG"},
        Refusal{"Empty", "", FileStatus::Unreadable, 0, "empty"},
        Refusal{"NoDrawing", "hello\n", FileStatus::Unreadable, 1, "no DXF"},
        Refusal{"CutOff", "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n", FileStatus::Unreadable, 9, "cut off"},
        Refusal{"NoValue", "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n", FileStatus::Unreadable, 8, "value of group 8"},
        Refusal{"NoGroupCode", "0\nSECTION\n2\nENTITIES\n0\nLINE\nred\n0\n0\nENDSEC\n0\nEOF\n", FileStatus::Unreadable,
                7, "group code"},
        Refusal{"OutsideOfSections", "0\nLINE\n8\n0\n0\nEOF\n", FileStatus::Unreadable, 2, "SECTION was expected"}),
    [](const auto& info) { return info.param.name; });

TEST_P(DxfRefusals, AreTold)
{
    const ReadResult result = readOnly(GetParam().file);
    EXPECT_EQ(result.status, GetParam().status);
    EXPECT_EQ(result.line, GetParam().line) << result.message;
    EXPECT_NE(result.message.find(GetParam().words), std::string::npos) << result.message;
}

TEST(DxfRecovery, ReadsWhatThereIs)
{
    const ReadResult result = readOnly("0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\nred\n0\nCIRCLE\n8\n0\n40\n1", true);
    EXPECT_TRUE(result.ok()) << result.message;
    EXPECT_EQ(result.entities, 2u);
    EXPECT_TRUE(tells(result, "group code"));
    EXPECT_TRUE(tells(result, "cut off"));
}

// What is mended, with a word about it

struct Mending {
    const char* name;
    std::string file;
    const char* words;
};

class DxfMendings : public testing::TestWithParam<Mending> {};
INSTANTIATE_TEST_SUITE_P(
    Cases, DxfMendings,
    testing::Values(
        Mending{"EndMark", "0\nSECTION\n2\nENTITIES\n0\nPOINT\n8\n0\n10\n1\n20\n1\n0\nENDSEC\n", "EOF was missing"},
        Mending{"EndOfSection", "0\nSECTION\n2\nENTITIES\n0\nPOINT\n8\n0\n10\n1\n20\n1\n0\nEOF\n",
                "ENDSEC was missing"},
        Mending{"EndOfVertices",
                preliminary("0\nPOLYLINE\n8\n0\n66\n1\n0\nVERTEX\n8\n0\n10\n1\n20\n1\n0\nPOINT\n8\n0\n10\n1\n20\n1\n"),
                "SEQEND was missing"},
        Mending{"DuplicateHandle",
                preliminary("0\nPOINT\n5\n2F\n8\n0\n10\n1\n20\n1\n0\nPOINT\n5\n2F\n8\n0\n10\n2\n20\n1\n"),
                "handle 2F stands twice"},
        Mending{"Comma", preliminary("0\nCIRCLE\n8\n0\n10\n1\n20\n1\n40\n2,5\n"), "decimal comma"},
        Mending{"MissingLayer", preliminary("0\nPOINT\n8\nNOWHERE\n10\n1\n20\n1\n"),
                "layer \"NOWHERE\" is used but not defined"}),
    [](const auto& info) { return info.param.name; });

TEST_P(DxfMendings, AreTold)
{
    VcDbDatabase database(false);
    const ReadResult result = readDrawingBytes(database, GetParam().file);
    ASSERT_TRUE(result.ok()) << result.message;
    EXPECT_TRUE(tells(result, GetParam().words))
        << (result.problems.total() ? result.problems.items()[0].text : "nothing was told");
    EXPECT_EQ(readOnly(saved(database)).problems.total(), 0u) << "the copy is whole";
}

TEST(DxfRoundTrip, ReadingCanBeCancelled)
{
    const std::atomic<bool> cancel = true;
    VcDbDatabase database(false);
    ReadOptions options;
    options.cancel = &cancel;
    EXPECT_EQ(readDrawingBytes(database, asciiSample(), options).status, FileStatus::Cancelled);
}

// Older releases

TEST(DxfDowngrade, WhatHasNoPlaceIsRefusedUnlessAllowed)
{
    VcDbDatabase database(false);
    readDrawingBytes(database, asciiSample());
    WriteOptions options;
    options.version = DxfVersion::R12;
    std::string bytes;
    const WriteResult refused = writeDrawingBytes(database, bytes, options);
    EXPECT_EQ(refused.status, FileStatus::Refused);
    EXPECT_NE(refused.message.find("MYSTERY"), std::string::npos) << refused.message;
    EXPECT_TRUE(bytes.empty());
    options.allowLoss = true;
    const WriteResult allowed = writeDrawingBytes(database, bytes, options);
    EXPECT_TRUE(allowed.ok());
    EXPECT_EQ(allowed.droppedByType.at("MYSTERY"), 1u);
    EXPECT_EQ(allowed.rewroteByType.at("LWPOLYLINE"), 1u);
}

TEST(DxfDowngrade, R12HasNoMarkersAndOldPolylines)
{
    const std::string old = convertedSample(DxfVersion::R12, false);
    EXPECT_EQ(countOf(old, "\n100\n"), 0u);
    EXPECT_EQ(countOf(old, "\nLWPOLYLINE\n"), 0u);
    EXPECT_EQ(countOf(old, "\nPOLYLINE\n"), 2u);
    EXPECT_EQ(countOf(old, "$MODEL_SPACE"), countOf(old, "$PAPER_SPACE"));
    EXPECT_EQ(countOf(old, "BLOCK_RECORD"), 0u);
    EXPECT_TRUE(readOnly(old).ok());
}

TEST(DxfDowngrade, EllipsesAndSplinesBecomePolylines)
{
    VcDbDatabase database(false);
    readDrawingBytes(database, preliminary("0\nELLIPSE\n100\nAcDbEntity\n8\n0\n100\nAcDbEllipse\n10\n0.0\n20\n0."
                                           "0\n30\n0.0\n11\n4.0\n21\n0.0\n31\n0.0\n40\n0.5\n"
                                           "41\n0.0\n42\n6.283185307179586\n"));
    WriteOptions options;
    options.version = DxfVersion::R12;
    const std::string old = saved(database, options);
    EXPECT_EQ(countOf(old, "\nPOLYLINE\n"), 1u);
    EXPECT_GE(countOf(old, "\nVERTEX\n"), 64u);
}

// The audit

TEST(Audit, BlocksThatHoldThemselves)
{
    const std::string file = "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n8\n0\n2\nA\n70\n0\n10\n0\n20\n0\n0\nINSERT\n8\n0\n2\nB\n"
                             "10\n0\n20\n0\n0\nENDBLK\n8\n0\n"
                             "0\nBLOCK\n8\n0\n2\nB\n70\n0\n10\n0\n20\n0\n0\nINSERT\n8\n0\n2\nA\n10\n0\n20\n0\n0\nENDBLK"
                             "\n8\n0\n0\nENDSEC\n0\nEOF\n";
    VcDbDatabase database(false);
    ASSERT_TRUE(readDrawingBytes(database, file).ok());
    const AuditReport report = auditDrawing(database);
    ASSERT_EQ(report.total, 1u);
    EXPECT_NE(report.faults[0].text.find("holds itself"), std::string::npos);
    EXPECT_EQ(auditDrawing(database, true).fixed, 1u);
    EXPECT_EQ(auditDrawing(database).total, 0u);
}

TEST(Audit, NamesThatStandTwice)
{
    const std::string file =
        "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nLAYER\n70\n2\n0\nLAYER\n2\nWALL\n70\n0\n62\n1\n6\nCONTINUOUS\n"
        "0\nLAYER\n2\nWall\n70\n0\n62\n2\n6\nCONTINUOUS\n0\nENDTAB\n0\nENDSEC\n0\nEOF\n";
    VcDbDatabase database(false);
    ASSERT_TRUE(readDrawingBytes(database, file).ok());
    EXPECT_EQ(auditDrawing(database).total, 1u);
    auditDrawing(database, true);
    EXPECT_EQ(auditDrawing(database).total, 0u);
    EXPECT_FALSE(database.core().findRecord(NameTable::Layer, "Wall_2").isNull());
}

TEST(Audit, ReferencesThatLeadNowhere)
{
    VcDbDatabase database(false);
    ASSERT_TRUE(readDrawingBytes(database, preliminary("0\nPOINT\n5\n2F\n102\n{ACAD_REACTORS\n330\n999\n102\n}"
                                                       "\n100\nAcDbEntity\n8\n0\n100\nAcDbPoint\n10\n1\n20\n1\n"))
                    .ok());
    const AuditReport report = auditDrawing(database);
    ASSERT_EQ(report.total, 1u);
    EXPECT_EQ(report.faults[0].handle, 0x2Fu);
    auditDrawing(database, true);
    EXPECT_EQ(auditDrawing(database).total, 0u);
}
