#include "engine/span_ends.h"

#include <algorithm>
#include <limits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace facetor {

namespace {

/// Widens the spans of the rows that the edge a-b crosses. Ends at 16 bits lose nothing: a surface
/// is far narrower.
void widenByEdge(const SpanEnds& ends, const ScreenPoint& a, const ScreenPoint& b, RowRange rows)
{
    const std::int32_t first = std::max(std::min(a.y, b.y), rows.first);
    const std::int32_t last = std::min(std::max(a.y, b.y), rows.last);
    if (a.y == b.y || first > last) return;
    const auto dx = static_cast<float>(b.x - a.x);
    const auto dy = static_cast<float>(b.y - a.y);
#if defined(__SSE2__)
    // Eight rows at once. Lanes beyond the edge's last row are made to change neither end.
    const __m128 vectorDx = _mm_set1_ps(dx), vectorDy = _mm_set1_ps(dy);
    const __m128i xa = _mm_set1_epi32(a.x);
    const __m128i laneLow = _mm_set_epi32(3, 2, 1, 0), laneHigh = _mm_set_epi32(7, 6, 5, 4);
    const __m128i lane = _mm_set_epi16(7, 6, 5, 4, 3, 2, 1, 0);
    const __m128i unchangedLeft = _mm_set1_epi16(std::numeric_limits<std::int16_t>::max());
    const __m128i unchangedRight = _mm_set1_epi16(std::numeric_limits<std::int16_t>::min());
    const auto xAt = [&](__m128i rowsFromA) {
        const __m128 t = _mm_div_ps(_mm_cvtepi32_ps(rowsFromA), vectorDy);
        return _mm_add_epi32(_mm_cvttps_epi32(_mm_mul_ps(vectorDx, t)), xa);
    };
    for (std::int32_t row = first; row <= last; row += 8) {
        const __m128i start = _mm_set1_epi32(row - a.y);
        const __m128i x = _mm_packs_epi32(xAt(_mm_add_epi32(start, laneLow)),
                                          xAt(_mm_add_epi32(start, laneHigh)));
        const auto count = static_cast<std::int16_t>(std::min(last - row + 1, 8));
        const __m128i inside = _mm_cmpgt_epi16(_mm_set1_epi16(count), lane);
        const __m128i forLeft =
            _mm_or_si128(_mm_and_si128(inside, x), _mm_andnot_si128(inside, unchangedLeft));
        const __m128i forRight =
            _mm_or_si128(_mm_and_si128(inside, x), _mm_andnot_si128(inside, unchangedRight));
        auto* left = reinterpret_cast<__m128i*>(ends.left + row);
        auto* right = reinterpret_cast<__m128i*>(ends.right + row);
        _mm_storeu_si128(left, _mm_min_epi16(_mm_loadu_si128(left), forLeft));
        _mm_storeu_si128(right, _mm_max_epi16(_mm_loadu_si128(right), forRight));
    }
#else
    constexpr std::int32_t low = std::numeric_limits<std::int16_t>::min();
    constexpr std::int32_t high = std::numeric_limits<std::int16_t>::max();
    for (std::int32_t row = first; row <= last; ++row) {
        const float t = static_cast<float>(row - a.y) / dy;
        const auto x = static_cast<std::int16_t>(
            std::clamp(static_cast<std::int32_t>(dx * t) + a.x, low, high));
        ends.left[row] = std::min(ends.left[row], x);
        ends.right[row] = std::max(ends.right[row], x);
    }
#endif
}

template <std::size_t Corners, std::size_t Edges>
RowRange findSpans(const SpanEnds& ends, const std::array<ScreenPoint, Corners>& point,
                   const std::array<std::array<std::size_t, 2>, Edges>& edges, std::int32_t height)
{
    std::int32_t top = point[0].y, bottom = point[0].y;
    std::int32_t smallest = point[0].x, largest = point[0].x;
    for (std::size_t i = 1; i < Corners; ++i) {
        top = std::min(top, point[i].y);
        bottom = std::max(bottom, point[i].y);
        smallest = std::min(smallest, point[i].x);
        largest = std::max(largest, point[i].x);
    }
    const RowRange rows{std::max(top, 0), std::min(bottom, height - 1)};
    if (rows.first > rows.last) return rows;
    const auto saturated = [](std::int32_t x) {
        return static_cast<std::int16_t>(std::clamp<std::int32_t>(
            x, std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()));
    };
    std::fill(ends.left + rows.first, ends.left + rows.last + 1, saturated(largest));
    std::fill(ends.right + rows.first, ends.right + rows.last + 1, saturated(smallest));
    for (const auto& edge : edges) widenByEdge(ends, point[edge[0]], point[edge[1]], rows);
    return rows;
}

} // namespace

RowRange findQuadSpans(const SpanEnds& ends, const std::array<ScreenPoint, 4>& point,
                       std::int32_t height)
{
    constexpr std::array<std::array<std::size_t, 2>, 4> edges{{{0, 1}, {1, 2}, {3, 2}, {0, 3}}};
    return findSpans(ends, point, edges, height);
}

RowRange findTriangleSpans(const SpanEnds& ends, const std::array<ScreenPoint, 3>& point,
                           std::int32_t height)
{
    constexpr std::array<std::array<std::size_t, 2>, 3> edges{{{0, 1}, {1, 2}, {0, 2}}};
    return findSpans(ends, point, edges, height);
}

} // namespace facetor
