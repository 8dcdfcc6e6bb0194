#include "images/tga_codec.h"

#include "images/rgba.h"
#include "images/stb_image.h"

#include <algorithm>

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

    bool isRunLength() const { return kind >= 9; }
    int baseKind() const { return kind % 8; } ///< 1 palette, 2 true colour, 3 grey
    bool hasAlpha() const { return baseKind() != 3 && depth == 32 && (descriptor & 15) == 8; }
    std::size_t pixelBytes() const { return (depth + 7u) / 8; }
};

bool isPlausible(const TgaHeader& header)
{
    if (header.width == 0 || header.height == 0) return false;
    // Rows from right to left or interleaved, which nobody writes.
    if ((header.descriptor & 0xD0) != 0) return false;
    if (header.kind != header.baseKind() && header.kind != header.baseKind() + 8) return false;
    const auto isColourDepth = [](int depth) {
        return depth == 15 || depth == 16 || depth == 24 || depth == 32;
    };
    switch (header.baseKind()) {
    case 1:
        return header.mapType == 1 && header.depth == 8 && header.mapFirst == 0 &&
               header.mapCount > 0 && isColourDepth(header.mapDepth);
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
    return in.left() / header.pixelBytes() >= pixels;
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
    const std::vector<std::uint8_t> rgba = stbDecode(file);
    if (rgba.empty() || rgba.size() != buffer.size()) return false;
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
