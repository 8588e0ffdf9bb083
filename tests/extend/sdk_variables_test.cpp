// System variables, the environment, and units as texts, as modules meet them.
#include "tests/extend/sdk_support.h"

#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;

class Variables : public SdkTest {
protected:
    static int set(const wchar_t* name, int type, double number)
    {
        resbuf node = {};
        node.restype = std::int16_t(type);
        if (type == RTREAL || type == RTANG)
            node.resval.rreal = number;
        else if (type == RTLONG)
            node.resval.rlong = std::int32_t(number);
        else
            node.resval.rint = std::int16_t(number);
        return vcedSetVar(name, &node);
    }
    static int setText(const wchar_t* name, std::wstring text)
    {
        resbuf node = {};
        node.restype = RTSTR;
        node.resval.rstring = text.data();
        return vcedSetVar(name, &node);
    }
    static int setPoint(const wchar_t* name, int type, double x, double y, double z)
    {
        resbuf node = {};
        node.restype = std::int16_t(type);
        node.resval.rpoint[0] = x;
        node.resval.rpoint[1] = y;
        node.resval.rpoint[2] = z;
        return vcedSetVar(name, &node);
    }
    static double real(const wchar_t* name)
    {
        resbuf node = {};
        EXPECT_EQ(vcedGetVar(name, &node), RTNORM);
        EXPECT_EQ(node.restype, RTREAL);
        return node.resval.rreal;
    }
};

TEST_F(Variables, HaveTheirTypes)
{
    const struct {
        const wchar_t* name;
        int type;
    } types[] = {
        {L"OSMODE", RTSHORT},   {L"osmode", RTSHORT},      {L"CMDECHO", RTSHORT},   {L"ORTHOMODE", RTSHORT},
        {L"TEXTSIZE", RTREAL},  {L"LTSCALE", RTREAL},      {L"UCSAXISANG", RTREAL}, {L"CLAYER", RTSTR},
        {L"DWGNAME", RTSTR},    {L"LASTPOINT", RT3DPOINT}, {L"VIEWCTR", RT3DPOINT}, {L"EXTMIN", RT3DPOINT},
        {L"TILEMODE", RTSHORT}, {L"DIMSCALE", RTREAL},     {L"CVPORT", RTSHORT},    {L"CANNOSCALE", RTSTR},
    };
    for (const auto& c : types) {
        resbuf node = {};
        ASSERT_EQ(vcedGetVar(c.name, &node), RTNORM) << testing::PrintToString(std::wstring(c.name));
        EXPECT_EQ(node.restype, c.type) << testing::PrintToString(std::wstring(c.name));
        EXPECT_EQ(node.rbnext, nullptr);
        if (node.restype == RTSTR)
            vcad_free(node.resval.rstring);
    }
}

TEST_F(Variables, RefuseWhatTheyCannotBe)
{
    const struct {
        const char* why;
        const wchar_t* name;
        int type;
        double number;
        int result;
    } cases[] = {
        {"unknown", L"NOSUCHTHING", RTSHORT, 1, RTERROR},
        {"empty name", L"", RTSHORT, 1, RTERROR},
        {"read only", L"CMDACTIVE", RTSHORT, 1, RTERROR},
        {"read only real", L"VIEWSIZE", RTREAL, 5, RTERROR},
        {"a switch", L"ORTHOMODE", RTSHORT, 2, RTERROR},
        {"below nothing", L"OSMODE", RTSHORT, -1, RTERROR},
        {"no size", L"TEXTSIZE", RTREAL, 0, RTERROR},
        {"below no size", L"LTSCALE", RTREAL, -1, RTERROR},
        {"a fraction for a whole number", L"OSMODE", RTREAL, 1.5, RTERROR},
        {"a whole number as a real", L"OSMODE", RTREAL, 33, RTNORM},
        {"a long for a short", L"OSMODE", RTLONG, 35, RTNORM},
        {"too long", L"OSMODE", RTLONG, 70000, RTERROR},
        {"a whole number for a real", L"TEXTSIZE", RTSHORT, 3, RTNORM},
        {"an angle for a real", L"ANGBASE", RTANG, 1, RTNORM},
        {"a number for a text", L"CLAYER", RTSHORT, 0, RTERROR},
        {"no infinity", L"TEXTSIZE", RTREAL, HUGE_VAL, RTERROR},
        {"not what is no number", L"LTSCALE", RTREAL, std::nan(""), RTERROR},
        {"precision beyond its range", L"LUPREC", RTSHORT, 9, RTERROR},
        {"a view that is not there", L"CVPORT", RTSHORT, 77, RTERROR},
        {"nothing at all", L"OSMODE", RTNONE, 0, RTERROR},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(set(c.name, c.type, c.number), c.result);
    }
    EXPECT_EQ(shortVariable(L"OSMODE"), 35) << "the last one that was taken";
    EXPECT_EQ(real(L"TEXTSIZE"), 3);
    EXPECT_EQ(vcedSetVar(nullptr, nullptr), RTERROR);
    EXPECT_EQ(vcedSetVar(L"OSMODE", nullptr), RTERROR);
    EXPECT_EQ(vcedGetVar(L"OSMODE", nullptr), RTERROR);
    resbuf node = {};
    EXPECT_EQ(vcedGetVar(nullptr, &node), RTERROR);
    EXPECT_EQ(vcedGetVar(L"NOSUCHTHING", &node), RTERROR);
    EXPECT_EQ(node.restype, 0) << "a failed call writes nothing";
}

TEST_F(Variables, TextsNameWhatIsThere)
{
    layer(L"WALLS");
    EXPECT_EQ(setText(L"CLAYER", L"walls"), RTNORM);
    EXPECT_EQ(textVariable(L"CLAYER"), L"WALLS") << "as the record spells it";
    EXPECT_EQ(setText(L"CLAYER", L"none"), RTERROR);
    EXPECT_EQ(setText(L"CLAYER", L""), RTERROR);
    setLayerFlags(L"0", 1);
    EXPECT_EQ(setText(L"CLAYER", L"0"), RTERROR) << "frozen";
    EXPECT_EQ(setText(L"TEXTSTYLE", L"none"), RTERROR);
    EXPECT_EQ(setText(L"DIMSTYLE", L"Standard"), RTERROR) << "read only";
    EXPECT_EQ(setText(L"CELTYPE", L"bylayer"), RTNORM);
    EXPECT_EQ(setText(L"CELTYPE", L"DOTTY"), RTERROR);
    EXPECT_EQ(setText(L"USERS1", L"50% {} %s \u00E9\U0001F4D0"), RTNORM);
    EXPECT_EQ(textVariable(L"USERS1"), L"50% {} %s \u00E9\U0001F4D0");
    resbuf node = {};
    node.restype = RTSTR;
    EXPECT_EQ(vcedSetVar(L"USERS1", &node), RTNORM) << "a null text is an empty one";
    EXPECT_EQ(textVariable(L"USERS1"), L"");
}

TEST_F(Variables, PointsHaveTwoOrThreeCoordinates)
{
    EXPECT_EQ(setPoint(L"LASTPOINT", RT3DPOINT, 1, 2, 3), RTNORM);
    resbuf node = {};
    ASSERT_EQ(vcedGetVar(L"LASTPOINT", &node), RTNORM);
    EXPECT_EQ(node.resval.rpoint[2], 3);
    EXPECT_EQ(setPoint(L"SNAPUNIT", RTPOINT, 2, 5, 99), RTNORM);
    ASSERT_EQ(vcedGetVar(L"SNAPUNIT", &node), RTNORM);
    EXPECT_EQ(node.resval.rpoint[1], 5);
    EXPECT_EQ(node.resval.rpoint[2], 0) << "there is no third coordinate";
    EXPECT_EQ(setPoint(L"SNAPUNIT", RTPOINT, 0, -5, 0), RTERROR);
    EXPECT_EQ(setPoint(L"OSMODE", RT3DPOINT, 1, 2, 3), RTERROR);
    EXPECT_EQ(setPoint(L"LASTPOINT", RT3DPOINT, HUGE_VAL, 0, 0), RTERROR);
}

TEST_F(Variables, OfTheDrawingAreUndone)
{
    step([] { setReal(L"LTSCALE", 5); });
    step([] { setReal(L"TEXTSIZE", 7); });
    run("U\n");
    EXPECT_EQ(real(L"TEXTSIZE"), 2.5);
    EXPECT_EQ(real(L"LTSCALE"), 5);
    run("U\nREDO\n");
    EXPECT_EQ(real(L"LTSCALE"), 5);
}

TEST_F(Variables, UcsAxisAngIsAQuarterAtFirst) { EXPECT_NEAR(real(L"UCSAXISANG"), kPi / 2, 1e-9); }

TEST_F(Variables, Environment)
{
    wchar_t value[600];
    std::fill(std::begin(value), std::end(value), L'#');
    EXPECT_EQ(vcedGetEnv(L"MaxArray", value), RTNORM);
    EXPECT_STREQ(value, L"100000");
    EXPECT_EQ(vcedSetEnv(L"MaxArray", L"25"), RTNORM);
    EXPECT_EQ(vcedGetEnv(L"maxarray", value), RTNORM);
    EXPECT_STREQ(value, L"25") << "case does not count";
    run("(setq seen (getenv \"MaxArray\"))\n(setenv \"Mine\" \"from Lisp\")\n");
    EXPECT_TRUE(said("25"));
    EXPECT_EQ(vcedGetEnv(L"Mine", value), RTNORM);
    EXPECT_STREQ(value, L"from Lisp");
    EXPECT_EQ(vcedGetEnv(L"NoSuchThing", value), RTERROR);
    EXPECT_STREQ(value, L"from Lisp") << "a failed call writes nothing";
    EXPECT_EQ(vcedGetEnv(nullptr, value), RTERROR);
    EXPECT_EQ(vcedGetEnv(L"Mine", nullptr), RTERROR);
    EXPECT_EQ(vcedSetEnv(L"", L"x"), RTERROR);
    EXPECT_EQ(vcedSetEnv(nullptr, L"x"), RTERROR);
    EXPECT_EQ(vcedSetEnv(L"Mine", nullptr), RTERROR);
}

struct LengthCase {
    double value;
    int unit, precision;
    const wchar_t* text;
};
const LengthCase kLengths[] = {
    {1.5, 2, 2, L"1.50"},        {-1.5, 2, 0, L"-2"},     {1234.5, 1, 2, L"1.23E+03"},       {18.5, 3, 1, L"1'-6.5\""},
    {18.5, 4, 1, L"1'-6 1/2\""}, {18.5, 5, 2, L"18 1/2"}, {0.0625, 5, 4, L"1/16"},           {-0.001, 2, 2, L"0.00"},
    {11.999, 4, 1, L"1'"},       {0, 4, 1, L"0\""},       {1e15, 2, 0, L"1000000000000000"},
};

TEST_F(Variables, LengthsAsTextsAndBack)
{
    setShort(L"DIMZIN", 0);
    for (const LengthCase& c : kLengths) {
        wchar_t text[133] = L"";
        EXPECT_EQ(vcdbRToS(c.value, c.unit, c.precision, text), RTNORM);
        EXPECT_EQ(std::wstring(text), c.text) << c.value << " in " << c.unit;
        double back = 0;
        EXPECT_EQ(vcdbDisToF(text, c.unit, &back), RTNORM) << c.value << " in " << c.unit;
        EXPECT_NEAR(back, c.value, 0.51 + std::fabs(c.value) * 0.005);
    }
    setShort(L"DIMZIN", 8);
    wchar_t text[133] = L"";
    EXPECT_EQ(vcdbRToS(1.5, 2, 4, text), RTNORM);
    EXPECT_STREQ(text, L"1.5") << "zeros at the end are left out";
    EXPECT_EQ(vcdbRToS(1, 2, 2, nullptr), RTERROR);
    double back = 7;
    for (const wchar_t* nonsense : {L"", L"x", L"1'x", L"1 1", L"--1", L"1e", L"0x10"}) {
        EXPECT_EQ(vcdbDisToF(nonsense, 4, &back), RTERROR) << testing::PrintToString(std::wstring(nonsense));
        EXPECT_EQ(back, 7);
    }
    EXPECT_EQ(vcdbDisToF(L"1", 2, nullptr), RTERROR);
    EXPECT_EQ(vcdbDisToF(nullptr, 2, &back), RTERROR);
}

struct AngleCase {
    double degrees;
    int unit, precision;
    const wchar_t* text;
};
const AngleCase kAngles[] = {
    {45, 0, 0, L"45"}, {45.5, 1, 2, L"45d30'"}, {100, 2, 1, L"111.1g"}, {180, 3, 4, L"3.1416r"}, {45, 4, 0, L"N 45d E"},
    {0, 4, 0, L"E"},   {-90, 0, 0, L"270"},     {359.9999, 0, 0, L"0"}, {200, 4, 0, L"S 70d W"},
};

TEST_F(Variables, AnglesAsTextsAndBack)
{
    for (const AngleCase& c : kAngles) {
        wchar_t text[133] = L"";
        EXPECT_EQ(vcdbAngToS(c.degrees * kPi / 180, c.unit, c.precision, text), RTNORM);
        std::wstring plain = text;
        EXPECT_EQ(plain, c.text) << c.degrees << " in " << c.unit;
        double back = 0;
        EXPECT_EQ(vcdbAngToF(c.text, c.unit, &back), RTNORM) << c.degrees << " in " << c.unit;
        EXPECT_NEAR(std::remainder(back - c.degrees * kPi / 180, 2 * kPi), 0, 0.01);
    }
    setShort(L"UNITMODE", 1);
    wchar_t typed[133] = L"";
    EXPECT_EQ(vcdbAngToS(kPi / 4, 4, 0, typed), RTNORM);
    EXPECT_STREQ(typed, L"N45dE") << "as it may be typed, without blanks";
    double back = 7;
    for (const wchar_t* nonsense : {L"", L"N95dE", L"45x", L"d", L"g", L"NE", L"1e999"}) {
        EXPECT_EQ(vcdbAngToF(nonsense, 0, &back), RTERROR) << testing::PrintToString(std::wstring(nonsense));
        EXPECT_EQ(back, 7);
    }
    EXPECT_EQ(vcdbAngToF(nullptr, 0, &back), RTERROR);
    EXPECT_EQ(vcdbAngToF(L"1", 0, nullptr), RTERROR);
}

}  // namespace
