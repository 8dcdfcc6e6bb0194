#include "engine/trigonometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace facetor {
namespace {

TEST(Sine, EveryEntryIsTheSineRoundedToFourDecimals)
{
    // Half-way between two decimals: the lower one.
    EXPECT_EQ(sine(6795), 0.6063f);
    EXPECT_EQ(sine(10537), 0.8469f);
    EXPECT_EQ(sine(14427), 0.9824f);
    for (Angle angle = 1; angle < 16384; ++angle) {
        const double exact = std::sin(angle * std::numbers::pi / 32768);
        ASSERT_LE(std::fabs(sine(angle) - exact), 0.00005 + 1e-7) << angle;
        const double tenThousandths = sine(angle) * 10000.0;
        ASSERT_NEAR(tenThousandths, std::round(tenThousandths), 1e-3) << angle;
    }
}

TEST(Sine, ReflectsTheOtherQuartersOneUnitBesideTheMirror)
{
    EXPECT_EQ(sine(20000), sine(12767));
    EXPECT_EQ(sine(32767), -sine(0)) << "the exact mirror would be entry 1";
    EXPECT_EQ(sine(40000), -sine(7232));
    EXPECT_EQ(sine(60000), -sine(5535));
    EXPECT_EQ(sine(16384), 1.0f);
    EXPECT_EQ(sine(49152), -1.0f);
    EXPECT_EQ(sine(-16384), -1.0f);
    EXPECT_EQ(sine(-40000), sine(7232));
}

TEST(Sine, OfNothingIsNegativeZero)
{
    for (const Angle angle : {0, 32768}) {
        EXPECT_EQ(sine(angle), 0.0f);
        EXPECT_TRUE(std::signbit(sine(angle))) << angle;
    }
    EXPECT_FALSE(std::signbit(sine(-32768))) << "the sign of the argument turns it over";
}

} // namespace
} // namespace facetor
