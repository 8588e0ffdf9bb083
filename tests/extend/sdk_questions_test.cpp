// The questions of the sdk, answered in every way that people answer them.
#include "tests/extend/sdk_support.h"

#include <climits>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;

class Questions : public SdkTest {
public:
    // Kinds of questions, by what follows vcedGet in their name.
    enum Kind {
        Point,
        PointFrom,  // base 10,0
        Dist,
        DistFrom,  // base 0,0
        Angle,
        AngleFrom,  // base 0,0
        Orient,
        Real,
        Int,
    };

protected:
    struct Asked {
        int result = 0;
        double number = 0;
        VcGePoint3d point;
    };

    double m_number = 0;

    static Asked ask(Kind kind)
    {
        Asked asked;
        const vds_point ten = {10, 0, 0}, origin = {0, 0, 0};
        vds_point at = {0, 0, 0};
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
        }
        asked.point = {at[0], at[1], at[2]};
        return asked;
    }
};

struct PointCase {
    const char* why;
    int bits;
    const char* typed;
    double x, y, z;
};
const PointCase kPoints[] = {
    {"two coordinates lie on the elevation", 0, "1,2", 1, 2, 0},
    {"three coordinates", 0, "1,2,3", 1, 2, 3},
    {"from the last point", 0, "@2,3", 22, 33, 0},
    {"from the last point, with a height", 0, "@2,3,4", 22, 33, 4},
    {"polar from the last point", 0, "@5<90", 20, 35, 0},
    {"the last point itself", 0, "@", 20, 30, 0},
    {"polar with a height", 0, "5<180,2", -5, 0, 2},
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
        editor().lastPoint = {20, 30, 0};
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
    run("UCS\n_O\n100,0\n\n");
    type("1,1\n*1,1\n");
    EXPECT_TRUE(ask(Point).point.isEqualTo({1, 1, 0}));
    EXPECT_TRUE(ask(Point).point.isEqualTo({-99, 1, 0})) << "a star is of the world";
}

struct NumberCase {
    const char* why;
    Questions::Kind kind;
    int bits;
    const char* typed;
    double number;
};
class Numbers : public Questions {
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
            {"zero is not negative", Real, 4, "0", 0},
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
    type("\n\n\n\n");
    EXPECT_EQ(vcedGetDist(nullptr, nullptr, &number), RTNONE);
    EXPECT_EQ(vcedGetInt(nullptr, &whole), RTNONE);
    EXPECT_EQ(vcedGetPoint(nullptr, nullptr, at), RTNONE);
    EXPECT_EQ(vcedGetKword(nullptr, word), RTNONE);
    type("(cancel)\n");
    EXPECT_EQ(vcedGetString(0, nullptr, word), RTCAN);
    EXPECT_EQ(number, 77);
    EXPECT_EQ(whole, 77);
    EXPECT_EQ(at[0], 7);
    EXPECT_STREQ(word, L"kept");
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

TEST_F(Questions, Corners)
{
    const vds_point base = {2, 3, 0};
    vds_point at = {0, 0, 0};
    type("5,5\n@1,1\n\n(cancel)\n");
    EXPECT_EQ(vcedGetCorner(base, L"\nCorner: ", at), RTNORM);
    EXPECT_EQ(at[0], 5);
    EXPECT_EQ(vcedGetCorner(base, L"\nCorner: ", at), RTNORM);
    EXPECT_TRUE(VcGePoint3d(at[0], at[1], at[2]).isEqualTo({6, 6, 0}));
    EXPECT_EQ(vcedGetCorner(base, L"\nCorner: ", at), RTNONE);
    EXPECT_EQ(vcedGetCorner(base, L"\nCorner: ", at), RTCAN);
}

TEST_F(Questions, NoPlaceForTheAnswerIsAnError)
{
    EXPECT_EQ(vcedGetPoint(nullptr, nullptr, nullptr), RTERROR);
    EXPECT_EQ(vcedGetCorner(nullptr, nullptr, nullptr), RTERROR);
    EXPECT_EQ(vcedGetOrient(nullptr, nullptr, nullptr), RTERROR);
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
    vcedAlert(L"Look: 50%s");
    vcedAlert(nullptr);
    EXPECT_EQ(boxes, (std::vector<std::string>{"Look: 50%s", ""}));
}

}  // namespace
