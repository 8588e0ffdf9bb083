#include "host/base/numbers.h"
#include "host/base/units.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>

namespace {

constexpr double kDegree = std::numbers::pi / 180;

TEST(Numbers, RealsReadBackEqual)
{
    std::mt19937_64 random(3);
    for (int i = 0; i < 20000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (!std::isnan(value)) {
            ASSERT_EQ(parseReal(realText(value)), value);
        }
    }
}

TEST(Numbers, RealsLookLikeReals)
{
    EXPECT_EQ(realText(3), "3.0");
    EXPECT_EQ(realText(-0.0), "-0.0");
    EXPECT_EQ(realText(0.1), "0.1");
    EXPECT_EQ(realText(1e300), "1e+300");
    EXPECT_EQ(realText(std::numeric_limits<double>::infinity()), "inf");
}

struct RealCase {
    const char* text;
    std::optional<double> value;
};

TEST(Numbers, ParseReal)
{
    const double inf = std::numeric_limits<double>::infinity();
    const RealCase cases[] = {
        {"  1.5\t", 1.5}, {"+2", 2},   {".5", .5}, {"5.", 5},   {"1e3", 1000}, {"-1.#INF", -inf}, {"1e999", inf},
        {"1e-999", 0},    {"", {}},    {" ", {}},  {"1,5", {}}, {"1.5x", {}},  {"+-1", {}},       {"1 2", {}},
        {"0x10", {}},     {"--1", {}}, {"-", {}},  {"e5", {}},  {"inf", inf},
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(parseReal(text), value) << text;
    EXPECT_TRUE(std::isnan(parseReal("1.#QNAN").value()));
    EXPECT_EQ(parseReal("1,5", DecimalSign::PointOrComma), 1.5);
    EXPECT_EQ(parseReal("1,5,2", DecimalSign::PointOrComma), std::nullopt);
}

TEST(Numbers, ParseInteger)
{
    EXPECT_EQ(parseInteger("    62"), 62);
    EXPECT_EQ(parseInteger("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(parseInteger("9223372036854775808"), std::nullopt);
    EXPECT_EQ(parseInteger("1.0"), std::nullopt);
    EXPECT_EQ(parseIntegerLoosely("1.0"), 1);
    EXPECT_EQ(parseIntegerLoosely("1.5"), std::nullopt);
    EXPECT_EQ(parseHandle(" 2f "), 0x2Fu);
    EXPECT_EQ(parseHandle("12345678901234567"), std::nullopt);
    EXPECT_EQ(parseHandle("-1"), std::nullopt);
    EXPECT_EQ(handleText(0xABCDEF0123456789), "ABCDEF0123456789");
}

TEST(Numbers, LeadingNumbers)
{
    EXPECT_EQ(leadingReal(" 1.5abc"), 1.5);
    EXPECT_EQ(leadingReal("infra"), 0);
    EXPECT_EQ(leadingReal("-.5,3"), -.5);
    EXPECT_EQ(leadingReal(""), 0);
    EXPECT_EQ(leadingInteger("12.9"), 12);
    EXPECT_EQ(leadingInteger("99999999999999999999"), std::numeric_limits<std::int64_t>::max());
}

TEST(Numbers, RoundingIsHalfAwayFromZeroAsShown)
{
    EXPECT_EQ(fixedText(1.005, 2), "1.01");
    EXPECT_EQ(fixedText(2.5, 0), "3");
    EXPECT_EQ(fixedText(-2.5, 0), "-3");
    EXPECT_EQ(fixedText(9.995, 2), "10.00");
    EXPECT_EQ(fixedText(-0.001, 2), "0.00");
    EXPECT_EQ(scientificText(9.9999, 2), "1.00E+01");
    EXPECT_EQ(scientificText(0, 3), "0.000E+00");
    EXPECT_EQ(scientificText(-1.5e-100, 1), "-1.5E-100");
}

struct DistanceCase {
    double value;
    LinearFormat format;
    const char* text;
};

TEST(Units, DistanceText)
{
    using enum LinearNotation;
    const DistanceCase cases[] = {
        {15.5, {Scientific, 4}, "1.5500E+01"},
        {15.5, {Scientific, 4, 8}, "1.55E+01"},
        {0.5, {Decimal, 4}, "0.5000"},
        {0.5, {Decimal, 4, 8}, "0.5"},
        {-0.5, {Decimal, 4, 12}, "-.5"},
        {0, {Decimal, 4, 12}, "0"},
        {3, {Decimal, 0}, "3"},
        {300, {Decimal, 0, 8}, "300"},
        {15.5, {Engineering, 2}, "1'-3.50\""},
        {11.999, {Engineering, 2}, "1'"},
        {11.999, {Engineering, 2, 1}, "1'-0.00\""},
        {0.25, {Engineering, 2, 2}, "0'-0.25\""},
        {78.5, {Architectural, 4}, "6'-6 1/2\""},
        {78.5, {Architectural, 4, 0, true}, "6'6-1/2\""},
        {0.5, {Architectural, 4}, "1/2\""},
        {0.5, {Architectural, 4, 1}, "0'-0 1/2\""},
        {12, {Architectural, 4}, "1'"},
        {12, {Architectural, 4, 3}, "1'-0\""},
        {6, {Architectural, 4, 2}, "0'-6\""},
        {6, {Architectural, 4, 3}, "6\""},
        {0, {Architectural, 4}, "0\""},
        {0, {Architectural, 4, 1}, "0'-0\""},
        {-11.99999, {Architectural, 4}, "-1'"},
        {12.5, {Architectural, 4}, "1'-0 1/2\""},
        {15.5, {Fractional, 4}, "15 1/2"},
        {15.5, {Fractional, 4, 0, true}, "15-1/2"},
        {0.99999, {Fractional, 2}, "1"},
        {0.375, {Fractional, 3}, "3/8"},
        {1e300, {Fractional, 0}, nullptr},
    };
    for (const auto& [value, format, text] : cases) {
        const std::string got = distanceText(value, format);
        if (text) {
            EXPECT_EQ(got, text) << value;
        }
    }
}

struct AngleCase {
    double degrees;
    AngularFormat format;
    const char* text;
};

TEST(Units, AngleText)
{
    using enum AngularNotation;
    const AngleCase cases[] = {
        {45, {Degrees, 0}, "45"},
        {-90, {Degrees, 1}, "270.0"},
        {359.999, {Degrees, 2}, "0.00"},
        {45.5, {Degrees, 4, 8}, "45.5"},
        {12.504166667, {DegreesMinutesSeconds, 0}, "13d"},
        {12.504166667, {DegreesMinutesSeconds, 2}, "12d30'"},
        {12.504166667, {DegreesMinutesSeconds, 4}, "12d30'15\""},
        {12.504166667, {DegreesMinutesSeconds, 6}, "12d30'15.00\""},
        {359.99999, {DegreesMinutesSeconds, 4}, "0d0'0\""},
        {90, {Grads, 2}, "100.00g"},
        {180, {Radians, 4}, "3.1416r"},
        {45, {Surveyor, 4}, "N 45d0'0\" E"},
        {45, {Surveyor, 4, 0, true}, "N45d0'0\"E"},
        {135, {Surveyor, 0}, "N 45d W"},
        {225, {Surveyor, 0}, "S 45d W"},
        {300, {Surveyor, 0}, "S 30d E"},
        {0, {Surveyor, 0}, "E"},
        {90, {Surveyor, 0}, "N"},
        {180, {Surveyor, 0}, "W"},
        {270, {Surveyor, 4}, "S"},
        {89.9999999, {Surveyor, 4}, "N"},
    };
    for (const auto& [degrees, format, text] : cases)
        EXPECT_EQ(angleText(degrees * kDegree, format), text) << degrees;
}

struct DistanceInput {
    const char* text;
    LinearNotation notation;
    std::optional<double> value;
};

TEST(Units, ParseDistance)
{
    using enum LinearNotation;
    const DistanceInput cases[] = {
        {"1'-6 1/2\"", Architectural, 18.5},
        {"1'6-1/2\"", Architectural, 18.5},
        {"1'6-1/2", Architectural, 18.5},
        {"1'", Architectural, 12},
        {"6\"", Architectural, 6},
        {"-1'-6\"", Architectural, -18},
        {"1/2\"", Architectural, .5},
        {"1'-1/2", Architectural, 12.5},
        {"1'6.5\"", Engineering, 18.5},
        {"1.5'", Engineering, 18},
        {"1.5e3", Scientific, 1500},
        {"15 1/2", Fractional, 15.5},
        {"15-1/2", Decimal, 15.5},
        {"1/4", Decimal, .25},
        {" 3.5 ", Decimal, 3.5},
        {"1'", Decimal, {}},
        {"6\"", Fractional, {}},
        {"1/0", Decimal, {}},
        {"", Decimal, {}},
        {"-", Decimal, {}},
        {"abc", Decimal, {}},
        {"1'-", Architectural, {}},
        {"1''", Architectural, {}},
        {"3 4", Decimal, {}},
        {"1e999", Decimal, {}},
        {"1'6\"x", Architectural, {}},
    };
    for (const auto& [text, notation, value] : cases)
        EXPECT_EQ(parseDistance(text, notation), value) << text;
}

struct AngleInput {
    const char* text;
    AngularNotation notation;
    std::optional<double> degrees;
};

TEST(Units, ParseAngle)
{
    using enum AngularNotation;
    const AngleInput cases[] = {
        {"45", Degrees, 45},       {"-90", Degrees, -90},  {"12d30'15\"", Degrees, 12.504166667},
        {"12d30'", Degrees, 12.5}, {"12d", Degrees, 12},   {"12\xC2\xB0", Degrees, 12},
        {"30'", Degrees, .5},      {"100g", Degrees, 90},  {"1r", Degrees, 57.295779513},
        {"100", Grads, 90},        {"N45dE", Degrees, 45}, {"n 45d30' w", Surveyor, 135.5},
        {"S30E", Surveyor, 300},   {"S", Surveyor, 270},   {"e", Degrees, 0},
        {"45d", Radians, 45},      {"1e2", Degrees, 100},  {"", Degrees, {}},
        {"N95dE", Surveyor, {}},   {"N45d", Surveyor, {}}, {"12d30x", Degrees, {}},
        {"d", Degrees, {}},        {"NE", Surveyor, {}},
    };
    for (const auto& [text, notation, degrees] : cases) {
        const auto got = parseAngle(text, notation);
        ASSERT_EQ(got.has_value(), degrees.has_value()) << text;
        if (got) {
            EXPECT_NEAR(*got / kDegree, *degrees, 1e-8) << text;
        }
    }
}

TEST(Units, WhatIsWrittenIsReadBack)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> spread(-5000, 5000);
    for (int i = 0; i < 500; ++i) {
        for (int notation = 1; notation <= 5; ++notation) {
            const LinearFormat format{static_cast<LinearNotation>(notation), 8, static_cast<int>(random() % 16),
                                      random() % 2 == 0};
            const double value = spread(random);
            const auto back = parseDistance(distanceText(value, format), format.notation);
            ASSERT_TRUE(back) << distanceText(value, format);
            ASSERT_NEAR(*back, value, 0.5 / 256 + 1e-9) << distanceText(value, format);
        }
    }
}

}  // namespace
