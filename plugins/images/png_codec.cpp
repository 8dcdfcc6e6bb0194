#include "images/png_codec.h"

#include "images/rgba.h"
#include "images/stb_image.h"

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

std::optional<ImageInfo> pngInfo(std::span<const std::byte> file)
{
    return isPng(file) ? stbInfo(file) : std::nullopt;
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
