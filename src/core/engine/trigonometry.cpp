#include "engine/trigonometry.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace facetor {

namespace {

constexpr std::uint32_t quarterTurn = 16384;

std::array<float, quarterTurn> makeSineTable()
{
    std::array<float, quarterTurn> table{};
    for (std::uint32_t i = 0; i < quarterTurn; ++i) {
        const double exact = std::sin(i * (2.0 * std::numbers::pi / fullTurn));
        table[i] = static_cast<float>(std::floor(exact * 10000.0 + 0.5) / 10000.0);
    }
    // Half-way to four decimals; the console's table holds the lower value of these three.
    table[6795] = 0.6063f;
    table[10537] = 0.8469f;
    table[14427] = 0.9824f;
    return table;
}

const std::array<float, quarterTurn> sineTable = makeSineTable();

} // namespace

float sine(Angle angle)
{
    const std::int64_t wide = angle; // its negative always fits
    const auto m = static_cast<std::uint32_t>((wide < 0 ? -wide : wide) & 0xFFFF);
    std::int64_t sign = wide;
    std::uint32_t index = m;
    if (m >= 3 * quarterTurn) {
        sign = -wide;
        index = 65535 - m;
    } else if (m >= 2 * quarterTurn) {
        sign = -wide;
        index = m - 32768;
    } else if (m >= quarterTurn) {
        index = 32767 - m;
    }
    return sign > 0 ? sineTable[index] : -sineTable[index];
}

float cosine(Angle angle)
{
    return sine(static_cast<Angle>(static_cast<std::uint32_t>(angle) + quarterTurn));
}

double tangent(Angle angle)
{
    return static_cast<double>(sine(angle)) / static_cast<double>(cosine(angle));
}

} // namespace facetor
