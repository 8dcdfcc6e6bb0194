#pragma once

#include "base/bitmap_header.h"
#include "base/colour.h"
#include "base/pages.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace facetor {

/// The largest surface, in pixels; a larger client area shows its top-left part.
inline constexpr std::int32_t surfaceMaxWidth = 640;
inline constexpr std::int32_t surfaceMaxHeight = 489;

/// Rows of pixels as the fills see them: `width` apart, row 0 first.
struct PixelRows {
    Rgb555* pixels;
    std::int32_t width, height;

    Rgb555* row(std::int32_t number) const
    {
        return pixels + static_cast<std::ptrdiff_t>(number) * width;
    }
};

/// Pixels behind the last one of the largest surface that may be read, and written back as they
/// are: the fills' vectors end where they end.
inline constexpr std::size_t surfacePadding = 32;

/// What the engine draws into: a 16-bit bitmap of at most 640 x 489 RGB555 pixels, bottom-up, its
/// header and pixels in one block that is allocated once. Screen row y is surface row
/// height - 1 - y; a row has exactly `width` pixels.
struct FrameSurface {
    PageArray<std::byte> block;
    std::int32_t width = 0; ///< a multiple of 4
    std::int32_t height = 0;

    /// The header, at the start of the block.
    const BitmapHeader& header() const;
    /// Surface row 0, which is the bottom one on the screen.
    Rgb555* pixels();
    const Rgb555* pixels() const;
    PixelRows rows() { return {pixels(), width, height}; }
    std::size_t pixelCount() const
    {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
    /// The pixel at a screen position. Needs 0 <= x < width, 0 <= y < height.
    Rgb555 at(std::int32_t x, std::int32_t y) const;
};

/// Allocates the block for the largest surface and gives the surface that size. False when memory
/// is short.
[[nodiscard]] bool createFrameSurface(FrameSurface& surface);

/// Gives the surface a new size without allocating: the width is clamped to 4-640 and rounded down
/// to a multiple of 4, the height clamped to 1-489. The pixels are undefined until it is cleared.
void setSurfaceSize(FrameSurface& surface, std::int32_t width, std::int32_t height);

/// Fills every pixel with one colour.
void clearSurface(FrameSurface& surface, Rgb555 colour);

} // namespace facetor
