// "Select objects:" as a person or a script answers it.
#include "host/edit/pick.h"
#include "host/edit/view.h"
#include "sdk/vcdb_objects.h"
#include "tests/host/select_support.h"

using namespace seltest;
using namespace vk::edit;

namespace {

class Prompt : public Drawing {
protected:
    // a, b, c: lines one above the other; d: a circle to the right; e on a locked layer; f on a frozen one; g in paper space
    void SetUp() override
    {
        Drawing::SetUp();
        line(0, 0, 10, 0);
        line(0, 10, 10, 10);
        line(0, 20, 10, 20);
        circle(40, 10, 5);
        line(0, 30, 10, 30, "Locked");
        line(0, 40, 10, 40, "Frozen");
        add(new VcDbLine({0, 0, 0}, {10, 0, 0}), "0", db().objectAs<VcDbBlockTableRecord>(db().paperSpace()));
        layer("Locked").setIsLocked(true);
        layer("Frozen").setIsFrozen(true);
        currentView(ed()).height = 100;
    }
    // What a command gets: the letters, and behind them what was printed, on one line.
    std::string selected(const std::string& script, SelectOptions options = {})
    {
        type(script);
        const std::size_t printed = ed().transcript().size();
        std::string result;
        try {
            result = letters(ed().select(options)->ids());
        } catch (const CommandCancelled&) {
            result = "cancelled";
        } catch (const CommandError& error) {
            result = error.message;
        }
        m_printed = ed().transcript().substr(printed);
        return result;
    }
    bool said(const std::string& text) const { return m_printed.find(text) != std::string::npos; }
    std::string m_printed;
};

struct Case {
    const char* name;
    const char* typed;
    const char* selected;
    const char* said;
};

const Case kCases[] = {
    {"EnterAtOnce", "\n", "", ""},
    {"OnePick", "5,0\n\n", "a", "1 found, 1 total"},
    {"PicksAddUp", "5,0\n5,10\n\n", "ab", "1 found, 2 total"},
    {"TheSameTwice", "5,0\n5,0\n\n", "a", "1 found (1 duplicate), 1 total"},
    {"Escape", "5,0\n(cancel)\n", "cancelled", "*Cancel*"},
    {"Window", "W\n-1,-1\n11,11\n\n", "ab", "2 found, 2 total"},
    {"WindowOnOneLine", "w -1,-1 11,11\n\n", "ab", ""},
    {"GlobalWord", "_C\n-1,-1\n5,11\n\n", "ab", ""},
    {"WholeWord", "crossing\n-1,-1\n5,11\n\n", "ab", ""},
    {"ImpliedWindow", "-1,-1\n11,11\n\n", "ab", "2 found, 2 total"},
    {"ImpliedCrossing", "5,11\n-1,-1\n\n", "ab", ""},
    {"ImpliedWindowDropped", "-1,-1\n\n5,0\n\n", "a", "Nothing was found there."},
    {"Box", "BOX\n5,11\n-1,-1\n\n", "ab", ""},
    {"AllButFrozenAndLocked", "ALL\n\n", "abcd", "4 found, 4 total"},
    {"Last", "L\n\n", "", "1 found (1 on a locked layer), 0 total"},
    {"Fence", "F\n5,-5\n5,15\n\n\n", "ab", ""},
    {"FenceWithAPointTakenBack", "F\n5,-5\n5,25\nU\n5,15\n\n\n", "ab", ""},
    {"FenceOfOnePoint", "F\n5,-5\n\n\n", "", "At least 2 points are needed."},
    {"WindowPolygon", "WP\n-1,-1\n11,-1\n11,11\n-1,11\n\n\n", "ab", ""},
    {"CrossingPolygon", "CP\n-1,-1\n5,-1\n5,25\n-1,25\n\n\n", "abc", ""},
    {"Remove", "ALL\nR\n5,0\nA\n5,0\n\n", "bcda", "1 found, 1 removed, 3 total"},
    {"Undo", "5,0\n5,10\nU\n\n", "a", "1 total"},
    {"UndoOfARemoval", "5,0\nR\n5,0\nU\n\n", "a", ""},
    {"UndoOfNothing", "U\n\n", "", "There is nothing to take back"},
    {"Single", "SI\n5,0\n", "a", ""},
    {"MultipleTakesNoWindow", "M\n-1,-1\n5,0\n\n", "a", "0 found, 0 total"},
    {"LockedIsLeft", "5,30\n5,0\n\n", "a", "1 found (1 on a locked layer), 0 total"},
    {"Nonsense", "xyz\n5,0\n\n", "a", "Window/Last/Crossing/BOX/ALL/Fence/WPolygon/CPolygon/Group"},
    {"QuestionMark", "?\n\n", "", "Expects a point"},
    {"NoPrevious", "P\n\n", "", "There is no previous selection set."},
    {"NoSuchGroup", "G\nmine\n\n", "", "There is no group named \"mine\"."},
    {"TheScriptEnds", "5,0\n", "cancelled", ""},
};

TEST_F(Prompt, Answers)
{
    for (const Case& c : kCases) {
        ed().previousSelection.reset();
        EXPECT_EQ(selected(c.typed), c.selected) << c.name << m_printed;
        EXPECT_TRUE(said(c.said)) << c.name << m_printed;
    }
}

TEST_F(Prompt, PreviousIsInTheOrderOfPicking)
{
    EXPECT_EQ(selected("5,20\n5,0\n\n"), "ca");
    EXPECT_EQ(selected("P\n\n"), "ca");
    db().objectAs<VcDbEntity>(idOf('a'))->erase();
    EXPECT_EQ(selected("P\n\n"), "c");
}

TEST_F(Prompt, LockedLayersMayBeAllowed) { EXPECT_EQ(selected("5,30\n\n", {.allowLocked = true}), "e"); }

TEST_F(Prompt, FiltersCountWhatTheyLeave)
{
    const RbPtr circles = chainFrom("0=CIRCLE");
    EXPECT_EQ(selected("ALL\n\n", {.filter = circles.get()}), "d");
    EXPECT_TRUE(said("4 found (3 filtered out), 1 total")) << m_printed;
    const RbPtr broken = chainFrom("-4=<OR|0=CIRCLE");
    EXPECT_EQ(selected("ALL\n\n", {.filter = broken.get()}), "The filter of this selection is malformed.");
}

TEST_F(Prompt, AKeywordOfTheCommandEndsIt)
{
    EXPECT_EQ(selected("5,0\ns\n", {.keywords = "Settings"}), "a");
    EXPECT_EQ(ed().selectKeyword(), "Settings");
    EXPECT_EQ(selected("5,0\n\n", {.keywords = "Settings"}), "a");
    EXPECT_EQ(ed().selectKeyword(), "");
}

TEST_F(Prompt, ASetPickedBeforeTheCommandServesOnce)
{
    ed().pickFirst = std::make_shared<SelectionSet>();
    for (const char letter : {'c', 'e', 'g', 'a'})
        ed().pickFirst->add(idOf(letter));
    EXPECT_EQ(selected(""), "ca");
    EXPECT_TRUE(said("2 found (1 on a locked layer, 1 not in the current space)")) << m_printed;
    EXPECT_EQ(selected("5,10\n\n"), "b") << "the next question is asked";
}

TEST_F(Prompt, PickfirstOffAsks)
{
    ed().pickFirst = std::make_shared<SelectionSet>();
    ed().pickFirst->add(idOf('a'));
    ed().vars().set("PICKFIRST", std::int32_t(0));
    EXPECT_EQ(selected("5,10\n\n"), "b");
}

TEST_F(Prompt, AGroupIsPickedWhole)
{
    VcDbDictionary* groups = nullptr;
    ASSERT_EQ(ed().drawing().getGroupDictionary(groups, VcDb::kForWrite), Vcad::eOk);
    auto* group = new VcDbGroup;
    VcDbObjectId id;
    ASSERT_EQ(groups->setAt(L"PAIR", group, id), Vcad::eOk);
    ASSERT_EQ(group->append({idOf('c'), idOf('a')}), Vcad::eOk);
    group->close();
    groups->close();
    EXPECT_EQ(selected("5,0\n\n"), "ac");
    EXPECT_EQ(selected("G\npair\n\n"), "ca");
    ed().vars().set("PICKSTYLE", std::int32_t(0));
    EXPECT_EQ(selected("5,0\n\n"), "a");
}

TEST_F(Prompt, ValuesOfArguments)
{
    vds_name entity, set = {0, 0};
    idToName(idOf('b'), entity);
    vcedSSAdd(entity, nullptr, set);
    idToName(idOf('f'), entity);
    RbBuilder chain;
    chain.addName(RTPICKS, set);
    const vds_name none = {0, 0};
    chain.addName(RTPICKS, none);
    chain.addName(RTENAME, entity);
    chain.addPoint(RTPOINT, 5, 0);
    chain.addString(RTSTR, L"");
    ed().pushSource(std::make_unique<ArgumentSource>(chain.take()));
    EXPECT_EQ(letters(ed().select()->ids()), "bfa") << "an entity's name picks it whatever its layer is";
    vcedSSFree(set);
}

}
