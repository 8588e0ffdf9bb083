#include "host/io/dxf_text.h"

#include "host/base/code_page.h"

#include <gtest/gtest.h>

namespace {

struct TextCase {
    const char* name;
    int page;
    std::string raw, utf8;
};

const TextCase kCases[] = {
    {"Plain", 1252, "plain", "plain"},
    {"LatinOne", 1252, "\xE9t\xE9", "\xC3\xA9t\xC3\xA9"},
    {"Cyrillic", 1251, "\xC4\xE0", "\xD0\x94\xD0\xB0"},
    {"ShiftJisWithBackslashByte", 932, "\x95\x5C", "\xE8\xA1\xA8"},
    {"Utf8", 65001, "\xC3\xA9", "\xC3\xA9"},
    {"InvalidUtf8Survives", 65001, "a\xFF\xC3z", "a\xFF\xC3z"},
    {"EscapeOfWhatThePageLacks", 1252, "\\U+03B1", "\xCE\xB1"},
    {"Caret", 1252, "1^ 2", "1^2"},
    {"LineFeed", 1252, "a^Jb^Ic", "a\nb\tc"},
    {"CaretAtTheEnd", 1252, "a^ ", "a^"},
};

}

class DxfText : public testing::TestWithParam<TextCase> {};
INSTANTIATE_TEST_SUITE_P(Cases, DxfText, testing::ValuesIn(kCases), [](const auto& info) { return info.param.name; });

TEST_P(DxfText, ComesAndGoes)
{
    const CodePage& page = *CodePage::byNumber(GetParam().page);
    std::string decoded;
    DxfTextDecoder(page).decode(GetParam().raw, decoded);
    EXPECT_EQ(decoded, GetParam().utf8);
    EXPECT_EQ(DxfTextEncoder(page).encode(GetParam().utf8), GetParam().raw);
}

TEST(DxfText, ALoneCaretStandsForItself)
{
    std::string decoded;
    DxfTextDecoder(*CodePage::byNumber(1252)).decode("1^2", decoded);
    EXPECT_EQ(decoded, "1^2");
}

TEST(DxfText, FilesFromR2007OnAreUtf8)
{
    EXPECT_TRUE(codePageOfFile(DxfVersion::R2007, "ANSI_1251").isUtf8());
    EXPECT_EQ(codePageOfFile(DxfVersion::R2004, "ANSI_1251").number(), 1251);
    EXPECT_EQ(codePageOfFile(DxfVersion::R12, "").number(), 1252);
    EXPECT_EQ(codePageOfFile(DxfVersion::R2000, "no such page").number(), 1252);
}
