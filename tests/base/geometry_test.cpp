#include "base/geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace facetor {
namespace {

void expectEqual(const Vector3& a, const Vector3& b)
{
    EXPECT_EQ(a.x, b.x);
    EXPECT_EQ(a.y, b.y);
    EXPECT_EQ(a.z, b.z);
}

TEST(Normalise, LeavesAVectorOfUnitLengthUntouched)
{
    expectEqual(normalised({0, -1, 0}), {0, -1, 0});
    expectEqual(normalised({0.5f, 0.5f, std::sqrt(0.5f)}), {0.5f, 0.5f, std::sqrt(0.5f)});
}

TEST(Normalise, ScalesAnyOtherToUnitLength)
{
    expectEqual(normalised({3, 0, -4}), {0.6f, 0, -0.8f});
    expectEqual(normalised({-50, -50, 50}), {-0.57735026f, -0.57735026f, 0.57735026f});
}

TEST(Normalise, OfAZeroVectorIsNotANumber)
{
    const Vector3 result = normalised({0, 0, 0});
    EXPECT_TRUE(std::isnan(result.x) && std::isnan(result.y) && std::isnan(result.z));
    EXPECT_FALSE(isFinite(result));
}

TEST(Geometry, ZeroOfEitherSignIsZeroAndADenormalIsNot)
{
    EXPECT_TRUE(isZero({0.0f, -0.0f, 0.0f}));
    EXPECT_FALSE(isZero({0.0f, std::numeric_limits<float>::denorm_min(), 0.0f}));
}

TEST(Geometry, DotProductCarriesItsSumInDoublePrecision)
{
    // In single precision the first two products swallow the third.
    EXPECT_EQ(dotProduct({1e5f, -1e5f, 1}, {1e5f, 1e5f, 1}), 1.0f);
}

} // namespace
} // namespace facetor
