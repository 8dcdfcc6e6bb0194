#pragma once

#include "engine/rasteriser.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace facetor {

// Coordinates over a triangle: texture columns and rows, and for textured Gouraud polygons a second
// pair.

template <std::size_t Coordinates> struct TriangleCorner {
    ScreenPoint at;                            ///< y is a surface row
    std::array<float, Coordinates> coordinate; ///< a whole number and coordinateBias
};

/// Fractional bits of the coordinates in the inner loop. A step's truncation adds up to a
/// hundredth of a texel over the widest span.
inline constexpr int coordinateBits = 16;
/// Added to every coordinate, in texels: a corner's coordinate is whole, and keeps its texel
/// however the planes are rounded.
inline constexpr float coordinateBias = 1.0f / 1024;
/// Coordinates and steps below this keep 32 bits with the fractional bits from overflowing.
inline constexpr float largestFixedCoordinate = 16384.0f;

/// The planes of a triangle's coordinates over the surface:
/// value = origin + perColumn (x - corner.x) + perRow (row - corner.y).
template <std::size_t Coordinates> struct TrianglePlanes {
    ScreenPoint corner;
    std::array<float, Coordinates> origin, perColumn, perRow;
    bool fixedFits; ///< the steps and what they lead to fit the fixed-point loops
};

template <std::int32_t columnStep, std::size_t Coordinates>
TrianglePlanes<Coordinates> trianglePlanes(const std::array<TriangleCorner<Coordinates>, 3>& corner,
                                           std::int64_t area,
                                           const std::array<float, Coordinates>& limits)
{
    const ScreenPoint &p0 = corner[0].at, &p1 = corner[1].at, &p2 = corner[2].at;
    const auto x1 = static_cast<float>(p1.x - p0.x), x2 = static_cast<float>(p2.x - p0.x);
    const auto r1 = static_cast<float>(p1.y - p0.y), r2 = static_cast<float>(p2.y - p0.y);
    const float inverse = 1.0f / static_cast<float>(area);
    TrianglePlanes<Coordinates> planes;
    planes.corner = p0;
    planes.origin = corner[0].coordinate;
    planes.fixedFits = true;
    for (std::size_t c = 0; c < Coordinates; ++c) {
        const float d1 = corner[1].coordinate[c] - corner[0].coordinate[c];
        const float d2 = corner[2].coordinate[c] - corner[0].coordinate[c];
        planes.perColumn[c] = (d1 * r2 - d2 * r1) * inverse;
        planes.perRow[c] = (d2 * x1 - d1 * x2) * inverse;
        planes.fixedFits = planes.fixedFits && limits[c] <= largestFixedCoordinate &&
                           planes.perColumn[c] * columnStep < largestFixedCoordinate &&
                           planes.perColumn[c] * columnStep > -largestFixedCoordinate;
    }
    return planes;
}

/// The coordinates along one row's pixels: coordinate c of pixel i is first[c] + step[c] i.
template <std::size_t Coordinates> struct SpanCoordinates {
    std::array<float, Coordinates> first, step;
    std::int32_t count;

    float at(std::size_t c, std::int32_t i) const
    {
        return first[c] + step[c] * static_cast<float>(i);
    }
};

} // namespace facetor
