#include "picture.h"

#include "image/png_codec.h"
#include "numbers.h"

#include <algorithm>
#include <utility>

namespace facetor::samples {

namespace {

/// Five rows of three cells for each digit, from the top, the left cell in bit 2.
constexpr std::uint8_t digitRows[10][5] = {
    {7, 5, 5, 5, 7}, {2, 6, 2, 2, 7}, {7, 1, 7, 4, 7}, {7, 1, 3, 1, 7}, {5, 5, 7, 1, 1}, // 0-4
    {7, 4, 7, 1, 7}, {7, 4, 7, 5, 7}, {7, 1, 2, 2, 2}, {7, 5, 7, 5, 7}, {7, 5, 7, 1, 7}, // 5-9
};

} // namespace

Rgb555 shifted(Rgb555 colour, int step)
{
    const auto component = [step](int value) { return std::clamp(value + step, 0, 31); };
    return (colour & opaqueBit) |
           rgb555(component(redOf(colour)), component(greenOf(colour)), component(blueOf(colour)));
}

Rgb555 mixed(Rgb555 first, Rgb555 second, int weight)
{
    const auto component = [weight](int a, int b) { return (a * (16 - weight) + b * weight) / 16; };
    return opaqueBit | rgb555(component(redOf(first), redOf(second)),
                              component(greenOf(first), greenOf(second)),
                              component(blueOf(first), blueOf(second)));
}

Picture::Picture(int width, int height, Rgb555 colour)
    : width_(width), height_(height),
      texels_(static_cast<std::size_t>(width * height), colour | opaqueBit)
{
}

void Picture::set(int x, int y, Rgb555 colour)
{
    if (holds(x, y)) texels_[index(x, y)] = colour | opaqueBit;
}

void Picture::erase(int x, int y)
{
    if (holds(x, y)) texels_[index(x, y)] = 0;
}

void Picture::fill(int x0, int y0, int x1, int y1, Rgb555 colour)
{
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x) set(x, y, colour);
}

void Picture::shade(int x0, int y0, int x1, int y1, int step)
{
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x)
            if (holds(x, y)) set(x, y, shifted(at(x, y), step));
}

void Picture::disc(double x, double y, double radius, Rgb555 colour)
{
    for (int row = 0; row < height_; ++row)
        for (int column = 0; column < width_; ++column) {
            const double dx = column + 0.5 - x, dy = row + 0.5 - y;
            if (dx * dx + dy * dy <= radius * radius) set(column, row, colour);
        }
}

void Picture::grain(std::uint32_t seed, int amount)
{
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) {
            const std::uint32_t random =
                scattered(seed, static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y));
            const auto steps = static_cast<std::uint32_t>(2 * amount + 1);
            shade(x, y, x + 1, y + 1, static_cast<int>(random % steps) - amount);
        }
}

void Picture::plate(int x0, int y0, int x1, int y1, int depth)
{
    shade(x0, y0, x1, y0 + 1, depth);
    shade(x0, y0 + 1, x0 + 1, y1, depth);
    shade(x0 + 1, y1 - 1, x1, y1, -2 * depth);
    shade(x1 - 1, y0 + 1, x1, y1 - 1, -2 * depth);
}

void Picture::number(int x, int y, int size, std::string_view digits, Rgb555 colour)
{
    for (const char digit : digits) {
        for (int row = 0; row < 5; ++row)
            for (int column = 0; column < 3; ++column)
                if (digitRows[digit - '0'][row] >> (2 - column) & 1)
                    fill(x + column * size, y + row * size, x + (column + 1) * size,
                         y + (row + 1) * size, colour);
        x += 4 * size;
    }
}

Bytes Picture::toPng() const
{
    return pngCodec.encode(
        {static_cast<std::uint32_t>(width_), static_cast<std::uint32_t>(height_), texels_});
}

Message Picture::store(TextureList& list, std::uint32_t slot) const
{
    Texels pixels;
    if (!pixels.allocate(texels_.size())) return Message::outOfMemory;
    std::copy(texels_.begin(), texels_.end(), pixels.begin());
    list.set(slot, static_cast<std::uint16_t>(width_), static_cast<std::uint16_t>(height_),
             std::move(pixels));
    return Message::none;
}

} // namespace facetor::samples
