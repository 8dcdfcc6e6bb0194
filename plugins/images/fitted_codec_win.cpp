#include "images/fitted_codec_win.h"

#include "exchange/texture_cuts.h"
#include "image/bitmap_conversion.h"
#include "image/picture.h"
#include "images/any_codec_win.h"
#include "texture/texture_rules.h"

#include <string>

namespace facetor {

namespace {

/// What the core's own readers do not know, as the system reads it: black stands for transparent.
bool decodeWithSystem(Picture& picture, std::span<const std::byte> file)
{
    const std::optional<ImageInfo> info = anyCodec.info(file);
    if (!info || !isDecodable(*info) || info->depth != 32) return false;
    picture = {info->width, info->height, {}};
    Bytes buffer(imageBufferSize(info->width, info->height, info->depth));
    if (!anyCodec.decode(file, buffer)) return false;
    picture.rgba.reserve(buffer.size());
    for (std::size_t i = 0; i < buffer.size(); i += 4) {
        std::uint8_t lit = 0;
        for (const std::size_t channel : {2, 1, 0}) {
            picture.rgba.push_back(std::to_integer<std::uint8_t>(buffer[i + channel]));
            lit |= picture.rgba.back();
        }
        picture.rgba.push_back(lit == 0 ? 0 : 255);
    }
    return true;
}

} // namespace

std::optional<ImageInfo> fittedInfo(std::span<const std::byte> file)
{
    const std::optional<ImageInfo> info = anyCodec.info(file);
    if (!info) return std::nullopt;
    const auto [width, height] =
        fittedSize(info->width, info->height, largestTextureSide, largestTextureSide);
    return ImageInfo{width, height, 16};
}

bool decodeFitted(std::span<const std::byte> file, std::span<std::byte> buffer, Dither dither)
{
    const std::optional<ImageInfo> info = fittedInfo(file);
    if (!info || buffer.size() != imageBufferSize(info->width, info->height, info->depth))
        return false;
    Picture picture;
    std::string reason;
    if (!(looksLikePicture(file) ? decodePicture(picture, file, reason)
                                 : decodeWithSystem(picture, file)))
        return false;
    const std::vector<std::uint8_t> rgba = scaledPicture(picture, info->width, info->height);
    std::vector<Rgb555> texels(std::size_t{info->width} * info->height);
    quantise(rgba, info->width, 0.5, dither, texels);
    for (std::size_t i = 0; i < texels.size(); ++i) {
        buffer[2 * i] = std::byte(texels[i] & 0xFF);
        buffer[2 * i + 1] = std::byte(texels[i] >> 8);
    }
    return true;
}

} // namespace facetor
