#pragma once

#include "images/image_codec.h"

namespace facetor {

/// JPEG, GIF and TIFF, read by the system's imaging component; of several images in a file, the
/// first. One with transparent pixels arrives like a PNG, any other with its colours as they are.
extern const ImageCodec systemCodec;

} // namespace facetor
