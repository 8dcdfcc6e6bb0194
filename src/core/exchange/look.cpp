#include "exchange/look.h"

#include "image/png_codec.h"

#include <algorithm>
#include <span>

namespace facetor {

std::string Look::name() const
{
    std::string text = slot ? "texture" + slotNumber(*slot)
                            : "colour" + std::to_string(redOf(colour)) + "-" +
                                  std::to_string(greenOf(colour)) + "-" +
                                  std::to_string(blueOf(colour));
    if (!isLit) text += "-unlit";
    if (isTranslucent) text += "-translucent";
    if (isDoubleSided) text += "-dual";
    if (hasColours) text += "-gouraud";
    return text;
}

std::optional<std::uint16_t> shownSlot(const PolygonAttribute& attribute,
                                       const TextureList* textures)
{
    if ((attribute.flags & textureMap) == 0 || !textures || attribute.texture >= textureSlotCount ||
        textures->isEmpty(attribute.texture))
        return std::nullopt;
    return attribute.texture;
}

Look lookOf(const PolygonAttribute& attribute, std::optional<std::uint16_t> slot)
{
    return {slot, slot ? whiteOfLook : static_cast<Rgb555>(attribute.color & ~opaqueBit),
            (attribute.flags & useLight) != 0, (attribute.flags & translucentMode) != 0};
}

PictureCorner pictureCorner(const PolygonAttribute& attribute, std::size_t corner)
{
    // Clockwise from the left top.
    return {(corner == 1 || corner == 2) != ((attribute.flags & flipHorizontal) != 0),
            (corner >= 2) != ((attribute.flags & flipVertical) != 0)};
}

std::string slotNumber(std::uint32_t slot)
{
    const std::string digits = std::to_string(slot);
    return std::string(4 - std::min<std::size_t>(4, digits.size()), '0') + digits;
}

Bytes encodeTexture(const TextureList& textures, std::uint32_t slot)
{
    const TextureSlot& texture = textures.slot(slot);
    return pngCodec.encode(
        {texture.width, texture.height,
         std::span<const Rgb555>(texture.pixels, std::size_t{texture.width} * texture.height)});
}

} // namespace facetor
