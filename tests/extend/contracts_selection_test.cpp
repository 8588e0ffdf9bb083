// What commands may lean on when they select: modes, filters, the previous set, sets that are not there.
#include "tests/extend/sdk_support.h"

namespace {

class Selections : public SdkTest {
protected:
    // Members of the set as letters in the order of naming; "-" and the code where there is none.
    std::string taken(const wchar_t* mode, const void* first = nullptr, const void* second = nullptr,
                      const resbuf* filter = nullptr)
    {
        Name set;
        set.value[0] = 77;
        const int result = vcedSSGet(mode, first, second, filter, set.value);
        if (result != RTNORM) {
            EXPECT_EQ(set.value[0], 77) << "a failed call writes nothing";
            return std::to_string(result);
        }
        const std::string letters = lettersOf(set);
        EXPECT_EQ(vcedSSFree(set), RTNORM);
        return letters;
    }
    std::string lettersOf(const Name& set) const
    {
        int count = 0;
        EXPECT_EQ(vcedSSLength(set, &count), RTNORM);
        std::string letters;
        for (int i = 0; i < count; ++i) {
            Name member;
            EXPECT_EQ(vcedSSName(set, i, member.value), RTNORM);
            letters += letterOf(member);
        }
        return letters;
    }
    char letterOf(const Name& name) const
    {
        for (std::size_t i = 0; i < m_named.size(); ++i)
            if (m_named[i] == name)
                return char('a' + i);
        return '?';
    }
    Name named(const Name& name)
    {
        m_named.push_back(name);
        return name;
    }
    Name setOf(std::initializer_list<Name> members)
    {
        Name set;
        EXPECT_EQ(vcedSSAdd(nullptr, nullptr, set.value), RTNORM);
        for (const Name& member : members)
            EXPECT_EQ(vcedSSAdd(member, set, set.value), RTNORM);
        return set;
    }
    std::vector<Name> m_named;
};

TEST_F(Selections, EnterAtTheFirstQuestionIsAnError)
{
    named(line(0, 0, 10, 0));
    type("\n");
    EXPECT_EQ(taken(nullptr), "-5001");
    type("(cancel)\n");
    EXPECT_EQ(taken(nullptr), "-5002");
    type("ALL\n\n");
    EXPECT_EQ(taken(nullptr), "a");
    type("50,50\n60,60\n\n");
    EXPECT_EQ(taken(nullptr), "-5001") << "a window around nothing";
}

TEST_F(Selections, XTakesEveryLayoutInTheOrderOfMaking)
{
    layer(L"FROZEN", 1);
    layer(L"OFF", 0, -3);
    layer(L"LOCKED", 4);
    block(L"B");
    named(line(0, 0, 10, 0, L"FROZEN"));
    named(line(0, 1, 10, 1, L"OFF"));
    run("TILEMODE\n0\n");
    named(line(0, 2, 10, 2));
    run("TILEMODE\n1\n");
    const Name last = named(line(0, 3, 10, 3, L"LOCKED"));
    const RbPtr lines(vcutBuildList(RTDXF0, L"LINE", RTNONE));  // the sheet has viewports of its own
    const auto takenLines = [&](const wchar_t* mode) { return taken(mode, nullptr, nullptr, lines.get()); };
    EXPECT_EQ(takenLines(L"X"), "abcd");
    EXPECT_EQ(takenLines(L"_X"), "abcd");
    EXPECT_EQ(takenLines(L"A"), "abcd") << "the whole drawing";
    Name found;
    EXPECT_EQ(vcdbEntLast(found.value), RTNORM);
    EXPECT_EQ(found, last);
    ASSERT_EQ(vcdbEntDel(m_named[1]), RTNORM);
    EXPECT_EQ(takenLines(L"X"), "acd");
    ASSERT_EQ(vcdbEntDel(m_named[1]), RTNORM);
    EXPECT_EQ(takenLines(L"X"), "abcd") << "what comes back keeps its place";
    type("ALL\n\n");
    EXPECT_EQ(taken(nullptr), "b") << "as a person types it: this space, neither frozen nor locked";
}

TEST_F(Selections, ThePreviousSetIsTheLastThatSucceeded)
{
    for (int i = 0; i < 4; ++i)
        named(line(0, 10 * i, 10, 10 * i));
    run("ZOOM\n_W\n-50,-50\n100,100\n");
    EXPECT_EQ(taken(L"P"), "-5001") << "there was none";
    type("5,20\n5,0\n\n");
    EXPECT_EQ(taken(nullptr), "ca");
    EXPECT_EQ(taken(L"P"), "ca") << "in the order of picking";
    EXPECT_EQ(taken(L"X"), "abcd");
    EXPECT_EQ(taken(L"P"), "ca") << "X leaves it";
    const vds_point low = {-1, 9, 0}, high = {11, 21, 0};
    EXPECT_EQ(taken(L"W", low, high), "bc");
    EXPECT_EQ(taken(L"P"), "bc");
    const vds_point off = {50, 50, 0}, nowhere = {60, 60, 0};
    EXPECT_EQ(taken(L"C", off, nowhere), "-5001");
    type("\n");
    EXPECT_EQ(taken(nullptr), "-5001");
    EXPECT_EQ(taken(L"P"), "bc") << "failures leave it";
    const RbPtr circles(vcutBuildList(RTDXF0, L"CIRCLE", RTNONE));
    EXPECT_EQ(taken(L"P", nullptr, nullptr, circles.get()), "-5001");
    EXPECT_EQ(taken(L"P"), "bc");
    ASSERT_EQ(vcdbEntDel(m_named[1]), RTNORM);
    EXPECT_EQ(taken(L"P"), "c") << "what was erased since is not in it";
}

TEST_F(Selections, LockedLayersStayInUnlessLeftOut)
{
    layer(L"LOCKED", 4);
    named(line(0, 0, 10, 0));
    named(line(0, 10, 10, 10, L"LOCKED"));
    run("ZOOM\n_W\n-50,-50\n100,100\n");
    const vds_point low = {-5, -5, 0}, high = {20, 20, 0};
    type("-5,-5\n20,20\n\n-5,-5\n20,20\n\n");
    EXPECT_EQ(taken(nullptr), "ab");
    EXPECT_EQ(taken(L":L"), "a");
    EXPECT_EQ(taken(L"P"), "a");
    EXPECT_EQ(taken(L"C", low, high), "ab");
    EXPECT_EQ(taken(L"C:L", low, high), "a");
    EXPECT_EQ(taken(L"X:L"), "a");
    const Name both = setOf({m_named[0], m_named[1]});
    ASSERT_EQ(vcedSSSetFirst(both, nullptr), RTNORM);
    EXPECT_EQ(taken(L"I"), "ab");
    EXPECT_EQ(taken(L"_I"), "ab");
    setShort(L"PICKFIRST", 0);
    EXPECT_EQ(taken(L"I"), "-5001");
    setShort(L"PICKFIRST", 1);
    vcedSSFree(both);
}

TEST_F(Selections, ASetPickedBeforeTheCommandKeepsAllItIsGiven)
{
    layer(L"LOCKED", 4);
    named(line(0, 0, 10, 0, L"LOCKED"));
    named(line(0, 10, 10, 10));
    run("TILEMODE\n0\n");
    named(line(0, 20, 10, 20));
    run("TILEMODE\n1\n");
    const Name set = setOf({m_named[2], m_named[0], m_named[1]});
    ASSERT_EQ(vcedSSSetFirst(set, nullptr), RTNORM);
    ASSERT_EQ(vcedSSAdd(circle(0, 0, 1), set, nullptr), RTNORM);
    resbuf *grips = nullptr, *picks = nullptr;
    ASSERT_EQ(vcedSSGetFirst(&grips, &picks), RTNORM);
    Name first{{picks->resval.rlname[0], picks->resval.rlname[1]}};
    EXPECT_EQ(lettersOf(first), "cab") << "as it was when it was given";
    vcedSSFree(first);
    vcedSSFree(grips->resval.rlname);
    vcutRelRb(grips);
    vcutRelRb(picks);
    run("ERASE\n");
    EXPECT_TRUE(exists(m_named[0])) << "locked";
    EXPECT_FALSE(exists(m_named[1]));
    EXPECT_TRUE(exists(m_named[2])) << "in another space";
    vcedSSFree(set);
}

TEST_F(Selections, SetsThatAreNotThere)
{
    const Name none;
    const Name member = line(0, 0, 10, 0);
    int count = -1;
    EXPECT_EQ(vcedSSLength(none, &count), RTNORM);
    EXPECT_EQ(count, 0);
    count = -1;
    EXPECT_EQ(vcedSSLength(nullptr, &count), RTNORM);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(vcedSSLength(none, nullptr), RTERROR);
    Name out;
    EXPECT_EQ(vcedSSName(none, 0, out.value), RTERROR);
    EXPECT_TRUE(out.isNull());
    EXPECT_EQ(vcedSSMemb(member, none), RTERROR);
    EXPECT_EQ(vcedSSDel(member, none), RTERROR);
    EXPECT_EQ(vcedSSFree(none), RTERROR);
    EXPECT_EQ(vcedSSFree(nullptr), RTERROR);
    const vds_matrix up = {{1, 0, 0, 0}, {0, 1, 0, 5}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    EXPECT_EQ(vcedXformSS(none, up), RTNORM);
    EXPECT_EQ(vcedXformSS(none, nullptr), RTERROR);

    const Name freed = setOf({member});
    ASSERT_EQ(vcedSSFree(freed), RTNORM);
    EXPECT_EQ(vcedSSLength(freed, &count), RTERROR);
    EXPECT_EQ(vcedSSAdd(member, freed, nullptr), RTERROR);
    EXPECT_EQ(vcedSSFree(freed), RTERROR);
    const Name other = setOf({});
    EXPECT_EQ(vcedSSMemb(member, freed), RTERROR) << "its place belongs to another by now";
    vcedSSFree(other);
    EXPECT_EQ(vcedSSLength(member, &count), RTERROR) << "an entity is no set";
}

TEST_F(Selections, MembersComeOnceAndErasedOnesNot)
{
    named(line(0, 0, 10, 0));
    named(line(0, 1, 10, 1));
    named(line(0, 2, 10, 2));
    const Name set = setOf({m_named[2], m_named[0], m_named[2]});
    EXPECT_EQ(lettersOf(set), "ca");
    EXPECT_EQ(vcedSSMemb(m_named[1], set), RTERROR);
    EXPECT_EQ(vcedSSMemb(m_named[0], set), RTNORM);
    EXPECT_EQ(vcedSSDel(m_named[2], set), RTNORM);
    EXPECT_EQ(vcedSSDel(m_named[2], set), RTERROR);
    EXPECT_EQ(lettersOf(set), "a");
    ASSERT_EQ(vcdbEntDel(m_named[1]), RTNORM);
    EXPECT_EQ(vcedSSAdd(m_named[1], set, nullptr), RTERROR);
    Name record;
    ASSERT_EQ(vcdbTblObjName(L"LAYER", L"0", record.value), RTNORM);
    EXPECT_EQ(vcedSSAdd(record, set, nullptr), RTERROR) << "no entity";
    EXPECT_EQ(vcedSSAdd(m_named[0], nullptr, nullptr), RTERROR) << "no place for the new set";
    Name out;
    EXPECT_EQ(vcedSSName(set, -1, out.value), RTERROR);
    EXPECT_EQ(vcedSSName(set, 1, out.value), RTERROR);
    EXPECT_EQ(vcedSSName(set, 0, nullptr), RTERROR);
    vcedSSFree(set);
}

TEST_F(Selections, LayersByNameOrByWildCard)
{
    for (const wchar_t* name : {L"A#", L"A1", L"a2", L"B."}) {
        layer(name);
        named(line(0, 0, 1, 0, name));
    }
    const struct {
        const wchar_t* pattern;
        const char* taken;
    } cases[] = {{L"A#", "a"},  {L"a#", "a"}, {L"A?", "abc"},     {L"A1,A2", "bc"}, {L"A[12]", "bc"},
                 {L"~A?", "d"}, {L"b.", "d"}, {L"NONE", "-5001"}, {L"", "-5001"}};
    for (const auto& c : cases) {
        const RbPtr filter(vcutBuildList(8, c.pattern, RTNONE));
        EXPECT_EQ(taken(L"X", nullptr, nullptr, filter.get()), c.taken)
            << testing::PrintToString(std::wstring(c.pattern));
    }
    const auto isOff = [](const wchar_t* name) {
        const RbPtr record(vcdbTblSearch(L"LAYER", name, 0));
        return record && group(record.get(), 62)->resval.rint < 0;
    };
    run("-LAYER\n_OFF\na#\n\n");
    EXPECT_TRUE(isOff(L"A#")) << "the record of that very name";
    EXPECT_FALSE(isOff(L"A1"));
    run("-LAYER\n_OFF\na?\n\n");
    EXPECT_TRUE(isOff(L"A1"));
    EXPECT_TRUE(isOff(L"A2"));
    EXPECT_FALSE(isOff(L"B."));
}

TEST_F(Selections, BadCallsAreRefused)
{
    const vds_point corner = {0, 0, 0};
    EXPECT_EQ(vcedSSGet(L"X", nullptr, nullptr, nullptr, nullptr), RTERROR);
    EXPECT_EQ(taken(L"W", corner), "-5001") << "one corner";
    EXPECT_EQ(taken(L"W"), "-5001");
    EXPECT_EQ(taken(L"CP"), "-5001");
    const RbPtr two(vcutBuildList(RTPOINT, corner, RTPOINT, corner, RTNONE));
    EXPECT_EQ(taken(L"CP", two.get()), "-5001") << "no polygon";
    EXPECT_EQ(taken(L"QQ"), "-5001");
    const RbPtr broken(vcutBuildList(-4, L"<OR", 8, L"0", RTNONE));
    EXPECT_EQ(taken(L"X", nullptr, nullptr, broken.get()), "-5001");
    EXPECT_EQ(taken(L"X"), "-5001") << "an empty drawing";
}

}  // namespace
