#pragma once

#include "engine/pixel_operation.h"
#include "engine/span_ends.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace facetor {

// The triangle filler that textured and Gouraud fills share. It lays coordinates (texture columns
// and rows, and for textured Gouraud polygons a second pair) as planes over a triangle and asks a
// Source for each pixel's colour:
//
//   static constexpr std::size_t coordinates;   2 or 4
//   std::array<float, coordinates> limit;       each coordinate is clamped to 0 .. limit - 1
//   bool pixel<mode>(std::array<std::int32_t, coordinates> at, Rgb555& d) const;
//                                               writes the surface pixel, or leaves it
//
// Source::pixel is inlined; mode and mesh are fixed at compile time.

template <std::size_t Coordinates> struct TriangleCorner {
    ScreenPoint at; ///< y is a surface row
    std::array<float, Coordinates> coordinate;
};

/// Fractional bits of the coordinates in the inner loop. A step's rounding error adds up to a
/// two-hundredth of a texel over the widest span.
inline constexpr int coordinateBits = 16;
/// Added to every coordinate, in texels: a corner's coordinate is whole, and keeps its texel
/// however the planes are rounded.
inline constexpr float coordinateBias = 1.0f / 1024;
/// Coordinates and steps below this keep 32 bits with the fractional bits from overflowing.
inline constexpr float largestFixedCoordinate = 16384.0f;

template <PixelMode mode, bool mesh, typename Source>
void fillTriangle(FrameSurface& surface, const SpanEnds& ends,
                  const std::array<TriangleCorner<Source::coordinates>, 3>& corner,
                  const Source& source)
{
    constexpr std::size_t coordinates = Source::coordinates;
    constexpr std::int32_t columnStep = mesh ? 2 : 1;
    const ScreenPoint &p0 = corner[0].at, &p1 = corner[1].at, &p2 = corner[2].at;
    const std::int64_t x1 = p1.x - p0.x, x2 = p2.x - p0.x, r1 = p1.y - p0.y, r2 = p2.y - p0.y;
    const std::int64_t area = x1 * r2 - x2 * r1; // doubled and signed
    if (area == 0) return;
    const RowRange rows = findTriangleSpans(ends, {p0, p1, p2}, surface.height);
    if (rows.first > rows.last) return;

    // The planes: value = origin + perColumn (x - p0.x) + perRow (row - p0.y).
    std::array<float, coordinates> perColumn, perRow;
    const float inverse = 1.0f / static_cast<float>(area);
    bool fixedFits = true;
    for (std::size_t c = 0; c < coordinates; ++c) {
        const float d1 = corner[1].coordinate[c] - corner[0].coordinate[c];
        const float d2 = corner[2].coordinate[c] - corner[0].coordinate[c];
        perColumn[c] = (d1 * static_cast<float>(r2) - d2 * static_cast<float>(r1)) * inverse;
        perRow[c] = (d2 * static_cast<float>(x1) - d1 * static_cast<float>(x2)) * inverse;
        fixedFits = fixedFits && source.limit[c] <= largestFixedCoordinate &&
                    perColumn[c] * columnStep < largestFixedCoordinate &&
                    perColumn[c] * columnStep > -largestFixedCoordinate;
    }

    const std::int32_t width = surface.width;
    Rgb555* line = surface.pixels() + static_cast<std::ptrdiff_t>(rows.first) * width;
    for (std::int32_t row = rows.first; row <= rows.last; ++row, line += width) {
        std::int32_t left = std::max<std::int32_t>(ends.left[row], 0);
        const std::int32_t right = std::min<std::int32_t>(ends.right[row], width - 1);
        if constexpr (mesh) left += ~(left ^ row) & 1; // columns of the other parity than the row
        if (left > right) continue;
        const std::int32_t count = (right - left) / columnStep + 1;
        Rgb555* const start = line + left;

        std::array<float, coordinates> first, step;
        for (std::size_t c = 0; c < coordinates; ++c) {
            first[c] = corner[0].coordinate[c] + coordinateBias +
                       perColumn[c] * static_cast<float>(left - p0.x) +
                       perRow[c] * static_cast<float>(row - p0.y);
            step[c] = perColumn[c] * columnStep;
        }
        const auto clampedPixel = [&](std::int32_t i) {
            std::array<std::int32_t, coordinates> at;
            for (std::size_t c = 0; c < coordinates; ++c) {
                const float value = first[c] + step[c] * static_cast<float>(i);
                // This way round, what is not a number becomes 0.
                const float atLeast = value > 0.0f ? value : 0.0f;
                at[c] = static_cast<std::int32_t>(std::min(atLeast, source.limit[c] - 1.0f));
            }
            source.template pixel<mode>(at, start[i * columnStep]);
        };
        const auto isInside = [&](std::int32_t i) {
            for (std::size_t c = 0; c < coordinates; ++c) {
                const float value = first[c] + step[c] * static_cast<float>(i);
                if (!(value >= 0.0f && value < source.limit[c])) return false;
            }
            return true;
        };

        // Coordinates are monotone along a span: between its first and last pixel inside the
        // texture none needs clamping.
        std::int32_t i = 0;
        if (fixedFits) {
            while (i < count && !isInside(i)) clampedPixel(i++);
            if (i == count) continue;
            std::array<std::int32_t, coordinates> at, fixedStep;
            for (std::size_t c = 0; c < coordinates; ++c) {
                constexpr float one = 1 << coordinateBits;
                at[c] =
                    static_cast<std::int32_t>((first[c] + step[c] * static_cast<float>(i)) * one);
                fixedStep[c] = static_cast<std::int32_t>(step[c] * one);
            }
            const auto endsInside = [&](std::int32_t last) {
                for (std::size_t c = 0; c < coordinates; ++c) {
                    const std::int64_t value = at[c] + std::int64_t{fixedStep[c]} * (last - i);
                    const auto limit = static_cast<std::int64_t>(source.limit[c]) << coordinateBits;
                    if (value < 0 || value >= limit) return false;
                }
                return true;
            };
            std::int32_t end = count;
            while (end - 1 > i && !endsInside(end - 1)) --end;
            for (; i < end; ++i) {
                std::array<std::int32_t, coordinates> whole;
                for (std::size_t c = 0; c < coordinates; ++c) whole[c] = at[c] >> coordinateBits;
                source.template pixel<mode>(whole, start[i * columnStep]);
                // Unsigned: the step behind the last pixel may leave the 32 bits.
                for (std::size_t c = 0; c < coordinates; ++c)
                    at[c] = static_cast<std::int32_t>(static_cast<std::uint32_t>(at[c]) +
                                                      static_cast<std::uint32_t>(fixedStep[c]));
            }
        }
        for (; i < count; ++i) clampedPixel(i);
    }
}

} // namespace facetor
