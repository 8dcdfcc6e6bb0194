#pragma once

#include <array>
#include <cstdint>

namespace facetor {

/// A 15-bit colour: red in bits 10-14, green in bits 5-9, blue in bits 0-4, each 0-31. Bit 15 is
/// carried; in a texture's texel it marks an opaque one.
using Rgb555 = std::uint16_t;

inline constexpr Rgb555 opaqueBit = 0x8000;

constexpr int redOf(Rgb555 colour)
{
    return colour >> 10 & 31;
}

constexpr int greenOf(Rgb555 colour)
{
    return colour >> 5 & 31;
}

constexpr int blueOf(Rgb555 colour)
{
    return colour & 31;
}

/// Needs each component in 0-31. Bit 15 is clear.
constexpr Rgb555 rgb555(int red, int green, int blue)
{
    return static_cast<Rgb555>(red << 10 | green << 5 | blue);
}

/// 0-31 stretched to 0-255, so that 31 is 255.
constexpr std::uint8_t stretched(int component)
{
    return static_cast<std::uint8_t>(component << 3 | component >> 2);
}

/// What the screen shows: each 5-bit component times 8, in the order red, green, blue.
constexpr std::array<std::uint8_t, 3> toScreenColour(Rgb555 colour)
{
    return {static_cast<std::uint8_t>(redOf(colour) * 8),
            static_cast<std::uint8_t>(greenOf(colour) * 8),
            static_cast<std::uint8_t>(blueOf(colour) * 8)};
}

/// The console's order: red and blue exchanged, bit 15 set.
constexpr Rgb555 toConsoleColour(Rgb555 colour)
{
    return static_cast<Rgb555>(0x8000 | redOf(colour) | greenOf(colour) << 5 |
                               blueOf(colour) << 10);
}

} // namespace facetor
