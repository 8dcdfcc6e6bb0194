#pragma once

#include "base/bytes.h"
#include "engine/frame_surface.h"
#include "image/picture.h"

namespace facetor {

enum class Alpha { left, kept };

/// The surface as a picture without transparency, top row first, each component its 5-bit value
/// times 8.
Picture pictureOf(const FrameSurface& surface);

/// Makes every pixel a square of `times` x `times`.
Picture enlarged(Picture picture, std::uint32_t times);

/// An 8-bit PNG file, with or without alpha. Empty when memory is short.
Bytes encodePng(const Picture& picture, Alpha alpha);

} // namespace facetor
