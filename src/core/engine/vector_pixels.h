#pragma once

#include "engine/fill_path.h"

#if FACETOR_VECTOR_FILLS

#include "base/colour.h"

#include <array>
#include <cstdint>
#include <emmintrin.h>

namespace facetor {

// Eight pixels side by side, each in a 16-bit lane, and eight coordinates.

inline __m128i loadPixels(const Rgb555* from)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

inline void storePixels(Rgb555* to, __m128i pixels)
{
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), pixels);
}

/// `chosen` where the mask's lane is all ones, `other` where it is zero.
inline __m128i select(__m128i mask, __m128i chosen, __m128i other)
{
    return _mm_xor_si128(other, _mm_and_si128(_mm_xor_si128(other, chosen), mask));
}

/// All ones in the first `count` of eight lanes; needs 0 to 8.
inline __m128i firstLanes(std::int32_t count)
{
    alignas(16) static constexpr std::array<std::int16_t, 16> lanes{-1, -1, -1, -1, -1, -1, -1, -1};
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(lanes.data() + 8 - count));
}

/// Eight fixed-point coordinates: 32-bit lanes.
struct FixedLanes {
    __m128i low, high; ///< pixels 0-3, pixels 4-7
};

/// Eight fixed-point coordinates along a span, from the first pixel's: 32-bit lanes.
struct Ramp {
    __m128i low, high, eight; ///< pixels 0-3, pixels 4-7, and what leads to the next eight

    explicit Ramp(std::uint32_t step)
        : low(_mm_set_epi32(static_cast<std::int32_t>(3 * step),
                            static_cast<std::int32_t>(2 * step), static_cast<std::int32_t>(step),
                            0)),
          high(_mm_add_epi32(low, _mm_set1_epi32(static_cast<std::int32_t>(4 * step)))),
          eight(_mm_set1_epi32(static_cast<std::int32_t>(8 * step)))
    {
    }
};

/// The whole parts of eight coordinates, in 16-bit lanes.
struct WholeLanes {
    __m128i lanes;
};

inline WholeLanes wholeLanes(const FixedLanes& fixed)
{
    return {_mm_packs_epi32(_mm_srai_epi32(fixed.low, 16), _mm_srai_epi32(fixed.high, 16))};
}

inline WholeLanes wholeLanes(const WholeLanes& whole)
{
    return whole;
}

} // namespace facetor

#endif
