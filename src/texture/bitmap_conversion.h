#pragma once

#include "base/colour.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace facetor {

/// Size of a packed bitmap in pixels; both zero when its header cannot be used.
struct BitmapSize {
    std::int32_t width, height;
};

/// The size that a packed bitmap (bitmap header, colour table, bits) says it has. 0 x 0 when it is
/// cut inside the header or the size is not within 1-65535 each.
BitmapSize packedBitmapSize(std::span<const std::byte> bitmap);

/// Converts an uncompressed packed bitmap of 4, 8, 16, 24 or 32 bits a pixel, rows bottom-up, into
/// texels, top row first. A texel is opaque (bit 15) unless its colour is the transparent one, of
/// which the low 15 bits count. Needs `texels` of width x height. False, with nothing written, when
/// the bitmap is compressed, of another depth, or cut.
[[nodiscard]] bool convertBitmap(std::span<const std::byte> bitmap, Rgb555 transparentColour,
                                 std::span<Rgb555> texels);

} // namespace facetor
