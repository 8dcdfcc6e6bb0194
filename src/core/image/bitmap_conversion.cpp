#include "image/bitmap_conversion.h"

#include "base/bitmap_header.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <optional>

namespace facetor {

namespace {

constexpr std::size_t colourSize = 4; ///< of a colour table's entry: blue, green, red, reserved

constexpr std::uint16_t packedDepth = 24;       // bits a pixel of what is made here
constexpr std::int32_t packedResolution = 2835; // pixels a metre

/// A packed bitmap's header; its size field and what does not change the texels is not looked at.
std::optional<BitmapHeader> readHeader(std::span<const std::byte> bitmap)
{
    ByteReader in{bitmap};
    const BitmapHeader header = readBitmapHeader(in);
    return in.ok() ? std::optional(header) : std::nullopt;
}

bool isUsableSize(std::int32_t width, std::int32_t height)
{
    constexpr std::int32_t largest = 65535; // a texture slot's fields have 16 bits
    return width >= 1 && width <= largest && height >= 1 && height <= largest;
}

/// A row's own bytes.
std::size_t bareRowBytesOf(std::size_t width, unsigned bitCount)
{
    return bitCount == 4 ? (width + 1) / 2 : width * (bitCount / 8);
}

/// Bytes from one row to the next: the row's own, filled up to a multiple of 4.
std::size_t rowBytesOf(std::size_t width, unsigned bitCount)
{
    return (bareRowBytesOf(width, bitCount) + 3) / 4 * 4;
}

/// Bytes of the colour table.
std::size_t tableBytesOf(unsigned bitCount)
{
    return colourSize * (bitCount == 4 ? 16 : bitCount == 8 ? 256 : 0);
}

/// From blue, green and red, a byte each.
Rgb555 colourFrom(std::span<const std::byte> bgr)
{
    return rgb555(std::to_integer<int>(bgr[2]) >> 3, std::to_integer<int>(bgr[1]) >> 3,
                  std::to_integer<int>(bgr[0]) >> 3);
}

using ColourTable = std::array<Rgb555, 256>;

/// The 15-bit colour of pixel x in a row; of 16-bit sources with their own top bit.
Rgb555 pixelColour(std::span<const std::byte> row, std::size_t x, unsigned bitCount,
                   const ColourTable& table)
{
    switch (bitCount) {
    case 4: {
        const auto pair = std::to_integer<std::size_t>(row[x / 2]);
        return table[x % 2 == 0 ? pair >> 4 : pair & 15];
    }
    case 8: return table[std::to_integer<std::size_t>(row[x])];
    case 16: return ByteReader{row.subspan(x * 2, 2)}.u16();
    default: return colourFrom(row.subspan(x * (bitCount / 8), 3));
    }
}

ColourTable readColourTable(std::span<const std::byte> colours)
{
    ColourTable table{};
    for (std::size_t i = 0; i < colours.size() / colourSize; ++i)
        table[i] = colourFrom(colours.subspan(i * colourSize, colourSize));
    return table;
}

/// Converts one row, as many pixels as `texels` has room for.
void convertRow(std::span<const std::byte> row, unsigned bitCount, const ColourTable& table,
                Rgb555 transparentColour, std::span<Rgb555> texels)
{
    const Rgb555 transparent = transparentColour & 0x7FFF;
    for (std::size_t x = 0; x < texels.size(); ++x) {
        const Rgb555 colour = pixelColour(row, x, bitCount, table);
        texels[x] = colour == transparent ? colour : static_cast<Rgb555>(colour | opaqueBit);
    }
}

/// A bitmap that can be converted: nothing in it is beyond its end.
struct BitmapParts {
    BitmapHeader header;
    std::span<const std::byte> colours; ///< empty above 8 bits
    std::span<const std::byte> bits;
};

std::optional<BitmapParts> takeApart(std::span<const std::byte> bitmap)
{
    const std::optional<BitmapHeader> header = readHeader(bitmap);
    if (!header || !isUsableSize(header->width, header->height)) return std::nullopt;
    if (header->compression != 0) return std::nullopt;
    const unsigned bitCount = header->bitCount;
    if (bitCount != 4 && bitCount != 8 && bitCount != 16 && bitCount != 24 && bitCount != 32)
        return std::nullopt;
    const auto height = static_cast<std::size_t>(header->height);
    const std::size_t rowBytes = rowBytesOf(static_cast<std::size_t>(header->width), bitCount);
    ByteReader in{bitmap.subspan(bitmapHeaderSize)};
    const auto colours = in.take(tableBytesOf(bitCount));
    if (!in.ok() || height > in.left() / rowBytes) return std::nullopt;
    return BitmapParts{*header, colours, in.take(height * rowBytes)};
}

} // namespace

BitmapSize packedBitmapSize(std::span<const std::byte> bitmap)
{
    const std::optional<BitmapHeader> header = readHeader(bitmap);
    return header ? BitmapSize{header->width, header->height} : BitmapSize{0, 0};
}

bool convertBitmap(std::span<const std::byte> bitmap, Rgb555 transparentColour,
                   std::span<Rgb555> texels)
{
    const auto parts = takeApart(bitmap);
    if (!parts) return false;
    const unsigned bitCount = parts->header.bitCount;
    const auto width = static_cast<std::size_t>(parts->header.width);
    const auto height = static_cast<std::size_t>(parts->header.height);
    const std::size_t rowBytes = rowBytesOf(width, bitCount);
    assert(texels.size() >= width * height);

    const ColourTable table = readColourTable(parts->colours);
    for (std::size_t y = 0; y < height; ++y)
        convertRow(parts->bits.subspan((height - 1 - y) * rowBytes, rowBytes), bitCount, table,
                   transparentColour, texels.subspan(y * width, width));
    return true;
}

bool isConvertible(std::span<const std::byte> bitmap)
{
    return takeApart(bitmap).has_value();
}

std::uint64_t packedTextureSize(const TextureSlot& texture)
{
    return bitmapHeaderSize +
           std::uint64_t{rowBytesOf(texture.width, packedDepth)} * texture.height;
}

void packTexture(const TextureSlot& texture, std::span<std::byte> bitmap)
{
    const std::size_t rowBytes = rowBytesOf(texture.width, packedDepth);
    BitmapHeader header = bitmapHeader(texture.width, texture.height, packedDepth,
                                       static_cast<std::uint32_t>(rowBytes * texture.height));
    header.xPixelsPerMetre = header.yPixelsPerMetre = packedResolution;
    std::ranges::copy(bitmapHeaderBytes(header), bitmap.begin());
    const Rgb555* texel = texture.pixels;
    for (std::size_t y = texture.height; y-- > 0;) {
        auto* out = bitmap.data() + bitmapHeaderSize + y * rowBytes;
        for (std::size_t x = 0; x < texture.width; ++x, ++texel) {
            const int mark = *texel & opaqueBit ? 0 : 1;
            for (const int channel : {*texel << 3, *texel >> 2, *texel >> 7}) // blue, green, red
                *out++ = static_cast<std::byte>((channel & 0xF8) + mark);
        }
    }
}

std::size_t imageBufferSize(std::uint32_t width, std::uint32_t height, int depth)
{
    if (depth != 4 && depth != 8 && depth != 16 && depth != 24 && depth != 32) return 0;
    const unsigned bitCount = depth == 24 ? 32u : static_cast<unsigned>(depth);
    return tableBytesOf(bitCount) + bareRowBytesOf(width, bitCount) * height;
}

void convertImageBuffer(std::span<const std::byte> buffer, std::uint32_t width, int depth,
                        Rgb555 transparentColour, std::span<Rgb555> texels)
{
    const unsigned bitCount = depth == 24 ? 32u : static_cast<unsigned>(depth);
    const std::size_t rowBytes = bareRowBytesOf(width, bitCount);
    ByteReader in{buffer};
    const ColourTable table = readColourTable(in.take(tableBytesOf(bitCount)));
    for (std::size_t start = 0; start < texels.size(); start += width)
        convertRow(in.take(rowBytes), bitCount, table, transparentColour,
                   texels.subspan(start, width));
    assert(in.ok());
}

} // namespace facetor
