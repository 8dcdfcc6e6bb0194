#pragma once

#include "engine/vector_pixels.h"

#if FACETOR_VECTOR_FILLS

#include <array>
#include <cstdint>
#include <emmintrin.h>

namespace facetor {

/// The texels of a picture that is `width` wide.
class TexelFetch {
public:
    /// Needs a width of at most 16384.
    TexelFetch(const Rgb555* texels, std::int32_t width)
        : texels_(texels), weights_(_mm_set1_epi32(width << 16 | 1))
    {
    }

    /// The texels at eight columns and rows, which must lie in the picture.
    __m128i operator()(const WholeLanes& column, const WholeLanes& row) const
    {
        return texels(_mm_madd_epi16(_mm_unpacklo_epi16(column.lanes, row.lanes), weights_),
                      _mm_madd_epi16(_mm_unpackhi_epi16(column.lanes, row.lanes), weights_));
    }

    __m128i operator()(const FixedLanes& column, const FixedLanes& row) const
    {
        const auto numbers = [&](__m128i u, __m128i v) {
            const __m128i whole = _mm_set1_epi32(static_cast<std::int32_t>(0xFFFF0000));
            return _mm_madd_epi16(_mm_or_si128(_mm_srli_epi32(u, 16), _mm_and_si128(v, whole)),
                                  weights_);
        };
        return texels(numbers(column.low, row.low), numbers(column.high, row.high));
    }

private:
    /// By their numbers, column + width row.
    __m128i texels(__m128i low, __m128i high) const
    {
        alignas(16) std::array<std::int32_t, 8> at;
        _mm_store_si128(reinterpret_cast<__m128i*>(at.data()), low);
        _mm_store_si128(reinterpret_cast<__m128i*>(at.data() + 4), high);
        const auto texel = [&](std::size_t i) {
            return texels_[static_cast<std::uint32_t>(at[i])];
        };
        __m128i eight = _mm_cvtsi32_si128(texel(0));
        eight = _mm_insert_epi16(eight, texel(1), 1);
        eight = _mm_insert_epi16(eight, texel(2), 2);
        eight = _mm_insert_epi16(eight, texel(3), 3);
        eight = _mm_insert_epi16(eight, texel(4), 4);
        eight = _mm_insert_epi16(eight, texel(5), 5);
        eight = _mm_insert_epi16(eight, texel(6), 6);
        return _mm_insert_epi16(eight, texel(7), 7);
    }

    const Rgb555* texels_;
    __m128i weights_;
};

} // namespace facetor

#endif
