// Selection sets: order, membership, names that modules hold.
#include "host/edit/selection_set.h"
#include "tests/host/select_support.h"

#include <algorithm>
#include <random>

using namespace seltest;
using vk::edit::SelectionSet;
using vk::edit::SelectionSetTable;

namespace {

VcDbObjectId id(std::uint32_t slot) { return {1, slot}; }

TEST(SelectionSet, KeepsTheOrderOfComingWhateverGoes)
{
    SelectionSet set;
    for (std::uint32_t i = 1; i <= 6; ++i)
        EXPECT_TRUE(set.add(id(i)));
    EXPECT_FALSE(set.add(id(3)));
    EXPECT_TRUE(set.remove(id(2)));
    EXPECT_FALSE(set.remove(id(2)));
    EXPECT_TRUE(set.remove(id(6)));
    EXPECT_TRUE(set.add(id(2)));
    EXPECT_EQ(set.ids(), (std::vector<VcDbObjectId>{id(1), id(3), id(4), id(5), id(2)}));
    EXPECT_TRUE(set.remove(id(2)));
    EXPECT_TRUE(set.add(id(9)));
    EXPECT_EQ(set.ids(), (std::vector<VcDbObjectId>{id(1), id(3), id(4), id(5), id(9)}));
    EXPECT_FALSE(set.add({}));
    EXPECT_EQ(set.size(), 5u);
}

TEST(SelectionSet, MembershipIsConstantTime)
{
    SelectionSet set;
    for (std::uint32_t i = 1; i <= 300000; ++i)
        set.add(id(i));
    for (std::uint32_t i = 1; i <= 300000; i += 2)
        EXPECT_TRUE(set.remove(id(i)));
    EXPECT_FALSE(set.has(id(1)));
    EXPECT_TRUE(set.has(id(300000)));
    EXPECT_EQ(set.ids().size(), 150000u);
}

// Places of members that collide move up when one of them goes; a plain list of what should be there is the judge.
TEST(SelectionSet, AgreesWithAListWhateverComesAndGoes)
{
    std::mt19937 random(7);
    SelectionSet set;
    std::vector<VcDbObjectId> expected;
    for (int step = 0; step < 20000; ++step) {
        const VcDbObjectId member = id(1 + random() % 40 * 4096 + random() % 8);
        const auto at = std::find(expected.begin(), expected.end(), member);
        const bool isMember = at != expected.end();
        ASSERT_EQ(set.has(member), isMember);
        const bool comes = random() % 2;
        ASSERT_EQ(comes ? set.add(member) : set.remove(member), comes != isMember);
        if (comes && !isMember)
            expected.push_back(member);
        else if (!comes && isMember)
            expected.erase(at);
        ASSERT_TRUE(step % 97 || set.ids() == expected);
    }
    EXPECT_EQ(set.size(), expected.size());
    EXPECT_EQ(set.ids(), expected);
}

TEST(SelectionSetTable, AFreedNameIsRefused)
{
    auto& table = SelectionSetTable::instance();
    const std::size_t before = table.liveCount();
    vds_name first, second;
    table.nameOf(std::make_shared<SelectionSet>(), first);
    EXPECT_TRUE(table.find(first));
    EXPECT_TRUE(table.release(first));
    EXPECT_FALSE(table.release(first));
    table.nameOf(std::make_shared<SelectionSet>(), second);
    EXPECT_FALSE(table.find(first)) << "its place has been taken by another";
    EXPECT_TRUE(table.release(second));
    EXPECT_EQ(table.liveCount(), before);
    const vds_name nonsense[] = {{0, 0}, {1, 1}, {-1000000, 1}, {INT64_MIN, 1}, {INT64_MAX, 1}};
    for (const auto& name : nonsense)
        EXPECT_FALSE(table.find(name));
}

class Sets : public Drawing {};

TEST_F(Sets, AddDeleteAndAsk)
{
    line(0, 0, 1, 1);
    line(0, 1, 1, 2);
    vds_name a, b, set = {0, 0};
    idToName(idOf('a'), a);
    idToName(idOf('b'), b);
    int length = -1;
    EXPECT_EQ(vcedSSLength(set, &length), RTNORM) << "a null set has no members";
    EXPECT_EQ(length, 0);
    ASSERT_EQ(vcedSSAdd(a, nullptr, set), RTNORM);
    EXPECT_EQ(vcedSSAdd(b, set, set), RTNORM);
    EXPECT_EQ(vcedSSAdd(b, set, set), RTNORM);
    EXPECT_EQ(vcedSSMemb(b, set), RTNORM);
    EXPECT_EQ(vcedSSDel(b, set), RTNORM);
    EXPECT_EQ(vcedSSDel(b, set), RTERROR);
    EXPECT_EQ(vcedSSMemb(b, set), RTERROR);
    vds_name none;
    EXPECT_EQ(vcedSSName(set, 1, none), RTERROR);
    EXPECT_EQ(vcedSSName(set, -1, none), RTERROR);
    EXPECT_EQ(vcedSSAdd(set, set, set), RTERROR) << "a set is no entity";
    EXPECT_EQ(vcedSSMemb(a, a), RTERROR) << "an entity is no set";
    EXPECT_EQ(lettersOfSet(set), "a");
    EXPECT_EQ(vcedSSLength(set, &length), RTERROR) << "it has been freed";
    vds_name empty = {0, 0};
    ASSERT_EQ(vcedSSAdd(nullptr, nullptr, empty), RTNORM);
    EXPECT_EQ(lettersOfSet(empty), "");
}

TEST_F(Sets, ErasedObjectsAreNotAdded)
{
    VcDbLine& gone = line(0, 0, 1, 1);
    gone.erase();
    vds_name name, set = {0, 0};
    idToName(gone.objectId(), name);
    EXPECT_EQ(vcedSSAdd(name, nullptr, set), RTERROR);
    EXPECT_EQ(set[0], 0);
}

}
