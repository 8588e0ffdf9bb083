#include "host/db/degrees.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

TEST(Degrees, ShortDecimalsComeBackAsTheyWere)
{
    for (const double degrees : {0.0, 45.0, 90.0, 180.0, 30.0, 0.1, 22.5, 359.99, 123.456789, -15.0, 1e-7, 720.0})
        EXPECT_EQ(degreesOfRadians(radiansOfDegrees(degrees)), degrees);
}

TEST(Degrees, WritingWhatWasReadGivesTheSameAgain)
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> angle(-7.0, 7.0);
    for (int i = 0; i < 20000; ++i) {
        const double written = degreesOfRadians(angle(random));
        const double read = radiansOfDegrees(written);
        EXPECT_EQ(degreesOfRadians(read), written);
        EXPECT_EQ(radiansOfDegrees(degreesOfRadians(read)), read);
    }
}

TEST(Degrees, AreRightToTheLastDigit)
{
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> angle(0.0, 6.3);
    for (int i = 0; i < 1000; ++i) {
        const double radians = angle(random);
        EXPECT_NEAR(radiansOfDegrees(degreesOfRadians(radians)), radians, std::fabs(radians) * 4e-16);
    }
}
