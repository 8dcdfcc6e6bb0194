#include "exchange/picture_import.h"

#include "exchange/texture_cuts.h"
#include "texture/texture_transforms.h"

#include <utility>

namespace facetor {

Message importPicture(TextureList& list, std::uint32_t slot, const Picture& picture,
                      const PictureImport& options, Reason& reason)
{
    std::uint32_t width = picture.width, height = picture.height;
    Picture keyed; // before it is scaled, which would mix the colour with its neighbours
    if (options.transparent) {
        keyed = picture;
        for (std::size_t i = 0; i < keyed.rgba.size(); i += 4) {
            const std::uint8_t* const pixel = keyed.rgba.data() + i;
            const Rgb555 colour = rgb555(pixel[0] >> 3, pixel[1] >> 3, pixel[2] >> 3);
            keyed.rgba[i + 3] = colour == *options.transparent ? 0 : 255;
        }
    }
    const Picture& source = options.transparent ? keyed : picture;
    std::vector<std::uint8_t> rgba;
    if (options.size == PictureSize::fitted) {
        const auto fitted = fittedSize(width, height, largestTextureSide, largestTextureSide);
        rgba = scaledPicture(source, fitted[0], fitted[1]);
        width = fitted[0];
        height = fitted[1];
    } else if (width % 8 != 0 || width > largestTextureSide || height > largestTextureSide) {
        reason.text = std::to_string(width) + "x" + std::to_string(height) +
                      " pixels; a texture is at most 256x256 and a multiple of 8 wide";
        return Message::formatNotSupported;
    } else {
        rgba = source.rgba;
    }
    Texels texels;
    if (!texels.allocate(std::size_t{width} * height)) return Message::outOfMemory;
    quantise(rgba, width, 0.5, options.dither, {texels.data(), texels.size()});
    list.set(slot, static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height),
             std::move(texels));
    return Message::none;
}

} // namespace facetor
