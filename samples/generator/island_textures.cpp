#include "island_textures.h"

#include "numbers.h"
#include "picture.h"

namespace facetor::samples {

namespace {

/// Walls with rows of windows, some of them lit.
Picture walls(Rgb555 wall, Rgb555 frame, int windowWidth, int windowHeight, std::uint32_t seed)
{
    Picture picture(32, 32, wall);
    picture.grain(seed, 1);
    std::uint32_t count = 0;
    for (int y = 3; y + windowHeight <= 30; y += windowHeight + 4)
        for (int x = 3; x + windowWidth <= 30; x += windowWidth + 4) {
            const bool bright = scattered(seed, ++count) % 4 == 0;
            const Rgb555 pane = bright ? rgb555(26, 22, 10) : rgb555(6, 9, 14);
            picture.fill(x - 1, y - 1, x + windowWidth + 1, y + windowHeight + 1, frame);
            picture.fill(x, y, x + windowWidth, y + windowHeight, pane);
            picture.shade(x, y, x + windowWidth, y + 1, 4);
        }
    picture.shade(0, 31, 32, 32, -5);
    return picture;
}

Picture glass()
{
    Picture picture(32, 32, rgb555(8, 13, 18));
    for (int y = 0; y < 32; y += 4)
        for (int x = 0; x < 32; x += 4) {
            const auto random =
                scattered(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 77);
            picture.shade(x, y, x + 4, y + 4, static_cast<int>(random % 7) - 2);
        }
    for (int i = 3; i < 32; i += 4) {
        picture.shade(i, 0, i + 1, 32, -3);
        picture.shade(0, i, 32, i + 1, 3);
    }
    return picture;
}

Picture tiles()
{
    Picture picture(32, 32, rgb555(19, 8, 5));
    picture.grain(5, 1);
    for (int y = 0; y < 32; y += 4) {
        picture.shade(0, y + 3, 32, y + 4, -5);
        for (int x = (y / 4 % 2) * 3; x < 32; x += 6) picture.shade(x, y, x + 1, y + 3, -3);
    }
    return picture;
}

Picture shaft()
{
    Picture picture(16, 32, rgb555(21, 20, 18));
    picture.grain(6, 1);
    picture.fill(6, 4, 10, 20, rgb555(6, 10, 16));
    picture.fill(6, 4, 10, 8, rgb555(16, 20, 24));
    picture.shade(5, 3, 6, 21, 4);
    picture.fill(0, 26, 16, 29, rgb555(24, 18, 5));
    picture.shade(0, 31, 16, 32, -5);
    return picture;
}

Picture redAndWhite()
{
    Picture picture(16, 32, rgb555(22, 22, 22));
    picture.fill(0, 16, 16, 32, rgb555(22, 5, 4));
    picture.grain(7, 1);
    return picture;
}

Picture water()
{
    Picture picture(32, 32, rgb555(14, 20, 23));
    for (int x = 0; x < 32; ++x) {
        const auto column = static_cast<std::uint32_t>(x);
        const int step = static_cast<int>(scattered(column, 8) % 9) - 4;
        picture.shade(x, 0, x + 1, 32, step);
        const int start = static_cast<int>(scattered(column, 9) % 32);
        const bool gap = scattered(column, 10) % 3 == 0;
        for (int y = start; gap && y < start + 14; ++y) picture.erase(x, y % 32);
    }
    return picture;
}

Picture paving()
{
    Picture picture(16, 16, rgb555(15, 15, 15));
    picture.grain(11, 1);
    picture.plate(0, 0, 8, 8, 2);
    picture.plate(8, 0, 16, 8, 2);
    picture.plate(0, 8, 8, 16, 2);
    picture.plate(8, 8, 16, 16, 2);
    return picture;
}

Picture skin()
{
    Picture picture(16, 16, rgb555(23, 19, 12));
    picture.grain(12, 1);
    picture.shade(0, 0, 1, 16, -5);
    picture.shade(0, 0, 16, 1, 3);
    return picture;
}

Picture timber()
{
    Picture picture(16, 16, rgb555(15, 10, 6));
    picture.grain(13, 2);
    for (int y = 3; y < 16; y += 4) picture.shade(0, y, 16, y + 1, -6);
    return picture;
}

} // namespace

Message paintIslandTextures(TextureList& textures)
{
    const struct {
        IslandTexture slot;
        Picture picture;
    } all[] = {
        {stoneHouse, walls(rgb555(19, 17, 13), rgb555(23, 22, 18), 5, 6, 1)},
        {brickHouse, walls(rgb555(17, 9, 6), rgb555(20, 17, 13), 4, 5, 2)},
        {glassTower, glass()},
        {whiteTower, walls(rgb555(21, 21, 21), rgb555(15, 16, 18), 3, 6, 3)},
        {roofTiles, tiles()},
        {towerShaft, shaft()},
        {lighthouseBands, redAndWhite()},
        {fallingWater, water()},
        {pavement, paving()},
        {airshipSkin, skin()},
        {timberPlanks, timber()},
    };
    for (const auto& [slot, picture] : all)
        if (const Message message = picture.store(textures, slot); message != Message::none)
            return message;
    return Message::none;
}

} // namespace facetor::samples
