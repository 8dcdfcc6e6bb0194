#pragma once

#include "engine/span_ends.h"
#include "engine/span_fill.h"
#include "engine/triangle_planes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace facetor {

// The triangle filler that textured and Gouraud fills share: finds the spans of a triangle, lays
// its coordinates over them as planes and has each span filled from a Source (engine/span_fill.h).

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

/// Calls put(start, spans, i) for row i of each four, from the top down, whose span is not empty.
template <std::int32_t columnStep, std::size_t Coordinates, typename Put>
void eachSpan(const PixelRows& surface, const SpanEnds& ends, RowRange rows,
              const TrianglePlanes<Coordinates>& planes,
              const std::array<float, Coordinates>& limits, Put&& put)
{
    for (std::int32_t block = rows.first; block <= rows.last; block += 4) {
        const FourSpans<Coordinates> spans =
            fourSpans<columnStep>(ends, block, surface.width, planes, limits);
        const auto count = static_cast<std::size_t>(std::min(rows.last - block + 1, 4));
        Rgb555* line = surface.row(block);
        for (std::size_t i = 0; i < count; ++i, line += surface.width)
            if (spans.count[i] > 0) put(line + spans.left[i], spans, i);
    }
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
    eachSpan<columnStep>(
        surface, ends, rows, planes, source.limit,
        [&](Rgb555* start, const FourSpans<coordinates>& spans, std::size_t i) {
            std::array<FixedLanes, coordinates> fixed;
            for (std::size_t c = 0; c < coordinates; ++c) {
                const __m128i first = _mm_set1_epi32(spans.fixed[c][i]);
                fixed[c] = {_mm_add_epi32(first, ramp[c].low), _mm_add_epi32(first, ramp[c].high)};
            }
            for (std::int32_t count = spans.count[i];; start += 8 * columnStep, count -= 8) {
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
        });
}

/// fillRowsPlain() with four rows set up at once and eight pixels written at once.
template <PixelMode mode, std::int32_t columnStep, typename Source>
void fillRowsVector(const PixelRows& surface, const SpanEnds& ends, RowRange rows,
                    const TrianglePlanes<Source::coordinates>& planes, const Source& source)
{
    constexpr std::size_t coordinates = Source::coordinates;
    const auto ramp = ramps<columnStep>(planes);
    eachSpan<columnStep>(
        surface, ends, rows, planes, source.limit,
        [&](Rgb555* start, const FourSpans<coordinates>& spans, std::size_t i) {
            std::array<std::int32_t, coordinates> first;
            if ((spans.inside >> i & 1) != 0) {
                for (std::size_t c = 0; c < coordinates; ++c) first[c] = spans.fixed[c][i];
                putInsideVectors<mode, columnStep>(start, spans.count[i], first, ramp, source);
                return;
            }
            SpanCoordinates<coordinates> span;
            span.count = spans.count[i];
            for (std::size_t c = 0; c < coordinates; ++c) {
                span.first[c] = spans.first[c][i];
                span.step[c] = planes.perColumn[c] * columnStep;
            }
            fillEdgeSpan<mode, columnStep>(
                start, span, source, planes.fixedFits, [&](std::int32_t from, std::int32_t end) {
                    for (std::size_t c = 0; c < coordinates; ++c)
                        first[c] =
                            static_cast<std::int32_t>(span.at(c, from) * (1 << coordinateBits));
                    putInsideVectors<mode, columnStep>(start + columnStep * from, end - from, first,
                                                       ramp, source);
                });
        });
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
