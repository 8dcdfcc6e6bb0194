#pragma once

#include "engine/pixel_operation.h"
#include "engine/span_ends.h"
#include "engine/vector_pixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace facetor {

// The triangle filler that textured and Gouraud fills share. It lays coordinates (texture columns
// and rows, and for textured Gouraud polygons a second pair) as planes over a triangle and asks a
// Source for each pixel's colour:
//
//   static constexpr std::size_t coordinates;   2 or 4
//   std::array<float, coordinates> limit;       each coordinate is clamped to 0 .. limit - 1
//   void pixel<mode>(std::array<std::int32_t, coordinates> at, Rgb555& d) const;
//                                               writes the surface pixel, or leaves it
//   static constexpr FillPath path;
//   __m128i pixels<mode>(at, __m128i d) const;
//                                               only with FillPath::vector: the same for eight,
//                                               `at` an array of FixedLanes or of WholeLanes
//
// Of eight pixels some may not be drawn; their coordinates lie inside the limits all the same.
// Source::pixel and pixels are inlined; mode and mesh are fixed at compile time.

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

/// What a coordinate must lie inside its limits by: what the steps' truncation and the rounding of
/// at() can add up to. A coordinate begins anew at the first pixel inside, and may have been
/// rounded where it lay far outside.
template <std::size_t Coordinates>
std::array<float, Coordinates> edgeSlack(const SpanCoordinates<Coordinates>& span)
{
    const auto count = static_cast<float>(span.count);
    std::array<float, Coordinates> slack;
    for (std::size_t c = 0; c < Coordinates; ++c)
        slack[c] =
            count * (1.0f / (1 << coordinateBits)) +
            (std::fabs(span.first[c]) + std::fabs(span.step[c]) * count) * (1.0f / (1 << 21));
    return slack;
}

/// A span some of whose coordinates may lie outside the limits. They are monotone along the span,
/// so between its first and last pixel inside none needs clamping: these go to putInside(from,
/// end).
template <PixelMode mode, std::int32_t columnStep, typename Source, typename PutInside>
void fillEdgeSpan(Rgb555* start, const SpanCoordinates<Source::coordinates>& span,
                  const Source& source, bool fixedFits, PutInside&& putInside)
{
    const auto slack = edgeSlack(span);
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
        if (i < end) putInside(i, end);
        i = std::max(i, end);
    }
    for (; i < span.count; ++i) putClampedPixel<mode>(start[columnStep * i], span, i, source);
}

/// Whether a whole span lies inside the limits, as its ends tell. What the steps' rounding can add
/// up to is allowed for at the end that it moves.
template <std::size_t Coordinates>
bool liesInside(const SpanCoordinates<Coordinates>& span,
                const std::array<float, Coordinates>& limits)
{
    const float slack = static_cast<float>(span.count) * (1.0f / (1 << coordinateBits));
    bool inside = true;
    for (std::size_t c = 0; c < Coordinates; ++c) {
        const float last = span.at(c, span.count - 1), limit = limits[c];
        inside = inside && span.first[c] >= 0.0f && span.first[c] < limit && last >= slack &&
                 last < limit - slack;
    }
    return inside;
}

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

/// The rows of a triangle one after the other; `ends` has them.
template <PixelMode mode, std::int32_t columnStep, typename Source>
void fillRowsPlain(const PixelRows& surface, const SpanEnds& ends, RowRange rows,
                   const TrianglePlanes<Source::coordinates>& planes, const Source& source)
{
    Rgb555* line = surface.row(rows.first);
    for (std::int32_t row = rows.first; row <= rows.last; ++row, line += surface.width) {
        std::int32_t left = std::max<std::int32_t>(ends.left[row], 0);
        const std::int32_t right = std::min<std::int32_t>(ends.right[row], surface.width - 1);
        if constexpr (columnStep == 2) left += ~(left ^ row) & 1; // the other parity than the row
        if (left > right) continue;
        SpanCoordinates<Source::coordinates> span;
        span.count = (right - left) / columnStep + 1;
        for (std::size_t c = 0; c < Source::coordinates; ++c) {
            span.first[c] = planes.origin[c] +
                            planes.perColumn[c] * static_cast<float>(left - planes.corner.x) +
                            planes.perRow[c] * static_cast<float>(row - planes.corner.y);
            span.step[c] = planes.perColumn[c] * columnStep;
        }
        if (planes.fixedFits && liesInside(span, source.limit))
            putInsidePixels<mode, columnStep>(line + left, span, 0, span.count, source);
        else
            fillEdgeSpan<mode, columnStep>(line + left, span, source, planes.fixedFits,
                                           [&](std::int32_t from, std::int32_t end) {
                                               putInsidePixels<mode, columnStep>(line + left, span,
                                                                                 from, end, source);
                                           });
    }
}

#if FACETOR_VECTOR_FILLS

/// Up to eight pixels of a span, from `start` on; what lies behind `count` is written back as it
/// was. `at` must hold coordinates inside the limits in every lane.
template <PixelMode mode, std::int32_t columnStep, typename Source, typename Lanes>
void putEightPixels(Rgb555* start, std::int32_t count,
                    const std::array<Lanes, Source::coordinates>& at, const Source& source)
{
    const __m128i lanes = firstLanes(count);
    if constexpr (columnStep == 1) {
        const __m128i d = loadPixels(start);
        storePixels(start, select(lanes, source.template pixels<mode>(at, d), d));
    } else {
        const __m128i low = loadPixels(start), high = loadPixels(start + 8);
        const auto evenLanes = [](__m128i pair) {
            return _mm_srai_epi32(_mm_slli_epi32(pair, 16), 16);
        };
        const __m128i d = _mm_packs_epi32(evenLanes(low), evenLanes(high));
        const __m128i s = source.template pixels<mode>(at, d), zero = _mm_setzero_si128();
        storePixels(start,
                    select(_mm_unpacklo_epi16(lanes, zero), _mm_unpacklo_epi16(s, zero), low));
        if (count > 4)
            storePixels(start + 8,
                        select(_mm_unpackhi_epi16(lanes, zero), _mm_unpackhi_epi16(s, zero), high));
    }
}

/// putInsidePixels() eight at a time, from the fixed-point coordinates of the first.
template <PixelMode mode, std::int32_t columnStep, typename Source>
void putInsideVectors(Rgb555* start, std::int32_t count,
                      const std::array<std::int32_t, Source::coordinates>& first,
                      const std::array<Ramp, Source::coordinates>& ramp, const Source& source)
{
    constexpr std::size_t coordinates = Source::coordinates;
    std::array<FixedLanes, coordinates> at;
    for (std::size_t c = 0; c < coordinates; ++c) {
        const __m128i from = _mm_set1_epi32(first[c]);
        at[c] = {_mm_add_epi32(from, ramp[c].low), _mm_add_epi32(from, ramp[c].high)};
    }
    for (; count >= 8; count -= 8, start += 8 * columnStep) {
        if constexpr (columnStep == 1)
            storePixels(start, source.template pixels<mode>(at, loadPixels(start)));
        else
            putEightPixels<mode, columnStep>(start, 8, at, source);
        for (std::size_t c = 0; c < coordinates; ++c) {
            at[c].low = _mm_add_epi32(at[c].low, ramp[c].eight);
            at[c].high = _mm_add_epi32(at[c].high, ramp[c].eight);
        }
    }
    if (count <= 0) return;
    const __m128i lanes = firstLanes(count);
    std::array<WholeLanes, coordinates> rest;
    for (std::size_t c = 0; c < coordinates; ++c)
        rest[c].lanes = _mm_and_si128(wholeLanes(at[c]).lanes, lanes);
    putEightPixels<mode, columnStep>(start, count, rest, source);
}

/// What four rows of a triangle begin with; a count of 0 or less for none.
template <std::size_t Coordinates> struct FourSpans {
    alignas(16) std::array<std::int32_t, 4> left, count;
    alignas(16) std::array<std::array<float, 4>, Coordinates> first;
    alignas(16) std::array<std::array<std::int32_t, 4>, Coordinates> fixed;
    int inside; ///< a bit for each row whose span liesInside()
};

/// The spans of the rows from `row` on, computed as fillRowsPlain() does.
template <std::int32_t columnStep, std::size_t Coordinates>
FourSpans<Coordinates> fourSpans(const SpanEnds& ends, std::int32_t row, std::int32_t width,
                                 const TrianglePlanes<Coordinates>& planes,
                                 const std::array<float, Coordinates>& limits)
{
    const auto fourEnds = [&](const std::int16_t* from) {
        const __m128i four = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from + row));
        return four;
    };
    const auto widened = [](__m128i four) {
        return _mm_srai_epi32(_mm_unpacklo_epi16(four, four), 16);
    };
    const __m128i rows = _mm_add_epi32(_mm_set1_epi32(row), _mm_set_epi32(3, 2, 1, 0));
    __m128i left = widened(_mm_max_epi16(fourEnds(ends.left), _mm_setzero_si128()));
    const __m128i right = widened(
        _mm_min_epi16(fourEnds(ends.right), _mm_set1_epi16(static_cast<std::int16_t>(width - 1))));
    const __m128i one = _mm_set1_epi32(1);
    if constexpr (columnStep == 2)
        left = _mm_add_epi32(left, _mm_andnot_si128(_mm_xor_si128(left, rows), one));
    __m128i count = _mm_sub_epi32(right, left);
    if constexpr (columnStep == 2) count = _mm_srai_epi32(count, 1);
    count = _mm_add_epi32(count, one);

    FourSpans<Coordinates> spans;
    _mm_store_si128(reinterpret_cast<__m128i*>(spans.left.data()), left);
    _mm_store_si128(reinterpret_cast<__m128i*>(spans.count.data()), count);
    const __m128 x = _mm_cvtepi32_ps(_mm_sub_epi32(left, _mm_set1_epi32(planes.corner.x)));
    const __m128 r = _mm_cvtepi32_ps(_mm_sub_epi32(rows, _mm_set1_epi32(planes.corner.y)));
    const __m128 slack =
        _mm_mul_ps(_mm_cvtepi32_ps(count), _mm_set1_ps(1.0f / (1 << coordinateBits)));
    const __m128 lastPixel = _mm_cvtepi32_ps(_mm_sub_epi32(count, one));
    __m128 inside = _mm_castsi128_ps(_mm_set1_epi32(planes.fixedFits ? -1 : 0));
    for (std::size_t c = 0; c < Coordinates; ++c) {
        const __m128 first = _mm_add_ps(_mm_add_ps(_mm_set1_ps(planes.origin[c]),
                                                   _mm_mul_ps(_mm_set1_ps(planes.perColumn[c]), x)),
                                        _mm_mul_ps(_mm_set1_ps(planes.perRow[c]), r));
        const __m128 last =
            _mm_add_ps(first, _mm_mul_ps(_mm_set1_ps(planes.perColumn[c] * columnStep), lastPixel));
        const __m128 limit = _mm_set1_ps(limits[c]);
        inside = _mm_and_ps(
            inside, _mm_and_ps(_mm_cmpge_ps(first, _mm_setzero_ps()), _mm_cmplt_ps(first, limit)));
        inside = _mm_and_ps(inside, _mm_and_ps(_mm_cmpge_ps(last, slack),
                                               _mm_cmplt_ps(last, _mm_sub_ps(limit, slack))));
        _mm_store_ps(spans.first[c].data(), first);
        _mm_store_si128(reinterpret_cast<__m128i*>(spans.fixed[c].data()),
                        _mm_cvttps_epi32(_mm_mul_ps(first, _mm_set1_ps(1 << coordinateBits))));
    }
    spans.inside = _mm_movemask_ps(inside);
    return spans;
}

template <std::int32_t columnStep, std::size_t Coordinates>
std::array<Ramp, Coordinates> ramps(const TrianglePlanes<Coordinates>& planes)
{
    return [&]<std::size_t... c>(std::index_sequence<c...>)
    {
        return std::array<Ramp, Coordinates>{
            Ramp(static_cast<std::uint32_t>(static_cast<std::int32_t>(
                planes.fixedFits ? planes.perColumn[c] * columnStep * (1 << coordinateBits)
                                 : 0.0f)))...};
    }
    (std::make_index_sequence<Coordinates>());
}

/// Triangles up to these, in pixels, texels and doubled pixels of area, need not tell the spans
/// that lie inside the limits from the others. A coordinate is a whole number of parts of which the
/// area makes one texel, plus the bias, or minus it on a flipped axis: it lies at least the bias,
/// 1/1024, from one texel's end, and unless it is whole at least 1/512 - 1/1024 from the other's.
/// Steps add up to less than 24 / 65536, roundings to less than 24 * 24 * 64 / (8 * 2^24): a
/// plane's products are the larger the smaller the area is. So a texel is the same however its
/// coordinates are computed and clamped.
inline constexpr std::int32_t smallSide = 24;
inline constexpr float smallLimit = 256.0f;
inline constexpr std::int64_t smallArea = 512, leastSmallArea = 8;

template <std::size_t Coordinates>
bool isSmall(const std::array<TriangleCorner<Coordinates>, 3>& corner, std::int64_t area,
             const TrianglePlanes<Coordinates>& planes,
             const std::array<float, Coordinates>& limits)
{
    const auto [left, right] = std::minmax({corner[0].at.x, corner[1].at.x, corner[2].at.x});
    const auto [top, bottom] = std::minmax({corner[0].at.y, corner[1].at.y, corner[2].at.y});
    const std::int64_t size = area < 0 ? -area : area;
    bool small = planes.fixedFits && size >= leastSmallArea && size <= smallArea &&
                 right - left < smallSide && bottom - top < smallSide;
    for (const float limit : limits) small = small && limit <= smallLimit;
    return small;
}

/// fillRowsVector() for a triangle that isSmall().
template <PixelMode mode, std::int32_t columnStep, typename Source>
void fillSmallRows(const PixelRows& surface, const SpanEnds& ends, RowRange rows,
                   const TrianglePlanes<Source::coordinates>& planes, const Source& source)
{
    constexpr std::size_t coordinates = Source::coordinates;
    const auto ramp = ramps<columnStep>(planes);
    std::array<WholeLanes, coordinates> last;
    for (std::size_t c = 0; c < coordinates; ++c)
        last[c].lanes = _mm_set1_epi16(static_cast<std::int16_t>(source.limit[c] - 1.0f));
    for (std::int32_t block = rows.first; block <= rows.last; block += 4) {
        const FourSpans<coordinates> spans =
            fourSpans<columnStep>(ends, block, surface.width, planes, source.limit);
        const auto rowCount = static_cast<std::size_t>(std::min(rows.last - block + 1, 4));
        Rgb555* line = surface.row(block);
        for (std::size_t i = 0; i < rowCount; ++i, line += surface.width) {
            std::int32_t count = spans.count[i];
            if (count <= 0) continue;
            std::array<FixedLanes, coordinates> fixed;
            for (std::size_t c = 0; c < coordinates; ++c) {
                const __m128i first = _mm_set1_epi32(spans.fixed[c][i]);
                fixed[c] = {_mm_add_epi32(first, ramp[c].low), _mm_add_epi32(first, ramp[c].high)};
            }
            for (Rgb555* start = line + spans.left[i];; start += 8 * columnStep, count -= 8) {
                std::array<WholeLanes, coordinates> at;
                for (std::size_t c = 0; c < coordinates; ++c)
                    at[c].lanes = _mm_min_epi16(
                        _mm_max_epi16(wholeLanes(fixed[c]).lanes, _mm_setzero_si128()),
                        last[c].lanes);
                putEightPixels<mode, columnStep>(start, std::min(count, 8), at, source);
                if (count <= 8) break;
                for (std::size_t c = 0; c < coordinates; ++c) {
                    fixed[c].low = _mm_add_epi32(fixed[c].low, ramp[c].eight);
                    fixed[c].high = _mm_add_epi32(fixed[c].high, ramp[c].eight);
                }
            }
        }
    }
}

/// fillRowsPlain() with four rows set up at once and eight pixels written at once.
template <PixelMode mode, std::int32_t columnStep, typename Source>
void fillRowsVector(const PixelRows& surface, const SpanEnds& ends, RowRange rows,
                    const TrianglePlanes<Source::coordinates>& planes, const Source& source)
{
    constexpr std::size_t coordinates = Source::coordinates;
    const auto ramp = ramps<columnStep>(planes);
    for (std::int32_t block = rows.first; block <= rows.last; block += 4) {
        const FourSpans<coordinates> spans =
            fourSpans<columnStep>(ends, block, surface.width, planes, source.limit);
        const auto count = static_cast<std::size_t>(std::min(rows.last - block + 1, 4));
        Rgb555* line = surface.row(block);
        for (std::size_t i = 0; i < count; ++i, line += surface.width) {
            if (spans.count[i] <= 0) continue;
            if ((spans.inside >> i & 1) != 0) {
                std::array<std::int32_t, coordinates> first;
                for (std::size_t c = 0; c < coordinates; ++c) first[c] = spans.fixed[c][i];
                putInsideVectors<mode, columnStep>(line + spans.left[i], spans.count[i], first,
                                                   ramp, source);
            } else {
                SpanCoordinates<coordinates> span;
                span.count = spans.count[i];
                for (std::size_t c = 0; c < coordinates; ++c) {
                    span.first[c] = spans.first[c][i];
                    span.step[c] = planes.perColumn[c] * columnStep;
                }
                Rgb555* const start = line + spans.left[i];
                fillEdgeSpan<mode, columnStep>(
                    start, span, source, planes.fixedFits,
                    [&](std::int32_t from, std::int32_t end) {
                        std::array<std::int32_t, coordinates> first;
                        for (std::size_t c = 0; c < coordinates; ++c)
                            first[c] =
                                static_cast<std::int32_t>(span.at(c, from) * (1 << coordinateBits));
                        putInsideVectors<mode, columnStep>(start + columnStep * from, end - from,
                                                           first, ramp, source);
                    });
            }
        }
    }
}

#endif

template <PixelMode mode, bool mesh, typename Source>
void fillTriangle(const PixelRows& surface, const SpanEnds& ends,
                  const std::array<TriangleCorner<Source::coordinates>, 3>& corner,
                  const Source& source)
{
    constexpr std::int32_t columnStep = mesh ? 2 : 1;
    const ScreenPoint &p0 = corner[0].at, &p1 = corner[1].at, &p2 = corner[2].at;
    const std::int64_t x1 = p1.x - p0.x, x2 = p2.x - p0.x, r1 = p1.y - p0.y, r2 = p2.y - p0.y;
    const std::int64_t area = x1 * r2 - x2 * r1; // doubled and signed
    if (area == 0) return;
    const RowRange rows = findTriangleSpans<Source::path>(ends, {p0, p1, p2}, surface.height);
    if (rows.first > rows.last) return;
    const auto planes = trianglePlanes<columnStep>(corner, area, source.limit);
#if FACETOR_VECTOR_FILLS
    if constexpr (Source::path == FillPath::vector) {
        if (isSmall(corner, area, planes, source.limit)) {
            fillSmallRows<mode, columnStep>(surface, ends, rows, planes, source);
            return;
        }
        fillRowsVector<mode, columnStep>(surface, ends, rows, planes, source);
        return;
    }
#endif
    fillRowsPlain<mode, columnStep>(surface, ends, rows, planes, source);
}

} // namespace facetor
