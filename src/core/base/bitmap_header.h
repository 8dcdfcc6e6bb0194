#pragma once

#include "base/bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace facetor {

inline constexpr std::uint32_t bitmapHeaderSize = 40; ///< bytes

/// The standard header of a device-independent bitmap: what the system's blits, the clipboard and
/// BMP files take. Colour table and rows follow it.
struct BitmapHeader {
    std::uint32_t headerSize = bitmapHeaderSize;
    std::int32_t width = 0;  ///< pixels
    std::int32_t height = 0; ///< rows; positive: stored bottom-up
    std::uint16_t planes = 1;
    std::uint16_t bitCount = 0;    ///< bits a pixel
    std::uint32_t compression = 0; ///< 0: none
    std::uint32_t imageSize = 0;   ///< bytes of the rows
    std::int32_t xPixelsPerMetre = 0;
    std::int32_t yPixelsPerMetre = 0;
    std::uint32_t coloursUsed = 0; ///< 0: as many as the depth has
    std::uint32_t coloursImportant = 0;
};
static_assert(sizeof(BitmapHeader) == bitmapHeaderSize);

/// The header of uncompressed rows, resolution unsaid. Needs an image size below 2 GiB.
BitmapHeader bitmapHeader(std::uint32_t width, std::uint32_t height, std::uint16_t bitCount,
                          std::uint32_t imageSize);

/// The header as it stands in a file.
std::array<std::byte, bitmapHeaderSize> bitmapHeaderBytes(const BitmapHeader& header);

/// Reads a header, of which nothing is checked; the reader has failed when there is none.
BitmapHeader readBitmapHeader(ByteReader& in);

} // namespace facetor
