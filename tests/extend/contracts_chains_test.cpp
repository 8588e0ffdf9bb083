// What commands may lean on about chains: what is in them, and what writing them back does.
#include "tests/extend/sdk_support.h"

#include <numbers>
#include <set>

namespace {

constexpr double kPi = std::numbers::pi;

class Chains : public SdkTest {
protected:
    static std::set<int> codesOf(const resbuf* chain)
    {
        std::set<int> codes;
        for (; chain; chain = chain->rbnext)
            codes.insert(chain->restype);
        return codes;
    }
    static Name record(const wchar_t* table, const wchar_t* name)
    {
        Name found;
        EXPECT_EQ(vcdbTblObjName(table, name, found.value), RTNORM);
        return found;
    }
    static int modify(const Name& name, resbuf* rest)
    {
        RbPtr chain(vcutNewRb(-1));
        std::copy_n(name.value, 2, chain->resval.rlname);
        chain->rbnext = rest;
        return vcdbEntMod(chain.get());
    }
    static Name mtext(const wchar_t* text, double x, double y)
    {
        const vds_point at = {x, y, 0};
        return made(vcutBuildList(RTDXF0, L"MTEXT", 100, L"AcDbEntity", 8, L"0", 100, L"AcDbMText", 10, at, 40, 2.0, 41,
                                  0.0, 1, text, RTNONE));
    }
    static int setDimension(const wchar_t* name, std::wstring value)
    {
        resbuf node = {};
        node.restype = RTSTR;
        node.resval.rstring = value.data();
        return vcedSetVar(name, &node);
    }
};

TEST_F(Chains, HoldEveryGroupOfTheirClass)
{
    const struct {
        const char* why;
        Name name;
        std::vector<int> there, missing;
    } cases[] = {
        {"a line", line(0, 0, 1, 1), {-1, 0, 330, 5, 100, 67, 410, 8, 10, 11, 210}, {6, 39, 48, 60, 62, 370, 420}},
        {"a circle", circle(0, 0, 1), {-1, 0, 330, 5, 8, 10, 40, 210}, {6, 39, 48, 60, 62, 370, 420}},
        {"a layer", record(L"LAYER", L"0"), {-1, 0, 330, 5, 2, 70, 62, 6}, {420}},
        {"a style", record(L"STYLE", L"Standard"), {-1, 0, 2, 70, 40, 41, 50, 71, 42, 3, 4}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        const RbPtr chain(vcdbEntGet(c.name));
        ASSERT_TRUE(chain);
        EXPECT_EQ(chain->restype, -1);
        const std::set<int> codes = codesOf(chain.get());
        for (const int code : c.there)
            EXPECT_TRUE(codes.count(code)) << code;
        for (const int code : c.missing)
            EXPECT_FALSE(codes.count(code)) << code;
    }
}

TEST_F(Chains, TextsHoldTheirDefaultsAndEmptyStringsToo)
{
    vds_name text;
    makeText(text);
    const RbPtr chain(vcdbEntGet(text));
    const std::set<int> codes = codesOf(chain.get());
    for (const int code : {50, 41, 51, 7, 71, 72, 11, 210, 73})
        EXPECT_TRUE(codes.count(code)) << code;
    const RbPtr style(vcdbTblSearch(L"STYLE", L"Standard", 0));
    EXPECT_EQ(textOf(style.get(), 4), L"") << "no big font, told as an empty string";
}

TEST_F(Chains, WhatIsLeftOutOfAnEntitysChainStays)
{
    const Name name = line(1, 2, 3, 4);
    const vds_point to = {9, 9, 0};
    EXPECT_EQ(modify(name, vcutBuildList(62, 3, RTNONE)), RTNORM);
    EXPECT_EQ(modify(name, vcutBuildList(11, to, RTNONE)), RTNORM);
    EXPECT_TRUE(pointOf(name, 10).isEqualTo({1, 2, 0}));
    EXPECT_TRUE(pointOf(name, 11).isEqualTo({9, 9, 0}));
    const RbPtr chain(vcdbEntGet(name));
    EXPECT_EQ(group(chain.get(), 62)->resval.rint, 3);
    EXPECT_EQ(textOf(name, 8), L"0");
}

TEST_F(Chains, WhatCannotBeChangesNothing)
{
    layer(L"L");
    const Name round = circle(1, 2, 3);
    const struct {
        const char* why;
        resbuf* rest;
    } cases[] = {
        {"no radius", vcutBuildList(40, 0.0, RTNONE)},
        {"below nothing", vcutBuildList(40, -5.0, RTNONE)},
        {"no layer of that name", vcutBuildList(8, L"NOLAYER", RTNONE)},
        {"no linetype of that name", vcutBuildList(6, L"NOLINETYPE", RTNONE)},
        {"endless", vcutBuildList(40, HUGE_VAL, RTNONE)},
        {"no number", vcutBuildList(40, std::nan(""), RTNONE)},
        {"another type", vcutBuildList(RTDXF0, L"LINE", RTNONE)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(modify(round, c.rest), RTERROR);
        EXPECT_EQ(realOf(round, 40), 3);
        EXPECT_EQ(textOf(round, 8), L"0");
        EXPECT_EQ(textOf(round, 0), L"CIRCLE");
    }
    EXPECT_EQ(vcdbEntMod(nullptr), RTERROR);
    const RbPtr nameless(vcutBuildList(40, 5.0, RTNONE));
    EXPECT_EQ(vcdbEntMod(nameless.get()), RTERROR);
    EXPECT_EQ(modify(Name(), vcutBuildList(40, 5.0, RTNONE)), RTERROR);
    ASSERT_EQ(vcdbEntDel(round), RTNORM);
    EXPECT_EQ(modify(round, vcutBuildList(40, 5.0, RTNONE)), RTERROR) << "erased";
}

TEST_F(Chains, ARecordBecomesWhatItsChainSays)
{
    const Name name = layer(L"A", 4, 3);
    const std::wstring handle = textOf(name, 5);
    ASSERT_EQ(vcdbRegApp(L"MINE"), RTNORM);
    resbuf* data = vcutNewRb(-3);
    data->rbnext = vcutBuildList(1001, L"MINE", 1000, L"kept", RTNONE);
    resbuf* groups = vcutBuildList(RTDXF0, L"LAYER", 2, L"A", 70, 4, 62, 3, RTNONE);
    groups->rbnext->rbnext->rbnext->rbnext = data;
    ASSERT_EQ(modify(name, groups), RTNORM);
    ASSERT_EQ(modify(name, vcutBuildList(RTDXF0, L"LAYER", 2, L"A", 70, 0, RTNONE)), RTNORM);
    const RbPtr bare(vcdbEntGet(name));
    EXPECT_EQ(group(bare.get(), 62)->resval.rint, 7) << "the default of a new one";
    EXPECT_EQ(group(bare.get(), 70)->resval.rint, 0);
    EXPECT_EQ(textOf(bare.get(), 6), L"Continuous");
    EXPECT_EQ(textOf(name, 5), handle);
    const RbPtr all(vcutBuildList(RTSTR, L"*", RTNONE));
    const RbPtr withData(vcdbEntGetX(name, all.get()));
    EXPECT_EQ(textOf(withData.get(), 1000), L"kept") << "extended data that the chain does not carry";
}

TEST_F(Chains, ABlocksMembersAndBasePointStay)
{
    block(L"B");
    const Name header = record(L"BLOCK", L"B");
    const RbPtr chain(vcdbEntGet(header));
    ASSERT_TRUE(chain);
    vcdbEntMod(chain.get());
    Name first;
    EXPECT_EQ(vcdbEntNext(header, first.value), RTNORM);
    EXPECT_EQ(textOf(first, 0), L"LINE");
}

TEST_F(Chains, AnMtextMeasuresItself)
{
    const Name small = mtext(L"abc", 0, 0), large = mtext(L"abcabcabc\\Pabc", 0, 0);
    EXPECT_GT(realOf(small, 42), 0);
    EXPECT_NEAR(realOf(large, 42) / realOf(small, 42), 3, 0.5);
    EXPECT_GT(realOf(large, 43), realOf(small, 43) * 2);
    const Name none = mtext(L"", 0, 0);
    EXPECT_EQ(realOf(none, 42), 0);
}

TEST_F(Chains, AnMtextsAngleIsFromTheUcs)
{
    const Name name = mtext(L"abc", 5, 6);
    run("UCS\n_Z\n90\n");
    EXPECT_NEAR(std::remainder(realOf(name, 50) + kPi / 2, 2 * kPi), 0, 1e-9);
    EXPECT_TRUE(pointOf(name, 10).isEqualTo({5, 6, 0})) << "the world's coordinates";
    const vds_point east = {1, 0, 0};
    EXPECT_EQ(modify(name, vcutBuildList(11, east, 50, 0.0, RTNONE)), RTNORM);
    EXPECT_NEAR(realOf(name, 50), 0, 1e-9) << "of the two the angle wins";
    EXPECT_TRUE(pointOf(name, 11).isEqualTo({0, 1, 0})) << "along the X axis of the UCS";
    run("UCS\n_W\n");
    EXPECT_NEAR(realOf(name, 50), kPi / 2, 1e-9);
    EXPECT_EQ(modify(name, vcutBuildList(11, east, RTNONE)), RTNORM);
    EXPECT_NEAR(realOf(name, 50), 0, 1e-9) << "alone the direction counts";
}

TEST_F(Chains, JustifiedTextFollowsItsAlignmentPoint)
{
    const vds_point at = {0, 0, 0}, to = {100, 50, 0}, further = {200, 50, 0};
    const Name name =
        made(vcutBuildList(RTDXF0, L"TEXT", 8, L"0", 10, at, 11, to, 40, 2.5, 1, L"middle", 72, 1, 73, 2, RTNONE));
    const VcGePoint3d first = pointOf(name, 10);
    EXPECT_LT(first.x, 100);
    EXPECT_GT(first.x, 50);
    EXPECT_LT(first.y, 50);
    EXPECT_EQ(modify(name, vcutBuildList(11, further, RTNONE)), RTNORM);
    EXPECT_TRUE(pointOf(name, 10).isEqualTo(first + VcGeVector3d(100, 0, 0)));
    EXPECT_EQ(modify(name, vcutBuildList(1, L"middle middle", RTNONE)), RTNORM);
    EXPECT_LT(pointOf(name, 10).x, first.x + 100) << "a longer text begins further left";
    const RbPtr chain(vcdbEntGet(name));
    EXPECT_TRUE(group(group(chain.get(), 10), 11)) << "first 10, then 11, as in the file";
}

TEST_F(Chains, ADimstyleTellsArrowsByName)
{
    const Name style = record(L"DIMSTYLE", L"Standard");
    const RbPtr plain(vcdbEntGet(style));
    for (const int code : {3, 4, 5, 6, 7, 270, 287, 340})
        EXPECT_TRUE(group(plain.get(), code)) << code;
    EXPECT_EQ(textOf(plain.get(), 5), L"");
    EXPECT_FALSE(group(plain.get(), 342)) << "only where it is set";
    RbPtr chain(vcdbEntGet(style));
    for (resbuf* node = chain.get(); node; node = node->rbnext)
        if (node->restype == 5)
            vcutUpdString(L"_DOT", node->resval.rstring);
    EXPECT_EQ(vcdbEntMod(chain.get()), RTNORM);
    EXPECT_TRUE(RbPtr(vcdbTblSearch(L"BLOCK", L"_DOT", 0))) << "the block was made";
    EXPECT_EQ(textOf(style, 5), L"_DOT");
}

TEST_F(Chains, ATextBoxIsMeasuredFromTheBasePointUnturned)
{
    vds_point low = {-1, -1, -1}, high = {-1, -1, -1}, turnedLow = {}, turnedHigh = {};
    const vds_point at = {500, 700, 0};
    const RbPtr plain(vcutBuildList(RTDXF0, L"TEXT", 10, at, 40, 2.5, 1, L"Hag", RTNONE));
    const RbPtr turned(vcutBuildList(RTDXF0, L"TEXT", 10, at, 40, 2.5, 1, L"Hag", 50, 1.0, RTNONE));
    ASSERT_EQ(vcedTextBox(plain.get(), low, high), RTNORM);
    ASSERT_EQ(vcedTextBox(turned.get(), turnedLow, turnedHigh), RTNORM);
    EXPECT_NEAR(low[0], 0, 1);
    EXPECT_LT(low[1], 0) << "the g hangs below the line";
    EXPECT_NEAR(high[1], 2.5, 0.3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(low[i], turnedLow[i]);
        EXPECT_EQ(high[i], turnedHigh[i]);
    }
    const RbPtr wide(vcutBuildList(RTDXF0, L"TEXT", 10, at, 40, 2.5, 41, 2.0, 1, L"Hag", RTNONE));
    ASSERT_EQ(vcedTextBox(wide.get(), turnedLow, turnedHigh), RTNORM);
    EXPECT_NEAR(turnedHigh[0] - turnedLow[0], 2 * (high[0] - low[0]), 1e-6);
    const RbPtr textless(vcutBuildList(RTDXF0, L"TEXT", 10, at, 40, 2.5, RTNONE));
    EXPECT_EQ(vcedTextBox(textless.get(), low, high), RTERROR);
    EXPECT_EQ(vcedTextBox(nullptr, low, high), RTERROR);
    EXPECT_EQ(vcedTextBox(plain.get(), nullptr, high), RTERROR);
}

TEST_F(Chains, AGroupLeavesOutWhatIsErased)
{
    const Name a = line(0, 0, 1, 0), b = line(0, 1, 1, 1);
    VcDbDictionary* groups = nullptr;
    ASSERT_EQ(editor().drawing().getGroupDictionary(groups, VcDb::kForWrite), Vcad::eOk);
    auto* pair = new VcDbGroup;
    VcDbObjectId id;
    ASSERT_EQ(groups->setAt(L"PAIR", pair, id), Vcad::eOk);
    pair->append({idOf(a), idOf(b)});
    pair->close();
    groups->close();
    ASSERT_EQ(vcdbEntDel(a), RTNORM);
    const RbPtr chain(vcdbEntGet(nameOf(id)));
    int members = 0;
    for (const resbuf* node = chain.get(); node; node = node->rbnext)
        members += node->restype == 340;
    EXPECT_EQ(members, 1);
    ASSERT_EQ(vcdbEntDel(nameOf(id)), RTNORM);
    ASSERT_EQ(editor().drawing().getGroupDictionary(groups), Vcad::eOk);
    EXPECT_FALSE(groups->has(L"PAIR"));
    groups->close();
    ASSERT_EQ(vcdbEntDel(nameOf(id)), RTNORM);
    EXPECT_TRUE(exists(nameOf(id)));
}

}  // namespace
