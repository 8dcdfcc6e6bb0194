#pragma once

#include "base/colour.h"

#include <cstdint>
#include <span>

namespace facetor {

/// How 8 bits a component become 5.
enum class Dither {
    none,    ///< the low three bits are dropped
    ordered, ///< a pattern of 4 x 4 texels
    diffuse, ///< each texel's error goes to its neighbours (Floyd and Steinberg)
};

/// Turns pixels of red, green, blue and alpha, top row first, into texels. Those of alpha below
/// `cutoff` are transparent and 0, all others opaque. Colours that 5 bits hold exactly (value x 8 +
/// value / 4) arrive as they are, whatever the dithering. Needs whole rows, and as many texels as
/// pixels.
void quantise(std::span<const std::uint8_t> rgba, std::uint32_t width, double cutoff, Dither dither,
              std::span<Rgb555> texels);

} // namespace facetor
