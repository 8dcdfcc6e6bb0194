#pragma once

#include "image/image_codec.h"

#include <cstdint>
#include <span>
#include <vector>

namespace facetor {

/// What alpha and black come to in a buffer of 32 bits, which has no alpha: there black is the
/// colour that an editor with its usual settings takes for transparent.
enum class AlphaRule {
    ignore,   ///< colours as they are
    separate, ///< alpha below one half becomes black, and all that is not stays apart from it
};

/// Writes pixels of red, green, blue and alpha as blue, green, red and an unused byte. By
/// `separate`, an opaque colour so dark that it would be black in 5 bits a component becomes the
/// nearest colour that is not. Needs spans of the same size, a multiple of 4.
void fillFromRgba(std::span<const std::uint8_t> rgba, AlphaRule rule, std::span<std::byte> buffer);

/// The texels as red, green, blue and alpha, a byte each: components stretched to 0-255, alpha 255
/// or 0 by the opaque bit.
std::vector<std::uint8_t> toRgba(std::span<const Rgb555> texels);

} // namespace facetor
