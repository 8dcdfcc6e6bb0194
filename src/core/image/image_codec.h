#pragma once

#include "base/bytes.h"
#include "base/colour.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace facetor {

/// The largest file that a codec is given, in bytes.
inline constexpr std::uint64_t largestImageFile = 64u * 1024 * 1024;

/// The largest side of an image that is decoded or written, in pixels. What is larger has a size
/// and a depth all the same, so that it can be refused for the right reason.
inline constexpr std::uint32_t largestImageSide = 4096;

/// What an image file's header says. Nothing but the header has been looked at.
struct ImageInfo {
    std::uint32_t width, height; ///< pixels, 1 or more each
    int depth;                   ///< bits a pixel of the image buffer, or what no buffer exists for

    bool operator==(const ImageInfo&) const = default;
};

/// An image to write: width x height texels, top row first.
struct TexelImage {
    std::uint32_t width, height; ///< 1 to largestImageSide each
    std::span<const Rgb555> texels;
};

/// One kind of image file. The functions trust nothing in the bytes that they are given.
struct ImageCodec {
    /// None when the file is of another kind, or of a form that cannot be read.
    std::optional<ImageInfo> (*info)(std::span<const std::byte> file);
    /// Fills an image buffer (texture/bitmap_conversion.h) of the size and depth that info() gave.
    /// False when the file is cut or damaged or larger than largestImageSide; what the buffer holds
    /// is then not said.
    bool (*decode)(std::span<const std::byte> file, std::span<std::byte> buffer);
    /// The whole file, empty when memory is short. Null for what can only be read.
    Bytes (*encode)(const TexelImage& image);
};

/// Whether an image is small enough to be decoded.
constexpr bool isDecodable(const ImageInfo& info)
{
    return info.width <= largestImageSide && info.height <= largestImageSide;
}

} // namespace facetor
