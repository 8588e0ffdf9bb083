// Group codes by kind, and checks of texts, names and widths.
#include "core/PublicFunction.h"
#include "text/Underline.h"
#include "vkdefs.h"

#include <gtest/gtest.h>

namespace {

TEST(Codes, ResultTypes)
{
    const struct {
        int code, type;
    } kCases[] = {
        {-4, RTNONE},      {-3, RTSHORT},   {-2, RTENAME},   {-1, RTENAME},   {0, RTSTR},        {9, RTSTR},
        {10, RT3DPOINT},   {19, RT3DPOINT}, {20, RTREAL},    {49, RTREAL},    {50, RTANG},       {59, RTANG},
        {60, RTSHORT},     {79, RTSHORT},   {80, RTNONE},    {90, RTNONE},    {100, RTNONE},     {105, RTSTR},
        {139, RTNONE},     {140, RTREAL},   {147, RTREAL},   {148, RTNONE},   {170, RTSHORT},    {210, RT3DPOINT},
        {239, RT3DPOINT},  {270, RTSHORT},  {289, RTSHORT},  {290, RTNONE},   {330, RTNONE},     {340, RTSTR},
        {369, RTSTR},      {370, RTSHORT},  {380, RTNONE},   {999, RTSTR},    {1000, RTSTR},     {1004, RTNONE},
        {1010, RT3DPOINT}, {1040, RTREAL},  {1070, RTSHORT}, {1071, RTSHORT}, {2010, RT3DPOINT}, {5000, RTNONE},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(dxf2rbtype(c.code), c.type) << c.code;
}

TEST(Codes, DataTypes)
{
    const struct {
        int code, type;
    } kCases[] = {
        {-4, -4},       {-3, -3},       {-1, -1},         {0, RTSTR},     {10, RT3DPOINT},  {17, RT3DPOINT},
        {18, RTNONE},   {37, RTNONE},   {38, RTREAL},     {59, RTREAL},   {60, RTSHORT},    {90, RTLONG},
        {99, RTLONG},   {100, RTSTR},   {103, RTNONE},    {105, RTSTR},   {110, RT3DPOINT}, {140, RTREAL},
        {149, RTREAL},  {160, RTNONE},  {210, RT3DPOINT}, {270, RTSHORT}, {299, RTSHORT},   {300, RTSTR},
        {310, RTENAME}, {369, RTENAME}, {370, RTSHORT},   {390, RTENAME}, {400, RTSHORT},   {410, RTSTR},
        {420, RTNONE},  {999, RTSTR},   {1003, RTSTR},    {1004, 1004},   {1005, RTSTR},    {1010, RT3DPOINT},
        {1014, RTNONE}, {1040, RTREAL}, {1070, RTSHORT},  {1071, RTLONG}, {1072, RTNONE},   {5000, 5000},
        {5005, 5005},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(dxfCodeToDataType(c.code), c.type) << c.code;
}

TEST(Texts, OnlyPlainLettersAreFolded)
{
    EXPECT_EQ(strings_i_compare(L"Wall", L"wALL"), 0);
    EXPECT_EQ(strings_i_compare(L"a", L"C"), 'a' - 'c');
    EXPECT_EQ(strings_i_compare(L"ab", L"a"), 'b');
    EXPECT_EQ(strings_i_compare(L"", L""), 0);
    EXPECT_NE(strings_i_compare(L"\u00c4", L"\u00e4"), 0);
    EXPECT_EQ(strings_i_compare(nullptr, L"a"), -1);
    EXPECT_EQ(strings_i_compare(L"a", nullptr), -1);
}

TEST(Texts, Numbers)
{
    const std::pair<const wchar_t*, bool> kCases[] = {{L"", true},   {L"1.5", true}, {L"1.2.3", false}, {L".", true},
                                                      {L"12", true}, {L"-1", false}, {L"1e3", false},   {L" 1", false}};
    for (const auto& [text, expected] : kCases)
        EXPECT_EQ(IsAllNum(text), expected) << text;
}

TEST(Texts, LegalNames)
{
    for (const wchar_t* name : {L"", L"WALLS", L"a b", L"x;y", L"D\u00e4mmung", L"x$0$y"})
        EXPECT_TRUE(IsLegalName(name)) << name;
    for (const wchar_t* name :
         {L"a\"", L"a'b", L"*U1", L"a,b", L"a/b", L"a:b", L"<", L"a=b", L">", L"?", L"a\\b", L"x|y"})
        EXPECT_FALSE(IsLegalName(name)) << name;
}

TEST(Texts, SelectedTextsAreEqualToTheLetter)
{
    CStringArray array;
    array.Add(L"one");
    array.Add(L"Two");
    EXPECT_TRUE(IsStringSelected(L"Two", array));
    EXPECT_FALSE(IsStringSelected(L"two", array));
    EXPECT_FALSE(IsStringSelected(L"", array));
}

TEST(Widths, OnlyStandardOnesMatch)
{
    int hundredths = -1;
    EXPECT_EQ(MatchLineWidth(0.2000000001, &hundredths), RTNORM);
    EXPECT_EQ(hundredths, 20);
    EXPECT_EQ(MatchLineWidth(0, &hundredths), RTNORM);
    EXPECT_EQ(hundredths, 0);
    hundredths = -1;
    EXPECT_EQ(MatchLineWidth(0.200001, &hundredths), RTERROR);
    EXPECT_EQ(MatchLineWidth(2.12, &hundredths), RTERROR);
    EXPECT_EQ(hundredths, -1);
    for (const double width : {0.05, 0.13, 0.25, 0.5, 1.0, 1.4, 2.0})
        EXPECT_EQ(MatchLineWidth(width, &hundredths), RTNORM) << width;
}

TEST(Underlines, OnlyCodesAtTheStartCount)
{
    const struct {
        const wchar_t* text;
        int count;
        const wchar_t *without, *with;
    } kCases[] = {
        {L"", 0, L"", L"%%u"},
        {L"%%", 0, L"%%", L"%%u%%"},
        {L"ABC", 0, L"ABC", L"%%uABC"},
        {L"%%UABC", 1, L"ABC", L"%%uABC"},
        {L"%%U%%uABC", 2, L"ABC", L"%%uABC"},
        {L"A%%uB", 0, L"A%%uB", L"%%uA%%uB"},
        {L"%%o%%uABC", 0, L"%%o%%uABC", L"%%u%%o%%uABC"},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(countUnderlines(c.text), c.count) << c.text;
        EXPECT_STREQ(withoutUnderlines(c.text), c.without);
        EXPECT_STREQ(underlined(c.text), c.with);
    }
}

}  // namespace
