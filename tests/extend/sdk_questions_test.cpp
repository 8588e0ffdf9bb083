// The questions of the sdk, answered in every way that people answer them.
#include "tests/extend/sdk_support.h"

#include <climits>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;

class Questions : public SdkTest
{
public:
    // Kinds of questions, by what follows vcedGet in their name.
    enum Kind
    {
        Point,
        PointFrom, // base 10,0
        Dist,
        DistFrom, // base 0,0
        Angle,
        AngleFrom, // base 0,0
        Orient,
        Real,
        Int,
        Kword,
        Word, // a string without blanks
        Text, // a string with blanks
    };

protected:
    struct Asked
    {
        int result = 0;
        std::wstring text;
        double number = 0;
        VcGePoint3d point;
    };

    double m_number = 0;

    static Asked ask(Kind kind)
    {
        Asked asked;
        const vds_point ten = {10, 0, 0}, origin = {0, 0, 0};
        vds_point at = {0, 0, 0};
        wchar_t buffer[512] = L"";
        int whole = 0;
        switch (kind) {
        case Point:
        case PointFrom:
            asked.result = vcedGetPoint(kind == Point ? nullptr : ten, L"\nPoint: ", at);
            break;
        case Dist:
        case DistFrom:
            asked.result = vcedGetDist(kind == Dist ? nullptr : origin, L"\nDistance: ", &asked.number);
            break;
        case Angle:
        case AngleFrom:
            asked.result = vcedGetAngle(kind == Angle ? nullptr : origin, L"\nAngle: ", &asked.number);
            break;
        case Orient:
            asked.result = vcedGetOrient(nullptr, L"\nAngle: ", &asked.number);
            break;
        case Real:
            asked.result = vcedGetReal(L"\nReal: ", &asked.number);
            break;
        case Int:
            asked.result = vcedGetInt(L"\nWhole: ", &whole);
            asked.number = whole;
            break;
        case Kword:
            asked.result = vcedGetKword(L"\nWord: ", buffer);
            break;
        case Word:
        case Text:
            asked.result = vcedGetString(kind == Text, L"\nText: ", buffer);
            break;
        }
        asked.text = buffer;
        asked.point = {at[0], at[1], at[2]};
        return asked;
    }
    static std::wstring input()
    {
        wchar_t buffer[512] = L"";
        EXPECT_EQ(vcedGetInput(buffer), RTNORM);
        return buffer;
    }
};

struct PointCase
{
    const char* why;
    int bits;
    const char* typed;
    double x, y, z;
};
const PointCase kPoints[] = {
    {"two coordinates lie on the elevation", 0, "1,2", 1, 2, 0},
    {"three coordinates", 0, "1,2,3", 1, 2, 3},
    {"from the base", 0, "@2,3", 12, 3, 0},
    {"polar from the base", 0, "@5<90", 10, 5, 0},
    {"polar from the origin", 0, "5<90", 0, 5, 0},
    {"nonsense is asked again", 0, "one\n4,4", 4, 4, 0},
    {"half a point is asked again", 0, "4,\n4,4", 4, 4, 0},
    {"too many coordinates are asked again", 0, "1,2,3,4\n4,4", 4, 4, 0},
    {"Enter is refused where it is not wanted", 1, "\n6,7", 6, 7, 0},
    {"a list is a point", 0, "(list 8 9)", 8, 9, 0},
    {"nil answers nothing", 0, "(car nil)\n3,3", 3, 3, 0},
    {"large coordinates keep their digits", 0, "123456789.125,-0.0625", 123456789.125, -0.0625, 0},
};

TEST_F(Questions, Points)
{
    for (const PointCase& c : kPoints) {
        SCOPED_TRACE(c.why);
        vcedInitGet(c.bits, nullptr);
        type(c.typed + std::string("\n"));
        const Asked asked = ask(PointFrom);
        EXPECT_EQ(asked.result, RTNORM);
        EXPECT_NEAR(asked.point.x, c.x, 1e-9);
        EXPECT_NEAR(asked.point.y, c.y, 1e-9);
        EXPECT_NEAR(asked.point.z, c.z, 1e-9);
    }
}

TEST_F(Questions, APointIsInTheCurrentUcs)
{
    run("UCS\n_O\n100,0\n");
    type("1,1\n*1,1\n");
    EXPECT_TRUE(ask(Point).point.isEqualTo({1, 1, 0}));
    EXPECT_TRUE(ask(Point).point.isEqualTo({-99, 1, 0})) << "a star is of the world";
}

struct NumberCase
{
    const char* why;
    Questions::Kind kind;
    int bits;
    const char* typed;
    double number;
};
class Numbers : public Questions
{
public:
    static const std::vector<NumberCase>& cases()
    {
        static const std::vector<NumberCase> all = {
            {"a number", Dist, 0, "5", 5},
            {"from the base to a point", DistFrom, 0, "3,4", 5},
            {"between two points", Dist, 0, "1,1\n4,5", 5},
            {"nothing less than nothing", Dist, 4, "-1\n7", 7},
            {"not zero", Dist, 2, "0\n7", 7},
            {"words are asked again", Dist, 0, "far\n7", 7},
            {"degrees", Angle, 0, "90", kPi / 2},
            {"towards a point", AngleFrom, 0, "0,9", kPi / 2},
            {"between two points", Angle, 0, "1,1\n1,2", kPi / 2},
            {"radians by their mark", Angle, 0, "1r", 1},
            {"grads by their mark", Angle, 0, "100g", kPi / 2},
            {"degrees and minutes", Angle, 0, "30d30'", 30.5 * kPi / 180},
            {"bearings", Angle, 0, "N", kPi / 2},
            {"an orientation", Orient, 0, "45", kPi / 4},
            {"a fraction", Real, 0, "2.5", 2.5},
            {"an exponent", Real, 0, "1e3", 1000},
            {"without a leading zero", Real, 0, "-.5", -0.5},
            {"not zero", Real, 2, "0.0\n1", 1},
            {"not negative", Real, 4, "-0.1\n1", 1},
            {"zero is not negative", Real, 4, "0\n", 0},
            {"trailing letters are no number", Real, 0, "5mm\n6", 6},
            {"no infinity", Real, 0, "1e999\n6", 6},
            {"the least whole number", Int, 0, "-2147483648", double(INT_MIN)},
            {"the greatest", Int, 0, "2147483647", double(INT_MAX)},
            {"one more is refused", Int, 0, "2147483648\n3", 3},
            {"fractions are refused", Int, 0, "1.5\n3", 3},
            {"not zero", Int, 2, "0\n3", 3},
            {"not negative", Int, 4, "-3\n3", 3},
            {"neither, nor nothing", Int, 7, "\n0\n-1\n8", 8},
            {"of an expression", Int, 0, "(+ 20 22)", 42},
            {"of an expression of the wrong type", Int, 0, "(strcat \"a\" \"b\")\n9", 9},
        };
        return all;
    }
};

TEST_F(Numbers, AreReadOrAskedAgain)
{
    for (const NumberCase& c : cases()) {
        SCOPED_TRACE(std::string(c.why) + ": " + c.typed);
        vcedInitGet(c.bits, nullptr);
        type(c.typed + std::string("\n"));
        const Asked asked = ask(c.kind);
        EXPECT_EQ(asked.result, RTNORM);
        EXPECT_NEAR(asked.number, c.number, 1e-12 * std::max(1.0, std::fabs(c.number)));
    }
}

TEST_F(Numbers, AnglesFollowTheDrawingsBaseAndDirection)
{
    setReal(L"ANGBASE", kPi / 2);
    type("0\n0\n");
    EXPECT_NEAR(ask(Orient).number, kPi / 2, 1e-12) << "an orientation counts from the X axis";
    EXPECT_NEAR(std::remainder(ask(Angle).number, 2 * kPi), 0, 1e-12) << "an angle counts from the base";
    setReal(L"ANGBASE", 0);
    setShort(L"ANGDIR", 1);
    type("90\n");
    EXPECT_NEAR(std::remainder(ask(Orient).number + kPi / 2, 2 * kPi), 0, 1e-12) << "clockwise";
}

TEST_F(Questions, EachEndsWithEnterEscAndKeywords)
{
    for (const Kind kind : {Point, PointFrom, Dist, DistFrom, Angle, AngleFrom, Orient, Real, Int}) {
        SCOPED_TRACE(kind);
        type("\n");
        EXPECT_EQ(ask(kind).result, RTNONE);
        type("(cancel)\n");
        EXPECT_EQ(ask(kind).result, RTCAN);
        vcedInitGet(0, L"Undo eXit LAyer LType");
        type("x\n");
        EXPECT_EQ(ask(kind).result, RTKWORD);
        EXPECT_EQ(input(), L"eXit");
        vcedInitGet(128, L"Undo");
        type("zebra\n");
        EXPECT_EQ(ask(kind).result, RTKWORD) << "arbitrary input";
        EXPECT_EQ(input(), L"zebra");
    }
}

TEST_F(Questions, NothingIsWrittenWithoutAnAnswer)
{
    double number = 77;
    int whole = 77;
    vds_point at = {7, 7, 7};
    wchar_t word[512] = L"kept";
    type("\n\n\n\n(cancel)\n");
    EXPECT_EQ(vcedGetDist(nullptr, nullptr, &number), RTNONE);
    EXPECT_EQ(vcedGetInt(nullptr, &whole), RTNONE);
    EXPECT_EQ(vcedGetPoint(nullptr, nullptr, at), RTNONE);
    EXPECT_EQ(vcedGetKword(nullptr, word), RTERROR) << "there is no word to choose from";
    type("(cancel)\n");
    EXPECT_EQ(vcedGetString(0, nullptr, word), RTCAN);
    EXPECT_EQ(number, 77);
    EXPECT_EQ(whole, 77);
    EXPECT_EQ(at[0], 7);
    EXPECT_STREQ(word, L"kept");
}

struct WordCase
{
    const char* why;
    int bits;
    const wchar_t* keywords;
    const char* typed;
    int result;
    const wchar_t* word;
};
const WordCase kWords[] = {
    {"its capitals", 0, L"Yes No", "y", RTNORM, L"Yes"},
    {"the whole word", 0, L"Yes No", "no", RTNORM, L"No"},
    {"part of it beyond the capitals", 0, L"LAyer LType", "lay", RTNORM, L"LAyer"},
    {"less than the capitals is not enough", 0, L"LAyer LType", "l\nlt", RTNORM, L"LType"},
    {"capitals in the middle", 0, L"eXit Undo", "x", RTNORM, L"eXit"},
    {"from the front as well", 0, L"eXit Undo", "ex", RTNORM, L"eXit"},
    {"digits before the capitals", 0, L"2P 3P", "3p", RTNORM, L"3P"},
    {"Enter", 0, L"Yes No", "", RTNONE, L""},
    {"Enter refused", 1, L"Yes No", "\nn", RTNORM, L"No"},
    {"others are asked again", 0, L"Yes No", "maybe\nyes", RTNORM, L"Yes"},
    {"arbitrary input", 128, L"Yes No", "maybe", RTNORM, L"maybe"},
    {"the global form of a local word", 0, L"Oui Non _Yes No", "o", RTNORM, L"Yes"},
    {"the global word itself", 0, L"Oui Non _Yes No", "_n", RTNORM, L"No"},
    {"a local word is not a global one", 0, L"Oui Non _Yes No", "_oui\n_yes", RTNORM, L"Yes"},
    {"bits without effect are taken", 1024 | 2048, L"Yes No", "y", RTNORM, L"Yes"},
    {"Esc", 0, L"Yes No", "(cancel)", RTCAN, L""},
    {"nil leaves the question", 0, L"Yes No", "(car nil)\ny", RTNORM, L"Yes"},
};

TEST_F(Questions, Keywords)
{
    for (const WordCase& c : kWords) {
        SCOPED_TRACE(c.why);
        ASSERT_EQ(vcedInitGet(c.bits, c.keywords), RTNORM);
        type(c.typed + std::string("\n"));
        const Asked asked = ask(Kword);
        EXPECT_EQ(asked.result, c.result);
        EXPECT_EQ(asked.text, c.word);
    }
}

TEST_F(Questions, WhatIsSetHoldsForOneQuestion)
{
    vcedInitGet(1 | 2 | 4, L"Undo");
    type("u\n\n-5\n0\n");
    EXPECT_EQ(ask(Real).result, RTKWORD);
    EXPECT_EQ(ask(Real).result, RTNONE);
    EXPECT_EQ(ask(Real).number, -5);
    EXPECT_EQ(ask(Int).result, RTNORM);
    vcedInitGet(0, L"Undo");
    type("1\nu\n2\n");
    EXPECT_EQ(ask(Int).number, 1);
    EXPECT_EQ(ask(Int).number, 2) << "the word is none any more and is asked again";
}

struct TextCase
{
    const char* why;
    Questions::Kind kind;
    const char* typed;
    const wchar_t* text;
};
class Texts : public Questions
{
public:
    static const std::vector<TextCase>& cases()
    {
        static const std::vector<TextCase> all = {
            {"a blank ends a word", Word, "ab cd", L"ab"},
            {"what is left answers the next", Word, "", L"cd"},
            {"a text keeps its blanks", Text, "ab  cd", L"ab  cd"},
            {"Enter is an empty text", Text, "\n", L""},
            {"a parenthesis is text", Text, "(a) 1", L"(a) 1"},
            {"an unclosed one as well", Text, "(setq a", L"(setq a"},
            {"beyond the first plane", Text, "\xF0\x9F\x93\x90 \xC3\xA9", L"\U0001F4D0 \u00E9"},
            {"percent signs stay", Text, "100%s%n%d", L"100%s%n%d"},
        };
        return all;
    }
};

TEST_F(Texts, AreTakenAsTyped)
{
    for (const TextCase& c : cases()) {
        SCOPED_TRACE(c.why);
        if (*c.typed)
            type(*c.typed == '\n' ? c.typed : c.typed + std::string("\n"));
        const Asked asked = ask(c.kind);
        EXPECT_EQ(asked.result, RTNORM);
        EXPECT_EQ(asked.text, c.text);
    }
}

TEST_F(Texts, ExpressionsAreEvaluatedWithTextevalAndCancelAlwaysCancels)
{
    type("(+ 1 2)\n(cancel)\n");
    EXPECT_EQ(ask(Text).text, L"(+ 1 2)");
    EXPECT_EQ(ask(Text).result, RTCAN);
    setShort(L"TEXTEVAL", 1);
    type("(strcat \"a\" \" b\")\n");
    EXPECT_EQ(ask(Text).text, L"a b");
}

TEST_F(Texts, LongOnesFitTheBuffer)
{
    std::vector<wchar_t> buffer(600, L'#');
    for (const std::size_t length : {511u, 512u, 4000u}) {
        type(std::string(length, 'x') + "\n");
        std::fill(buffer.begin(), buffer.end(), L'#');
        ASSERT_EQ(vcedGetString(1, nullptr, buffer.data()), RTNORM);
        EXPECT_EQ(std::wcslen(buffer.data()), 511u) << length;
        EXPECT_EQ(buffer[512], L'#') << "nothing beyond the buffer's end";
        vcedInitGet(128, nullptr);
        type(std::string(length, 'y') + "\n");
        std::fill(buffer.begin(), buffer.end(), L'#');
        EXPECT_EQ(vcedGetReal(nullptr, &m_number), RTKWORD);
        ASSERT_EQ(vcedGetInput(buffer.data()), RTNORM);
        EXPECT_LE(std::wcslen(buffer.data()), 511u);
        EXPECT_EQ(buffer[512], L'#');
    }
}

TEST_F(Questions, CornersNeedTheirBase)
{
    const vds_point base = {2, 3, 0};
    vds_point at = {0, 0, 0};
    type("5,5\n@1,1\n\n(cancel)\n");
    EXPECT_EQ(vcedGetCorner(base, L"\nCorner: ", at), RTNORM);
    EXPECT_EQ(at[0], 5);
    EXPECT_EQ(vcedGetCorner(base, L"\nCorner: ", at), RTNORM);
    EXPECT_TRUE(VcGePoint3d(at[0], at[1], at[2]).isEqualTo({3, 4, 0}));
    EXPECT_EQ(vcedGetCorner(base, L"\nCorner: ", at), RTNONE);
    EXPECT_EQ(vcedGetCorner(base, L"\nCorner: ", at), RTCAN);
}

TEST_F(Questions, NoPlaceForTheAnswerIsAnError)
{
    type("1\n");
    EXPECT_EQ(vcedGetPoint(nullptr, nullptr, nullptr), RTERROR);
    EXPECT_EQ(vcedGetDist(nullptr, nullptr, nullptr), RTERROR);
    EXPECT_EQ(vcedGetAngle(nullptr, nullptr, nullptr), RTERROR);
    EXPECT_EQ(vcedGetReal(nullptr, nullptr), RTERROR);
    EXPECT_EQ(vcedGetInt(nullptr, nullptr), RTERROR);
    EXPECT_EQ(vcedGetKword(nullptr, nullptr), RTERROR);
    EXPECT_EQ(vcedGetString(0, nullptr, nullptr), RTERROR);
    EXPECT_EQ(vcedGetInput(nullptr), RTERROR);
}

TEST_F(Questions, PromptsAreShownAsTheyAre)
{
    type("\n");
    vcedGetReal(L"\nRate 5%s [Undo] <1>: ", &m_number);
    EXPECT_TRUE(said("Rate 5%s [Undo] <1>: "));
    vcedPrompt(L"\n100%d done");
    EXPECT_TRUE(said("100%d done"));
    EXPECT_EQ(vcedPrompt(nullptr), RTERROR);
}

} // namespace
