#pragma once

#include "engine/vector_pixels.h"

#if FACETOR_VECTOR_FILLS

#include "engine/gouraud_steps.h"
#include "engine/light.h"
#include "engine/pixel_operation.h"

#include <cstddef>
#include <cstdint>
#include <emmintrin.h>

namespace facetor {

// The rules of blending, light and Gouraud shading for eight pixels. Each has a plain sister of the
// same meaning for one.

/// halved() of eight pixels.
inline __m128i halvedPixels(__m128i pixels)
{
    const __m128i mask = _mm_set1_epi16(static_cast<std::int16_t>(withoutLowBits));
    return _mm_srli_epi16(_mm_and_si128(pixels, mask), 1);
}

/// blended() of eight pixels.
template <PixelMode mode> __m128i blendedPixels(__m128i d, __m128i s)
{
    if constexpr (mode == PixelMode::shadow) return halvedPixels(d);
    if constexpr (mode == PixelMode::half) return halvedPixels(s);
    // No low bits are left to carry, so the halves' sum is the sum's half.
    if constexpr (mode == PixelMode::translucent)
        return _mm_add_epi16(halvedPixels(d), halvedPixels(s));
    if constexpr (mode == PixelMode::count) return _mm_add_epi16(d, _mm_set1_epi16(1));
    return s;
}

/// The components of eight colours: 0-31 in 16-bit lanes.
struct ColourLanes {
    __m128i red, green, blue;

    static ColourLanes of(__m128i colours)
    {
        const __m128i component = _mm_set1_epi16(31);
        return {_mm_and_si128(_mm_srli_epi16(colours, 10), component),
                _mm_and_si128(_mm_srli_epi16(colours, 5), component),
                _mm_and_si128(colours, component)};
    }

    static ColourLanes of(Rgb555 colour)
    {
        return of(_mm_set1_epi16(static_cast<std::int16_t>(colour)));
    }

    /// Components beyond 0-31 are clamped; bit 15 is clear.
    __m128i clamped() const
    {
        const auto clamp = [](__m128i component) {
            return _mm_min_epi16(_mm_max_epi16(component, _mm_setzero_si128()), _mm_set1_epi16(31));
        };
        return _mm_or_si128(
            _mm_or_si128(_mm_slli_epi16(clamp(red), 10), _mm_slli_epi16(clamp(green), 5)),
            clamp(blue));
    }
};

/// The colour-with-light rule for texels at one level: TexelLight::lit() without its table.
class LightLanes {
public:
    LightLanes(const Light& light, int level)
        : step_(_mm_set1_epi16(static_cast<std::int16_t>(level + texelLightIndex - 40)))
    {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            offset_[channel] = _mm_set1_epi16(light.offset[channel]);
            minimum_[channel] = _mm_set1_epi16(light.minimum[channel]);
        }
    }

    __m128i lit(__m128i texels) const
    {
        const ColourLanes colour = ColourLanes::of(texels);
        const auto component = [&](__m128i lane, std::size_t channel) {
            return _mm_add_epi16(
                _mm_max_epi16(_mm_sub_epi16(lane, offset_[channel]), minimum_[channel]), step_);
        };
        return ColourLanes{component(colour.red, 0), component(colour.green, 1),
                           component(colour.blue, 2)}
            .clamped();
    }

private:
    __m128i offset_[3], minimum_[3]; // std::array drops the vector type's alignment
    __m128i step_;
};

/// GouraudSteps::applied() for eight pixels. The sums stay within 16 bits, and products that leave
/// them come back: what is wanted of them is the rest modulo 2^16.
class GouraudLanes {
public:
    explicit GouraudLanes(const GouraudSteps& steps)
    {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const auto& g = steps.component[channel];
            const auto lanes = [](std::int32_t value) {
                return _mm_set1_epi16(static_cast<std::int16_t>(value));
            };
            start_[channel] = lanes(1024 * g[0] - 16384);
            perColumn_[channel] = lanes(32 * (g[1] - g[0]));
            perRow_[channel] = lanes(32 * (g[3] - g[0]));
            perBoth_[channel] = lanes(g[2] - g[3] - g[1] + g[0]);
        }
    }

    /// Columns and rows of the grid, 0-31.
    __m128i applied(const ColourLanes& colour, const WholeLanes& columns,
                    const WholeLanes& rows) const
    {
        const __m128i column = columns.lanes, row = rows.lanes;
        const auto component = [&](__m128i lane, std::size_t channel) {
            const __m128i down =
                _mm_add_epi16(_mm_mullo_epi16(perBoth_[channel], column), perRow_[channel]);
            const __m128i sum = _mm_add_epi16(
                _mm_add_epi16(_mm_mullo_epi16(perColumn_[channel], column), start_[channel]),
                _mm_mullo_epi16(down, row));
            // Division by 1024 toward zero.
            const __m128i toZero = _mm_srli_epi16(_mm_srai_epi16(sum, 15), 6);
            return _mm_add_epi16(lane, _mm_srai_epi16(_mm_add_epi16(sum, toZero), 10));
        };
        return ColourLanes{component(colour.red, 0), component(colour.green, 1),
                           component(colour.blue, 2)}
            .clamped();
    }

private:
    __m128i start_[3], perColumn_[3], perRow_[3], perBoth_[3];
};

} // namespace facetor

#endif
