#include "keep/small_picture.h"

#include "view/view.h"

#include <algorithm>
#include <cassert>

namespace facetor {

namespace {

constexpr std::uint32_t shrink = 4; ///< pixels of the frame that become one, across and down
static_assert(largestPictureWidth * shrink <= static_cast<std::uint32_t>(surfaceMaxWidth) &&
              largestPictureHeight * shrink <= static_cast<std::uint32_t>(surfaceMaxHeight));

constexpr std::uint32_t columns = 4, rows = 3; ///< of textures

/// The mean of shrink x shrink pixels of the frame.
Rgb555 meanAt(const FrameSurface& surface, std::uint32_t x, std::uint32_t y)
{
    constexpr std::uint32_t count = shrink * shrink;
    std::uint32_t red = 0, green = 0, blue = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const Rgb555 colour = surface.at(static_cast<std::int32_t>(x * shrink + i % shrink),
                                         static_cast<std::int32_t>(y * shrink + i / shrink));
        red += static_cast<std::uint32_t>(redOf(colour));
        green += static_cast<std::uint32_t>(greenOf(colour));
        blue += static_cast<std::uint32_t>(blueOf(colour));
    }
    const auto mean = [](std::uint32_t sum) {
        return static_cast<std::int32_t>((sum + count / 2) / count);
    };
    return rgb555(mean(red), mean(green), mean(blue));
}

/// Puts a texture as large as it fits into a cell, in its middle.
void putTexture(SmallPicture& picture, const TextureSlot& texture, std::uint32_t left,
                std::uint32_t top, std::uint32_t width, std::uint32_t height)
{
    const std::uint32_t across =
        std::max<std::uint32_t>(1, std::min(width, height * texture.width / texture.height));
    const std::uint32_t down =
        std::max<std::uint32_t>(1, std::min(height, width * texture.height / texture.width));
    left += (width - across) / 2;
    top += (height - down) / 2;
    for (std::uint32_t y = 0; y < down; ++y)
        for (std::uint32_t x = 0; x < across; ++x) {
            const Rgb555 texel =
                texture.pixels[std::size_t{y * texture.height / down} * texture.width +
                               x * texture.width / across];
            if (texel & 0x8000)
                picture.pixels[std::size_t{top + y} * picture.width + left + x] = texel;
        }
}

} // namespace

SmallPicture drawModelPicture(Engine& engine, const Model& model,
                              std::span<const TextureSlot> textures, Rgb555 colour,
                              std::uint32_t width, std::uint32_t height)
{
    assert(width <= largestPictureWidth && height <= largestPictureHeight && width % 4 == 0);
    const ClientSize client{static_cast<std::int32_t>(width * shrink),
                            static_cast<std::int32_t>(height * shrink)};
    View view;
    view.backgroundColour = colour;
    engine.settings.textures = textures;
    startView(view, engine);
    fitModel(view, engine, model, client);
    paintFrame(view, engine, model, client);
    SmallPicture picture{width, height, {}};
    picture.pixels.reserve(std::size_t{width} * height);
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x)
            picture.pixels.push_back(meanAt(engine.surface, x, y));
    engine.settings.textures = {};
    return picture;
}

SmallPicture drawTexturesPicture(const TextureList& list, Rgb555 colour, std::uint32_t width,
                                 std::uint32_t height)
{
    SmallPicture picture{width, height, {}};
    picture.pixels.assign(std::size_t{width} * height, colour);
    const std::uint32_t cellWidth = width / columns, cellHeight = height / rows;
    std::uint32_t cell = 0;
    const std::uint32_t used = list.usedCount();
    for (std::uint32_t slot = 0; slot < used && cell < columns * rows; ++slot) {
        if (list.isEmpty(slot)) continue;
        putTexture(picture, list.slot(slot), cell % columns * cellWidth,
                   cell / columns * cellHeight, cellWidth - 1, cellHeight - 1);
        ++cell;
    }
    return picture;
}

} // namespace facetor
