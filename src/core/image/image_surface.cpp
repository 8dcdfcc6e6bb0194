#include "image/image_surface.h"

#include "base/bitmap_header.h"

#include <algorithm>
#include <cstring>

namespace facetor {

namespace {

constexpr std::uint32_t largestSide = 32767;  // keeps every size within 32 bits
constexpr std::uint32_t paletteEntrySize = 4; // blue, green, red, reserved

std::uint32_t paletteEntries(std::uint16_t depth)
{
    return depth <= 8 ? 1u << depth : 0;
}

void putU16(std::byte* at, std::uint16_t value)
{
    at[0] = static_cast<std::byte>(value);
    at[1] = static_cast<std::byte>(value >> 8);
}

/// The stored row of picture row `y`.
std::byte* row(ImageSurface& surface, std::uint32_t y)
{
    return surfaceBits(surface) + std::size_t{surface.height - 1 - y} * surface.rowStride;
}

const std::byte* row(const ImageSurface& surface, std::uint32_t y)
{
    return surfaceBits(surface) + std::size_t{surface.height - 1 - y} * surface.rowStride;
}

/// A row without its padding, in bytes.
std::uint32_t packedRowSize(std::uint32_t width, std::uint16_t depth)
{
    return (width * depth + 7) / 8;
}

/// Pixel x of a row with less than 8 bits a pixel; the leftmost is in the highest bits.
unsigned packedPixel(const std::byte* row, std::uint32_t x, unsigned depth)
{
    const unsigned perByte = 8 / depth, shift = 8 - depth * (x % perByte + 1);
    return std::to_integer<unsigned>(row[x / perByte]) >> shift & ((1u << depth) - 1);
}

void setPackedPixel(std::byte* row, std::uint32_t x, unsigned depth, unsigned value)
{
    const unsigned perByte = 8 / depth, shift = 8 - depth * (x % perByte + 1);
    const unsigned mask = ((1u << depth) - 1) << shift;
    std::byte& target = row[x / perByte];
    target = static_cast<std::byte>((std::to_integer<unsigned>(target) & ~mask) |
                                    (value << shift & mask));
}

void copyRow(const std::byte* source, std::uint32_t sourceX, std::byte* destination,
             std::uint32_t destinationX, std::uint32_t count, std::uint16_t depth)
{
    if (depth >= 8) {
        const std::uint32_t size = depth / 8u;
        std::memcpy(destination + std::size_t{destinationX} * size,
                    source + std::size_t{sourceX} * size, std::size_t{count} * size);
        return;
    }
    for (std::uint32_t i = 0; i < count; ++i)
        setPackedPixel(destination, destinationX + i, depth,
                       packedPixel(source, sourceX + i, depth));
}

/// One side of a copy, as three starts and a length.
struct Run {
    std::int64_t source, destination, count;
};

Run clippedRun(Run run, std::uint32_t sourceSize, std::uint32_t destinationSize)
{
    if (run.destination < 0) {
        run.count += run.destination;
        run.source = -run.destination; // the rectangle's own start does not count then
        run.destination = 0;
    }
    run.count = std::min(run.count, std::int64_t{destinationSize} - run.destination);
    if (run.source < 0) {
        run.count += run.source;
        run.destination -= run.source;
        run.source = 0;
    }
    run.count = std::min(run.count, std::int64_t{sourceSize} - run.source);
    return run;
}

} // namespace

std::uint32_t surfaceRowStride(std::uint32_t width, std::uint16_t depth)
{
    switch (depth) {
    case 1:
    case 4:
    case 8:
    case 16:
    case 24:
    case 32: return (packedRowSize(width, depth) + 3) / 4 * 4;
    default: return 0;
    }
}

Message createSurface(ImageSurface& surface, std::uint32_t width, std::uint32_t height,
                      std::uint16_t depth)
{
    destroySurface(surface);
    if (width > largestSide || height > largestSide) return Message::outOfMemory;
    const std::uint32_t stride = surfaceRowStride(width, depth);
    const std::uint64_t size = bitmapHeaderSize + paletteEntries(depth) * paletteEntrySize +
                               std::uint64_t{stride} * height;
    if (stride == 0 || size > 0x7FFFFFFF || !surface.block.allocate(static_cast<std::size_t>(size)))
        return Message::outOfMemory;
    surface.blockSize = static_cast<std::uint32_t>(size);
    surface.width = width;
    surface.height = height;
    surface.rowStride = stride;
    surface.depth = depth;
    std::ranges::copy(bitmapHeaderBytes(bitmapHeader(width, height, depth, stride * height)),
                      surface.block.data());
    return Message::none;
}

void destroySurface(ImageSurface& surface)
{
    surface = ImageSurface{};
}

std::byte* surfaceBits(ImageSurface& surface)
{
    return surface.block.data() + bitmapHeaderSize + paletteSize(surface) * paletteEntrySize;
}

const std::byte* surfaceBits(const ImageSurface& surface)
{
    return surface.block.data() + bitmapHeaderSize + paletteSize(surface) * paletteEntrySize;
}

BlitGeometry blitGeometry(const ImageSurface& surface, const PixelRectangle& source,
                          const PixelRectangle& destination, Mirror mirror)
{
    BlitGeometry blit{destination.left,
                      destination.top,
                      destination.right - destination.left,
                      destination.bottom - destination.top,
                      source.left,
                      static_cast<int>(surface.height) - source.bottom,
                      source.right - source.left,
                      source.bottom - source.top};
    if (mirror == Mirror::leftRight || mirror == Mirror::both) {
        blit.destinationX = destination.right - 1;
        blit.destinationWidth = -blit.destinationWidth;
    }
    if (mirror == Mirror::topBottom || mirror == Mirror::both) {
        blit.destinationY = destination.bottom - 1;
        blit.destinationHeight = -blit.destinationHeight;
    }
    return blit;
}

void fillSurface(ImageSurface& surface, const PixelRectangle& rectangle, std::uint32_t colour)
{
    const auto clip = [](std::int32_t side, std::uint32_t most) {
        return static_cast<std::uint32_t>(std::clamp<std::int64_t>(side, 0, most));
    };
    const std::uint32_t left = clip(rectangle.left, surface.width);
    const std::uint32_t right = clip(rectangle.right, surface.width);
    const std::uint32_t bottom = clip(rectangle.bottom, surface.height);
    for (std::uint32_t y = clip(rectangle.top, surface.height); y < bottom; ++y) {
        std::byte* const pixels = row(surface, y);
        for (std::uint32_t x = left; x < right; ++x) {
            switch (surface.depth) {
            case 1: pixels[x / 8] = static_cast<std::byte>((colour & 1) != 0 ? 0xFF : 0); break;
            case 4: setPackedPixel(pixels, x, 4, colour & 15); break;
            default:
                for (unsigned i = 0; i < surface.depth / 8u; ++i)
                    pixels[x * (surface.depth / 8u) + i] =
                        static_cast<std::byte>(colour >> (8 * i));
            }
        }
    }
}

bool copySurface(const ImageSurface& source, ImageSurface& destination, PixelRectangle from,
                 PixelRectangle to)
{
    const auto length = [](std::int32_t start, std::int32_t end) {
        return std::int64_t{end} - start;
    };
    if (source.depth != destination.depth || source.depth == 0 ||
        length(from.left, from.right) != length(to.left, to.right) ||
        length(from.top, from.bottom) != length(to.top, to.bottom))
        return false;
    const Run x = clippedRun({from.left, to.left, length(from.left, from.right)}, source.width,
                             destination.width);
    const Run y = clippedRun({from.top, to.top, length(from.top, from.bottom)}, source.height,
                             destination.height);
    if (x.count <= 0) return true;
    for (std::int64_t i = 0; i < y.count; ++i)
        copyRow(row(source, static_cast<std::uint32_t>(y.source + i)),
                static_cast<std::uint32_t>(x.source),
                row(destination, static_cast<std::uint32_t>(y.destination + i)),
                static_cast<std::uint32_t>(x.destination), static_cast<std::uint32_t>(x.count),
                source.depth);
    return true;
}

bool loadPixels(ImageSurface& surface, std::span<const std::byte> buffer)
{
    const std::size_t packed = packedRowSize(surface.width, surface.depth);
    if (surface.depth == 0 || buffer.size() < packed * surface.height) return false;
    for (std::uint32_t y = 0; y < surface.height; ++y)
        std::memcpy(row(surface, y), buffer.data() + y * packed, packed);
    return true;
}

bool readPixels(const ImageSurface& surface, std::span<std::byte> buffer)
{
    const bool widened = surface.depth == 24;
    const std::size_t packed = packedRowSize(surface.width, widened ? 32 : surface.depth);
    if (surface.depth == 0 || buffer.size() < packed * surface.height) return false;
    for (std::uint32_t y = 0; y < surface.height; ++y) {
        const std::byte* const pixels = row(surface, y);
        std::byte* const target = buffer.data() + y * packed;
        if (!widened) {
            std::memcpy(target, pixels, packed);
            continue;
        }
        for (std::uint32_t x = 0; x < surface.width; ++x) {
            std::memcpy(target + x * 4, pixels + x * 3, 3);
            target[x * 4 + 3] = std::byte{0};
        }
    }
    return true;
}

std::uint32_t paletteSize(const ImageSurface& surface)
{
    return surface.depth == 0 ? 0 : paletteEntries(surface.depth);
}

PaletteColour paletteColour(const ImageSurface& surface, std::uint32_t index)
{
    const std::byte* const entry =
        surface.block.data() + bitmapHeaderSize + index * paletteEntrySize;
    return {std::to_integer<std::uint8_t>(entry[2]), std::to_integer<std::uint8_t>(entry[1]),
            std::to_integer<std::uint8_t>(entry[0])};
}

void setPaletteColour(ImageSurface& surface, std::uint32_t index, PaletteColour colour)
{
    if (index >= paletteSize(surface)) return;
    std::byte* const entry = surface.block.data() + bitmapHeaderSize + index * paletteEntrySize;
    entry[0] = std::byte{colour.blue};
    entry[1] = std::byte{colour.green};
    entry[2] = std::byte{colour.red};
}

void setPalette(ImageSurface& surface, std::span<const std::byte> quads, ChannelOrder order)
{
    const std::uint32_t count = paletteSize(surface);
    if (quads.size() < std::size_t{count} * paletteEntrySize) return;
    const bool swapped = order == ChannelOrder::redGreenBlue && surface.depth != 1;
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto quad = quads.subspan(std::size_t{i} * paletteEntrySize, paletteEntrySize);
        const auto blue = std::to_integer<std::uint8_t>(quad[swapped ? 2 : 0]);
        const auto red = std::to_integer<std::uint8_t>(quad[swapped ? 0 : 2]);
        setPaletteColour(surface, i, {red, std::to_integer<std::uint8_t>(quad[1]), blue});
    }
}

void copyPalette(const ImageSurface& source, ImageSurface& destination, std::uint32_t count)
{
    const std::uint32_t common = std::min({count, paletteSize(source), paletteSize(destination)});
    for (std::uint32_t i = 0; i < common; ++i)
        setPaletteColour(destination, i, paletteColour(source, i));
}

void showTexture(ImageSurface& surface, const Rgb555* texels, std::uint32_t width,
                 std::uint32_t height, Rgb555 background)
{
    const std::uint32_t columns = std::min(width, surface.width);
    for (std::uint32_t y = 0; y < std::min(height, surface.height); ++y) {
        std::byte* const pixels = row(surface, y);
        const Rgb555* const source = texels + std::size_t{y} * width;
        for (std::uint32_t x = 0; x < columns; ++x)
            putU16(pixels + x * 2, (source[x] & opaqueBit) != 0 ? source[x] : background);
    }
}

} // namespace facetor
