// Chains made by hand: look-up, getters and setters, building and copying.
#include "core/ColourGroups.h"
#include "core/PublicFunction.h"
#include "host/base/rb.h"
#include "sdk/vccm.h"
#include "sdk/vcut.h"

#include <gtest/gtest.h>

namespace {

// A text with two heights, of which the first counts.
RbPtr textChain()
{
    const vds_name name = {11, 12};
    const vds_point at = {1, 2, 3};
    return RbPtr(
        vcutBuildList(-1, name, RTDXF0, L"TEXT", 8, L"WALLS", 62, 3, 10, at, 40, 2.5, 1, L"one", 40, 9.0, RTNONE));
}

RbPtr namesChain(int count)
{
    resbuf* chain = nullptr;
    for (std::int64_t i = 1; i <= count; ++i) {
        const vds_name name = {i, 10 * i};
        append_rblist(chain, alloc_rb(RTENAME, L"rlname", name));
    }
    return RbPtr(chain);
}

TEST(Chain, FirstNodeOfACodeCounts)
{
    const RbPtr chain = textChain();
    EXPECT_EQ(dxf(chain.get(), 40)->resval.rreal, 2.5);
    EXPECT_EQ(getResbuf(chain.get(), 8), dxf(chain.get(), 8));
    EXPECT_EQ(dxf(chain.get(), 41), nullptr);
    EXPECT_EQ(dxf(nullptr, 40), nullptr);
    resbuf* node = nullptr;
    EXPECT_EQ(vk_Associate(chain.get(), 62, &node), 0);
    EXPECT_EQ(node->resval.rint, 3);
    EXPECT_EQ(vk_Associate(chain.get(), 63, &node), -1);
    EXPECT_EQ(vk_Associate(nullptr, 62, &node), -1);
    EXPECT_EQ(node->restype, 62);
}

TEST(Chain, CheckedGettersWantTheRightType)
{
    const RbPtr chain = textChain();
    wchar_t text[4] = L"";
    int number = 7;
    double real = 7;
    EXPECT_EQ(getrbstring(text, 4, chain.get(), 8), RTNORM);
    EXPECT_STREQ(text, L"WAL");
    EXPECT_EQ(getrbshort(&number, chain.get(), 62), RTNORM);
    EXPECT_EQ(number, 3);
    EXPECT_EQ(getrbreal(&real, chain.get(), 40), RTNORM);
    EXPECT_EQ(real, 2.5);
    EXPECT_EQ(getrbstring(text, 4, chain.get(), 40), RTERROR);
    EXPECT_EQ(getrbshort(&number, chain.get(), 8), RTERROR);
    EXPECT_EQ(getrbreal(&real, chain.get(), 62), RTERROR);
    EXPECT_EQ(getrbreal(&real, chain.get(), 41), RTERROR);
    EXPECT_EQ(number, 3);
    EXPECT_EQ(real, 2.5);
}

TEST(Chain, FlagGettersSayFound)
{
    const RbPtr chain = textChain();
    vds_point at = {};
    wchar_t text[20] = L"";
    double real = 0;
    EXPECT_EQ(getrb_point(chain.get(), 10, at), 1);
    EXPECT_EQ(at[2], 3);
    EXPECT_EQ(getrb_string(chain.get(), 1, text, 20), 1);
    EXPECT_STREQ(text, L"one");
    EXPECT_EQ(getrb_real(chain.get(), 40, &real), 1);
    EXPECT_EQ(getrb_real(chain.get(), 41, &real), 0);
    EXPECT_EQ(real, 2.5);
}

TEST(Chain, OnlyTheLowByteOfAFlagCounts)
{
    const RbPtr chain = textChain();
    for (const auto& [given, stored] : {std::pair{0, 0}, {1, 1}, {2, 1}, {256, 0}, {257, 1}}) {
        EXPECT_EQ(setrb_int(chain.get(), 62, given), 1);
        EXPECT_EQ(dxf(chain.get(), 62)->resval.rint, stored) << given;
    }
    EXPECT_EQ(setrb_int(chain.get(), 63, 1), 0);
}

TEST(Chain, TheNodeTakesOverAString)
{
    const RbPtr chain = textChain();
    wchar_t *mine = nullptr, *other = nullptr, *old = nullptr;
    vcutNewString(L"two", mine);
    vcutNewString(L"three", other);
    EXPECT_EQ(setrb_string(chain.get(), 1, mine, &old), 1);
    EXPECT_STREQ(old, L"one");
    EXPECT_EQ(dxf(chain.get(), 1)->resval.rstring, mine);
    EXPECT_EQ(setrb_string(chain.get(), 1, other, nullptr), 1);
    EXPECT_STREQ(dxf(chain.get(), 1)->resval.rstring, L"three");
    EXPECT_EQ(setrb_string(chain.get(), 2, old, nullptr), 0);
    vcutDelString(old);
}

TEST(Chain, StatusSettersAndGetters)
{
    const RbPtr chain = textChain();
    int number = 5;
    double real = 0;
    vds_name name = {};
    const vds_point to = {7, 8, 9};
    EXPECT_EQ(GetBufInt(chain.get(), 70, number), RTERROR);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(SetBufInt(chain.get(), 62, -4), RTNORM);
    EXPECT_EQ(GetBufInt(chain.get(), 62, number), RTNORM);
    EXPECT_EQ(number, -4);
    EXPECT_EQ(SetBufReal(chain.get(), 40, 6.5), RTNORM);
    EXPECT_EQ(GetBufReal(chain.get(), 40, real), RTNORM);
    EXPECT_EQ(real, 6.5);
    EXPECT_EQ(GetBufName(chain.get(), -1, name), RTNORM);
    EXPECT_EQ(name[1], 12);
    EXPECT_EQ(SetBufPoint(chain.get(), 10, to), RTNORM);
    EXPECT_EQ(dxf(chain.get(), 10)->resval.rpoint[1], 8);
    EXPECT_EQ(SetBufString(chain.get(), 1, L"longer than it was"), RTNORM);
    wchar_t text[7] = L"";
    EXPECT_EQ(GetBufString(chain.get(), 1, text, 7), RTNORM);
    EXPECT_STREQ(text, L"longer");
    EXPECT_EQ(SetBufReal(nullptr, 40, 1), RTERROR);
}

TEST(Chain, NamesOfNestedPicks)
{
    vds_name first = {}, last = {}, before = {5, 5};
    EXPECT_EQ(GetFirstNameInBuf(nullptr, first), RTERROR);
    EXPECT_EQ(GetLastNameInBuf(nullptr, last), RTERROR);
    EXPECT_EQ(GetBufLast2Names(nullptr, last, before), RTERROR);
    const RbPtr one = namesChain(1), three = namesChain(3);
    EXPECT_EQ(GetBufLast2Names(one.get(), last, before), RTNORM);
    EXPECT_EQ(last[0], 1);
    EXPECT_EQ(before[0], 5);
    EXPECT_EQ(GetBufLast2Names(three.get(), last, before), RTNORM);
    EXPECT_EQ(last[1], 30);
    EXPECT_EQ(before[0], 2);
    EXPECT_EQ(GetLastNameInBuf(three.get(), last), RTNORM);
    EXPECT_EQ(last[0], 3);
}

TEST(Chain, NodesAreMadeByKind)
{
    const short number = -3;
    const std::int32_t wide = 70000;
    const RbPtr shortNode(alloc_rb(62, L"RINT", &number)), longNode(alloc_rb(90, L"rlong", &wide));
    const RbPtr text(alloc_rb(1, L"rString", L"abc")), bare(alloc_rb(40, L"colour", &wide));
    EXPECT_EQ(shortNode->resval.rint, -3);
    EXPECT_EQ(longNode->resval.rlong, 70000);
    EXPECT_STREQ(text->resval.rstring, L"abc");
    EXPECT_EQ(bare->restype, 40);
    EXPECT_EQ(bare->resval.rreal, 0);
    EXPECT_EQ(bare->rbnext, nullptr);
}

TEST(Chain, CopiesOwnTheirTexts)
{
    const RbPtr chain = textChain();
    for (const resbuf* node = chain.get(); node; node = node->rbnext) {
        if (node->restype == RTDXF0)
            continue;
        const RbPtr copy(duplicateResbufNode(node));
        ASSERT_TRUE(copy) << node->restype;
        EXPECT_EQ(copy->restype, node->restype);
        EXPECT_EQ(copy->rbnext, nullptr);
    }
    const RbPtr copy(duplicateResbufNode(dxf(chain.get(), 1)));
    EXPECT_NE(copy->resval.rstring, dxf(chain.get(), 1)->resval.rstring);
    EXPECT_STREQ(copy->resval.rstring, L"one");
}

TEST(Chain, BinaryDataIsCopied)
{
    const RbPtr node(vcutNewRb(1004));
    ASSERT_EQ(vcutBuildRbBin(node.get(), 3, "a\0b"), RTNORM);
    const RbPtr copy(duplicateResbufNode(node.get()));
    ASSERT_TRUE(copy);
    ASSERT_EQ(copy->resval.rbinary.clen, 3);
    EXPECT_EQ(std::string(copy->resval.rbinary.buf, 3), std::string("a\0b", 3));
}

TEST(Chain, EveryNodeOfACodeGoes)
{
    resbuf* chain = nullptr;
    const double heights[] = {1, 2, 3};
    append_rblist(chain, alloc_rb(40, L"rreal", &heights[0]));
    appendRb(chain, alloc_rb(41, L"rreal", &heights[1]));
    appendRb(chain, alloc_rb(40, L"rreal", &heights[2]));
    deleteResbufNode(chain, 40);
    ASSERT_TRUE(chain);
    EXPECT_EQ(chain->restype, 41);
    EXPECT_EQ(chain->rbnext, nullptr);
    deleteResbufNode(chain, 41);
    EXPECT_EQ(chain, nullptr);
}

TEST(Chain, VerticesGrowAtTheTail)
{
    const RbPtr head(vcutNewRb(90));
    resbuf* tail = head.get();
    const vds_point a = {1, 2, 0}, b = {3, 4, 0};
    LwplrbAddVertFromData(tail, a, 0.1, 0.2, 1.0);
    LwplrbAddVertFromData(tail, b, 0.3, 0.4, -1.0);
    EXPECT_EQ(tail->restype, 42);
    EXPECT_EQ(tail->resval.rreal, -1.0);
    EXPECT_EQ(tail->rbnext, nullptr);
    std::string codes;
    for (const resbuf* node = head.get(); node; node = node->rbnext)
        codes += std::to_string(node->restype) + " ";
    EXPECT_EQ(codes, "90 10 40 41 42 10 40 41 42 ");
}

std::string codesOf(const RbPtr& chain)
{
    std::string codes;
    for (const resbuf* node = chain.get(); node; node = node->rbnext)
        codes += (codes.empty() ? "" : " ") + std::to_string(node->restype);
    return codes;
}

TEST(ColourGroups, IndexKeepsTheSignOfALayerThatIsOff)
{
    const RbPtr chain(vcutBuildList(2, L"L", 62, -3, RTNONE));
    EXPECT_EQ(vds_UpdateVkColorToResbufList(chain.get(), VcCmColor::fromIndex(5)), RTNORM);
    EXPECT_EQ(dxf(chain.get(), 62)->resval.rint, -5);
    EXPECT_EQ(vds_UpdateVkColorToResbufList(nullptr, VcCmColor::fromIndex(5)), RTERROR);
    const RbPtr without(vcutBuildList(2, L"L", RTNONE));
    EXPECT_EQ(vds_UpdateVkColorToResbufList(without.get(), VcCmColor::fromIndex(5)), RTERROR);
}

TEST(ColourGroups, TrueColourComesAndGoes)
{
    const RbPtr chain(vcutBuildList(2, L"L", 62, 3, 6, L"Continuous", RTNONE));
    VcCmColor colour;
    colour.setRGB(1, 2, 3);
    EXPECT_EQ(vds_UpdateVkColorToResbufList(chain.get(), colour), RTNORM);
    EXPECT_EQ(codesOf(chain), "2 62 420 6");
    EXPECT_EQ(dxf(chain.get(), 420)->resval.rlong, 0x010203);
    EXPECT_EQ(setColourBookName(chain.get(), L"BOOK$RED"), RTNORM);
    EXPECT_EQ(codesOf(chain), "2 62 420 430 6");
    EXPECT_EQ(vds_UpdateVkColorToResbufList(chain.get(), VcCmColor::fromIndex(4)), RTNORM);
    EXPECT_EQ(codesOf(chain), "2 62 6");
    EXPECT_EQ(setColourBookName(chain.get(), L"BOOK$RED"), RTERROR);
}

}  // namespace
