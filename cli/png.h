#pragma once

#include "base/bytes.h"
#include "engine/frame_surface.h"

namespace facetor {

/// The surface as an 8-bit RGB PNG file, top row first, each component its 5-bit value times 8.
/// Empty when memory is short.
Bytes encodePng(const FrameSurface& surface);

} // namespace facetor
