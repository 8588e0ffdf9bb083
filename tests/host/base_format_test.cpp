#include "sdk/vcut.h"

#include "host/base/console.h"

#include <gtest/gtest.h>

namespace {

TEST(Format, Conversions)
{
    const wchar_t* wide = L"w\u00e9";
    EXPECT_EQ(vkFormat(L"%s|%ls|%S|%hs", wide, wide, wide, "n\xC3\xA9"), L"w\u00e9|w\u00e9|w\u00e9|n\u00e9");
    EXPECT_EQ(vkFormat(L"%5s|%-5s|%.2s|", L"abc", L"abc", L"abc"), L"  abc|abc  |ab|");
    EXPECT_EQ(vkFormat(L"%d %i %u %x %X %o", -5, 7, -1, -1, 255, 8), L"-5 7 4294967295 ffffffff FF 10");
    EXPECT_EQ(vkFormat(L"%ld %lld %llu", 1L << 40, 1LL << 50, ~0ULL),
              L"1099511627776 1125899906842624 18446744073709551615");
    EXPECT_EQ(vkFormat(L"%05d|%-5d|%+d|% d|%.3d|%5.3d", 42, 42, 42, 42, 7, 7), L"00042|42   |+42| 42|007|  007");
    EXPECT_EQ(vkFormat(L"%f %.4f %8.2f|%-8.2f|%08.2f", 1.5, 2.0, 3.14159, 3.0, -3.5),
              L"1.500000 2.0000     3.14|3.00    |-0003.50");
    EXPECT_EQ(vkFormat(L"%g %e %G", 0.0001, 12345.678, 1e-10), L"0.0001 1.234568e+04 1E-10");
    EXPECT_EQ(vkFormat(L"%c%c%%", L'\u00e9', 65), L"\u00e9A%");
    EXPECT_EQ(vkFormat(L"%*d|%-*d|%.*f", 4, 1, 4, 1, 1, 2.25), L"   1|1   |2.2");
    EXPECT_EQ(vkFormat(L"%2$s %1$s", L"a", L"b"), L"b a");
    EXPECT_EQ(vkFormat(L"%I64d", 1LL << 40), L"1099511627776");
    EXPECT_EQ(vkFormat(L"%#x", 255), L"0xff");
}

TEST(Format, BadFormatsAreHarmless)
{
    const wchar_t* none = nullptr;
    EXPECT_EQ(vkFormat(L"%ls %ls"), L"%ls %ls");
    EXPECT_EQ(vkFormat(L"50% done %"), L"50% done %");
    EXPECT_EQ(vkFormat(L"%y %d", 3), L"%y 3");
    EXPECT_EQ(vkFormat(L"%s", none), L"(null)");
    EXPECT_EQ(vkFormat(L"%s", 5), L"5");
    EXPECT_EQ(vkFormat(L"%d", L"text"), L"text");
    EXPECT_EQ(vkFormat(L"%d", 2.9), L"2");
    EXPECT_EQ(vkFormat(L"%f", 2), L"2.000000");
    EXPECT_EQ(vkFormat(L"%9$d", 2), L"%9$d");
    EXPECT_EQ(vkFormat(nullptr), L"");
    EXPECT_EQ(vkFormat(L"%999999999d", 1).size(), 4096u);
    EXPECT_GT(vkFormat(L"%.4000f", 1e300).size(), 4000u);
}

TEST(Format, DataIsNeverAFormat) { EXPECT_EQ(vkFormat(L"%s", L"%s%n%d"), L"%s%n%d"); }

TEST(Format, PrintGoesToTheSinkAndSPrintCuts)
{
    std::string printed;
    setConsoleSink([&](std::string_view text) { printed += text; });
    vcutPrintf(L"\n%s %d", L"\u00e9", 3);
    setConsoleSink({});
    EXPECT_EQ(printed, "\n\xC3\xA9 3");
    wchar_t buffer[6];
    EXPECT_EQ(vcutSPrintf(buffer, 6, L"%s", L"abcdefgh"), 5);
    EXPECT_STREQ(buffer, L"abcde");
}

}  // namespace
