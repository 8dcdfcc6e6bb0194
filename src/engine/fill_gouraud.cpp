#include "engine/rasteriser.h"

#include "engine/gouraud_steps.h"
#include "engine/triangle_fill.h"

namespace facetor {

namespace {

constexpr std::array<float, 2> gridLimit{static_cast<float>(gouraudTextureSize),
                                         static_cast<float>(gouraudTextureSize)};

/// Polygons that cover at least so many pixels have the whole grid built for them; it has 1024
/// texels, and a smaller polygon asks for fewer.
constexpr std::int64_t largePolygon = 2048;

/// The grid's texels, computed for the pixels that ask.
struct GouraudFormula {
    static constexpr std::size_t coordinates = 2;
    std::array<float, 2> limit = gridLimit;
    Rgb555 colour;
    GouraudSteps steps;

    template <PixelMode mode> void pixel(const std::array<std::int32_t, 2>& at, Rgb555& d) const
    {
        if constexpr (mode == PixelMode::shadow)
            d = halved(d);
        else
            d = blended<mode>(d, steps.applied(colour, at[0], at[1]));
    }
};

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
    FrameSurface& surface = engine.surface;
    const SpanEnds ends = spanEndsOf(engine);
    dispatchPixelMode(
        flatPixelMode(flags), (flags & meshMode) != 0, [&]<PixelMode mode, bool mesh>() {
            fillTriangle<mode, mesh>(surface, ends,
                                     {{{quad[0], {0, 0}}, {quad[1], {31, 0}}, {quad[2], {31, 31}}}},
                                     source);
            fillTriangle<mode, mesh>(surface, ends,
                                     {{{quad[0], {0, 0}}, {quad[2], {31, 31}}, {quad[3], {0, 31}}}},
                                     source);
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
        fillHalves(engine, points, GouraudFormula{.colour = colour, .steps = steps}, flags);
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
