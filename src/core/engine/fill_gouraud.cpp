#include "engine/rasteriser.h"

#include "engine/colour_lanes.h"
#include "engine/gouraud_steps.h"
#include "engine/texel_fetch.h"
#include "engine/triangle_fill.h"

#include <algorithm>

namespace facetor {

namespace {

constexpr std::array<float, 2> gridLimit{static_cast<float>(gouraudTextureSize),
                                         static_cast<float>(gouraudTextureSize)};

/// Polygons whose bounding rectangle has at least so many pixels have the whole grid built for
/// them; it has 1024 texels, and a smaller polygon asks for fewer.
constexpr std::int64_t largePolygon = 2048;

/// The grid's texels, computed for the pixels that ask.
template <FillPath fillPath> struct GouraudFormula {
    static constexpr std::size_t coordinates = 2;
    static constexpr FillPath path = fillPath;
    std::array<float, 2> limit = gridLimit;
    Rgb555 colour;
    GouraudSteps steps;
#if FACETOR_VECTOR_FILLS
    ColourLanes colourLanes = ColourLanes::of(colour);
    GouraudLanes stepLanes = GouraudLanes(steps);

    template <PixelMode mode, typename Lanes>
    __m128i pixels(const std::array<Lanes, 2>& at, __m128i d) const
    {
        return blendedPixels<mode>(
            d, stepLanes.applied(colourLanes, wholeLanes(at[0]), wholeLanes(at[1])));
    }
#endif

    template <PixelMode mode> void pixel(const std::array<std::int32_t, 2>& at, Rgb555& d) const
    {
        d = blended<mode>(d, steps.applied(colour, at[0], at[1]));
    }
};

/// The grid as a texture.
template <FillPath fillPath> struct GouraudGrid {
    static constexpr std::size_t coordinates = 2;
    static constexpr FillPath path = fillPath;
    static constexpr auto size = static_cast<std::int32_t>(gouraudTextureSize);
    std::array<float, 2> limit = gridLimit;
    const Rgb555* texels;
#if FACETOR_VECTOR_FILLS
    TexelFetch fetch = TexelFetch(texels, size);

    template <PixelMode mode, typename Lanes>
    __m128i pixels(const std::array<Lanes, 2>& at, __m128i d) const
    {
        return blendedPixels<mode>(d, fetch(at[0], at[1]));
    }
#endif

    template <PixelMode mode> void pixel(const std::array<std::int32_t, 2>& at, Rgb555& d) const
    {
        d = blended<mode>(d, texels[at[1] * size + at[0]]);
    }
};

template <FillPath path> void buildGrid(Rgb555* texel, Rgb555 colour, const GouraudSteps& steps)
{
    constexpr auto size = static_cast<std::int32_t>(gouraudTextureSize);
#if FACETOR_VECTOR_FILLS
    if constexpr (path == FillPath::vector) {
        const GouraudLanes stepLanes(steps);
        const ColourLanes colourLanes = ColourLanes::of(colour);
        for (std::int32_t row = 0; row < size; ++row) {
            const __m128i rows = _mm_set1_epi16(static_cast<std::int16_t>(row));
            __m128i columns = _mm_set_epi16(7, 6, 5, 4, 3, 2, 1, 0);
            for (std::int32_t column = 0; column < size; column += 8, texel += 8) {
                storePixels(texel, stepLanes.applied(colourLanes, {columns}, {rows}));
                columns = _mm_add_epi16(columns, _mm_set1_epi16(8));
            }
        }
        return;
    }
#endif
    for (std::int32_t row = 0; row < size; ++row)
        for (std::int32_t column = 0; column < size; ++column)
            *texel++ = steps.applied(colour, column, row);
}

template <typename Source>
void fillHalves(Engine& engine, const ScreenQuad& quad, const Source& source, std::uint32_t flags)
{
    constexpr float near = coordinateBias, far = gouraudTextureSize - 1 + coordinateBias;
    const PixelRows surface = engine.surface.rows();
    const SpanEnds ends = spanEndsOf(engine);
    dispatchPixelMode(
        flatPixelMode(engine.settings, flags), (flags & meshMode) != 0,
        [&]<PixelMode mode, bool mesh>() {
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
    const bool large = std::int64_t{right - left} * (bottom - top) >= largePolygon;
    dispatchFillPath(engine.settings.fillPath, [&]<FillPath path>() {
        if (!large) {
            fillHalves(engine, points, GouraudFormula<path>{.colour = colour, .steps = steps},
                       flags);
            return;
        }
        buildGrid<path>(engine.gouraudTexture.data(), colour, steps);
        fillHalves(engine, points, GouraudGrid<path>{.texels = engine.gouraudTexture.data()},
                   flags);
    });
}

} // namespace facetor
