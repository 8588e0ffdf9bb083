// Files that were cut, mixed up and damaged: an answer, never a crash, a hang or endless memory.
#include "fuzz/dxf_target.h"

#include "host/io/dxf_source.h"
#include "tests/host/dxf_samples.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using Random = std::mt19937;

std::size_t below(Random& random, std::size_t bound) { return bound ? random() % bound : 0; }

std::string withFlippedBytes(std::string file, Random& random)
{
    for (std::size_t i = 0, n = 1 + below(random, 8); i < n; ++i)
        file[below(random, file.size())] = static_cast<char>(random());
    return file;
}

std::string withPieceMoved(std::string file, Random& random)
{
    const std::size_t from = below(random, file.size()),
                      size = below(random, std::min<std::size_t>(400, file.size() - from));
    const std::string piece = file.substr(from, size);
    if (below(random, 2))
        file.erase(from, size);
    return file.insert(below(random, file.size()), piece);
}

// Exchanges the texts of two lines: valid groups with values of other kinds.
std::string withLinesExchanged(std::string file, Random& random)
{
    const auto line = [&](std::size_t at) {
        const std::size_t begin = file.rfind('\n', at) == file.npos ? 0 : file.rfind('\n', at) + 1;
        return std::pair(begin, std::min(file.find('\n', begin), file.size()) - begin);
    };
    const auto [a, aSize] = line(below(random, file.size()));
    const std::string hostile[] = {
        "-1", "99999999999999999999", "1e999", "nan", "FFFFFFFFFFFFFFFF", "", "100", "0", "2147483647"};
    return file.replace(a, aSize, hostile[below(random, std::size(hostile))]);
}

}

TEST(DxfRobustness, FilesThatAreCutOff)
{
    for (const std::string& sample : {asciiSample(), binarySample()})
        for (std::size_t size = 0; size < sample.size(); size += 1 + size / 16)
            exerciseDrawing(std::string_view(sample).substr(0, size));
}

TEST(DxfRobustness, FilesThatAreDamaged)
{
    Random random(20240611);
    const std::string samples[] = {asciiSample(), binarySample()};
    for (int round = 0; round < 150; ++round) {
        const std::string& sample = samples[round % 2];
        exerciseDrawing(withFlippedBytes(sample, random));
        exerciseDrawing(withPieceMoved(sample, random));
        exerciseDrawing(withLinesExchanged(samples[0], random));
    }
}

TEST(DxfRobustness, CountsAreNotBelieved)
{
    exerciseDrawing(
        "0\nSECTION\n2\nENTITIES\n0\nLWPOLYLINE\n100\nAcDbPolyline\n90\n2000000000\n10\n1\n20\n2\n0\nENDSEC\n0\nEOF\n");
    exerciseDrawing("0\nSECTION\n2\nENTITIES\n0\nSPLINE\n100\nAcDbSpline\n72\n2147483647\n73\n-"
                    "5\n74\n99\n40\n1\n0\nENDSEC\n0\nEOF\n");
    exerciseDrawing("0\nSECTION\n2\nENTITIES\n0\nHATCH\n100\nAcDbHatch\n91\n2000000000\n92\n2\n93\n2000000000\n10\n1\n0"
                    "\nENDSEC\n0\nEOF\n");
    exerciseDrawing("0\nSECTION\n2\nENTITIES\n0\nINSERT\n2\nX\n70\n32767\n71\n32767\n0\nENDSEC\n0\nEOF\n");
}

// What a chain says of a group follows from its code, so a text in place of a number has none. It stays in the drawing.
TEST(DxfRobustness, TextsInPlaceOfNumbersAreNotInChains)
{
    VcDbDatabase database(false);
    const ReadResult read =
        readDrawingBytes(database, preliminary("0\nLINE\n8\n0\n10\n0\n20\n0\n11\n5\n21\n5\n94\nmany\n"
                                               "1001\nACAD\n1000\nkept\n1040\nwide\n1070\n7\n"));
    ASSERT_TRUE(read.ok()) << read.message;
    const DatabaseCore& db = database.core();
    VcDbObject* line = db.objectAt(db.mainOrder().at(0));
    const RbPtr all(newRb(RTSTR));
    setRbUtf8(*all, "*");
    std::vector<int> codes;
    const RbPtr chain = chainOf(*line, all.get());
    for (const resbuf* node = chain.get(); node; node = node->rbnext)
        codes.push_back(node->restype);
    const auto has = [&](int code) { return std::count(codes.begin(), codes.end(), code) > 0; };
    EXPECT_TRUE(has(1000));
    EXPECT_TRUE(has(1070));
    EXPECT_FALSE(has(1040));
    EXPECT_FALSE(has(94));
    const std::string copy = saved(database);
    EXPECT_NE(copy.find("\nmany\n"), copy.npos);
    EXPECT_NE(copy.find("\nwide\n"), copy.npos);
}
