#pragma once

#include "image/image_codec.h"

namespace facetor {

/// PNG, every kind. Pixels of alpha below one half arrive as black, all others apart from it
/// (AlphaRule::separate), also in images without alpha. Written with alpha.
extern const ImageCodec pngCodec;

} // namespace facetor
