// Reading and writing groups through a class of the tests' own.
#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/field_reader.h"
#include "host/db/field_writer.h"
#include "host/db/kept_object.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

using Fields = std::function<void(FieldVisitor&)>;
using Group = std::pair<int, std::string>;
using Groups = std::vector<Group>;

// Notes what is written as texts.
class Recorder final : public GroupSink {
public:
    Groups groups;
    void real(int code, double value) override { groups.emplace_back(code, shortest(value)); }
    void integer(int code, std::int64_t value) override { groups.emplace_back(code, std::to_string(value)); }
    void text(int code, std::string_view utf8) override { groups.emplace_back(code, utf8); }
    void handle(int code, std::uint64_t handle) override { groups.emplace_back(code, "#" + std::to_string(handle)); }
    void bytes(int code, std::string_view data) override
    {
        groups.emplace_back(code, "x" + std::to_string(data.size()));
    }

private:
    static std::string shortest(double value)
    {
        std::string text = std::to_string(value);
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
        return text;
    }
};

class FieldTest : public testing::Test {
protected:
    // Reads the groups by the fields; what they leave stays with the object.
    void read(const Groups& source, const Fields& fields)
    {
        m_tags.clear();
        m_source = source;
        for (std::size_t i = 0; i < m_source.size(); ++i) {
            m_tags.push_back(Tag::ofChars(m_source[i].first, Tag::Form::Raw, m_source[i].second));
            m_tags.back().line = static_cast<std::uint32_t>(2 * i + 2);
        }
        FieldReader reader(FieldVisitor::Purpose::ReadFile, DxfVersion::R2018, m_db.core(), nullptr, &m_problems);
        reader.begin(m_tags);
        fields(reader);
        reader.finish(m_object);
    }
    Groups written(const Fields& fields, DxfVersion version = DxfVersion::R2018)
    {
        Recorder sink;
        FieldWriter writer(FieldVisitor::Purpose::WriteFile, version, m_db.core(), sink);
        writer.begin(m_object);
        fields(writer);
        writer.finish();
        return sink.groups;
    }
    void expectSameBack(const Groups& source, const Fields& fields)
    {
        read(source, fields);
        EXPECT_EQ(written(fields), source);
    }

    VcDbDatabase m_db{false};
    VcDbKeptObject m_object{"TEST"};
    ProblemLog m_problems;
    Groups m_source;
    std::vector<Tag> m_tags;
};

struct Sample {
    double radius = 1;
    VcGePoint3d center;
    std::int16_t flags = 0;
    double thickness = 0;
    std::string name;

    Fields fields()
    {
        return [this](FieldVisitor& v) {
            v.subclass("First");
            v.optional(39, thickness, 0.0);
            v.point(10, center);
            v.real(40, radius);
            v.subclass("Second");
            v.number(70, flags);
            v.text(1, name);
        };
    }
};

}

TEST_F(FieldTest, TakesGroupsInAnyOrderWithinTheirSubclass)
{
    Sample s;
    read(
        {{100, "First"}, {40, "2.5"}, {10, "1"}, {20, "2"}, {30, "3"}, {39, "4"}, {100, "Second"}, {1, "N"}, {70, "5"}},
        s.fields());
    EXPECT_EQ(s.radius, 2.5);
    EXPECT_EQ(s.center, VcGePoint3d(1, 2, 3));
    EXPECT_EQ(s.thickness, 4);
    EXPECT_EQ(s.flags, 5);
    EXPECT_EQ(s.name, "N");
    EXPECT_EQ(m_object.extras(), nullptr);
}

TEST_F(FieldTest, SubclassesMayComeInAnotherOrder)
{
    Sample s;
    read({{100, "Second"}, {70, "5"}, {1, "N"}, {100, "First"}, {10, "1"}, {20, "2"}, {30, "3"}, {40, "2"}},
         s.fields());
    EXPECT_EQ(s.flags, 5);
    EXPECT_EQ(s.radius, 2);
}

TEST_F(FieldTest, WithoutMarkersEverythingIsOneWindow)
{
    Sample s;
    read({{70, "5"}, {40, "2"}, {10, "1"}, {20, "2"}, {1, "N"}}, s.fields());
    EXPECT_EQ(s.flags, 5);
    EXPECT_EQ(s.radius, 2);
    EXPECT_EQ(s.center, VcGePoint3d(1, 2, 0));
    EXPECT_EQ(s.name, "N");
}

TEST_F(FieldTest, APointDoesNotBorrowTheOrdinatesOfTheNext)
{
    std::vector<VcGePoint3d> points;
    read({{10, "1"}, {20, "2"}, {10, "3"}, {20, "4"}, {30, "5"}},
         [&](FieldVisitor& v) { v.repeated(10, points, [&](VcGePoint3d& p) { v.point(10, p); }); });
    ASSERT_EQ(points.size(), 2u);
    EXPECT_EQ(points[0], VcGePoint3d(1, 2, 0));
    EXPECT_EQ(points[1], VcGePoint3d(3, 4, 5));
}

TEST_F(FieldTest, UnclaimedGroupsGoBackWhereTheyStood)
{
    Sample s;
    expectSameBack({{100, "First"},
                    {999, "ahead of all"},
                    {10, "1"},
                    {20, "2"},
                    {30, "3"},
                    {91, "77"},
                    {40, "2"},
                    {92, "78"},
                    {100, "Second"},
                    {70, "5"},
                    {1, "N"},
                    {330, "#47"},
                    {100, "Third"},
                    {40, "9"},
                    {100, "Third"},
                    {40, "10"}},
                   s.fields());
    EXPECT_EQ(s.radius, 2);
}

TEST_F(FieldTest, UnclaimedGroupsOfListsStayWithTheirItems)
{
    std::vector<VcGePoint2d> points;
    const Fields fields = [&](FieldVisitor& v) {
        v.subclass("List");
        v.repeated(10, points, [&](VcGePoint2d& p) { v.point2(10, p); });
    };
    expectSameBack(
        {{100, "List"}, {10, "1"}, {20, "2"}, {91, "0"}, {10, "3"}, {20, "4"}, {10, "5"}, {20, "6"}, {91, "8"}},
        fields);
}

TEST_F(FieldTest, WhatHadNoMarkersIsPutBackAfterItsAnchor)
{
    Sample s;
    read({{10, "1"}, {20, "2"}, {30, "3"}, {40, "2"}, {91, "4"}, {70, "5"}, {1, "N"}}, s.fields());
    const Groups expected{{10, "1"}, {20, "2"}, {30, "3"}, {40, "2"}, {91, "4"}, {70, "5"}, {1, "N"}};
    EXPECT_EQ(written(s.fields(), DxfVersion::R12), expected);
}

TEST_F(FieldTest, DefaultsThatTheFileCarriedAreCarriedAgain)
{
    Sample s;
    const Groups without{{100, "First"}, {10, "1"},       {20, "2"}, {30, "3"},
                         {40, "2"},      {100, "Second"}, {70, "5"}, {1, "N"}};
    Groups with = without;
    with.insert(with.begin() + 1, {39, "0"});
    expectSameBack(without, s.fields());
    expectSameBack(with, s.fields());
    s.thickness = 3;
    with[1].second = "3";
    EXPECT_EQ(written(s.fields()), with);
}

TEST_F(FieldTest, ASecondMarkerOfOneNameOpensTheNextWindow)
{
    std::int16_t first = 0, second = 0;
    const Fields fields = [&](FieldVisitor& v) {
        v.subclass("Same");
        v.number(72, first);
        v.subclass("Same");
        v.number(73, second);
    };
    expectSameBack({{100, "Same"}, {72, "1"}, {100, "Same"}, {73, "2"}}, fields);
    read({{100, "Same"}, {72, "3"}, {73, "4"}}, fields);
    EXPECT_EQ(first, 3);
    EXPECT_EQ(second, 4);
}

TEST_F(FieldTest, OptionalSubclassesAreThereOnlyWhereTheFileHasThem)
{
    int seen = 0;
    const auto fields = [&](FieldVisitor& v) {
        v.subclass("First");
        seen += v.optionalSubclass("Embedded Object", false);
    };
    read({{100, "First"}, {70, "1"}}, fields);
    EXPECT_EQ(seen, 0);
    read({{100, "First"}, {101, "Embedded Object"}, {70, "1"}}, fields);
    EXPECT_EQ(seen, 1);
}

TEST_F(FieldTest, OrderedGroupsAreTakenOnlyWhereTheyStandNext)
{
    double early = -1, late = -1;
    std::int64_t count = 0;
    read({{91, "1"}, {42, "5"}, {40, "6"}}, [&](FieldVisitor& v) {
        OrderedFields ordered(v);
        v.integer(91, count);
        v.optional(40, early, -1);
        v.optional(42, late, -1);
    });
    EXPECT_EQ(count, 1);
    EXPECT_EQ(early, -1);
    EXPECT_EQ(late, 5);
}

TEST_F(FieldTest, AnItemThatItsClassLeavesDoesNotStopTheList)
{
    std::vector<int> items;
    const Fields fields = [&](FieldVisitor& v) { v.repeated(10, items, [](int&) {}); };
    expectSameBack({{10, "1"}, {10, "2"}}, [&](FieldVisitor& v) {
        if (v.isReading())
            fields(v);
    });
    EXPECT_EQ(items.size(), 2u);
}

TEST_F(FieldTest, LongTextsAreCutAndJoined)
{
    std::string text;
    for (int i = 0; i < 600; ++i)
        text += i % 7 ? "a" : "\xC3\xA9";
    const std::string whole = text;
    const Fields fields = [&](FieldVisitor& v) { v.longText(3, 1, text); };
    const Groups cut = written(fields);
    ASSERT_EQ(cut.size(), 3u);
    EXPECT_EQ(cut[0].first, 3);
    EXPECT_EQ(cut[1].first, 3);
    EXPECT_EQ(cut[2].first, 1);
    text.clear();
    read(cut, fields);
    EXPECT_EQ(text, whole);
}

TEST_F(FieldTest, WhatIsNoNumberIsToldAndLeavesTheMember)
{
    Sample s;
    read({{100, "First"}, {40, "wide"}, {39, "nan"}, {10, "1e999"}, {20, "2"}, {100, "Second"}, {70, "2.0"}},
         s.fields());
    EXPECT_EQ(s.radius, 1);
    EXPECT_EQ(s.thickness, 0);
    EXPECT_EQ(s.center.x, 0);
    EXPECT_EQ(s.flags, 2);
    ASSERT_EQ(m_problems.items().size(), 4u);
    EXPECT_EQ(m_problems.items()[0].line, 6u);
    EXPECT_EQ(m_problems.items()[1].line, 8u);
}

TEST_F(FieldTest, DecimalCommasAreRead)
{
    Sample s;
    read({{100, "First"}, {40, "2,5"}}, s.fields());
    EXPECT_EQ(s.radius, 2.5);
    EXPECT_EQ(m_problems.total(), 1u);
}

TEST_F(FieldTest, BinaryDataIsJoinedAndCut)
{
    std::string data;
    const Fields fields = [&](FieldVisitor& v) { v.binary(310, data); };
    read({{310, "00FF"}, {310, "10"}}, fields);
    EXPECT_EQ(data, std::string("\x00\xFF\x10", 3));
    data.assign(300, 'x');
    EXPECT_EQ(written(fields), (Groups{{310, "x127"}, {310, "x127"}, {310, "x46"}}));
}

TEST_F(FieldTest, ReferencesMayRunAhead)
{
    VcDbObjectId id;
    const Fields fields = [&](FieldVisitor& v) { v.ref(340, RefKind::HardPointer, id); };
    read({{340, "1F"}}, fields);
    EXPECT_FALSE(id.isNull());
    EXPECT_EQ(m_db.core().handleOf(id), 0x1Fu);
    EXPECT_EQ(written(fields), (Groups{{340, "#31"}}));
}
