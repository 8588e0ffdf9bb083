#include "host/db/tag.h"

#include <gtest/gtest.h>

namespace {

TagList mixed()
{
    TagList list;
    list.addText(1, "a text");
    list.addReal(40, 0.1);
    list.addInteger(70, -3);
    list.addHandle(330, 0x2F);
    list.addBytes(310, std::string_view("\0\xFF\x01", 3));
    list.addText(3, "");
    return list;
}

}

TEST(TagList, GivesBackWhatWasPutInInOrder)
{
    const TagList list = mixed();
    std::vector<Tag> seen;
    for (const Tag& tag : list)
        seen.push_back(tag);
    ASSERT_EQ(seen.size(), 6u);
    EXPECT_EQ(list.count(), 6u);
    EXPECT_EQ(seen[0].view(), "a text");
    EXPECT_EQ(seen[1].real, 0.1);
    EXPECT_EQ(seen[2].integer, -3);
    EXPECT_FALSE(seen[2].isHandle);
    EXPECT_EQ(seen[3].integer, 0x2F);
    EXPECT_TRUE(seen[3].isHandle);
    EXPECT_EQ(seen[4].view(), std::string_view("\0\xFF\x01", 3));
    EXPECT_EQ(seen[5].view(), "");
}

TEST(TagList, MapsHandlesAndNothingElse)
{
    TagList list = mixed();
    int calls = 0;
    list.mapHandles([&](int code, std::uint64_t handle) {
        ++calls;
        EXPECT_EQ(code, 330);
        return handle + 1;
    });
    EXPECT_EQ(calls, 1);
    TagList expected = mixed();
    EXPECT_FALSE(list == expected);
    for (const Tag& tag : list) {
        if (tag.isHandle) {
            EXPECT_EQ(tag.integer, 0x30);
        }
    }
}

TEST(TagList, AddsTagsByTheirForm)
{
    TagList list;
    list.add(Tag::ofPoint(10, 1, 2, 3));
    list.add(Tag::ofInteger(90, 7));
    Tag handle = Tag::ofInteger(360, 0xA);
    handle.isHandle = true;
    list.add(handle);
    TagList expected;
    expected.addReal(10, 1);
    expected.addReal(20, 2);
    expected.addReal(30, 3);
    expected.addInteger(90, 7);
    expected.addHandle(360, 0xA);
    EXPECT_TRUE(list == expected);
}
