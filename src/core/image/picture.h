#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace facetor {

/// A picture in memory; one that could not be read has no pixels.
struct Picture {
    std::uint32_t width = 0, height = 0;
    std::vector<std::uint8_t> rgba; ///< red, green, blue, alpha; top row first
};

/// Whether decodePicture() would try to read a file: by its signature or, of a TGA, its header.
bool looksLikePicture(std::span<const std::byte> file);

/// Decodes a picture's file (PNG, BMP, TGA, JPEG or GIF), which is told by its content; false, with
/// the cause in `reason`, when it is none that can be read.
bool decodePicture(Picture& picture, std::span<const std::byte> file, std::string& reason);

} // namespace facetor
