#include "host/base/group_code.h"
#include "host/base/rb.h"
#include "sdk/vcut.h"

#include <cwchar>
#include <gtest/gtest.h>

namespace {

struct KindCase {
    int code;
    GroupKind kind;
};

TEST(GroupCode, KindOfEachRange)
{
    using enum GroupKind;
    const KindCase cases[] = {
        {0, String},      {5, Handle},      {9, String},    {10, Point},       {18, Point},      {39, Real},
        {59, Real},       {60, Int16},      {79, Int16},    {80, None},        {90, Int32},      {100, String},
        {105, Handle},    {112, Point},     {140, Real},    {160, Int64},      {175, Int16},     {210, Point},
        {289, Int16},     {290, Bool},      {300, String},  {310, Binary},     {330, Reference}, {360, Reference},
        {370, Int16},     {390, Reference}, {410, String},  {420, Int32},      {450, Int32},     {460, Real},
        {480, Reference}, {999, String},    {1000, String}, {1004, Binary},    {1005, Handle},   {1011, Point},
        {1040, Real},     {1070, Int16},    {1071, Int32},  {-1, Reference},   {-3, None},       {-4, String},
        {5001, Real},     {5003, Int16},    {5005, String}, {5006, Reference}, {5009, Point},    {5010, Int32},
        {5016, None},     {5020, String},   {5021, None},   {-100, None},      {32767, None},
    };
    for (const auto& [code, kind] : cases)
        EXPECT_EQ(groupKind(code), kind) << code;
}

TEST(GroupCode, CoordinatesOfAFileAreReals)
{
    EXPECT_EQ(fileGroupKind(10), GroupKind::Real);
    EXPECT_EQ(fileGroupKind(1013), GroupKind::Real);
    EXPECT_EQ(fileGroupKind(62), GroupKind::Int16);
}

TEST(Chain, BuildListTakesEveryKindOfValue)
{
    const vds_point point = {1, 2, 3};
    const vds_name name = {7, 8};
    char raw[] = {1, 0, 2};
    const vds_binary bytes = {3, raw};
    RbPtr chain(vcutBuildList(RTDXF0, L"LINE", 10, point, 40, 2.5, 70, -3, 90, 1 << 20, 290, 1, 330, name, 310, &bytes,
                              160, std::int64_t{1} << 40, RTT, RTLB, 5, L"2F", RTLE, RTNONE));
    const resbuf* rb = chain.get();
    const auto next = [&rb] { return rb = rb->rbnext; };
    EXPECT_EQ(rbUtf8(*rb), "LINE");
    EXPECT_EQ(next()->resval.rpoint[2], 3);
    EXPECT_EQ(rbReal(*next()), 2.5);
    EXPECT_EQ(rbInteger(*next()), -3);
    EXPECT_EQ(rbInteger(*next()), 1 << 20);
    EXPECT_EQ(rbInteger(*next()), 1);
    EXPECT_EQ(next()->resval.rlname[1], 8);
    EXPECT_EQ(rbBytes(*next()), std::string_view(raw, 3));
    EXPECT_EQ(rbInteger(*next()), std::int64_t{1} << 40);
    EXPECT_EQ(next()->restype, RTT);
    EXPECT_EQ(next()->restype, RTLB);
    EXPECT_EQ(rbUtf8(*next()), "2F");
    EXPECT_EQ(next()->restype, RTLE);
    EXPECT_EQ(next(), nullptr);
}

TEST(Chain, CodeZeroEndsAListAndUnknownCodesRefuseIt)
{
    RbPtr chain(vcutBuildList(62, 1, 0));
    EXPECT_EQ(chain->rbnext, nullptr);
    EXPECT_EQ(vcutBuildList(62, 1, 85, 1, RTNONE), nullptr);
    EXPECT_EQ(vcutBuildList(RTNONE), nullptr);
}

TEST(Chain, CopiesOwnTheirValues)
{
    RbBuilder builder;
    builder.addUtf8(1, "\xC3\xA9t\xC3\xA9");
    builder.addBytes(1004, std::string_view("\0\1", 2));
    builder.addPoint(11, 1, 2, 3);
    const RbPtr original = builder.take();
    const RbPtr copy = copyRbChain(original.get());
    EXPECT_NE(copy->resval.rstring, original->resval.rstring);
    EXPECT_STREQ(copy->resval.rstring, L"\u00e9t\u00e9");
    for (const resbuf *a = original.get(), *b = copy.get(); a; a = a->rbnext, b = b->rbnext)
        EXPECT_TRUE(sameRbValue(*a, *b)) << a->restype;
}

TEST(Chain, BinaryValuesThatDoNotFitAreRefused)
{
    RbPtr node(vcutNewRb(310));
    const std::string bytes(40000, 'x');
    EXPECT_EQ(vcutBuildRbBin(node.get(), bytes.size(), bytes.data()), RTERROR);
    EXPECT_EQ(vcutBuildRbBin(node.get(), 4, bytes.data()), RTNORM);
    EXPECT_EQ(vcutBuildRbBin(node.get(), 2, "ab"), RTNORM);  // replaces
    EXPECT_EQ(rbBytes(*node), "ab");
}

TEST(HostStrings, AnyReleaseTakesAnyString)
{
    wchar_t* text = nullptr;
    ASSERT_EQ(vcutNewString(L"abc", text), RTNORM);
    EXPECT_EQ(vcutUpdString(text + 1, text), RTNORM);
    EXPECT_STREQ(text, L"bc");
    vcad_free(text);
    EXPECT_EQ(vcutNewString(nullptr, text), RTERROR);
    ASSERT_EQ(vcutNewString(text, 4 * 3 + 1), RTNORM);  // a byte count short of its terminator
    std::wcscpy(text, L"xyz");
    EXPECT_STREQ(text, L"xyz");
    vcutDelString(text);
    EXPECT_EQ(text, nullptr);
}

TEST(SmallGeometry, AngleIsWithinOneTurn)
{
    const vds_point o = {0, 0, 0}, south = {0, -2, 5}, west = {-1, 0, 0}, almostEast = {1, -1e-300, 0};
    EXPECT_NEAR(vcutAngle(o, south), 4.71238898, 1e-8);
    EXPECT_NEAR(vcutAngle(o, west), 3.14159265, 1e-8);
    EXPECT_EQ(vcutAngle(o, o), 0);
    EXPECT_LT(vcutAngle(o, almostEast), 6.2831853072);
    EXPECT_NEAR(vcutDistance(o, south), 5.38516481, 1e-8);
    vds_point p = {1, 1, 9};
    vcutPolar(p, 0, 2, p);
    EXPECT_EQ(p[0], 3);
    EXPECT_EQ(p[2], 9);
}

struct MatchCase {
    const wchar_t* text;
    const wchar_t* pattern;
    bool matches;
};

TEST(WildCard, Patterns)
{
    const MatchCase cases[] = {
        {L"WALL-1", L"WALL*", true},
        {L"WALL-1", L"wall*", false},
        {L"WALL-1", L"WALL-#", true},
        {L"WALL-A", L"WALL-#", false},
        {L"A1", L"@#", true},
        {L"\u00c4", L"@", true},
        {L"-", L".", true},
        {L"a", L".", false},
        {L"abc", L"a?c", true},
        {L"ac", L"a?c", false},
        {L"DOOR", L"~WALL*", true},
        {L"WALL", L"~WALL*", false},
        {L"b", L"[a-c]", true},
        {L"d", L"[a-c]", false},
        {L"d", L"[~a-c]", true},
        {L"x]", L"x[]]", true},
        {L"A*", L"A`*", true},
        {L"AB", L"A`*", false},
        {L"B", L"A,B", true},
        {L"A,B", L"A`,B", true},
        {L"C", L"A,B", false},
        {L"", L"*", true},
        {L"", L"", true},
        {L"a", L"", false},
        {L"aXbXc", L"a*X*c", true},
        {L"aXb", L"a*X*c", false},
        {L"[", L"[", true},
        {L"a[", L"a[", true},
        {L"-", L"[a-]", true},
    };
    for (const auto& [text, pattern, matches] : cases)
        EXPECT_EQ(vcutWcMatch(text, pattern), matches) << testing::PrintToString(std::wstring(pattern));
}

TEST(WildCard, ManyRunsStayFast)
{
    std::wstring pattern, text(20000, L'a');
    for (int i = 0; i < 60; ++i)
        pattern += L"a*";
    EXPECT_FALSE(vcutWcMatch(text.c_str(), (pattern + L"b").c_str()));
}

}  // namespace
