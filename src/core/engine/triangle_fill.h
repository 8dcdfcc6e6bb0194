#pragma once

#include "engine/pixel_operation.h"
#include "engine/span_ends.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace facetor {

// The triangle filler that textured and Gouraud fills share. It lays coordinates (texture columns
// and rows, and for textured Gouraud polygons a second pair) as planes over a triangle and asks a
// Source for each pixel's colour:
//
//   static constexpr std::size_t coordinates;   2 or 4
//   std::array<float, coordinates> limit;       each coordinate is clamped to 0 .. limit - 1
//   void pixel<mode>(std::array<std::int32_t, coordinates> at, Rgb555& d) const;
//                                               writes the surface pixel, or leaves it
//
// Source::pixel is inlined; mode and mesh are fixed at compile time.

template <std::size_t Coordinates> struct TriangleCorner {
    ScreenPoint at;                            ///< y is a surface row
    std::array<float, Coordinates> coordinate; ///< a whole number and coordinateBias
};

/// Fractional bits of the coordinates in the inner loop. A step's rounding error adds up to a
/// two-hundredth of a texel over the widest span.
inline constexpr int coordinateBits = 16;
/// Added to every coordinate, in texels: a corner's coordinate is whole, and keeps its texel
/// however the planes are rounded.
inline constexpr float coordinateBias = 1.0f / 1024;
/// Coordinates and steps below this keep 32 bits with the fractional bits from overflowing.
inline constexpr float largestFixedCoordinate = 16384.0f;

/// The coordinates along one row's pixels: coordinate c of pixel i is first[c] + step[c] i.
template <std::size_t Coordinates> struct SpanCoordinates {
    std::array<float, Coordinates> first, step;
    std::int32_t count;

    float at(std::size_t c, std::int32_t i) const
    {
        return first[c] + step[c] * static_cast<float>(i);
    }
};

/// One pixel, wherever its coordinates lie.
template <PixelMode mode, typename Source>
void putClampedPixel(Rgb555& d, const SpanCoordinates<Source::coordinates>& span, std::int32_t i,
                     const Source& source)
{
    std::array<std::int32_t, Source::coordinates> at;
    for (std::size_t c = 0; c < at.size(); ++c) {
        const float value = span.at(c, i);
        const float atLeast = value > 0.0f ? value : 0.0f; // also for what is no number
        at[c] = static_cast<std::int32_t>(std::min(atLeast, source.limit[c] - 1.0f));
    }
    source.template pixel<mode>(at, d);
}

/// Pixels `from` to `end` - 1, whose coordinates are known to lie inside the limits: fixed-point
/// steps, and nothing is clamped.
template <PixelMode mode, std::int32_t columnStep, typename Source>
void putInsidePixels(Rgb555* start, const SpanCoordinates<Source::coordinates>& span,
                     std::int32_t from, std::int32_t end, const Source& source)
{
    constexpr std::size_t coordinates = Source::coordinates;
    constexpr float one = 1 << coordinateBits;
    std::array<std::uint32_t, coordinates> at, step; // unsigned: the step behind the last pixel may
    for (std::size_t c = 0; c < coordinates; ++c) {  // leave the 32 bits
        at[c] = static_cast<std::uint32_t>(static_cast<std::int32_t>(span.at(c, from) * one));
        step[c] = static_cast<std::uint32_t>(static_cast<std::int32_t>(span.step[c] * one));
    }
    for (std::int32_t i = from; i < end; ++i) {
        std::array<std::int32_t, coordinates> whole;
        for (std::size_t c = 0; c < coordinates; ++c) {
            whole[c] = static_cast<std::int32_t>(at[c] >> coordinateBits);
            at[c] += step[c];
        }
        source.template pixel<mode>(whole, start[i * columnStep]);
    }
}

/// A span some of whose coordinates may lie outside the limits. They are monotone along the span,
/// so between its first and last pixel inside none needs clamping. Inside by more than what the
/// steps' truncation and the rounding of at() can add up to: a coordinate begins anew at the first
/// pixel inside, and may have been rounded where it lay far outside.
template <PixelMode mode, std::int32_t columnStep, typename Source>
void fillEdgeSpan(Rgb555* start, const SpanCoordinates<Source::coordinates>& span,
                  const Source& source, bool fixedFits)
{
    const auto count = static_cast<float>(span.count);
    std::array<float, Source::coordinates> slack;
    for (std::size_t c = 0; c < slack.size(); ++c)
        slack[c] =
            count * (1.0f / (1 << coordinateBits)) +
            (std::fabs(span.first[c]) + std::fabs(span.step[c]) * count) * (1.0f / (1 << 21));
    const auto isInside = [&](std::int32_t i) {
        for (std::size_t c = 0; c < slack.size(); ++c)
            if (!(span.at(c, i) >= slack[c] && span.at(c, i) < source.limit[c] - slack[c]))
                return false;
        return true;
    };
    std::int32_t i = 0;
    if (fixedFits) {
        while (i < span.count && !isInside(i))
            putClampedPixel<mode>(start[columnStep * i], span, i, source), ++i;
        std::int32_t end = span.count;
        while (end > i && !isInside(end - 1)) --end;
        if (i < end) putInsidePixels<mode, columnStep>(start, span, i, end, source);
        i = std::max(i, end);
    }
    for (; i < span.count; ++i) putClampedPixel<mode>(start[columnStep * i], span, i, source);
}

/// One row. The usual span lies inside the limits as a whole, and its ends tell.
template <PixelMode mode, std::int32_t columnStep, typename Source>
void fillSpan(Rgb555* start, const SpanCoordinates<Source::coordinates>& span, const Source& source,
              bool fixedFits)
{
    // What the steps' rounding can add up to.
    const float slack = static_cast<float>(span.count) * (1.0f / (1 << coordinateBits));
    bool inside = fixedFits;
    for (std::size_t c = 0; c < Source::coordinates; ++c) {
        const float last = span.at(c, span.count - 1), limit = source.limit[c];
        inside &= (span.first[c] >= 0.0f) & (span.first[c] < limit) & (last >= slack) &
                  (last < limit - slack);
    }
    if (inside)
        putInsidePixels<mode, columnStep>(start, span, 0, span.count, source);
    else
        fillEdgeSpan<mode, columnStep>(start, span, source, fixedFits);
}

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
        SpanCoordinates<coordinates> span;
        span.count = (right - left) / columnStep + 1;
        for (std::size_t c = 0; c < coordinates; ++c) {
            span.first[c] = corner[0].coordinate[c] +
                            perColumn[c] * static_cast<float>(left - p0.x) +
                            perRow[c] * static_cast<float>(row - p0.y);
            span.step[c] = perColumn[c] * columnStep;
        }
        fillSpan<mode, columnStep>(line + left, span, source, fixedFits);
    }
}

} // namespace facetor
