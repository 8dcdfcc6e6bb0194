#include "engine/cell_rows.h"

#if FACETOR_VECTOR_FILLS

#include <emmintrin.h>

namespace facetor {

namespace {

// Points are pairs of 16-bit lanes: column, row. A vector holds four of them.

/// Four points; as an element of std::array, which warns of a bare vector type.
struct PointLanes {
    __m128i lanes;
};

__m128i middleOf(__m128i a, __m128i b)
{
    return _mm_srai_epi16(_mm_add_epi16(a, b), 1);
}

/// From a to b by repeated halving.
std::array<PointLanes, gridPoints> subdivided(__m128i a, __m128i b)
{
    const __m128i half = middleOf(a, b);
    return {{{a}, {middleOf(a, half)}, {half}, {middleOf(half, b)}, {b}}};
}

/// The grid points of one row: columns 0 to 3, and column 4 in the first lane.
struct GridRow {
    __m128i four, last;

    /// Points 1 to 4.
    __m128i shifted() const
    {
        return _mm_or_si128(_mm_srli_si128(four, 4), _mm_slli_si128(last, 12));
    }
};

__m128i pointPair(const ScreenPoint& top, const ScreenPoint& bottom)
{
    const auto packed = [](const ScreenPoint& point) {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(point.y) << 16 |
                                         (static_cast<std::uint32_t>(point.x) & 0xFFFF));
    };
    return _mm_set_epi32(0, 0, packed(bottom), packed(top));
}

/// All ones where the doubled area x1 y2 - x2 y1 of corners 0, 1, 2, relative to 0, is not zero.
__m128i hasArea(__m128i first, __m128i second)
{
    const __m128i turned = _mm_or_si128(_mm_slli_epi32(second, 16), _mm_srli_epi32(second, 16));
    const __m128i signs = _mm_set1_epi32(static_cast<std::int32_t>(0xFFFF0001)); // 1, -1
    const __m128i area = _mm_madd_epi16(_mm_mullo_epi16(first, signs), turned);
    return _mm_xor_si128(_mm_cmpeq_epi32(area, _mm_setzero_si128()), _mm_set1_epi32(-1));
}

} // namespace

bool findCells(CellRows& cells, const ScreenQuad& points, std::int32_t width, CellUse use)
{
    const auto across =
        subdivided(pointPair(points[0], points[3]), pointPair(points[1], points[2]));
    const __m128i low = _mm_unpacklo_epi32(across[0].lanes, across[1].lanes);
    const __m128i high = _mm_unpacklo_epi32(across[2].lanes, across[3].lanes);
    const auto down = subdivided(_mm_unpacklo_epi64(low, high), _mm_unpackhi_epi64(low, high));
    const __m128i lastTop = across[4].lanes;
    const auto lastDown = subdivided(lastTop, _mm_srli_si128(lastTop, 4));

    const __m128i eight = _mm_set1_epi16(8), weights = _mm_set1_epi32(width << 16 | 1);
    const __m128i one = _mm_set1_epi32(0x10001);
    __m128i beyond = _mm_setzero_si128(), below = _mm_setzero_si128();
    const __m128i places = _mm_set_epi32(3 << 28, 2 << 28, 1 << 28, 0);
    for (std::size_t row = gridCells; row-- > 0;) { // from below: a cell needs to know the next one
        const GridRow top{down[row].lanes, lastDown[row].lanes};
        const GridRow bottom{down[row + 1].lanes, lastDown[row + 1].lanes};
        const __m128i c0 = top.four;
        const __m128i d1 = _mm_sub_epi16(top.shifted(), c0);
        const __m128i d2 = _mm_sub_epi16(bottom.shifted(), c0);
        const __m128i d3 = _mm_sub_epi16(bottom.four, c0);
        const __m128i e1 = _mm_add_epi16(d1, eight), e2 = _mm_add_epi16(d2, eight);
        const __m128i e3 = _mm_add_epi16(d3, eight);
        // -7 to 7 are 1 to 15 now, and so is -8 a 0; beyond them a higher bit is set.
        beyond = _mm_or_si128(beyond, _mm_or_si128(_mm_or_si128(e1, e2), e3));
        __m128i key = _mm_or_si128(_mm_or_si128(e1, _mm_slli_epi16(e2, 4)), _mm_slli_epi16(e3, 8));
        key = _mm_or_si128(key, _mm_add_epi32(places, _mm_set1_epi32(static_cast<std::int32_t>(
                                                          static_cast<std::uint32_t>(row) << 30))));
        if (use == CellUse::last) {
            const __m128i drawsRight = _mm_srli_si128(hasArea(d2, d3), 4);
            key = _mm_or_si128(
                key, _mm_set1_epi32(static_cast<std::int32_t>(CellList::last) << cellListShift));
            key = _mm_or_si128(
                key, _mm_and_si128(drawsRight, _mm_set1_epi32(cellOnTheRight << cellListShift)));
            key =
                _mm_or_si128(key, _mm_and_si128(below, _mm_set1_epi32(cellBelow << cellListShift)));
            below = hasArea(d1, d2);
        } else if (use == CellUse::once) {
            key = _mm_or_si128(
                key, _mm_set1_epi32(static_cast<std::int32_t>(CellList::once) << cellListShift));
        } else if (use == CellUse::mesh) {
            const __m128i odd = _mm_and_si128(_mm_madd_epi16(c0, one), _mm_set1_epi32(1));
            key = _mm_or_si128(
                key, _mm_slli_epi32(_mm_add_epi32(odd, _mm_set1_epi32(static_cast<std::int32_t>(
                                                           CellList::evenMesh))),
                                    12));
        }
        _mm_store_si128(reinterpret_cast<__m128i*>(cells.key.data() + 4 * row), key);
        _mm_store_si128(reinterpret_cast<__m128i*>(cells.corner.data() + 4 * row), c0);
        _mm_store_si128(reinterpret_cast<__m128i*>(cells.start.data() + 4 * row),
                        _mm_madd_epi16(c0, weights));
    }
    beyond = _mm_and_si128(beyond, _mm_set1_epi16(static_cast<std::int16_t>(0xFFF0)));
    return _mm_movemask_epi8(_mm_cmpeq_epi8(beyond, _mm_setzero_si128())) == 0xFFFF;
}

} // namespace facetor

#endif
