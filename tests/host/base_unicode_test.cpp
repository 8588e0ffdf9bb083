#include "host/base/code_page.h"
#include "host/base/unicode.h"

#include <gtest/gtest.h>
#include <random>

namespace {

TEST(Unicode, EveryByteStringSurvivesWide)
{
    std::mt19937 random(7);
    const char32_t pool[] = {'a', 0xE9, 0x20AC, 0x1F600, 0xD800};
    for (int round = 0; round < 2000; ++round) {
        std::string bytes;
        for (int i = 0; i < 12; ++i) {
            if (random() % 2)
                bytes += static_cast<char>(random());
            else
                appendUtf8(bytes, pool[random() % 5]);
        }
        const std::wstring wide = utf8ToWide(bytes);
        ASSERT_EQ(wide.size(), wideLength(bytes));
        ASSERT_EQ(wideToUtf8(wide), bytes);
    }
}

TEST(Unicode, LoneSurrogatesSurvive)
{
    const std::wstring lone = {static_cast<wchar_t>(0xD83D), L'x', static_cast<wchar_t>(0xDE00),
                               static_cast<wchar_t>(0xDC90)};
    EXPECT_EQ(utf8ToWide(wideToUtf8(lone)), lone);
}

TEST(Unicode, OverlongAndTooLargeFormsAreStrayBytes)
{
    EXPECT_FALSE(isValidUtf8("\xC0\x80"));
    EXPECT_FALSE(isValidUtf8("\xF4\x90\x80\x80"));
    EXPECT_FALSE(isValidUtf8("\xE2\x82"));
    EXPECT_FALSE(isValidUtf8("\xED\xA0\x80"));
    EXPECT_TRUE(isValidUtf8("\xF4\x8F\xBF\xBF"));
    EXPECT_EQ(wideToUtf8(std::wstring{static_cast<wchar_t>(0x110000)}), "\xEF\xBF\xBD");
}

TEST(LetterCase, KeepsTheLength)
{
    EXPECT_EQ(toUpper(std::wstring_view(L"stra\u00dfe \u00e9\u0451")), L"STRA\u00dfE \u00c9\u0401");
    EXPECT_EQ(toLower(std::string_view("\xC3\x89T\xC3\x89")), "\xC3\xA9t\xC3\xA9");
}

TEST(LetterCase, NamesCompareFolded)
{
    EXPECT_TRUE(equalNoCase(std::string_view("W\xC3\x84NDE"), std::string_view("w\xC3\xA4nde")));
    EXPECT_FALSE(equalNoCase(std::string_view("A"), std::string_view("AB")));
    EXPECT_EQ(hashNoCase("W\xC3\x84NDE"), hashNoCase("w\xC3\xA4nde"));
    EXPECT_EQ(foldKey("AbC\xC3\x84"), "abc\xC3\xA4");
    EXPECT_LT(compareNoCase(std::wstring_view(L"abc"), std::wstring_view(L"ABD")), 0);
    EXPECT_GT(compareNoCase(std::wstring_view(L"abc"), std::wstring_view(L"AB")), 0);
}

TEST(LetterCase, CollationSortsAccentsBesideTheirLetter)
{
    EXPECT_LT(collate(std::string_view("\xC3\xA4rger"), std::string_view("zebra")), 0);
    EXPECT_LT(collate(std::string_view("apfel"), std::string_view("Birne")), 0);
    EXPECT_EQ(collate(std::string_view("x"), std::string_view("x")), 0);
}

struct PageCase {
    const char* page;
    std::string bytes;
    std::string utf8;
};

TEST(CodePages, DecodeAndEncode)
{
    const PageCase cases[] = {
        {"ANSI_1252", "\xE9\x80", "\xC3\xA9\xE2\x82\xAC"},
        {"ansi_1251", "\xC4\xE0", "\xD0\x94\xD0\xB0"},
        {"ANSI_932", "\x83\x5C\\", "\xE3\x82\xBD\\"},  // the second byte is a backslash
        {"dos932", "\xB1", "\xEF\xBD\xB1"},
        {"GB2312", "\xC4\xE3", "\xE4\xBD\xA0"},
        {"BIG5", "\xA7\x41", "\xE4\xBD\xA0"},
        {"ANSI_949", "\xB0\xA1", "\xEA\xB0\x80"},
        {"JOHAB", "\x88\x61", "\xEA\xB0\x80"},
        {"dos850", "\x82", "\xC3\xA9"},
        {"UTF-8", "\xC3\xA9", "\xC3\xA9"},
    };
    for (const auto& [name, bytes, utf8] : cases) {
        const CodePage* page = CodePage::byName(name);
        ASSERT_TRUE(page) << name;
        EXPECT_EQ(page->toUtf8(bytes), utf8) << name;
        EXPECT_EQ(page->fromUtf8(utf8), bytes) << name;
    }
    EXPECT_EQ(CodePage::byName("EBCDIC"), nullptr);
    EXPECT_STREQ(CodePage::byDrawingIndex(30)->name(), "ANSI_1252");
}

TEST(CodePages, EveryPageOpensAndKeepsEveryByte)
{
    std::string all;
    for (int byte = 1; byte < 256; ++byte)
        all += static_cast<char>(byte);
    for (int index = 1; index <= 44; ++index) {
        const CodePage* page = CodePage::byDrawingIndex(index);
        if (!page)
            continue;
        const std::string once = page->toUtf8(all);
        EXPECT_EQ(page->toUtf8(page->fromUtf8(once)), once) << page->name();
        EXPECT_NE(once, all) << page->name();
    }
}

TEST(CodePages, BytesThatMeanNothingComeBack)
{
    const CodePage& page = *CodePage::byName("ANSI_932");
    for (const std::string bytes : {"a\xFE"
                                    "b",
                                    "\x83", "\x83\x01", "\xFF\xFE\xFD"})
        EXPECT_EQ(page.fromUtf8(page.toUtf8(bytes)), bytes);
}

TEST(CodePages, WhatAPageLacksIsEscapedOrCounted)
{
    const CodePage& page = *CodePage::byName("ANSI_1252");
    EXPECT_EQ(page.fromUtf8("\xE4\xBD\xA0"), "\\U+4F60");
    EXPECT_EQ(page.fromUtf8("\xF0\x9F\x98\x80"), "\\U+D83D\\U+DE00");
    std::size_t replaced = 0;
    EXPECT_EQ(page.fromUtf8("\xE4\xBD\xA0 x", CodePage::Unknown::QuestionMark, &replaced), "? x");
    EXPECT_EQ(replaced, 1u);
}

struct EscapeCase {
    const char* text;
    const char* decoded;
};

TEST(CodePages, Escapes)
{
    const EscapeCase cases[] = {
        {"\\U+4F60 x", "\xE4\xBD\xA0 x"},
        {"\\u+00e9", "\xC3\xA9"},
        {"\\U+D83D\\U+DE00", "\xF0\x9F\x98\x80"},
        {"\\U+D83D\\U+0041", "\\U+D83D\\U+0041"},
        {"\\U+DE00", "\\U+DE00"},
        {"\\U+000A", "\\U+000A"},
        {"\\U+12", "\\U+12"},
        {"\\U+12GZ\\", "\\U+12GZ\\"},
        {"\\M+1835C", "\xE3\x82\xBD"},
        {"\\M+5C4E3", "\xE4\xBD\xA0"},
        {"\\M+9C4E3", "\\M+9C4E3"},
        {"\\pxi1;\\U+00B0", "\\pxi1;\xC2\xB0"},
    };
    for (const auto& [text, decoded] : cases)
        EXPECT_EQ(decodeEscapes(text), decoded);
    EXPECT_EQ(escapeSurrogates("a\xED\xA0\xBD\xFF"), "a\\U+D83D\xFF");
}

}  // namespace
