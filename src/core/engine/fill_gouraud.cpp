#include "engine/rasteriser.h"

#include "engine/gouraud_steps.h"
#include "engine/triangle_fill.h"

#if defined(__SSE2__) && !defined(FACETOR_PLAIN_FILLS)
#include <emmintrin.h>
#endif

namespace facetor {

namespace {

constexpr std::array<float, 2> gridLimit{static_cast<float>(gouraudTextureSize),
                                         static_cast<float>(gouraudTextureSize)};

/// Polygons that cover at least so many pixels have the whole grid built for them; it has 1024
/// texels, and a smaller polygon asks for fewer.
constexpr std::int64_t largePolygon = 2048;

/// The grid's texels, computed for the pixels that ask.
class GouraudFormula {
public:
    static constexpr std::size_t coordinates = 2;
    std::array<float, 2> limit = gridLimit;

    GouraudFormula(Rgb555 colour, const GouraudSteps& steps);

    template <PixelMode mode> void pixel(const std::array<std::int32_t, 2>& at, Rgb555& d) const
    {
        if constexpr (mode == PixelMode::shadow)
            d = halved(d);
        else
            d = blended<mode>(d, texel(at[0], at[1]));
    }

private:
    Rgb555 texel(std::int32_t column, std::int32_t row) const;

#if defined(__SSE2__) && !defined(FACETOR_PLAIN_FILLS)
    __m128i top_, bottom_; ///< pairs of the corners' components: 0 and 1, 3 and 2, for each channel
    __m128i base_;         ///< the colour's components, one to a lane
#else
    Rgb555 colour_;
    GouraudSteps steps_;
#endif
};

#if defined(__SSE2__) && !defined(FACETOR_PLAIN_FILLS)

/// A lane for each channel, the fourth unused.
__m128i channelLanes(std::int32_t red, std::int32_t green, std::int32_t blue)
{
    return _mm_set_epi32(0, blue, green, red);
}

GouraudFormula::GouraudFormula(Rgb555 colour, const GouraudSteps& steps)
    : base_(channelLanes(redOf(colour), greenOf(colour), blueOf(colour)))
{
    const auto pair = [&](std::size_t channel, std::size_t first, std::size_t second) {
        const auto& component = steps.component[channel];
        return component[first] | component[second] << 16; // 0-31 each: two 16-bit lanes
    };
    top_ = channelLanes(pair(0, 0, 1), pair(1, 0, 1), pair(2, 0, 1));
    bottom_ = channelLanes(pair(0, 3, 2), pair(1, 3, 2), pair(2, 3, 2));
}

/// GouraudSteps::applied() with the three channels side by side.
inline Rgb555 GouraudFormula::texel(std::int32_t column, std::int32_t row) const
{
    const std::int32_t columnPair = (32 - column) | column << 16; // weights of the two columns
    const __m128i topWeights = _mm_set1_epi32(columnPair * (32 - row));
    const __m128i bottomWeights = _mm_set1_epi32(columnPair * row);
    __m128i step =
        _mm_add_epi32(_mm_madd_epi16(top_, topWeights), _mm_madd_epi16(bottom_, bottomWeights));
    step = _mm_sub_epi32(step, _mm_set1_epi32(16384));
    // Division by 1024 toward zero.
    step = _mm_srai_epi32(_mm_add_epi32(step, _mm_srli_epi32(_mm_srai_epi32(step, 31), 22)), 10);
    const __m128i component = _mm_packs_epi32(_mm_add_epi32(base_, step), _mm_setzero_si128());
    const __m128i clamped =
        _mm_min_epi16(_mm_max_epi16(component, _mm_setzero_si128()), _mm_set1_epi16(31));
    const __m128i places = _mm_set_epi16(0, 0, 0, 0, 0, 1, 1 << 5, 1 << 10);
    const __m128i placed = _mm_madd_epi16(clamped, places); // red and green, blue
    return static_cast<Rgb555>(_mm_cvtsi128_si32(placed) |
                               _mm_cvtsi128_si32(_mm_srli_si128(placed, 4)));
}

#else

GouraudFormula::GouraudFormula(Rgb555 colour, const GouraudSteps& steps)
    : colour_(colour), steps_(steps)
{
}

inline Rgb555 GouraudFormula::texel(std::int32_t column, std::int32_t row) const
{
    return steps_.applied(colour_, column, row);
}

#endif

/// The grid as a texture.
struct GouraudGrid {
    static constexpr std::size_t coordinates = 2;
    std::array<float, 2> limit = gridLimit;
    const Rgb555* texels;

    template <PixelMode mode> void pixel(const std::array<std::int32_t, 2>& at, Rgb555& d) const
    {
        d = blended<mode>(d, texels[at[1] * static_cast<std::int32_t>(gouraudTextureSize) + at[0]]);
    }
};

template <typename Source>
void fillHalves(Engine& engine, const ScreenQuad& quad, const Source& source, std::uint32_t flags)
{
    constexpr float near = coordinateBias, far = gouraudTextureSize - 1 + coordinateBias;
    FrameSurface& surface = engine.surface;
    const SpanEnds ends = spanEndsOf(engine);
    dispatchPixelMode(
        flatPixelMode(flags), (flags & meshMode) != 0, [&]<PixelMode mode, bool mesh>() {
            fillTriangle<mode, mesh>(
                surface, ends,
                {{{quad[0], {near, near}}, {quad[1], {far, near}}, {quad[2], {far, far}}}}, source);
            fillTriangle<mode, mesh>(
                surface, ends,
                {{{quad[0], {near, near}}, {quad[2], {far, far}}, {quad[3], {near, far}}}}, source);
        });
}

} // namespace

void fillGouraud(Engine& engine, const ScreenQuad& quad, Rgb555 colour,
                 const std::array<Rgb555, 4>& gouraud, std::uint32_t flags)
{
    const ScreenQuad points = toSurfaceRows(quad, engine.surface.height);
    const GouraudSteps steps = gouraudSteps(engine.settings.light, gouraud, flags);
    const auto [left, right] = std::minmax({quad[0].x, quad[1].x, quad[2].x, quad[3].x});
    const auto [top, bottom] = std::minmax({quad[0].y, quad[1].y, quad[2].y, quad[3].y});
    if (std::int64_t{right - left} * (bottom - top) < largePolygon) {
        fillHalves(engine, points, GouraudFormula(colour, steps), flags);
        return;
    }
    constexpr auto size = static_cast<std::int32_t>(gouraudTextureSize);
    Rgb555* texel = engine.gouraudTexture.data();
    for (std::int32_t row = 0; row < size; ++row)
        for (std::int32_t column = 0; column < size; ++column)
            *texel++ = steps.applied(colour, column, row);
    fillHalves(engine, points, GouraudGrid{.texels = engine.gouraudTexture.data()}, flags);
}

} // namespace facetor
