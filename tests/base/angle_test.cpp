#include "base/angle.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace facetor {
namespace {

TEST(AngleConversion, UsesTheConstantsOfTheFileFormat)
{
    EXPECT_EQ(std::bit_cast<std::uint32_t>(unitsPerDegree), 0x43360B5Eu);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(degreesPerUnit), 0x3BB3FEA0u);
}

TEST(AngleConversion, TruncatesDegreesTowardZero)
{
    struct Row {
        float degrees;
        Angle angle;
    };
    const Row rows[] = {
        {0.0f, 0},        {0.005f, 0},     {1.0f, 182},  {90.0f, 16383}, // a quarter turn less one
        {-90.0f, -16383},                                                // toward zero, not down
        {180.0f, 32767},  {360.0f, 65535}, {-0.01f, -1},
    };
    for (const Row& row : rows) EXPECT_EQ(degreesToAngle(row.degrees), row.angle) << row.degrees;
}

TEST(AngleConversion, ARoundTripLosesAUnitOrTwoTowardZero)
{
    EXPECT_EQ(degreesToAngle(angleToDegrees(16384)), 16383);
    EXPECT_EQ(degreesToAngle(angleToDegrees(1)), 0);
    EXPECT_FLOAT_EQ(angleToDegrees(16384), 89.997314f);
    for (Angle angle = -fullTurn; angle <= fullTurn; ++angle) {
        const Angle back = degreesToAngle(angleToDegrees(angle));
        ASSERT_LE(std::abs(back), std::abs(angle)) << angle;
        ASSERT_LE(std::abs(angle - back), std::abs(angle) <= fullTurn / 2 ? 1 : 2) << angle;
    }
}

TEST(AngleConversion, OnlyTakesWhatFits32Bits)
{
    const float limit = 11796480.0f;
    const float below = std::nextafter(limit, 0.0f);
    EXPECT_TRUE(isConvertibleDegrees(below));
    EXPECT_TRUE(isConvertibleDegrees(-below));
    EXPECT_GT(degreesToAngle(below), 2147400000);
    EXPECT_LT(degreesToAngle(-below), -2147400000);
    EXPECT_FALSE(isConvertibleDegrees(limit));
    EXPECT_FALSE(isConvertibleDegrees(-limit));
    EXPECT_FALSE(isConvertibleDegrees(std::numeric_limits<float>::infinity()));
    EXPECT_FALSE(isConvertibleDegrees(std::numeric_limits<float>::quiet_NaN()));
}

} // namespace
} // namespace facetor
