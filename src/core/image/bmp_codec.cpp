#include "image/bmp_codec.h"

#include "base/bitmap_header.h"
#include "image/bitmap_conversion.h"

#include <algorithm>
#include <array>
#include <bit>
#include <vector>

namespace facetor {

namespace {

constexpr std::size_t fileHeaderSize = 14;
constexpr std::uint32_t coreHeaderSize = 12; ///< of the oldest form, with fields of 16 bits
constexpr std::uint32_t largestHeaderSize = 124;

enum Compression : std::uint32_t {
    plain = 0,
    runLength8 = 1,
    runLength4 = 2,
    masked = 3,
    maskedWithAlpha = 6,
};

/// Where red, green and blue lie in a pixel.
using Masks = std::array<std::uint32_t, 3>;
constexpr Masks masks16{0x7C00, 0x03E0, 0x001F};
constexpr Masks masks32{0xFF0000, 0x00FF00, 0x0000FF};

struct BmpLayout {
    ImageInfo info{};
    int bits = 0; ///< a pixel in the file; what has 1 or 2 is delivered with 4
    bool topDown = false, runLength = false;
    Masks masks{};
    std::size_t colourSize = 4; ///< bytes of a palette's entry
    std::size_t colourCount = 0;
    std::size_t paletteOffset = 0, bitsOffset = 0; ///< from the start of the file
};

bool isReadDepth(int bits)
{
    return bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 24 ||
           bits == 32;
}

void setBits(BmpLayout& layout, int bits)
{
    layout.bits = bits;
    layout.info.depth = bits == 1 || bits == 2 ? 4 : bits;
    layout.masks = bits == 16 ? masks16 : masks32;
}

/// One run of bits; none of them overlap, since each is looked at by itself.
bool isMask(std::uint32_t mask)
{
    const std::uint32_t low = mask >> std::countr_zero(mask | 0x80000000u);
    return mask != 0 && (low & (low + 1)) == 0;
}

std::optional<BmpLayout> readCoreHeader(ByteReader& in, BmpLayout layout)
{
    layout.info.width = in.u16();
    layout.info.height = in.u16();
    (void)in.u16(); // planes
    setBits(layout, in.u16());
    layout.colourSize = 3;
    layout.colourCount = layout.bits <= 8 ? std::size_t{1} << layout.bits : 0;
    return in.ok() ? std::optional(layout) : std::nullopt;
}

/// Reads on behind the size of a header of 40 bytes or more, or of the 16 that older ones may end
/// with.
std::optional<BmpLayout> readInfoHeader(ByteReader& in, BmpLayout layout, std::uint32_t headerSize)
{
    layout.info.width = in.u32();
    layout.info.height = in.u32();
    layout.topDown = (layout.info.height & 0x80000000u) != 0;
    if (layout.topDown) layout.info.height = 0u - layout.info.height;
    (void)in.u16(); // planes
    setBits(layout, in.u16());
    const std::uint32_t compression = headerSize > 16 ? in.u32() : plain;
    if (headerSize >= bitmapHeaderSize) {
        (void)in.take(12); // size of the bits, pixels a metre
        layout.colourCount = in.u32();
        (void)in.u32();
    }
    const int bits = layout.bits;
    if (bits > 8)
        layout.colourCount = 0;
    else if (layout.colourCount == 0 || layout.colourCount > std::size_t{1} << bits)
        layout.colourCount = std::size_t{1} << bits;
    layout.runLength = (compression == runLength8 && bits == 8 && !layout.topDown) ||
                       (compression == runLength4 && bits == 4 && !layout.topDown);
    if (compression == masked || compression == maskedWithAlpha) {
        if ((bits != 16 && bits != 32) || headerSize < bitmapHeaderSize) return std::nullopt;
        for (std::uint32_t& mask : layout.masks) mask = in.u32();
        if (!std::ranges::all_of(layout.masks, isMask)) return std::nullopt;
    } else if (compression != plain && !layout.runLength) {
        return std::nullopt;
    }
    return in.ok() ? std::optional(layout) : std::nullopt;
}

std::optional<BmpLayout> readLayout(std::span<const std::byte> file)
{
    ByteReader in{file};
    if (in.u8() != 'B' || in.u8() != 'M') return std::nullopt;
    (void)in.take(8); // size of the file, reserved
    BmpLayout layout;
    layout.bitsOffset = in.u32();
    const std::uint32_t headerSize = in.u32();
    if (!in.ok() || headerSize > largestHeaderSize) return std::nullopt;
    layout.paletteOffset = fileHeaderSize + headerSize;
    std::optional<BmpLayout> read;
    if (headerSize == coreHeaderSize)
        read = readCoreHeader(in, layout);
    else if (headerSize == 16 || headerSize >= bitmapHeaderSize)
        read = readInfoHeader(in, layout, headerSize);
    constexpr std::uint32_t largest = 0x7FFFFFFF;
    if (!read || read->info.width == 0 || read->info.height == 0 || read->info.width > largest ||
        read->info.height > largest)
        return std::nullopt;
    return read;
}

std::optional<ImageInfo> bmpInfo(std::span<const std::byte> file)
{
    const std::optional<BmpLayout> layout = readLayout(file);
    return layout ? std::optional(layout->info) : std::nullopt;
}

/// The bits under a mask, as the nearest of 0-255. Needs isMask().
std::uint32_t component(std::uint32_t pixel, std::uint32_t mask)
{
    const std::uint64_t most = mask >> std::countr_zero(mask);
    const std::uint64_t value = (pixel & mask) >> std::countr_zero(mask);
    return static_cast<std::uint32_t>((value * 255 + most / 2) / most);
}

void put16(std::span<std::byte> to, std::uint32_t value)
{
    to[0] = std::byte(value & 0xFF);
    to[1] = std::byte(value >> 8 & 0xFF);
}

void copyRow16(std::span<const std::byte> row, const Masks& masks, std::span<std::byte> to)
{
    if (masks == masks16) { // also the highest bit, which is no colour's
        std::ranges::copy(row, to.begin());
        return;
    }
    ByteReader in{row};
    for (std::size_t i = 0; i < to.size(); i += 2) {
        const std::uint32_t pixel = in.u16();
        put16(to.subspan(i, 2), component(pixel, masks[0]) >> 3 << 10 |
                                    component(pixel, masks[1]) >> 3 << 5 |
                                    component(pixel, masks[2]) >> 3);
    }
}

void copyRow32(std::span<const std::byte> row, const Masks& masks, std::span<std::byte> to)
{
    ByteReader in{row};
    for (std::size_t i = 0; i < to.size(); i += 4) {
        const std::uint32_t pixel = in.u32();
        for (std::size_t j = 0; j < 3; ++j) to[i + j] = std::byte(component(pixel, masks[2 - j]));
        to[i + 3] = std::byte{0};
    }
}

void copyRow24(std::span<const std::byte> row, std::span<std::byte> to)
{
    for (std::size_t x = 0; x < to.size() / 4; ++x) {
        std::ranges::copy(row.subspan(x * 3, 3), to.begin() + static_cast<std::ptrdiff_t>(x * 4));
        to[x * 4 + 3] = std::byte{0};
    }
}

/// The palette as the buffer has it: 4 bytes an entry, black where the file has none.
bool copyPalette(std::span<const std::byte> file, const BmpLayout& layout, std::span<std::byte> to)
{
    std::ranges::fill(to, std::byte{0});
    ByteReader in{file};
    (void)in.take(layout.paletteOffset);
    for (std::size_t i = 0; i < layout.colourCount; ++i)
        std::ranges::copy(in.take(layout.colourSize).first(in.ok() ? 3 : 0),
                          to.begin() + static_cast<std::ptrdiff_t>(i * 4));
    return in.ok();
}

std::size_t rowBytesOf(const BmpLayout& layout)
{
    return (layout.info.width * static_cast<std::size_t>(layout.bits) + 31) / 32 * 4;
}

/// Index `i` of those that stand in bytes from the highest bits down.
std::uint8_t indexAt(std::span<const std::byte> bytes, std::size_t i, std::size_t bits)
{
    const std::size_t shift = 8 - bits - i * bits % 8;
    return static_cast<std::uint8_t>(std::to_integer<unsigned>(bytes[i * bits / 8]) >> shift &
                                     ((1u << bits) - 1));
}

// The two below fill the palette indices of all pixels, rows in the order of the file.

bool readPlainIndices(ByteReader& in, const BmpLayout& layout, std::span<std::uint8_t> indices)
{
    const std::size_t width = layout.info.width, rowBytes = rowBytesOf(layout);
    for (std::size_t row = 0; row < indices.size(); row += width) {
        const auto bytes = in.take(rowBytes);
        if (!in.ok()) return false;
        for (std::size_t x = 0; x < width; ++x)
            indices[row + x] = indexAt(bytes, x, static_cast<std::size_t>(layout.bits));
    }
    return true;
}

/// Pixels that are skipped keep index 0; those beyond the image are dropped.
bool readRunLengthIndices(ByteReader& in, const BmpLayout& layout, std::span<std::uint8_t> indices)
{
    enum Escape : std::uint8_t { endOfRow = 0, endOfImage = 1, skip = 2 };
    const std::size_t width = layout.info.width, height = layout.info.height;
    const auto bits = static_cast<std::size_t>(layout.bits);
    std::size_t x = 0, y = 0;
    const auto put = [&](std::uint8_t index) {
        if (x < width && y < height) indices[y * width + x] = index;
        ++x;
    };
    while (in.ok()) {
        const std::size_t count = in.u8();
        const auto value = in.take(1);
        if (!in.ok()) return false; // cut before its end mark
        const std::size_t escape = std::to_integer<std::size_t>(value[0]);
        if (count > 0) { // a run; of 4 bits, of two indices in turn
            for (std::size_t i = 0; i < count; ++i) put(indexAt(value, i % (8 / bits), bits));
        } else if (escape == endOfRow) {
            x = 0;
            ++y;
        } else if (escape == endOfImage) {
            return true;
        } else if (escape == skip) {
            x += in.u8();
            y += in.u8();
        } else { // so many indices as they are, filled up to a whole number of 16 bits
            const auto bytes = in.take((escape * bits + 15) / 16 * 2);
            for (std::size_t i = 0; i < escape && in.ok(); ++i) put(indexAt(bytes, i, bits));
        }
    }
    return false;
}

/// The indices as the buffer has them, of 4 or 8 bits.
void copyIndices(std::span<const std::uint8_t> row, int depth, std::span<std::byte> to)
{
    std::ranges::fill(to, std::byte{0});
    for (std::size_t x = 0; x < row.size(); ++x)
        if (depth == 8)
            to[x] = std::byte{row[x]};
        else
            to[x / 2] |= std::byte{row[x]} << (x % 2 == 0 ? 4 : 0);
}

bool decodeIndexed(std::span<const std::byte> file, const BmpLayout& layout,
                   std::span<std::byte> buffer)
{
    const auto [width, height, depth] = layout.info;
    const std::size_t paletteSize = depth == 4 ? 64 : 1024;
    if (!copyPalette(file, layout, buffer.first(paletteSize))) return false;
    ByteReader in{file};
    (void)in.take(layout.bitsOffset);
    std::vector<std::uint8_t> indices(std::size_t{width} * height);
    if (!(layout.runLength ? readRunLengthIndices : readPlainIndices)(in, layout, indices))
        return false;
    const std::size_t rowSize = (buffer.size() - paletteSize) / height;
    for (std::size_t y = 0; y < height; ++y) {
        const std::size_t row = layout.topDown ? y : height - 1 - y;
        copyIndices(std::span(indices).subspan(row * width, width), depth,
                    buffer.subspan(paletteSize + y * rowSize, rowSize));
    }
    return true;
}

bool decodeBmp(std::span<const std::byte> file, std::span<std::byte> buffer)
{
    const std::optional<BmpLayout> layout = readLayout(file);
    if (!layout || !isDecodable(layout->info) || !isReadDepth(layout->bits)) return false;
    const auto [width, height, depth] = layout->info;
    if (buffer.size() != imageBufferSize(width, height, depth)) return false;
    if (depth <= 8) return decodeIndexed(file, *layout, buffer);

    const std::size_t rowBytes = rowBytesOf(*layout);
    ByteReader in{file};
    (void)in.take(layout->bitsOffset);
    const auto bits = in.take(rowBytes * height);
    if (!in.ok()) return false;

    const std::size_t rowSize = buffer.size() / height;
    for (std::size_t y = 0; y < height; ++y) {
        const auto row = bits.subspan((layout->topDown ? y : height - 1 - y) * rowBytes, rowBytes);
        const auto to = buffer.subspan(y * rowSize, rowSize);
        switch (depth) {
        case 16: copyRow16(row.first(rowSize), layout->masks, to); break;
        case 24: copyRow24(row, to); break;
        default: copyRow32(row, layout->masks, to); break;
        }
    }
    return true;
}

Bytes encodeBmp(const TexelImage& image)
{
    constexpr std::uint32_t offset = fileHeaderSize + bitmapHeaderSize;
    const std::uint32_t padding = image.width % 2 * 2;
    const std::uint32_t size = (image.width * 2 + padding) * image.height;
    ByteWriter out;
    out.text("BM");
    for (const std::uint32_t value : {offset + size, 0u, offset}) out.u32(value);
    out.bytes(bitmapHeaderBytes(bitmapHeader(image.width, image.height, 16, size)));
    for (std::uint32_t y = image.height; y-- > 0;) {
        for (const Rgb555 texel : image.texels.subspan(std::size_t{y} * image.width, image.width))
            out.u16(texel);
        out.zeros(padding);
    }
    return out.release();
}

} // namespace

const ImageCodec bmpCodec{bmpInfo, decodeBmp, encodeBmp};

} // namespace facetor
