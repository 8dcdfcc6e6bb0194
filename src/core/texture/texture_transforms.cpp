#include "texture/texture_transforms.h"

#include "texture/texel.h"

#include <algorithm>
#include <cassert>
#include <utility>
#include <vector>

namespace facetor {

namespace {

/// Texels in rows; width x height of them.
struct Image {
    std::size_t width, height;
    const Rgb555* texels;

    Rgb555 at(std::size_t x, std::size_t y) const { return texels[y * width + x]; }
};

Image imageOf(const TextureSlot& slot)
{
    return {slot.width, slot.height, slot.pixels};
}

/// Puts a new texture of width x height into the slot, texel (x, y) being `texelAt(x, y)`.
template <typename TexelAt>
Message remake(TextureList& list, std::uint32_t slot, std::size_t width, std::size_t height,
               const TexelAt& texelAt)
{
    Texels pixels;
    if (!pixels.allocate(width * height)) return Message::outOfMemory;
    Rgb555* texel = pixels.data();
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x) *texel++ = texelAt(x, y);
    list.set(slot, static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height),
             std::move(pixels));
    return Message::none;
}

Message scaleNearest(TextureList& list, std::uint32_t slot, std::size_t width, std::size_t height)
{
    const Image source = imageOf(list.slot(slot));
    // Running sums in single precision; the last may reach the edge by rounding.
    const auto places = [](std::size_t from, std::size_t to) {
        const float step = static_cast<float>(from) / static_cast<float>(to);
        std::vector<std::size_t> result(to);
        float sum = 0;
        for (std::size_t& place : result) {
            place = std::min(static_cast<std::size_t>(sum), from - 1);
            sum += step;
        }
        return result;
    };
    const auto columns = places(source.width, width), rows = places(source.height, height);
    return remake(list, slot, width, height,
                  [&](std::size_t x, std::size_t y) { return source.at(columns[x], rows[y]); });
}

Message scaleSmooth(TextureList& list, std::uint32_t slot, std::size_t width, std::size_t height)
{
    const Image source = imageOf(list.slot(slot));
    const float stepX = static_cast<float>(source.width) / static_cast<float>(width);
    const float stepY = static_cast<float>(source.height) / static_cast<float>(height);
    return remake(list, slot, width, height, [&](std::size_t x, std::size_t y) {
        const float sx = static_cast<float>(x) * stepX, sy = static_cast<float>(y) * stepY;
        const std::size_t ix = std::min(static_cast<std::size_t>(sx), source.width - 1);
        const std::size_t iy = std::min(static_cast<std::size_t>(sy), source.height - 1);
        return smoothTexel(source.texels, source.width, source.height, ix, iy,
                           sx - static_cast<float>(ix), sy - static_cast<float>(iy));
    });
}

} // namespace

Message flipTexture(TextureList& list, std::uint32_t slot, TextureFlip flip)
{
    if (list.isEmpty(slot)) return Message::texturesEmpty;
    const std::size_t width = list.slot(slot).width, height = list.slot(slot).height;
    const std::span<Rgb555> texels = list.pixels(slot);
    if (texels.empty()) return Message::outOfMemory;
    if (flip.horizontal)
        for (std::size_t y = 0; y < height; ++y)
            std::ranges::reverse(texels.subspan(y * width, width));
    if (flip.vertical)
        for (std::size_t y = 0; y < height / 2; ++y)
            std::ranges::swap_ranges(texels.subspan(y * width, width),
                                     texels.subspan((height - 1 - y) * width, width));
    return Message::none;
}

TextureTurn opposite(TextureTurn turn)
{
    switch (turn) {
    case TextureTurn::clockwise: return TextureTurn::counterClockwise;
    case TextureTurn::counterClockwise: return TextureTurn::clockwise;
    case TextureTurn::halfTurn: break;
    }
    return TextureTurn::halfTurn;
}

Message turnTexture(TextureList& list, std::uint32_t slot, TextureTurn turn)
{
    if (list.isEmpty(slot)) return Message::texturesEmpty;
    if (turn == TextureTurn::halfTurn) {
        const std::span<Rgb555> texels = list.pixels(slot);
        std::ranges::reverse(texels);
        return texels.empty() ? Message::outOfMemory : Message::none;
    }
    const Image old = imageOf(list.slot(slot));
    const bool clockwise = turn == TextureTurn::clockwise;
    return remake(list, slot, old.height, old.width, [&](std::size_t x, std::size_t y) {
        return clockwise ? old.at(y, old.height - 1 - x) : old.at(old.width - 1 - y, x);
    });
}

Message scaleTexture(TextureList& list, std::uint32_t slot, std::uint16_t width,
                     std::uint16_t height, Sampling sampling)
{
    assert(width > 0 && height > 0);
    if (list.isEmpty(slot)) return Message::texturesEmpty;
    return sampling == Sampling::smooth ? scaleSmooth(list, slot, width, height)
                                        : scaleNearest(list, slot, width, height);
}

} // namespace facetor
