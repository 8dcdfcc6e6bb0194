#pragma once

#include "image/image_codec.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace facetor {

// The stb library, which reads and writes the compressed formats. Only its PNG, TGA, JPEG and GIF
// readers are compiled; of a GIF it reads the first picture. Needs bytes that have been found to be
// of one of these formats: it takes any.

/// What stb says an image's size is; its depth is 32 when the image has alpha, otherwise 24. None
/// when it is larger than largestImageSide.
std::optional<ImageInfo> stbInfo(std::span<const std::byte> file);

/// Red, green, blue and alpha of every pixel, top row first; empty when the image cannot be
/// decoded.
std::vector<std::uint8_t> stbDecode(std::span<const std::byte> file);

/// Pixels of `channels` bytes, 3 or 4 with alpha, top row first, as a PNG file. Empty when memory
/// is short.
Bytes stbEncodePng(std::uint32_t width, std::uint32_t height, int channels,
                   std::span<const std::uint8_t> pixels);
/// The same, with alpha, as a TGA file.
Bytes stbEncodeTga(std::uint32_t width, std::uint32_t height, std::span<const std::uint8_t> rgba);

} // namespace facetor
