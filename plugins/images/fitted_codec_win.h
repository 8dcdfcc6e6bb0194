#pragma once

#include "image/dither.h"
#include "image/image_codec.h"

namespace facetor {

// A codec that reads a picture of any kind scaled down, where it has to be, to a texture's size: at
// most 256 x 256, with its sides in proportion and a width that is a multiple of 8.

/// The size that the picture gets, and 16 bits a pixel.
std::optional<ImageInfo> fittedInfo(std::span<const std::byte> file);

/// Fills a buffer of that size with texels. What alpha leaves out below one half is 0, all else has
/// bit 15 set.
bool decodeFitted(std::span<const std::byte> file, std::span<std::byte> buffer, Dither dither);

} // namespace facetor
