#pragma once

#include "base/colour.h"

#include <cstdint>

namespace facetor {

/// A texture as the rasteriser samples it and as the texture list holds it.
struct TextureSlot {
    std::uint16_t width;  ///< texels in a row
    std::uint16_t height; ///< rows
    Rgb555* pixels;       ///< width x height texels, top row first; bit 15 marks an opaque one
};

/// Width and height of the blank texture, and so of every empty slot.
inline constexpr std::uint16_t blankTextureSize = 8;

/// The image that all empty slots share: an 8 x 8 checkerboard of orange and green, all opaque.
/// Never freed and never written to.
Rgb555* blankTexture();

} // namespace facetor
