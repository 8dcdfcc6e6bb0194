#include "image/png_codec.h"

#include "image/rgba.h"
#include "image/stb_image.h"

#include <algorithm>
#include <array>

namespace facetor {

namespace {

bool isPng(std::span<const std::byte> file)
{
    constexpr std::array<unsigned char, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    return file.size() >= signature.size() &&
           std::ranges::equal(file.first(signature.size()), std::as_bytes(std::span(signature)));
}

std::uint32_t readBigEndian(ByteReader& in)
{
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | in.u8();
    return value;
}

std::optional<ImageInfo> pngInfo(std::span<const std::byte> file)
{
    if (!isPng(file)) return std::nullopt;
    ByteReader in{file};
    (void)in.take(12); // the signature, the first chunk's size
    const bool isHeader = in.u32() == tag("IHDR");
    const std::uint32_t width = readBigEndian(in), height = readBigEndian(in);
    const ImageInfo info{width, height, 24};
    if (isDecodable(info)) return stbInfo(file);
    // Too large for stb to look at, but a PNG all the same.
    constexpr std::uint32_t largest = 0x7FFFFFFF;
    const bool valid = in.ok() && isHeader && width - 1 < largest && height - 1 < largest;
    return valid ? std::optional(info) : std::nullopt;
}

bool decodePng(std::span<const std::byte> file, std::span<std::byte> buffer)
{
    if (!isPng(file)) return false;
    const std::vector<std::uint8_t> rgba = stbDecode(file);
    if (rgba.empty() || rgba.size() != buffer.size()) return false;
    fillFromRgba(rgba, AlphaRule::separate, buffer);
    return true;
}

Bytes encodePng(const TexelImage& image)
{
    return stbEncodePng(image.width, image.height, 4, toRgba(image.texels));
}

} // namespace

const ImageCodec pngCodec{pngInfo, decodePng, encodePng};

} // namespace facetor
