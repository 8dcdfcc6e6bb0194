#pragma once

#include "base/colour.h"
#include "engine/light.h"
#include "model/polygon_attribute.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace facetor {

/// What four Gouraud colours add to a colour's components over a polygon, laid out as a 32 x 32
/// grid whose corners (0, 0), (31, 0), (31, 31) and (0, 31) belong to the colours 0 to 3.
struct GouraudSteps {
    /// Components 0-31 of the four colours: [channel][corner], channel 0 red, 1 green, 2 blue.
    std::array<std::array<std::int32_t, 4>, 3> component;

    /// The signed step of one channel at a column and row of the grid, both 0-31: trunc((P - 0.5)
    /// 32), P being the mean of the four components / 32 by the weights 1 - k / 32 and k / 32. All
    /// of these are multiples of 2^-15, so integers give the same result as singles.
    std::int32_t at(std::size_t channel, std::int32_t column, std::int32_t row) const
    {
        const auto& g = component[channel];
        const std::int32_t top = (32 - column) * g[0] + column * g[1];
        const std::int32_t bottom = (32 - column) * g[3] + column * g[2];
        return ((32 - row) * top + row * bottom - 16384) / 1024;
    }

    /// A colour with the step added to each component, clamped to 0-31. Bit 15 is cleared.
    Rgb555 applied(Rgb555 colour, std::int32_t column, std::int32_t row) const
    {
        return rgb555(std::clamp(redOf(colour) + at(0, column, row), 0, 31),
                      std::clamp(greenOf(colour) + at(1, column, row), 0, 31),
                      std::clamp(blueOf(colour) + at(2, column, row), 0, 31));
    }
};

/// The components of four Gouraud colours; with useLight in `flags` each goes through the light
/// colour's offset and the ambient minimum first.
inline GouraudSteps gouraudSteps(const Light& light, const std::array<Rgb555, 4>& gouraud,
                                 std::uint32_t flags)
{
    GouraudSteps steps;
    const bool lit = (flags & useLight) != 0;
    for (std::size_t corner = 0; corner < 4; ++corner) {
        const std::array<int, 3> channels{redOf(gouraud[corner]), greenOf(gouraud[corner]),
                                          blueOf(gouraud[corner])};
        for (std::size_t channel = 0; channel < 3; ++channel)
            steps.component[channel][corner] =
                lit ? colouredComponent(light, channel, channels[channel]) : channels[channel];
    }
    return steps;
}

} // namespace facetor
