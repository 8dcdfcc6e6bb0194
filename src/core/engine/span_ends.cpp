#include "engine/span_ends.h"

#include <algorithm>
#include <limits>

#if FACETOR_VECTOR_FILLS
#include <emmintrin.h>
#endif

namespace facetor {

namespace {

constexpr std::int32_t leastEnd = std::numeric_limits<std::int16_t>::min();
constexpr std::int32_t mostEnd = std::numeric_limits<std::int16_t>::max();

/// An edge from (xa, ya), as the loops over rows use it. A horizontal edge has a height of 0, and
/// so a t that is infinite or no number in every row: it never counts.
struct Edge {
    float width;
    std::int32_t height, xa, ya;
};

/// Edges at most this high take their quotients from a table: a division for every row would cost
/// more than filling a small polygon.
constexpr std::int32_t tableHeight = 16;

#if FACETOR_VECTOR_FILLS

/// Eight quotients (row - ya) / height, from `row` on.
struct EightQuotients {
    __m128 low, high;
};

/// n / height for n from -16 up, and from 16 down; a height of 0 gives what never counts.
struct QuotientTable {
    static constexpr std::size_t entries = 48;
    std::array<std::array<float, entries>, tableHeight + 1> up, down;
};

constexpr QuotientTable makeQuotientTable()
{
    QuotientTable table{};
    for (std::int32_t height = 0; height <= tableHeight; ++height)
        for (std::size_t i = 0; i < QuotientTable::entries; ++i) {
            const auto n = static_cast<float>(static_cast<std::int32_t>(i) - tableHeight);
            const auto h = static_cast<std::size_t>(height);
            table.up[h][i] = height == 0 ? 2.0f : n / static_cast<float>(height);
            table.down[h][i] = height == 0 ? 2.0f : -n / static_cast<float>(height);
        }
    return table;
}

constexpr QuotientTable quotientTable = makeQuotientTable();

EightQuotients tableQuotients(const Edge& edge, std::int32_t row)
{
    const std::int32_t fromA = row - edge.ya + tableHeight; // 0 to 32
    const bool upward = edge.height >= 0;
    const auto height = static_cast<std::size_t>(upward ? edge.height : -edge.height);
    const auto& quotients = upward ? quotientTable.up[height] : quotientTable.down[height];
    const float* from = quotients.data() + fromA;
    return {_mm_loadu_ps(from), _mm_loadu_ps(from + 4)};
}

EightQuotients dividedQuotients(const Edge& edge, std::int32_t row)
{
    const __m128i start = _mm_set1_epi32(row - edge.ya);
    const __m128 height = _mm_set1_ps(static_cast<float>(edge.height));
    const auto quotients = [&](__m128i lane) {
        return _mm_div_ps(_mm_cvtepi32_ps(_mm_add_epi32(start, lane)), height);
    };
    return {quotients(_mm_set_epi32(3, 2, 1, 0)), quotients(_mm_set_epi32(7, 6, 5, 4))};
}

/// Finds the ends of eight rows at once, from `row` on, all edges in registers. Ends at 16 bits
/// lose nothing: a surface is far narrower.
template <typename Quotients, std::size_t Edges>
void findEndsWith(Quotients quotients, const SpanEnds& ends, const std::array<Edge, Edges>& edges,
                  RowRange rows, std::int16_t startLeft, std::int16_t startRight)
{
    const __m128 zero = _mm_setzero_ps(), one = _mm_set1_ps(1.0f);
    const __m128i noLeft = _mm_set1_epi16(mostEnd), noRight = _mm_set1_epi16(leastEnd);
    for (std::int32_t row = rows.first; row <= rows.last; row += 8) {
        __m128i left = _mm_set1_epi16(startLeft), right = _mm_set1_epi16(startRight);
        for (const Edge& edge : edges) {
            const EightQuotients t = quotients(edge, row);
            const auto counts = [&](__m128 quotient) {
                return _mm_castps_si128(
                    _mm_and_ps(_mm_cmple_ps(zero, quotient), _mm_cmple_ps(quotient, one)));
            };
            const __m128i inside = _mm_packs_epi32(counts(t.low), counts(t.high));
            const __m128 width = _mm_set1_ps(edge.width);
            const __m128i xa = _mm_set1_epi32(edge.xa);
            const auto xAt = [&](__m128 quotient) {
                return _mm_add_epi32(_mm_cvttps_epi32(_mm_mul_ps(width, quotient)), xa);
            };
            const __m128i x = _mm_and_si128(_mm_packs_epi32(xAt(t.low), xAt(t.high)), inside);
            left = _mm_min_epi16(left, _mm_or_si128(x, _mm_andnot_si128(inside, noLeft)));
            right = _mm_max_epi16(right, _mm_or_si128(x, _mm_andnot_si128(inside, noRight)));
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(ends.left + row), left);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(ends.right + row), right);
    }
}

template <std::size_t Edges>
void findEndsVector(const SpanEnds& ends, const std::array<Edge, Edges>& edges, RowRange rows,
                    bool tableServes, std::int16_t left, std::int16_t right)
{
    if (tableServes)
        findEndsWith(tableQuotients, ends, edges, rows, left, right);
    else
        findEndsWith(dividedQuotients, ends, edges, rows, left, right);
}

#endif

template <std::size_t Edges>
void findEndsPlain(const SpanEnds& ends, const std::array<Edge, Edges>& edges, RowRange rows,
                   std::int16_t left, std::int16_t right)
{
    for (std::int32_t row = rows.first; row <= rows.last; ++row) {
        std::int32_t least = left, most = right;
        for (const Edge& edge : edges) {
            const float t = static_cast<float>(row - edge.ya) / static_cast<float>(edge.height);
            if (!(0.0f <= t && t <= 1.0f)) continue;
            const std::int32_t x = static_cast<std::int32_t>(edge.width * t) + edge.xa;
            least = std::min(least, x);
            most = std::max(most, x);
        }
        ends.left[row] = static_cast<std::int16_t>(std::clamp(least, leastEnd, mostEnd));
        ends.right[row] = static_cast<std::int16_t>(std::clamp(most, leastEnd, mostEnd));
    }
}

template <FillPath path, std::size_t Corners, std::size_t Edges>
RowRange findSpans(const SpanEnds& ends, const std::array<ScreenPoint, Corners>& point,
                   const std::array<std::array<std::size_t, 2>, Edges>& edgeCorners,
                   std::int32_t height)
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
    std::array<Edge, Edges> edges;
    for (std::size_t i = 0; i < Edges; ++i) {
        const ScreenPoint &a = point[edgeCorners[i][0]], &b = point[edgeCorners[i][1]];
        edges[i] = {static_cast<float>(b.x - a.x), b.y - a.y, a.x, a.y};
    }
    const auto left = static_cast<std::int16_t>(std::clamp(largest, leastEnd, mostEnd));
    const auto right = static_cast<std::int16_t>(std::clamp(smallest, leastEnd, mostEnd));
#if FACETOR_VECTOR_FILLS
    if constexpr (path == FillPath::vector) {
        findEndsVector(ends, edges, rows, bottom - top <= tableHeight, left, right);
        return rows;
    }
#endif
    findEndsPlain(ends, edges, rows, left, right);
    return rows;
}

} // namespace

template <FillPath path>
RowRange findQuadSpans(const SpanEnds& ends, const std::array<ScreenPoint, 4>& point,
                       std::int32_t height)
{
    constexpr std::array<std::array<std::size_t, 2>, 4> edges{{{0, 1}, {1, 2}, {3, 2}, {0, 3}}};
    return findSpans<path>(ends, point, edges, height);
}

template <FillPath path>
RowRange findTriangleSpans(const SpanEnds& ends, const std::array<ScreenPoint, 3>& point,
                           std::int32_t height)
{
    constexpr std::array<std::array<std::size_t, 2>, 3> edges{{{0, 1}, {1, 2}, {0, 2}}};
    return findSpans<path>(ends, point, edges, height);
}

template RowRange findQuadSpans<FillPath::plain>(const SpanEnds&, const std::array<ScreenPoint, 4>&,
                                                 std::int32_t);
template RowRange findQuadSpans<FillPath::vector>(const SpanEnds&,
                                                  const std::array<ScreenPoint, 4>&, std::int32_t);
template RowRange findTriangleSpans<FillPath::plain>(const SpanEnds&,
                                                     const std::array<ScreenPoint, 3>&,
                                                     std::int32_t);
template RowRange findTriangleSpans<FillPath::vector>(const SpanEnds&,
                                                      const std::array<ScreenPoint, 3>&,
                                                      std::int32_t);

} // namespace facetor
