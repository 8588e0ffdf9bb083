// The routines on the list of scales and on scales as they are typed, called as they are.
#include "scale/ScaleList.h"
#include "scale/ScaleText.h"
#include "tests/extend/host_support.h"

namespace {

TEST(ScaleText, NumbersAreDigitsWithOnePointThatDoesNotStandFirst)
{
    const std::pair<const wchar_t*, bool> cases[] = {
        {L"", true},     {L"1", true},  {L"0012", true}, {L"1.5", true},    {L"1.", true},
        {L".5", false},  {L".", false}, {L"-1", false},  {L"1.2.3", false}, {L"1 ", false},
        {L"1e5", false}, {L"١", false}, {L"1,5", false},
    };
    for (const auto& [text, passes] : cases)
        EXPECT_EQ(isNumber(text), passes) << CStdStrW(text).GetString();
}

struct Ratio {
    const wchar_t* text;
    bool isValid;
    double paper, drawing;
};

TEST(ScaleText, RatiosAreTwoNumbersWithAColonBetween)
{
    const Ratio cases[] = {
        {L"1:50", true, 1, 50},
        {L"1.5:2", true, 1.5, 2},
        {L"1:", true, 1, 1},
        {L"0:5", true, 1, 5},
        {L"5:0.00", true, 5, 1},
        {L"0.0:0", true, 1, 1},
        {L"7.:2.", true, 7, 2},
        {L":2", false, 0, 0},
        {L":", false, 0, 0},
        {L"", false, 0, 0},
        {L"1", false, 0, 0},
        {L".5:1", false, 0, 0},
        {L"1:.5", false, 0, 0},
        {L"1:2:3", false, 0, 0},
        {L"1 : 2", false, 0, 0},
        {L"-1:2", false, 0, 0},
        {L"1:0.00000000001", true, 1, 1},
    };
    for (const Ratio& c : cases) {
        double paper = 0, drawing = 0;
        ASSERT_EQ(isValidScale(c.text, paper, drawing), c.isValid) << CStdStrW(c.text).GetString();
        if (!c.isValid)
            continue;
        EXPECT_EQ(paper, c.paper) << CStdStrW(c.text).GetString();
        EXPECT_EQ(drawing, c.drawing) << CStdStrW(c.text).GetString();
    }
}

TEST(ScaleText, ZerosGoFromTheEndOfWhatHasAPoint)
{
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"1.5000", L"1.5"}, {L"1.0000", L"1"}, {L"100", L"100"},   {L"0.0000", L"0"},
        {L".", L""},         {L"", L""},        {L"1.0x", L"1.0x"},
    };
    for (const auto& [before, after] : cases) {
        CStdStrW text = before;
        removeTrailingZero(text);
        EXPECT_EQ(text, after);
    }
    EXPECT_EQ(unitsText(0.0078125), L"0.0078");
    EXPECT_EQ(unitsText(1200), L"1200");
}

TEST(ScaleText, OnlyBlanksAreTrimmed)
{
    VcString text = L"  \ta \t ";
    TrimLeft(text);
    EXPECT_EQ(text, L"\ta \t ");
    TrimRight(text);
    EXPECT_EQ(text, L"\ta \t");
    text = L"   ";
    TrimRight(text);
    EXPECT_TRUE(text.isEmpty());
    TrimLeft(text);
    EXPECT_TRUE(text.isEmpty());
}

TEST(ScaleKeys, RunThroughLettersAndDigitsAndBeginAgain)
{
    ScaleKeys keys;
    CStdStrW at[262];
    for (CStdStrW& key : at)
        key = keys.next();
    EXPECT_EQ(at[0], L"A0");
    EXPECT_EQ(at[9], L"A9");
    EXPECT_EQ(at[10], L"B0");
    EXPECT_EQ(at[259], L"Z9");
    EXPECT_EQ(at[260], L"A0");
    EXPECT_EQ(at[261], L"A1");
}

class ScaleLists : public HostTest {
protected:
    static void setMeasurement(short value)
    {
        resbuf variable = {};
        variable.restype = RTSHORT;
        variable.resval.rint = value;
        ASSERT_EQ(vcedSetVar(L"MEASUREMENT", &variable), RTNORM);
    }
    static void emptyList()
    {
        const OpenScaleList dictionary(createOrGetScaleListDictionary());
        removeAllScales(*dictionary);
    }
    static std::size_t count()
    {
        ScaleList rows;
        getScaleListInfo(rows);
        return std::size_t(rows.length());
    }
};

TEST_F(ScaleLists, AreSeededOnlyWhenTheyHoldNothingAtAll)
{
    setMeasurement(1);
    emptyList();
    initializeScales();
    EXPECT_EQ(count(), 17u);
    emptyList();
    {
        const OpenScaleList dictionary(createOrGetScaleListDictionary());
        ScaleInfo one{L"X1", L"mine", 1, 3, {}};
        ASSERT_TRUE(putScale(*dictionary, one));
    }
    initializeScales();
    EXPECT_EQ(count(), 1u);
}

TEST_F(ScaleLists, ResetFillsTheRowsAgain)
{
    for (const auto& [measurement, rows, last] : {std::tuple(short(1), 17, L"B6"), std::tuple(short(0), 16, L"B5")}) {
        setMeasurement(measurement);
        ScaleList list;
        list.append({L"ZZ", L"left over", 1, 1, {}});
        resetScaleList(list);
        ASSERT_EQ(list.length(), rows);
        EXPECT_EQ(list.last().key, last);
        EXPECT_TRUE(list.last().id.isValid());
        EXPECT_EQ(count(), std::size_t(rows));
    }
}

TEST_F(ScaleLists, WritingThemGivesRowsNewKeysAndIds)
{
    setMeasurement(0);
    ScaleList list;
    resetScaleList(list);
    const VcDbObjectId before = list[3].id;
    list.removeAt(0);
    list.append({{}, L"mine", 1, 3, {}});
    addNewScale(list);
    EXPECT_EQ(list[2].key, L"A2");
    EXPECT_NE(list[2].id, before);
    EXPECT_EQ(list.last().key, L"B5");
    EXPECT_TRUE(list.last().id.isValid());
}

TEST_F(ScaleLists, AreOutOfReachWithoutADrawing)
{
    editor().closeDrawing();
    ScaleList list;
    ScaleNames names;
    names.append(L"left over");
    EXPECT_EQ(createOrGetScaleListDictionary(), nullptr);
    initializeScales();
    resetScaleList(list);
    addNewScale(list);
    getScaleListInfo(list);
    getUsedScaleList(names);
    EXPECT_TRUE(list.isEmpty());
    EXPECT_TRUE(names.isEmpty());
}

TEST(ScaleNames, AreComparedWithoutRegardToCase)
{
    ScaleNames used;
    used.append(L"Mine");
    EXPECT_TRUE(isUsed(used, L"MINE"));
    EXPECT_FALSE(isUsed(used, L"Min"));
    EXPECT_TRUE(isFullSize(L"1:1"));
    EXPECT_FALSE(isFullSize(L"1:1 "));
}

}  // namespace
