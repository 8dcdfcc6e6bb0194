#pragma once

#include "image/image_codec.h"

namespace facetor {

// Kinds of file that the system's imaging component reads; of several images in a file, the first.
// One with transparent pixels arrives like a PNG, any other with its colours as they are.

extern const ImageCodec jpegCodec;
extern const ImageCodec gifCodec;
extern const ImageCodec tiffCodec;

} // namespace facetor
