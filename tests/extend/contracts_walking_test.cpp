// What commands may lean on when they walk through a drawing and make things in it.
#include "tests/extend/sdk_support.h"

namespace {

class Walking : public SdkTest {
protected:
    // Types in the order of vcdbEntNext from the name.
    static std::string kinds(const std::int64_t* from)
    {
        std::string all;
        Name name;
        if (from)
            std::copy_n(from, 2, name.value);
        const std::int64_t* at = from;
        for (int i = 0; i < 100 && vcdbEntNext(at, name.value) == RTNORM; ++i) {
            const std::wstring kind = textOf(name, 0);
            all += (all.empty() ? "" : " ") + std::string(kind.begin(), kind.end());
            at = name.value;
        }
        return all;
    }
    static int make(resbuf* chain) { return vcdbEntMake(RbPtr(chain).get()); }
    static void polyline()
    {
        const vds_point a = {0, 0, 0}, b = {10, 0, 0};
        EXPECT_EQ(make(vcutBuildList(RTDXF0, L"POLYLINE", 8, L"0", 66, 1, 70, 1, RTNONE)), RTNORM);
        EXPECT_EQ(make(vcutBuildList(RTDXF0, L"VERTEX", 8, L"0", 10, a, RTNONE)), RTNORM);
        EXPECT_EQ(make(vcutBuildList(RTDXF0, L"VERTEX", 8, L"0", 10, b, RTNONE)), RTNORM);
        EXPECT_EQ(make(vcutBuildList(RTDXF0, L"SEQEND", 8, L"0", RTNONE)), RTNORM);
    }
    static void blockWithAttribute()
    {
        const vds_point at = {0, 0, 0}, to = {10, 0, 0};
        EXPECT_EQ(make(vcutBuildList(RTDXF0, L"BLOCK", 2, L"TAGGED", 70, 2, 10, at, RTNONE)), RTNORM);
        EXPECT_EQ(make(vcutBuildList(RTDXF0, L"LINE", 8, L"0", 10, at, 11, to, RTNONE)), RTNORM);
        EXPECT_EQ(make(vcutBuildList(RTDXF0, L"ATTDEF", 8, L"0", 10, at, 40, 2.0, 1, L"", 3, L"Number", 2, L"NUMBER",
                                     70, 0, RTNONE)),
                  RTNORM);
        EXPECT_EQ(make(vcutBuildList(RTDXF0, L"ENDBLK", RTNONE)), RTKWORD);
    }
    static void taggedInsert()
    {
        const vds_point at = {5, 5, 0};
        EXPECT_EQ(make(vcutBuildList(RTDXF0, L"INSERT", 8, L"0", 66, 1, 2, L"TAGGED", 10, at, RTNONE)), RTNORM);
        EXPECT_EQ(
            make(vcutBuildList(RTDXF0, L"ATTRIB", 8, L"0", 10, at, 40, 2.0, 1, L"17", 2, L"NUMBER", 70, 0, RTNONE)),
            RTNORM);
        EXPECT_EQ(make(vcutBuildList(RTDXF0, L"SEQEND", 8, L"0", RTNONE)), RTNORM);
    }
    static Name last()
    {
        Name name;
        vcdbEntLast(name.value);
        return name;
    }
};

TEST_F(Walking, EachIsFollowedByWhatItOwns)
{
    blockWithAttribute();
    circle(0, 0, 1);
    polyline();
    taggedInsert();
    line(0, 0, 1, 1);
    EXPECT_EQ(kinds(nullptr), "CIRCLE POLYLINE VERTEX VERTEX SEQEND INSERT ATTRIB SEQEND LINE");
    EXPECT_EQ(textOf(last(), 0), L"LINE");
    ASSERT_EQ(vcdbEntDel(last()), RTNORM);
    EXPECT_EQ(textOf(last(), 0), L"INSERT") << "a main entity, not its end mark";
    ASSERT_EQ(vcdbEntDel(last()), RTNORM);
    EXPECT_EQ(kinds(nullptr), "CIRCLE POLYLINE VERTEX VERTEX SEQEND") << "what an erased one owned is gone with it";
}

TEST_F(Walking, ADefinitionIsWalkedFromItsHeaderOrWithin)
{
    blockWithAttribute();
    line(0, 0, 1, 1);
    Name header;
    ASSERT_EQ(vcdbTblObjName(L"BLOCK", L"tagged", header.value), RTNORM);
    EXPECT_EQ(textOf(header, 0), L"BLOCK");
    EXPECT_EQ(textOf(header, 2), L"TAGGED");
    EXPECT_EQ(kinds(header), "LINE ATTDEF");
    const RbPtr record(vcdbTblSearch(L"BLOCK", L"TAGGED", 0));
    const resbuf* first = group(record.get(), -2);
    ASSERT_TRUE(first);
    EXPECT_EQ(kinds(first->resval.rlname), "ATTDEF") << "and then it ends";
    VcDbBlockTable* table = nullptr;
    ASSERT_EQ(editor().drawing().getSymbolTable(table), Vcad::eOk);
    VcDbObjectId id;
    ASSERT_EQ(table->getAt(L"TAGGED", id), Vcad::eOk);
    table->close();
    EXPECT_EQ(kinds(nameOf(id)), "LINE ATTDEF") << "from the record";
    EXPECT_EQ(kinds(nullptr), "LINE") << "the drawing's own are others";
}

TEST_F(Walking, OneOrderOverAllSpaces)
{
    const Name model = line(0, 0, 1, 0);
    run("TILEMODE\n0\n");
    circle(0, 0, 1);
    run("TILEMODE\n1\n");
    const vds_point at = {1, 1, 0};
    made(vcutBuildList(RTDXF0, L"POINT", 8, L"0", 10, at, RTNONE));
    // A sheet that is entered for the first time gets its viewport.
    EXPECT_EQ(kinds(nullptr), "LINE VIEWPORT CIRCLE POINT");
    ASSERT_EQ(vcdbEntDel(model), RTNORM);
    EXPECT_EQ(kinds(nullptr), "VIEWPORT CIRCLE POINT");
    ASSERT_EQ(vcdbEntDel(model), RTNORM);
    EXPECT_EQ(kinds(nullptr), "LINE VIEWPORT CIRCLE POINT");
    EXPECT_EQ(kinds(model), "VIEWPORT CIRCLE POINT");
}

TEST_F(Walking, TheOrderIsThatOfTheFileAfterLoading)
{
    line(0, 0, 1, 0);
    circle(0, 0, 1);
    run("TILEMODE\n0\n");
    line(5, 5, 6, 6);
    run("TILEMODE\n1\n");
    circle(0, 0, 2);
    const std::string before = kinds(nullptr), file = testing::TempDir() + "order.dxf";
    const std::wstring wide(file.begin(), file.end());
    ASSERT_EQ(editor().drawing().saveAs(wide.c_str()), Vcad::eOk);
    auto read = std::make_unique<VcDbDatabase>(false);
    ASSERT_EQ(read->readDwgFile(wide.c_str()), Vcad::eOk);
    editor().openDrawing(std::move(read));
    const std::string after = kinds(nullptr);
    EXPECT_EQ(after, before);
    Name set;
    ASSERT_EQ(vcedSSGet(L"X", nullptr, nullptr, nullptr, set.value), RTNORM);
    std::string selected;
    int count = 0;
    ASSERT_EQ(vcedSSLength(set, &count), RTNORM);
    for (int i = 0; i < count; ++i) {
        Name member;
        ASSERT_EQ(vcedSSName(set, i, member.value), RTNORM);
        const std::wstring kind = textOf(member, 0);
        selected += (i ? " " : "") + std::string(kind.begin(), kind.end());
    }
    EXPECT_EQ(selected, after) << "X and walking agree";
    vcedSSFree(set);
    std::filesystem::remove(file);
}

TEST_F(Walking, MakingPassesOverTheHostsOwnGroups)
{
    const Name first = circle(1, 2, 3);
    const RbPtr chain(vcdbEntGet(first));
    ASSERT_EQ(group(chain.get(), -1), chain.get()) << "-1 comes first";
    ASSERT_EQ(vcdbEntMake(chain.get()), RTNORM);
    const Name second = last();
    EXPECT_FALSE(first == second);
    EXPECT_NE(textOf(first, 5), textOf(second, 5));
    EXPECT_EQ(realOf(second, 40), 3);
    EXPECT_EQ(countOfDrawing(), 2);
}

TEST_F(Walking, WhatIsHalfBuiltIsDroppedByNull)
{
    const vds_point at = {0, 0, 0};
    ASSERT_EQ(make(vcutBuildList(RTDXF0, L"POLYLINE", 8, L"0", 66, 1, RTNONE)), RTNORM);
    ASSERT_EQ(make(vcutBuildList(RTDXF0, L"VERTEX", 8, L"0", 10, at, RTNONE)), RTNORM);
    vcdbEntMake(nullptr);
    EXPECT_EQ(kinds(nullptr), "");
    EXPECT_EQ(make(vcutBuildList(RTDXF0, L"VERTEX", 8, L"0", 10, at, RTNONE)), RTERROR) << "of nothing";
    EXPECT_EQ(make(vcutBuildList(RTDXF0, L"SEQEND", 8, L"0", RTNONE)), RTERROR);
    ASSERT_EQ(make(vcutBuildList(RTDXF0, L"BLOCK", 2, L"HALF", 70, 0, 10, at, RTNONE)), RTNORM);
    vcdbEntMake(nullptr);
    EXPECT_EQ(RbPtr(vcdbTblSearch(L"BLOCK", L"HALF", 0)), nullptr);
    EXPECT_EQ(make(vcutBuildList(RTDXF0, L"ENDBLK", RTNONE)), RTERROR);
    EXPECT_EQ(kinds(nullptr), "");
}

TEST_F(Walking, ChainsThatMakeNothing)
{
    const vds_point at = {0, 0, 0};
    resbuf* const bad[] = {
        vcutBuildList(8, L"0", 10, at, RTNONE),  // no type
        vcutBuildList(RTDXF0, L"NOSUCHTHING", 8, L"0", RTNONE),
        vcutBuildList(RTDXF0, L"", 8, L"0", RTNONE),
        vcutBuildList(RTDXF0, L"CIRCLE", 8, L"0", 10, at, 40, 0.0, RTNONE),  // no radius
        vcutBuildList(RTDXF0, L"CIRCLE", 8, L"0", 10, at, 40, -1.0, RTNONE),
        vcutBuildList(RTDXF0, L"INSERT", 8, L"0", 2, L"NOBLOCK", 10, at, RTNONE),
        vcutBuildList(RTDXF0, L"TEXT", 8, L"0", 10, at, 40, 1.0, 1, L"x", 7, L"NOSTYLE", RTNONE),
        vcutBuildList(RTDXF0, L"LINE", 8, L"0", 6, L"NOLINETYPE", 10, at, 11, at, RTNONE),
        vcutBuildList(RTDXF0, L"LAYER", 2, L"", 70, 0, RTNONE),
        vcutBuildList(RTDXF0, L"LAYER", 2, L"a|b<c", 70, 0, RTNONE),
    };
    for (std::size_t i = 0; i < std::size(bad); ++i) {
        const RbPtr chain(bad[i]);
        Name out;
        out.value[0] = 5;
        EXPECT_EQ(vcdbEntMakeX(chain.get(), out.value), RTERROR) << i;
        EXPECT_EQ(out.value[0], 5) << i;
    }
    EXPECT_EQ(kinds(nullptr), "");
}

TEST_F(Walking, BlocksAreListedWithoutThoseOfLayouts)
{
    blockWithAttribute();
    block(L"PLAIN");
    std::string names;
    for (RbPtr record(vcdbTblNext(L"BLOCK", 1)); record; record.reset(vcdbTblNext(L"BLOCK", 0))) {
        const std::wstring name = textOf(record.get(), 2);
        names += std::string(name.begin(), name.end()) + " ";
        EXPECT_TRUE(group(record.get(), -2)) << "the first member";
        EXPECT_EQ(group(record.get(), 70)->resval.rint & 64, 0);
    }
    EXPECT_EQ(names, "TAGGED PLAIN ");
    EXPECT_EQ(RbPtr(vcdbTblNext(L"NOTABLE", 1)), nullptr);
    EXPECT_EQ(RbPtr(vcdbTblNext(nullptr, 1)), nullptr);
    EXPECT_EQ(RbPtr(vcdbTblSearch(L"BLOCK", nullptr, 0)), nullptr);
}

TEST_F(Walking, SearchingMaySetWhereTheListGoesOn)
{
    for (const wchar_t* name : {L"A", L"B", L"C"})
        layer(name);
    EXPECT_TRUE(RbPtr(vcdbTblSearch(L"LAYER", L"a", 1)));
    RbPtr next(vcdbTblNext(L"LAYER", 0));
    EXPECT_EQ(textOf(next.get(), 2), L"B");
    EXPECT_TRUE(RbPtr(vcdbTblSearch(L"LAYER", L"A", 0)));
    next.reset(vcdbTblNext(L"LAYER", 0));
    EXPECT_EQ(textOf(next.get(), 2), L"C") << "without the flag it goes on where it was";
    EXPECT_EQ(RbPtr(vcdbTblNext(L"LAYER", 0)), nullptr);
}

TEST_F(Walking, HandlesAndStaleNames)
{
    const Name name = line(0, 0, 1, 1);
    const std::wstring handle = textOf(name, 5);
    Name found;
    EXPECT_EQ(vcdbHandEnt(handle.c_str(), found.value), RTNORM);
    EXPECT_EQ(found, name);
    found = {};
    for (const wchar_t* bad : {L"", L"0", L"FFFFFFFF", L"xyz", L"-1", L"11111111111111111111"})
        EXPECT_EQ(vcdbHandEnt(bad, found.value), RTERROR) << testing::PrintToString(std::wstring(bad));
    EXPECT_EQ(vcdbHandEnt(nullptr, found.value), RTERROR);
    EXPECT_EQ(vcdbHandEnt(handle.c_str(), nullptr), RTERROR);
    EXPECT_TRUE(found.isNull());
    const Name foreign{{name.value[0], name.value[1] + 1}};
    EXPECT_EQ(vcdbEntGet(foreign), nullptr);
    EXPECT_EQ(vcdbEntDel(foreign), RTERROR);
    EXPECT_EQ(vcdbEntUpd(foreign), RTERROR);
    EXPECT_EQ(vcdbEntNext(foreign, found.value), RTERROR);
    EXPECT_EQ(vcdbEntGet(nullptr), nullptr);
    EXPECT_EQ(vcdbEntDel(nullptr), RTERROR);
    EXPECT_EQ(vcdbEntLast(nullptr), RTERROR);
    EXPECT_EQ(vcdbEntNext(nullptr, nullptr), RTERROR);
    EXPECT_EQ(vcdbEntUpd(name), RTNORM);
}

}  // namespace
