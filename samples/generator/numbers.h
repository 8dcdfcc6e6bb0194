#pragma once

#include <cstdint>

namespace facetor::samples {

// Arithmetic whose results are the same on every machine: only additions, multiplications and
// divisions, which IEEE fixes to the last bit, and none of the C library's functions.

/// The largest whole number that is not above x. Needs |x| < 2^31.
constexpr double floorOf(double x)
{
    const auto whole = static_cast<double>(static_cast<std::int64_t>(x));
    return whole > x ? whole - 1 : whole;
}

/// x to the nearest sixteenth: what coordinates are rounded to.
constexpr double toSixteenth(double x)
{
    return floorOf(x * 16 + 0.5) / 16;
}

/// The sine of an angle in turns.
constexpr double sineOfTurns(double turns)
{
    double t = turns - floorOf(turns);     // 0 to 1
    const double sign = t >= 0.5 ? -1 : 1; // the second half mirrors the first
    if (t >= 0.5) t -= 0.5;                // 0 to 0.5
    if (t > 0.25) t = 0.5 - t;             // 0 to 0.25
    const double x = t * 6.28318530717958648, square = x * x;
    double sum = 0;
    for (int n = 15; n >= 1; n -= 2) sum = 1 - square / ((n + 1) * (n + 2)) * sum;
    return sign * x * sum;
}

constexpr double cosineOfTurns(double turns)
{
    return sineOfTurns(turns + 0.25);
}

/// A number that looks random, 0 to 0xFFFFFFFF, and is always the same for the same arguments.
constexpr std::uint32_t scattered(std::uint32_t a, std::uint32_t b = 0, std::uint32_t c = 0)
{
    std::uint32_t h = a * 0x9E3779B1u ^ b * 0x85EBCA77u ^ c * 0xC2B2AE3Du;
    h = (h ^ h >> 15) * 0x2C1B3C6Du;
    h = (h ^ h >> 12) * 0x297A2D39u;
    return h ^ h >> 15;
}

/// scattered() as a number from 0 to below 1.
constexpr double scatteredUnit(std::uint32_t a, std::uint32_t b = 0, std::uint32_t c = 0)
{
    return (scattered(a, b, c) >> 8) / 16777216.0;
}

} // namespace facetor::samples
