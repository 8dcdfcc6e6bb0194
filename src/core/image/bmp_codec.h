#pragma once

#include "image/image_codec.h"

namespace facetor {

/// BMP. Read are the uncompressed forms of 1, 2, 4, 8, 16, 24 and 32 bits a pixel, bottom-up and
/// top-down, with every size of header and any masks, and the run-length encoded ones of 4 and 8; a
/// palette and pixels of 5-5-5 arrive as they are, and 1 and 2 bits as 4. Of other depths only the
/// size is told. Written are 5-5-5 pixels with their opaque bit, so
/// that opaque texels come back as they were, and transparent ones of the transparent colour.
extern const ImageCodec bmpCodec;

} // namespace facetor
