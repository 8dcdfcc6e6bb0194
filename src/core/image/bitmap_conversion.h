#pragma once

#include "base/colour.h"
#include "engine/texture_slot.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace facetor {

/// Size of a packed bitmap in pixels, as its header has it.
struct BitmapSize {
    std::int32_t width, height;
};

/// The size that a packed bitmap (bitmap header, colour table, bits) says it has, which need not be
/// one that convertBitmap() takes. 0 x 0 when it is cut inside the header.
BitmapSize packedBitmapSize(std::span<const std::byte> bitmap);

/// Converts an uncompressed packed bitmap of 4, 8, 16, 24 or 32 bits a pixel, rows bottom-up, into
/// texels, top row first. A texel is opaque (bit 15) unless its colour is the transparent one, of
/// which the low 15 bits count. Needs `texels` of width x height. False, with nothing written, when
/// the bitmap is compressed, of another depth, or cut.
[[nodiscard]] bool convertBitmap(std::span<const std::byte> bitmap, Rgb555 transparentColour,
                                 std::span<Rgb555> texels);

/// Whether convertBitmap() takes a bitmap, so that no texels need be allocated for one that lies
/// about its size.
bool isConvertible(std::span<const std::byte> bitmap);

/// Bytes of a texture as a packed bitmap of 24 bits a pixel.
std::uint64_t packedTextureSize(const TextureSlot& texture);

/// The reverse of convertBitmap(): a texture as an uncompressed packed bitmap of 24 bits a pixel,
/// 72 pixels to the inch. Each channel is a multiple of 8 for an opaque texel, one more for a
/// transparent one. Needs packedTextureSize() bytes, all of them zero.
void packTexture(const TextureSlot& texture, std::span<std::byte> bitmap);

// The image buffer that plug-ins fill (docs/plugins.md): rows top-down without bytes between them.
// 4 and 8 bits a pixel index a table of 16 or 256 colours in front of the rows, an entry of 4 bytes
// (blue, green, red, reserved); 16 bits are 5-5-5 with red high; 24 and 32 bits are both blue,
// green, red and an unused byte.

/// Bytes of the buffer for an image; 0 for a depth other than 4, 8, 16, 24 and 32. Needs both sizes
/// in 0-65535.
std::size_t imageBufferSize(std::uint32_t width, std::uint32_t height, int depth);

/// Converts a buffer into texels, top row first, opaque as convertBitmap() makes them. Needs a
/// buffer of imageBufferSize(), and `texels` of whole rows.
void convertImageBuffer(std::span<const std::byte> buffer, std::uint32_t width, int depth,
                        Rgb555 transparentColour, std::span<Rgb555> texels);

} // namespace facetor
