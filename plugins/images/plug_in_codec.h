#pragma once

#include "image/image_codec.h"

namespace facetor {

/// The codec that a plug-in serves with; each plug-in defines its own.
extern const ImageCodec& plugInCodec;

} // namespace facetor
