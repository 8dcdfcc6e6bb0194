#include "image/picture.h"

#include "image/bitmap_conversion.h"
#include "image/bmp_codec.h"
#include "image/png_codec.h"
#include "image/stb_image.h"
#include "image/tga_codec.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

namespace facetor {

namespace {

/// By the codec's image buffer: a palette or 5-5-5 pixels, else blue, green, red and an unused
/// byte.
bool decodeBmp(Picture& picture, std::span<const std::byte> file, int depth)
{
    const std::size_t size = imageBufferSize(picture.width, picture.height, depth);
    Bytes buffer(size);
    if (size == 0 || !bmpCodec.decode(file, buffer)) return false;
    const auto byteAt = [&](std::size_t i) { return std::to_integer<unsigned>(buffer[i]); };
    const std::size_t colours = depth == 4 ? 16 : depth == 8 ? 256 : 0;
    const std::size_t count = std::size_t{picture.width} * picture.height;
    const std::size_t rowBytes = (size - colours * 4) / picture.height;
    picture.rgba.reserve(count * 4);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t x = i % picture.width;
        const std::size_t row = colours * 4 + i / picture.width * rowBytes;
        if (depth == 16) {
            const Rgb555 texel =
                static_cast<Rgb555>(byteAt(row + x * 2) | byteAt(row + x * 2 + 1) << 8);
            for (const int component : {redOf(texel), greenOf(texel), blueOf(texel)})
                picture.rgba.push_back(stretched(component));
        } else {
            std::size_t at = row + x * 4;
            if (depth == 8) at = byteAt(row + x) * 4;
            if (depth == 4) at = (byteAt(row + x / 2) >> (x % 2 == 0 ? 4 : 0) & 15) * 4;
            for (const std::size_t channel : {2, 1, 0})
                picture.rgba.push_back(static_cast<std::uint8_t>(byteAt(at + channel)));
        }
        picture.rgba.push_back(255);
    }
    return true;
}

bool beginsWith(std::span<const std::byte> file, std::string_view signature)
{
    return file.size() >= signature.size() &&
           std::memcmp(file.data(), signature.data(), signature.size()) == 0;
}

bool isTga(std::span<const std::byte> file)
{
    static constexpr std::string_view others[] = {"BM", "\x89PNG", "\xFF\xD8\xFF", "GIF8"};
    return std::none_of(std::begin(others), std::end(others),
                        [&](std::string_view other) { return beginsWith(file, other); });
}

std::optional<ImageInfo> infoOf(std::span<const std::byte> file)
{
    if (beginsWith(file, "BM")) return bmpCodec.info(file);
    if (isTga(file)) return tgaCodec.info(file); // which has no signature: the strictest reader
    if (beginsWith(file, "\x89PNG")) return pngCodec.info(file);
    return stbInfo(file);
}

} // namespace

bool looksLikePicture(std::span<const std::byte> file)
{
    return infoOf(file).has_value();
}

bool decodePicture(Picture& picture, std::span<const std::byte> file, std::string& reason)
{
    const std::optional<ImageInfo> info = infoOf(file);
    if (!info) {
        reason = "no picture that can be read";
        return false;
    }
    if (!isDecodable(*info)) {
        const std::string most = std::to_string(largestImageSide);
        reason = std::to_string(info->width) + "x" + std::to_string(info->height) +
                 " pixels, at most " + most + "x" + most + " are read";
        return false;
    }
    reason = "the picture is cut or damaged";
    picture.width = info->width;
    picture.height = info->height;
    if (beginsWith(file, "BM")) return decodeBmp(picture, file, info->depth);
    picture.rgba = stbDecode(file);
    constexpr std::size_t tgaAlphaBits = 17; // offset of the byte whose low four bits count them
    if (isTga(file) && !picture.rgba.empty() &&
        (std::to_integer<unsigned>(file[tgaAlphaBits]) & 15) != 8)
        for (std::size_t i = 3; i < picture.rgba.size(); i += 4) picture.rgba[i] = 255;
    return !picture.rgba.empty();
}

} // namespace facetor
