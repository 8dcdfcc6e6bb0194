#include "image/rgba.h"

#include <array>
#include <cstddef>

namespace facetor {

namespace {

using Rgb = std::array<std::uint8_t, 3>;

/// The nearest colour with a component that 5 bits can tell from 0: the greatest component has the
/// shortest way to 8. Of equal ones, blue, the least bright, then red.
Rgb apartFromBlack(const Rgb& colour)
{
    for (const std::uint8_t component : colour)
        if (component >= 8) return colour;
    std::size_t greatest = 2;
    for (const std::size_t i : {std::size_t{0}, std::size_t{1}})
        if (colour[i] > colour[greatest]) greatest = i;
    Rgb apart = colour;
    apart[greatest] = 8;
    return apart;
}

} // namespace

void fillFromRgba(std::span<const std::uint8_t> rgba, AlphaRule rule, std::span<std::byte> buffer)
{
    for (std::size_t i = 0; i + 4 <= rgba.size(); i += 4) {
        Rgb colour{rgba[i], rgba[i + 1], rgba[i + 2]};
        if (rule == AlphaRule::separate)
            colour = rgba[i + 3] < 128 ? Rgb{} : apartFromBlack(colour);
        for (std::size_t j = 0; j < 3; ++j) buffer[i + j] = std::byte{colour[2 - j]};
        buffer[i + 3] = std::byte{0};
    }
}

std::vector<std::uint8_t> toRgba(std::span<const Rgb555> texels)
{
    std::vector<std::uint8_t> rgba;
    rgba.reserve(texels.size() * 4);
    for (const Rgb555 texel : texels) {
        for (const int component : {redOf(texel), greenOf(texel), blueOf(texel)})
            rgba.push_back(stretched(component));
        rgba.push_back(texel & opaqueBit ? 255 : 0);
    }
    return rgba;
}

} // namespace facetor
