// Angles where the drawing's angle zero is not the X axis, or its direction is clockwise.
#include "tests/extend/sdk_support.h"

#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;

class AngleQuestions : public SdkTest {
protected:
    static double turn(const std::string& typed, const double* base = nullptr)
    {
        double value = -999;
        type(typed);
        EXPECT_EQ(vcedGetAngle(base, L"\nAngle: ", &value), RTNORM);
        return value;
    }
    static double direction(const std::string& typed, const double* base = nullptr)
    {
        double value = -999;
        type(typed);
        EXPECT_EQ(vcedGetOrient(base, L"\nDirection: ", &value), RTNORM);
        return value;
    }
    static bool same(double a, double b) { return std::fabs(std::remainder(a - b, 2 * kPi)) < 1e-9; }
    static Name last()
    {
        Name name;
        vcdbEntLast(name.value);
        return name;
    }
};

struct AngleCase {
    const char* why;
    double base;  // degrees
    int clockwise;
    const char* typed;
    double turn, direction;  // degrees
};
const AngleCase kAngles[] = {
    {"as everywhere", 0, 0, "30\n", 30, 30},
    {"zero points north", 90, 0, "0\n", 0, 90},
    {"from the north", 90, 0, "30\n", 30, 120},
    {"below nothing", 90, 0, "-30\n", -30, 60},
    {"clockwise", 0, 1, "30\n", -30, -30},
    {"clockwise from the north", 90, 1, "90\n", -90, 0},
    {"anticlockwise in a clockwise drawing", 90, 1, "-90\n", 90, 180},
    {"shown in the drawing", 0, 0, "0,0\n0,5\n", 90, 90},
    {"shown from the north", 90, 0, "0,0\n0,5\n", 0, 90},
    {"shown beside the north", 90, 0, "0,0\n-5,5\n", 45, 135},
};

TEST_F(AngleQuestions, TurnsAndDirections)
{
    for (const AngleCase& c : kAngles) {
        SCOPED_TRACE(c.why);
        setReal(L"ANGBASE", c.base * kPi / 180);
        setShort(L"ANGDIR", c.clockwise);
        EXPECT_TRUE(same(turn(c.typed), c.turn * kPi / 180));
        EXPECT_TRUE(same(direction(c.typed), c.direction * kPi / 180));
    }
}

TEST_F(AngleQuestions, FromABasePoint)
{
    const vds_point base = {10, 10, 0};
    setReal(L"ANGBASE", kPi / 2);
    EXPECT_TRUE(same(turn("10,20\n", base), 0));
    EXPECT_TRUE(same(direction("10,20\n", base), kPi / 2));
    EXPECT_GE(direction("10,0\n", base), 0) << "within one turn";
    EXPECT_LT(direction("10,0\n", base), 2 * kPi);
}

TEST_F(AngleQuestions, CommandsTurnByWhatIsTyped)
{
    setReal(L"ANGBASE", kPi / 2);
    const Name name = line(0, 0, 10, 0);
    run("ROTATE\n(entlast)\n\n0,0\n0\n");
    EXPECT_TRUE(pointOf(name, 11).isEqualTo({10, 0, 0})) << "nothing";
    run("ROTATE\n(entlast)\n\n0,0\n30\n");
    EXPECT_TRUE(pointOf(name, 11).isEqualTo({10 * std::cos(kPi / 6), 5, 0}));
    run("ARC\n_C\n0,0\n10,0\n_A\n90\n");
    EXPECT_NEAR(realOf(last(), 51) - realOf(last(), 50), kPi / 2, 1e-9) << "an arc spans what was typed";
    run("-ARRAY\n(entlast)\n\n_P\n0,0\n2\n180\n_Y\n");
    EXPECT_TRUE(same(realOf(last(), 50), kPi) || same(realOf(last(), 50), 0));
}

TEST_F(AngleQuestions, CommandsPointWhereItIsTyped)
{
    setReal(L"ANGBASE", kPi / 2);
    run("TEXT\n0,0\n2.5\n0\nnorth\n\n");
    EXPECT_TRUE(same(realOf(last(), 50), kPi / 2)) << "zero is north";
    block(L"B");
    run("-INSERT\nB\n0,0\n1\n1\n0\n");
    EXPECT_TRUE(same(realOf(last(), 50), kPi / 2));
    run("LINE\n0,0\n@10<0\n\n");
    EXPECT_TRUE(pointOf(last(), 11).isEqualTo({0, 10, 0})) << "polar coordinates too";
}

}  // namespace
