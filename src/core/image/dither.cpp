#include "image/dither.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace facetor {

namespace {

/// The greatest component of 5 bits that is shown no brighter than a value of 0 to 255.
constexpr int below(int value)
{
    const int component = value >> 3;
    return stretched(component) > value ? component - 1 : component;
}

/// Thresholds in sixteenths, as far apart in the pattern as can be.
constexpr std::array<std::array<int, 4>, 4> bayer{
    {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}}};

int ordered(int value, std::size_t x, std::size_t y)
{
    const int low = below(value);
    if (low >= 31) return 31;
    const int step = stretched(low + 1) - stretched(low);
    const bool up = (value - stretched(low)) * 32 > (2 * bayer[y % 4][x % 4] + 1) * step;
    return low + (up ? 1 : 0);
}

int nearest(int value)
{
    const int low = below(std::clamp(value, 0, 255));
    if (low >= 31) return 31;
    return value - stretched(low) > stretched(low + 1) - value ? low + 1 : low;
}

/// Row by row, every other one backwards, so that the errors make no streaks.
void diffuse(std::span<const std::uint8_t> rgba, std::size_t width, std::span<Rgb555> texels)
{
    using Error = std::array<float, 3>;
    std::vector<Error> here(width + 2), next(width + 2); // with a column on both sides
    for (std::size_t y = 0; y * width < texels.size(); ++y) {
        const bool backwards = y % 2 == 1;
        for (std::size_t step = 0; step < width; ++step) {
            const std::size_t x = backwards ? width - 1 - step : step;
            const std::size_t at = y * width + x;
            const std::size_t ahead = backwards ? x : x + 2, behind = backwards ? x + 2 : x;
            if ((texels[at] & opaqueBit) == 0) continue; // what is not seen spreads no error
            std::array<int, 3> component;
            for (std::size_t k = 0; k < 3; ++k) {
                const float wanted = static_cast<float>(rgba[at * 4 + k]) + here[x + 1][k];
                component[k] = nearest(static_cast<int>(wanted + 0.5f));
                const float error = wanted - static_cast<float>(stretched(component[k]));
                here[ahead][k] += error * 7 / 16;
                next[behind][k] += error * 3 / 16;
                next[x + 1][k] += error * 5 / 16;
                next[ahead][k] += error / 16;
            }
            texels[at] = opaqueBit | rgb555(component[0], component[1], component[2]);
        }
        here.swap(next);
        std::fill(next.begin(), next.end(), Error{});
    }
}

} // namespace

void quantise(std::span<const std::uint8_t> rgba, std::uint32_t width, double cutoff, Dither dither,
              std::span<Rgb555> texels)
{
    for (std::size_t i = 0; i < texels.size(); ++i) {
        const std::uint8_t* const pixel = rgba.data() + i * 4;
        texels[i] = 0;
        if (pixel[3] < cutoff * 255) continue;
        std::array<int, 3> component;
        for (std::size_t k = 0; k < 3; ++k)
            component[k] =
                dither == Dither::ordered ? ordered(pixel[k], i % width, i / width) : pixel[k] >> 3;
        texels[i] = opaqueBit | rgb555(component[0], component[1], component[2]);
    }
    if (dither == Dither::diffuse) diffuse(rgba, width, texels);
}

} // namespace facetor
