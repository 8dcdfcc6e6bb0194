#pragma once

#include "base/colour.h"

#include <algorithm>
#include <cstddef>

namespace facetor {

/// A texel between four others: (a (1 - fx) + b fx)(1 - fy) + (d (1 - fx) + c fx) fy for each
/// component, truncated, opaque; 0 when one of the four is transparent. a is at the top left, b at
/// the top right, c at the bottom right, d at the bottom left; fx and fy are within -1 to 1, and a
/// component that negative ones take out of its range is limited to it.
inline Rgb555 texelBetween(Rgb555 a, Rgb555 b, Rgb555 c, Rgb555 d, float fx, float fy)
{
    if ((a & b & c & d & opaqueBit) == 0) return 0;
    // As differences: between equal colours nothing is lost to rounding.
    const auto mixed = [&](int shift) {
        const auto component = [&](Rgb555 texel) {
            return static_cast<float>(texel >> shift & 31);
        };
        const float top = component(a) + (component(b) - component(a)) * fx;
        const float bottom = component(d) + (component(c) - component(d)) * fx;
        return std::clamp(static_cast<int>(top + (bottom - top) * fy), 0, 31);
    };
    return opaqueBit | rgb555(mixed(10), mixed(5), mixed(0));
}

/// The texel at (ix + fx, iy + fy) of an image, mixed from texel (ix, iy), the one right of it, the
/// one below that and the one left of the latter. A right or lower neighbour beyond the edge is
/// replaced by the texel that it would be a neighbour of, so that in the last column the fourth
/// lies one column further left than elsewhere. Needs ix < width and iy < height.
inline Rgb555 smoothTexel(const Rgb555* texels, std::size_t width, std::size_t height,
                          std::size_t ix, std::size_t iy, float fx, float fy)
{
    const Rgb555* const a = texels + iy * width + ix;
    const Rgb555* const b = ix + 1 < width ? a + 1 : a;
    const Rgb555* const c = iy + 1 < height ? b + width : b;
    const Rgb555* const d = c == texels ? c : c - 1;
    return texelBetween(*a, *b, *c, *d, fx, fy);
}

} // namespace facetor
