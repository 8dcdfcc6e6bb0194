#pragma once

#include "base/colour.h"
#include "base/message.h"
#include "base/pages.h"
#include "base/pixel_rectangle.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace facetor {

/// A colour of a surface's colour table.
struct PaletteColour {
    std::uint8_t red, green, blue;

    bool operator==(const PaletteColour&) const = default;
};

/// An off-screen picture as a packed bitmap in memory: the 40-byte bitmap header, the colour table
/// of 1, 4 and 8 bits a pixel, and the rows, bottom-up, each filled up to a multiple of 4 bytes. It
/// is what the system's stretching blit takes. 16 bits a pixel are a texel's, bit 15 without
/// meaning.
struct ImageSurface {
    PageArray<std::byte> block;
    std::uint32_t blockSize = 0; ///< bytes of header, colour table and rows
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t rowStride = 0; ///< bytes from one row to the next
    std::uint16_t depth = 0;     ///< bits a pixel: 1, 4, 8, 16, 24 or 32
};

/// Bytes from one row to the next; 0 for a depth that surfaces do not have.
std::uint32_t surfaceRowStride(std::uint32_t width, std::uint16_t depth);

/// Makes a surface, all zero. outOfMemory, with the surface empty, for another depth, for a side
/// beyond 32767, and when memory is short.
Message createSurface(ImageSurface& surface, std::uint32_t width, std::uint32_t height,
                      std::uint16_t depth);
/// Frees the block; the surface is empty afterwards.
void destroySurface(ImageSurface& surface);

/// The first stored row, the picture's bottom one.
std::byte* surfaceBits(ImageSurface& surface);
const std::byte* surfaceBits(const ImageSurface& surface);

/// A mirrored drawing: bit 0 left to right, bit 1 top to bottom.
enum class Mirror { none, leftRight, topBottom, both };

/// The arguments of one stretching blit.
struct BlitGeometry {
    int destinationX, destinationY, destinationWidth, destinationHeight;
    int sourceX, sourceY, sourceWidth, sourceHeight; ///< rows counted from the bottom

    bool operator==(const BlitGeometry&) const = default;
};
/// Those that draw the part `source` of a surface into `destination`.
BlitGeometry blitGeometry(const ImageSurface& surface, const PixelRectangle& source,
                          const PixelRectangle& destination, Mirror mirror);

/// Fills what lies within the surface of a rectangle. Of `colour` the low bits count, as many as
/// the depth has; for 1 bit whole bytes of eight pixels are set.
void fillSurface(ImageSurface& surface, const PixelRectangle& rectangle, std::uint32_t colour);

/// Copies pixels between surfaces of one depth, from and to rectangles of one size; false, with
/// nothing done, otherwise. What lies beyond either surface is left out. A destination that begins
/// above or left of its surface takes its pixels from the source's own edge, not from the
/// rectangle's.
[[nodiscard]] bool copySurface(const ImageSurface& source, ImageSurface& destination,
                               PixelRectangle from, PixelRectangle to);

/// Copies rows without padding, the top one first, into the surface. The buffer holds
/// ceil(width * depth / 8) bytes a row. False, with nothing done, when it is too small.
[[nodiscard]] bool loadPixels(ImageSurface& surface, std::span<const std::byte> buffer);

/// The reverse of loadPixels(), but 24-bit pixels come as four bytes: blue, green, red, 0. False,
/// with nothing done, when the buffer is too small.
[[nodiscard]] bool readPixels(const ImageSurface& surface, std::span<std::byte> buffer);

/// Colours in the surface's table: 2, 16 or 256; 0 above 8 bits.
std::uint32_t paletteSize(const ImageSurface& surface);
/// Needs index < paletteSize().
PaletteColour paletteColour(const ImageSurface& surface, std::uint32_t index);
/// Does nothing for an index beyond the table.
void setPaletteColour(ImageSurface& surface, std::uint32_t index, PaletteColour colour);
enum class ChannelOrder { blueGreenRed, redGreenBlue };
/// Sets the whole table of a 1-, 4- or 8-bit surface from quads of three colour bytes in the given
/// order and a reserved one; 1-bit tables know only blueGreenRed. Does nothing when there are too
/// few.
void setPalette(ImageSurface& surface, std::span<const std::byte> quads, ChannelOrder order);
/// Copies the first `count` colours, or as many as both tables have.
void copyPalette(const ImageSurface& source, ImageSurface& destination, std::uint32_t count);

/// Copies a texture into the top-left corner of a 16-bit surface, clipped to it; transparent texels
/// become `background`. Needs width x height texels.
void showTexture(ImageSurface& surface, const Rgb555* texels, std::uint32_t width,
                 std::uint32_t height, Rgb555 background);

} // namespace facetor
