// Groups: picked whole, named alone, and what is left of them when members or they themselves go.
#include "tests/extend/sdk_support.h"

namespace {

class Groups : public SdkTest {
protected:
    Groups()
    {
        m_a = line(0, 0, 10, 0);
        m_b = line(0, 10, 10, 10);
        m_other = line(0, 20, 10, 20);
        VcDbDictionary* groups = nullptr;
        EXPECT_EQ(editor().drawing().getGroupDictionary(groups, VcDb::kForWrite), Vcad::eOk);
        auto* pair = new VcDbGroup;
        EXPECT_EQ(groups->setAt(L"PAIR", pair, m_group), Vcad::eOk);
        EXPECT_EQ(pair->append({idOf(m_b), idOf(m_a)}), Vcad::eOk);
        pair->close();
        groups->close();
        run("ZOOM\n_W\n-50,-50\n50,60\n");
    }
    static int count(const std::string& typed)
    {
        type(typed);
        Name set;
        int length = 0;
        if (vcedSSGet(nullptr, nullptr, nullptr, nullptr, set.value) == RTNORM) {
            EXPECT_EQ(vcedSSLength(set, &length), RTNORM);
            vcedSSFree(set);
        }
        return length;
    }
    bool isListed() const
    {
        VcDbDictionary* groups = nullptr;
        EXPECT_EQ(editor().drawing().getGroupDictionary(groups), Vcad::eOk);
        const bool listed = groups->has(L"pair");
        groups->close();
        return listed;
    }
    std::uint32_t members() const
    {
        auto* group = opened<VcDbGroup>(m_group);
        const std::uint32_t number = group->numEntities();
        group->close();
        return number;
    }
    Name m_a, m_b, m_other;
    VcDbObjectId m_group;
};

TEST_F(Groups, ArePickedWholeButNamedAlone)
{
    EXPECT_EQ(count("5,0\n\n"), 2);
    EXPECT_EQ(count("5,20\n\n"), 1);
    EXPECT_EQ(count("_G\nPAIR\n\n"), 2);
    EXPECT_EQ(count("_G\nNONE\n\n"), 0);
    run("(setq a (entnext))\n");
    EXPECT_EQ(count("(progn a)\n\n"), 1) << "a name means that entity";
    EXPECT_EQ(vcedCommand(RTSTR, L"_.ERASE", RTENAME, m_a.value, RTSTR, L"", RTNONE), RTNORM);
    EXPECT_FALSE(exists(m_a));
    EXPECT_TRUE(exists(m_b));
    EXPECT_EQ(count("5,10\n\n"), 1) << "erased members are not in it";
}

TEST_F(Groups, CountWhatIsThere)
{
    EXPECT_EQ(members(), 2u);
    ASSERT_EQ(vcdbEntDel(m_a), RTNORM);
    EXPECT_EQ(members(), 1u);
    auto* group = opened<VcDbGroup>(m_group, VcDb::kForWrite);
    EXPECT_FALSE(group->has(idOf(m_a)));
    EXPECT_TRUE(group->has(idOf(m_b)));
    EXPECT_NE(group->append(VcDbObjectId()), Vcad::eOk);
    EXPECT_NE(group->append(m_group), Vcad::eOk) << "no entity";
    EXPECT_NE(group->append(idOf(m_b)), Vcad::eOk) << "it is in it";
    group->close();
    ASSERT_EQ(vcdbEntDel(m_a), RTNORM);
    EXPECT_EQ(members(), 2u) << "what comes back is in it again";
}

TEST_F(Groups, GoWithTheirEntryAndComeBackWithIt)
{
    step([&] {
        auto* group = opened<VcDbGroup>(m_group, VcDb::kForWrite);
        EXPECT_EQ(group->erase(), Vcad::eOk);
        group->close();
    });
    EXPECT_FALSE(isListed());
    EXPECT_EQ(count("5,0\n\n"), 1) << "its members are single again";
    run("U\n");
    EXPECT_TRUE(isListed());
    EXPECT_EQ(count("5,0\n\n"), 2);
}

TEST_F(Groups, MayBeAnonymousAndDescribed)
{
    auto* group = opened<VcDbGroup>(m_group, VcDb::kForWrite);
    EXPECT_EQ(group->setDescription(L"two lines"), Vcad::eOk);
    EXPECT_EQ(group->setAnonymous(), Vcad::eOk);
    EXPECT_TRUE(group->isAnonymous());
    wchar_t* name = group->getName();
    EXPECT_STREQ(name, L"*A1");
    vcutDelString(name);
    group->close();
    EXPECT_FALSE(isListed()) << "under its old name";
    EXPECT_EQ(count("5,0\n\n"), 2);
}

}  // namespace
