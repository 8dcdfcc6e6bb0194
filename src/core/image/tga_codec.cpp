#include "image/tga_codec.h"

#include "image/rgba.h"
#include "image/stb_image.h"

#include <algorithm>
#include <array>

namespace facetor {

namespace {

constexpr std::size_t headerSize = 18;

/// The header's fields. The format has no mark of its own, so they have to be plausible together.
struct TgaHeader {
    std::uint8_t idLength, mapType, kind;
    std::uint16_t mapFirst, mapCount;
    std::uint8_t mapDepth;
    std::uint16_t width, height;
    std::uint8_t depth, descriptor;

    bool isRightToLeft() const { return (descriptor & 0x10) != 0; }
    bool isRunLength() const { return kind >= 9; }
    int baseKind() const { return kind % 8; } ///< 1 palette, 2 true colour, 3 grey
    bool hasAlpha() const { return baseKind() != 3 && depth == 32 && (descriptor & 15) == 8; }
    std::size_t pixelBytes() const { return (depth + 7u) / 8; }
};

bool isPlausible(const TgaHeader& header)
{
    if (header.width == 0 || header.height == 0) return false;
    if ((header.descriptor & 0xC0) != 0) return false; // interleaved rows, which nobody writes
    if (header.kind != header.baseKind() && header.kind != header.baseKind() + 8) return false;
    const auto isColourDepth = [](int depth) {
        return depth == 15 || depth == 16 || depth == 24 || depth == 32;
    };
    switch (header.baseKind()) {
    case 1:
        return header.mapType == 1 && header.depth == 8 && header.mapCount > 0 &&
               isColourDepth(header.mapDepth);
    case 2: return header.mapType == 0 && isColourDepth(header.depth);
    case 3: return header.mapType == 0 && (header.depth == 8 || header.depth == 16);
    default: return false;
    }
}

/// Whether packets that stand for `pixels` pixels are all there. The decoder itself takes a file
/// that ends too early for one that goes on with zeros.
bool holdsPackets(ByteReader& in, std::size_t pixels, std::size_t pixelBytes)
{
    while (pixels > 0 && in.ok()) {
        const std::uint8_t head = in.u8();
        const std::size_t count = (head & 0x7Fu) + 1;
        (void)in.take((head & 0x80) != 0 ? pixelBytes : count * pixelBytes);
        pixels -= std::min(pixels, count);
    }
    return in.ok();
}

std::optional<TgaHeader> readHeader(std::span<const std::byte> file)
{
    ByteReader in{file};
    TgaHeader header{};
    header.idLength = in.u8();
    header.mapType = in.u8();
    header.kind = in.u8();
    header.mapFirst = in.u16();
    header.mapCount = in.u16();
    header.mapDepth = in.u8();
    (void)in.u32(); // the place of the image on a screen
    header.width = in.u16();
    header.height = in.u16();
    header.depth = in.u8();
    header.descriptor = in.u8();
    if (!in.ok() || !isPlausible(header)) return std::nullopt;
    return header;
}

bool isWhole(std::span<const std::byte> file, const TgaHeader& header)
{
    ByteReader in{file};
    (void)in.take(headerSize + header.idLength);
    if (header.mapType == 1) (void)in.take(header.mapCount * ((header.mapDepth + 7u) / 8));
    const std::size_t pixels = std::size_t{header.width} * header.height;
    if (header.isRunLength()) return holdsPackets(in, pixels, header.pixelBytes());
    return in.ok() && in.left() / header.pixelBytes() >= pixels;
}

/// The file with a palette that begins at entry 0, for the decoder, which knows no other. What
/// stands before the first entry is black; a pixel of 8 bits names none behind 255.
Bytes withWholePalette(std::span<const std::byte> file, const TgaHeader& header)
{
    constexpr std::size_t entries = 256;
    const std::size_t entrySize = (header.mapDepth + 7u) / 8, first = header.mapFirst,
                      palette = headerSize + header.idLength;
    Bytes whole(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(palette));
    whole.resize(palette + entries * entrySize);
    if (first < entries) {
        const std::size_t count = std::min<std::size_t>(header.mapCount, entries - first);
        std::ranges::copy(file.subspan(palette, count * entrySize),
                          whole.begin() + static_cast<std::ptrdiff_t>(palette + first * entrySize));
    }
    const auto pixels = file.subspan(palette + header.mapCount * entrySize);
    whole.insert(whole.end(), pixels.begin(), pixels.end());
    const std::array<std::uint8_t, 4> range{0, 0, 0, 1}; // from 0 on, 256
    std::ranges::copy(std::as_bytes(std::span(range)), whole.begin() + 3);
    return whole;
}

void mirrorRows(std::span<std::uint8_t> rgba, std::size_t width)
{
    for (std::size_t row = 0; row < rgba.size(); row += width * 4)
        for (std::size_t left = 0, right = width - 1; left < right; ++left, --right)
            std::swap_ranges(rgba.begin() + static_cast<std::ptrdiff_t>(row + left * 4),
                             rgba.begin() + static_cast<std::ptrdiff_t>(row + left * 4 + 4),
                             rgba.begin() + static_cast<std::ptrdiff_t>(row + right * 4));
}

std::optional<ImageInfo> tgaInfo(std::span<const std::byte> file)
{
    const std::optional<TgaHeader> header = readHeader(file);
    if (!header) return std::nullopt;
    return ImageInfo{header->width, header->height, header->hasAlpha() ? 32 : 24};
}

bool decodeTga(std::span<const std::byte> file, std::span<std::byte> buffer)
{
    const std::optional<TgaHeader> header = readHeader(file);
    if (!header || !isWhole(file, *header)) return false;
    std::vector<std::uint8_t> rgba = stbDecode(header->baseKind() == 1 && header->mapFirst > 0
                                                   ? withWholePalette(file, *header)
                                                   : Bytes(file.begin(), file.end()));
    if (rgba.empty() || rgba.size() != buffer.size()) return false;
    if (header->isRightToLeft()) mirrorRows(rgba, header->width);
    fillFromRgba(rgba, header->hasAlpha() ? AlphaRule::separate : AlphaRule::ignore, buffer);
    return true;
}

Bytes encodeTga(const TexelImage& image)
{
    return stbEncodeTga(image.width, image.height, toRgba(image.texels));
}

} // namespace

const ImageCodec tgaCodec{tgaInfo, decodeTga, encodeTga};

} // namespace facetor
