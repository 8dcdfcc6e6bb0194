#include "ship_textures.h"

#include "numbers.h"
#include "picture.h"

namespace facetor::samples {

namespace {

constexpr Rgb555 ivory = rgb555(19, 18, 15);
constexpr Rgb555 orange = rgb555(27, 11, 2);
constexpr Rgb555 slate = rgb555(9, 10, 13);
constexpr Rgb555 steel = rgb555(14, 14, 15);
constexpr Rgb555 ink = rgb555(3, 3, 5);

Picture plates(Rgb555 colour, std::uint32_t seed)
{
    Picture picture(32, 32, colour);
    picture.shade(0, 0, 20, 14, 1);
    picture.shade(12, 20, 32, 32, -1);
    picture.grain(seed, 1);
    picture.plate(0, 0, 20, 14, 2);
    picture.plate(20, 0, 32, 20, 2);
    picture.plate(0, 14, 12, 32, 2);
    picture.plate(12, 20, 32, 32, 2);
    picture.fill(14, 15, 18, 18, shifted(colour, -6)); // a hatch
    for (const int corner : {2, 29}) picture.shade(corner, corner, corner + 1, corner + 1, -5);
    return picture;
}

Picture stripe()
{
    Picture picture = plates(ivory, 2);
    picture.fill(0, 9, 32, 23, orange);
    picture.shade(0, 9, 32, 10, 3);
    picture.shade(0, 22, 32, 23, -4);
    picture.fill(0, 25, 32, 27, shifted(orange, -2));
    picture.shade(31, 0, 32, 32, -4);
    return picture;
}

Picture windows()
{
    Picture picture = plates(ivory, 3);
    picture.fill(0, 10, 32, 22, slate);
    for (int x = 2; x < 32; x += 8) {
        const bool dark = x == 18;
        picture.fill(x, 12, x + 5, 20, dark ? rgb555(6, 8, 12) : rgb555(31, 27, 14));
        picture.fill(x, 12, x + 5, 14, dark ? rgb555(10, 12, 16) : rgb555(31, 31, 24));
    }
    return picture;
}

Picture vents()
{
    Picture picture(32, 32, slate);
    picture.grain(5, 1);
    for (int y = 3; y < 30; y += 4) {
        picture.fill(4, y, 28, y + 2, ink);
        picture.shade(4, y + 2, 28, y + 3, 4);
    }
    picture.plate(0, 0, 32, 32, 2);
    return picture;
}

Picture wingPlate()
{
    Picture picture(32, 32, ivory);
    picture.grain(6, 1);
    picture.plate(0, 0, 32, 16, 2);
    picture.plate(0, 16, 16, 32, 2);
    picture.plate(16, 16, 32, 32, 2);
    picture.shade(16, 16, 32, 32, -1);
    return picture;
}

Picture tip()
{
    Picture picture = wingPlate();
    picture.fill(8, 0, 32, 32, orange);
    picture.grain(7, 1);
    picture.shade(8, 0, 9, 32, 3);
    picture.fill(3, 0, 5, 32, orange);
    picture.plate(0, 0, 32, 32, 2);
    return picture;
}

Picture bands(Rgb555 colour, Rgb555 accent, std::uint32_t seed)
{
    Picture picture(16, 32, colour);
    picture.grain(seed, 1);
    for (const int y : {0, 10, 21}) {
        picture.shade(0, y, 16, y + 1, -6);
        picture.shade(0, y + 1, 16, y + 2, 4);
    }
    picture.fill(0, 13, 16, 18, accent);
    picture.shade(0, 0, 1, 32, -3);
    return picture;
}

/// From a texel's centre to (middle, middle), squared.
double distanceSquared(int x, int y, double middle)
{
    const double dx = x + 0.5 - middle, dy = y + 0.5 - middle;
    return dx * dx + dy * dy;
}

Picture fan()
{
    Picture picture(32, 32, ink);
    for (int blade = 0; blade < 12; ++blade)
        for (double along = 4; along < 14; along += 0.25) {
            const double turns = blade / 12.0 + along / 130;
            const double x = 16 + along * cosineOfTurns(turns), y = 16 + along * sineOfTurns(turns);
            picture.set(static_cast<int>(x), static_cast<int>(y), steel);
        }
    picture.disc(16, 16, 4.5, rgb555(10, 10, 11));
    picture.disc(15, 15, 2, rgb555(22, 22, 22));
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x) {
            const double square = distanceSquared(x, y, 16);
            if (square > 14.0 * 14) picture.set(x, y, rgb555(18, 18, 19));
            if (square > 16.0 * 16) picture.erase(x, y);
        }
    return picture;
}

Picture glow()
{
    Picture picture(32, 32, 0);
    const struct {
        double radius;
        Rgb555 colour;
    } rings[] = {
        {16, rgb555(4, 7, 14)},  {14, rgb555(3, 13, 25)}, {12, rgb555(6, 19, 30)},
        {9, rgb555(14, 26, 31)}, {6, rgb555(24, 30, 31)}, {3, rgb555(31, 31, 31)},
    };
    for (const auto& ring : rings) picture.disc(16, 16, ring.radius, ring.colour);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x)
            if (distanceSquared(x, y, 16) > 16.0 * 16) picture.erase(x, y);
    return picture;
}

Picture cockpit()
{
    Picture picture(32, 32, rgb555(5, 6, 8));
    picture.grain(10, 1);
    picture.plate(0, 0, 32, 32, 2);
    for (int i = 0; i < 12; ++i) {
        const auto seed = static_cast<std::uint32_t>(i);
        const Rgb555 lamps[] = {rgb555(31, 10, 4), rgb555(8, 28, 12), rgb555(30, 26, 6)};
        picture.set(4 + i * 2, 6 + static_cast<int>(scattered(seed) % 4) * 5, lamps[i % 3]);
    }
    return picture;
}

Picture hazard()
{
    Picture picture(32, 16, rgb555(30, 24, 2));
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 32; ++x)
            if ((x + y) % 16 < 8) picture.set(x, y, ink);
    return picture;
}

/// Three chevrons under a small sun, in a ring.
Picture emblem()
{
    constexpr Rgb555 white = rgb555(31, 30, 26), navy = rgb555(5, 9, 20);
    Picture picture(64, 64, 0);
    picture.disc(32, 32, 31, white);
    picture.disc(32, 32, 28, navy);
    picture.disc(32, 32, 25, orange);
    picture.disc(32, 32, 23, navy);
    picture.disc(32, 19, 5, rgb555(31, 25, 8));
    for (int chevron = 0; chevron < 3; ++chevron)
        for (int x = 14; x < 50; ++x) {
            const int aside = x < 32 ? 31 - x : x - 32;
            const int y = 26 + chevron * 8 + aside / 2;
            const double dx = x + 0.5 - 32, dy = y + 2.5 - 32;
            if (dx * dx + dy * dy < 20.0 * 20) picture.fill(x, y, x + 1, y + 4, white);
        }
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            if (distanceSquared(x, y, 32) > 31.0 * 31) picture.erase(x, y);
    return picture;
}

Picture number()
{
    Picture picture(32, 32, 0);
    picture.number(3, 6, 4, "07", rgb555(5, 9, 20));
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x)
            if (picture.at(x, y) == opaqueBit) picture.erase(x, y);
    return picture;
}

} // namespace

Message paintShipTextures(TextureList& textures)
{
    const struct {
        ShipTexture slot;
        Picture picture;
    } all[] = {
        {hullPlates, plates(ivory, 1)},
        {hullStripe, stripe()},
        {hullWindows, windows()},
        {bellyPlates, plates(slate, 4)},
        {hullVents, vents()},
        {wingPlates, wingPlate()},
        {wingTip, tip()},
        {engineBands, bands(ivory, orange, 8)},
        {engineFan, fan()},
        {engineGlow, glow()},
        {cockpitInside, cockpit()},
        {hazardStripes, hazard()},
        {roundel, emblem()},
        {shipNumber, number()},
        {sternPlates, plates(steel, 9)},
        {nozzleBands, bands(rgb555(12, 11, 11), slate, 11)},
    };
    for (const auto& [slot, picture] : all)
        if (const Message message = picture.store(textures, slot); message != Message::none)
            return message;
    return Message::none;
}

} // namespace facetor::samples
