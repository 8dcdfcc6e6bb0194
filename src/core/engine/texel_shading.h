#pragma once

#include "engine/colour_lanes.h"
#include "engine/light.h"
#include "engine/pixel_operation.h"

namespace facetor {

// What textured fills do with an opaque texel, for one pixel and for eight.

template <PixelMode mode>
inline constexpr bool isLitMode =
    mode == PixelMode::half || mode == PixelMode::translucent || mode == PixelMode::lit;

/// What a surface pixel becomes under an opaque texel: the texel through the blend mode and, but
/// for replace, shadow and count, the colour-with-light rule.
template <PixelMode mode> Rgb555 shadedTexel(const TexelLight& light, Rgb555 texel, Rgb555 d)
{
    const Rgb555 result = blended<mode>(d, texel);
    if constexpr (isLitMode<mode>) return light.lit(result);
    return result;
}

#if FACETOR_VECTOR_FILLS

/// shadedTexel() of eight, where they are opaque.
template <PixelMode mode> __m128i putTexels(const LightLanes& light, __m128i texels, __m128i d)
{
    __m128i result = blendedPixels<mode>(d, texels);
    if constexpr (isLitMode<mode>) result = light.lit(result);
    return select(_mm_srai_epi16(texels, 15), result, d);
}

#endif

} // namespace facetor
