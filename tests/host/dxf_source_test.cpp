#include "host/io/dxf_source.h"

#include "host/db/problems.h"

#include <gtest/gtest.h>

namespace {

struct Read {
    std::vector<std::string> records;  // "TYPE code=value code=value"
    std::optional<DxfFault> fault;
    ProblemLog problems;
};

std::string shown(const Tag& tag)
{
    const std::string code = std::to_string(tag.code) + "=";
    if (tag.form == Tag::Form::Raw)
        return code + std::string(tag.view());
    if (tag.form == Tag::Form::Real)
        return code + std::to_string(tag.real);
    if (tag.form == Tag::Form::Bytes)
        return code + "x" + std::to_string(tag.view().size());
    return code + std::to_string(tag.integer);
}

Read readAll(std::string_view bytes, bool recover = false)
{
    Read result;
    const auto source = DxfSource::open(bytes, recover, result.problems);
    DxfRecord record;
    while (source->next(record)) {
        std::string line(record.type);
        for (const Tag& tag : record.tags)
            line += " " + shown(tag);
        result.records.push_back(line);
    }
    result.fault = source->fault();
    return result;
}

const std::vector<std::string> kTwoRecords{"SECTION 2=ENTITIES", "LINE 8=0 10=1.5", "EOF"};

}

TEST(DxfSource, ReadsAnyLineEnd)
{
    const std::string lf = "  0\nSECTION\n  2\nENTITIES\n0\nLINE\n  8\n0\n 10\n1.5\n  0\nEOF\n";
    for (const char* end : {"\n", "\r\n", "\r"}) {
        std::string text;
        for (const char c : lf)
            text += c == '\n' ? std::string(end) : std::string(1, c);
        EXPECT_EQ(readAll(text).records, kTwoRecords) << "line end of " << std::string(end).size() << " bytes";
    }
    EXPECT_EQ(readAll("\xEF\xBB\xBF" + lf).records, kTwoRecords);
    EXPECT_EQ(readAll(lf.substr(0, lf.size() - 1)).records, kTwoRecords);
}

TEST(DxfSource, WhatFollowsTheEndMarkIsNotRead)
{
    const Read read = readAll("0\nEOF\nnot\na\ngroup\n");
    EXPECT_EQ(read.records, std::vector<std::string>{"EOF"});
    EXPECT_FALSE(read.fault);
}

TEST(DxfSource, BlankLinesAtTheEndAreNoFault) { EXPECT_FALSE(readAll("0\nENDSEC\n\n  \n\x1a").fault); }

TEST(DxfSource, AFaultNamesItsLine)
{
    const Read read = readAll("0\nLINE\n8\n0\nred\n5\n");
    ASSERT_TRUE(read.fault);
    EXPECT_EQ(read.fault->line, 5u);
    EXPECT_NE(read.fault->text.find("\"red\""), std::string::npos);
    const Read cut = readAll("0\nLINE\n8\n");
    ASSERT_TRUE(cut.fault);
    EXPECT_EQ(cut.fault->line, 4u);
}

TEST(DxfSource, RecoveryGoesOnBehindTheFault)
{
    const Read read = readAll("0\nLINE\n8\n0\nred\n62\n5\n0\nEOF\n", true);
    EXPECT_EQ(read.records, (std::vector<std::string>{"LINE 8=0 62=5", "EOF"}));
    EXPECT_EQ(read.problems.total(), 1u);
}

TEST(DxfSource, CommentsAheadOfTheFileAreKept)
{
    ProblemLog problems;
    const auto source = DxfSource::open("999\nwritten by hand\n0\nEOF\n", false, problems);
    ASSERT_EQ(source->preamble().size(), 1u);
    EXPECT_EQ(source->preamble()[0].view(), "written by hand");
}

namespace {

std::string wide(int code) { return {static_cast<char>(code & 255), static_cast<char>(code >> 8)}; }

}

TEST(DxfSource, ReadsBinaryFilesWithWideAndNarrowCodes)
{
    const double value = 1.5;
    const std::string real(reinterpret_cast<const char*>(&value), 8);
    std::string file(kBinarySentinel);
    file += wide(0) + std::string("LINE") + '\0' + wide(62) + std::string("\x05\x00", 2) + wide(10) + real + wide(290) +
            '\1' + wide(310) + std::string("\3abc") + wide(0) + std::string("EOF") + '\0';
    const std::vector<std::string> expected{"LINE 62=5 10=1.500000 290=1 310=x3", "EOF"};
    EXPECT_EQ(readAll(file).records, expected);

    std::string narrow(kBinarySentinel);
    narrow +=
        std::string("\0LINE\0", 6) + '\x3E' + std::string("\x05\x00", 2) + '\x0A' + real + std::string("\0EOF\0", 5);
    EXPECT_EQ(readAll(narrow).records, (std::vector<std::string>{"LINE 62=5 10=1.500000", "EOF"}));
}

TEST(DxfSource, ABinaryFileThatIsCutOffIsAFault)
{
    std::string file(kBinarySentinel);
    file += wide(0) + std::string("LINE") + '\0' + wide(10) + "abc";
    const Read read = readAll(file);
    ASSERT_TRUE(read.fault);
    EXPECT_EQ(read.fault->line, kBinarySentinel.size() + 7);
}
