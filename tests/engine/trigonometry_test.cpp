#include "engine/trigonometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace facetor {
namespace {

TEST(Sine, ReadsTheTableOfFourDecimals)
{
    EXPECT_EQ(sine(1), 0.0001f);
    EXPECT_EQ(sine(16383), 1.0f);
    EXPECT_EQ(sine(8192), 0.7071f);
    // Half-way between two decimals: the lower one.
    EXPECT_EQ(sine(6795), 0.6063f);
    EXPECT_EQ(sine(10537), 0.8469f);
    EXPECT_EQ(sine(14427), 0.9824f);
}

TEST(Sine, EveryEntryIsTheSineRoundedToFourDecimals)
{
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

TEST(Sine, TakesFullTurnsOffTheMagnitude)
{
    EXPECT_EQ(sine(65536 + 5), sine(5));
    EXPECT_EQ(sine(-65536 - 5), -sine(5));
    EXPECT_EQ(sine(std::numeric_limits<Angle>::min()), 0.0f);
    EXPECT_EQ(sine(std::numeric_limits<Angle>::max()), sine(0x7FFFFFFF & 0xFFFF));
}

TEST(Cosine, IsTheSineAQuarterTurnFurther)
{
    EXPECT_EQ(cosine(0), 1.0f);
    EXPECT_EQ(cosine(8192), sine(24576));
    EXPECT_EQ(cosine(-16384), 0.0f);
    EXPECT_EQ(cosine(32768), -1.0f);
    EXPECT_EQ(cosine(std::numeric_limits<Angle>::max()),
              sine(std::numeric_limits<Angle>::min() + 16383))
        << "the sum wraps as 32 bits do";
}

TEST(Tangent, DividesInDoublePrecision)
{
    EXPECT_EQ(tangent(8191), double{sine(8191)} / double{cosine(8191)});
    EXPECT_TRUE(std::isinf(tangent(16384)));
}

} // namespace
} // namespace facetor
