#pragma once

#include "image/image_codec.h"

namespace facetor {

/// TGA: grey, with a palette, and 15, 16, 24 and 32 bits a pixel, plain or run-length encoded,
/// in any of the four directions.
/// Where the header says that 8 bits of a pixel are alpha, they count as in a PNG; elsewhere
/// colours arrive as they are. Written with 32 bits.
extern const ImageCodec tgaCodec;

} // namespace facetor
