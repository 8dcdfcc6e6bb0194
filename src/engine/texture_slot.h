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

} // namespace facetor
