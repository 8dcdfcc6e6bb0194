#pragma once

#include "image/image_codec.h"

namespace facetor {

/// Reads a picture of any kind that one of the other plug-ins reads, as that one does; which kind
/// it is says the content, not the name.
extern const ImageCodec anyCodec;

} // namespace facetor
