#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace facetor {

/// The sRGB transfer function and its inverse, 0 to 1.
inline double toSrgb(double linear)
{
    return linear <= 0.0031308 ? linear * 12.92 : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
}
inline double toLinear(double srgb)
{
    return srgb <= 0.04045 ? srgb / 12.92 : std::pow((srgb + 0.055) / 1.055, 2.4);
}

/// 0-1 to 8 bits by rounding.
inline std::uint8_t toByte(double component)
{
    return static_cast<std::uint8_t>(std::lround(std::clamp(component, 0.0, 1.0) * 255));
}

} // namespace facetor
