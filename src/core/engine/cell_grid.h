#pragma once

#include "engine/triangle_planes.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace facetor {

/// Points on each side of the 4 x 4 cells of a textured polygon.
inline constexpr std::size_t gridPoints = 5;
inline constexpr std::size_t gridCells = gridPoints - 1;

/// Coordinates of the grid points over `size` texels. A flipped axis runs backwards from the far
/// side, which truncates to the mirrored texel everywhere.
inline std::array<float, gridPoints> gridCoordinates(std::int32_t size, bool flipped)
{
    const std::int32_t quarter = size >> 2, half = size >> 1;
    const std::array<std::int32_t, gridPoints> whole{0, quarter, half, quarter + half, size - 1};
    std::array<float, gridPoints> coordinates;
    for (std::size_t i = 0; i < gridPoints; ++i) {
        const float forward = static_cast<float>(whole[i]) + coordinateBias;
        coordinates[i] = flipped ? static_cast<float>(size) - forward : forward;
    }
    return coordinates;
}

/// The coordinates of a texture's axes at the grid points: columns, then rows.
using TextureGrid = std::array<std::array<float, gridPoints>, 2>;

/// `flip` as textureFlip() has it.
inline TextureGrid textureGrid(std::int32_t width, std::int32_t height, int flip)
{
    return {gridCoordinates(width, (flip & 1) != 0), gridCoordinates(height, (flip & 2) != 0)};
}

} // namespace facetor
