#include "engine/rasteriser.h"

#include "engine/cell_grid.h"
#include "engine/colour_lanes.h"
#include "engine/gouraud_steps.h"
#include "engine/small_cells.h"
#include "engine/texel_fetch.h"
#include "engine/texel_shading.h"
#include "engine/triangle_fill.h"

#include <algorithm>

namespace facetor {

namespace {

/// What an unlit polygon's half and translucent texels are lit with.
constexpr int unlitLevel = maxLightLevel;

/// A polygon's texture and what its texels are lit with.
template <FillPath fillPath> struct TextureSource {
    static constexpr std::size_t coordinates = 2;
    static constexpr FillPath path = fillPath;
    std::array<float, 2> limit;
    const Rgb555* texels;
    std::int32_t width;
    const TexelLight& light;
    /// What replace keeps of a texel: all of it, or without the opacity mark what a litCopy() has.
    Rgb555 kept = 0xFFFF;
#if FACETOR_VECTOR_FILLS
    LightLanes lightLanes;
    TexelFetch fetch = TexelFetch(texels, width);
    __m128i keptLanes = _mm_set1_epi16(static_cast<std::int16_t>(kept));

    template <PixelMode mode, typename Lanes>
    __m128i pixels(const std::array<Lanes, 2>& at, __m128i d) const
    {
        const __m128i texel = fetch(at[0], at[1]);
        if constexpr (mode == PixelMode::replace)
            return select(_mm_srai_epi16(texel, 15), _mm_and_si128(texel, keptLanes), d);
        return putTexels<mode>(lightLanes, texel, d);
    }
#endif

    template <PixelMode mode> void pixel(const std::array<std::int32_t, 2>& at, Rgb555& d) const
    {
        const Rgb555 texel = texels[at[1] * width + at[0]];
        if ((texel & opaqueBit) == 0) return;
        d = shadedTexel<mode>(light, texel, d);
        if constexpr (mode == PixelMode::replace) d &= kept;
    }
};

/// The same with a Gouraud step added to each texel.
template <FillPath fillPath> struct GouraudTextureSource {
    static constexpr std::size_t coordinates = 4; // texture column and row, Gouraud column and row
    static constexpr FillPath path = fillPath;
    std::array<float, 4> limit;
    const Rgb555* texels;
    std::int32_t width;
    const TexelLight& light;
    GouraudSteps steps;
#if FACETOR_VECTOR_FILLS
    LightLanes lightLanes;
    TexelFetch fetch = TexelFetch(texels, width);
    GouraudLanes stepLanes = GouraudLanes(steps);

    template <PixelMode mode, typename Lanes>
    __m128i pixels(const std::array<Lanes, 4>& at, __m128i d) const
    {
        const __m128i texel = fetch(at[0], at[1]);
        const __m128i stepped =
            stepLanes.applied(ColourLanes::of(texel), wholeLanes(at[2]), wholeLanes(at[3]));
        const __m128i opaque = _mm_set1_epi16(static_cast<std::int16_t>(opaqueBit));
        return putTexels<mode>(lightLanes, _mm_or_si128(stepped, _mm_and_si128(texel, opaque)), d);
    }
#endif

    template <PixelMode mode> void pixel(const std::array<std::int32_t, 4>& at, Rgb555& d) const
    {
        const Rgb555 texel = texels[at[1] * width + at[0]];
        if ((texel & opaqueBit) == 0) return;
        const auto stepped = static_cast<Rgb555>(steps.applied(texel, at[2], at[3]) | opaqueBit);
        d = shadedTexel<mode>(light, stepped, d);
    }
};

using Line = std::array<ScreenPoint, gridPoints>;

ScreenPoint middle(const ScreenPoint& a, const ScreenPoint& b)
{
    return {(a.x + b.x) >> 1, (a.y + b.y) >> 1};
}

/// From a to b by repeated halving.
Line subdivided(const ScreenPoint& a, const ScreenPoint& b)
{
    const ScreenPoint half = middle(a, b);
    return {a, middle(a, half), half, middle(half, b), b};
}

/// Draws the 4 x 4 cells, two triangles each. Source::coordinates of 4 lays the Gouraud grid over
/// the same cells. Merging cells would be faster but shift samples by up to two pixels: the grid
/// points are whole pixels.
template <typename Source>
void fillCells(Engine& engine, const ScreenQuad& quad, const Source& source, PixelMode mode,
               std::uint32_t flags)
{
    const ScreenQuad points = toSurfaceRows(quad, engine.surface.height);
    const Line top = subdivided(points[0], points[1]), bottom = subdivided(points[3], points[2]);
    std::array<Line, gridPoints> column; // [across][down]
    for (std::size_t i = 0; i < gridPoints; ++i) column[i] = subdivided(top[i], bottom[i]);

    constexpr std::size_t coordinates = Source::coordinates;
    std::array<std::array<float, gridPoints>, coordinates> coordinate;
    for (std::size_t c = 0; c < coordinates; ++c)
        coordinate[c] = gridCoordinates(static_cast<std::int32_t>(source.limit[c]),
                                        c < 2 && (textureFlip(flags) >> c & 1) != 0);
    const auto cornerAt = [&](std::size_t across, std::size_t down) {
        TriangleCorner<coordinates> corner{column[across][down], {}};
        for (std::size_t c = 0; c < coordinates; ++c)
            corner.coordinate[c] = coordinate[c][c % 2 == 0 ? across : down];
        return corner;
    };

    const PixelRows surface = engine.surface.rows();
    const SpanEnds ends = spanEndsOf(engine);
    dispatchPixelMode(mode, (flags & meshMode) != 0, [&]<PixelMode fixedMode, bool mesh>() {
        for (std::size_t down = 0; down + 1 < gridPoints; ++down)
            for (std::size_t across = 0; across + 1 < gridPoints; ++across) {
                const auto c0 = cornerAt(across, down), c1 = cornerAt(across + 1, down);
                const auto c2 = cornerAt(across + 1, down + 1), c3 = cornerAt(across, down + 1);
                fillTriangle<fixedMode, mesh>(surface, ends, {c0, c1, c2}, source);
                fillTriangle<fixedMode, mesh>(surface, ends, {c0, c2, c3}, source);
            }
    });
}

#if FACETOR_VECTOR_FILLS

/// A texture in the light of a polygon, in the engine's work texture: its texels as the modes lit
/// and half would draw them. Lit while they are drawn, each would be lit as often as it is drawn.
TextureSlot litCopy(Engine& engine, const TextureSlot& texture, PixelMode mode, int level)
{
    const LightLanes light(engine.settings.light, level);
    const __m128i opaque = _mm_set1_epi16(static_cast<std::int16_t>(opaqueBit));
    Rgb555* const to = engine.litTexels.data();
    const std::size_t count = std::size_t{texture.width} * texture.height;
    const auto putEight = [&](Rgb555* eight, const Rgb555* from) {
        const __m128i texels = loadPixels(from);
        const __m128i lit = light.lit(mode == PixelMode::half ? halvedPixels(texels) : texels);
        storePixels(eight, _mm_or_si128(lit, _mm_and_si128(texels, opaque)));
    };
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) putEight(to + i, texture.pixels + i);
    if (i < count) {
        std::array<Rgb555, 8> rest{};
        std::copy(texture.pixels + i, texture.pixels + count, rest.begin());
        putEight(to + i, rest.data());
    }
    return {texture.width, texture.height, to};
}

/// Whether a polygon has enough pixels for a litCopy() to pay: at least two for each texel of its
/// bounding rectangle, of which it fills half or more.
bool litCopyPays(const Engine& engine, const ScreenQuad& quad, const TextureSlot& texture)
{
    const std::int64_t texels = std::int64_t{texture.width} * texture.height;
    const auto [left, right] = std::minmax({quad[0].x, quad[1].x, quad[2].x, quad[3].x});
    const auto [top, bottom] = std::minmax({quad[0].y, quad[1].y, quad[2].y, quad[3].y});
    const std::int64_t width = std::min(right, engine.surface.width) - std::max(left, 0);
    const std::int64_t height = std::min(bottom, engine.surface.height) - std::max(top, 0);
    return texels <= static_cast<std::int64_t>(litTexelCapacity) && width > 0 && height > 0 &&
           width * height >= 2 * texels;
}

#endif

} // namespace

PixelMode texturePixelMode(const EngineSettings& settings, std::uint32_t flags)
{
    const PixelMode mode = flatPixelMode(settings, flags);
    return mode == PixelMode::replace && (flags & useLight) != 0 ? PixelMode::lit : mode;
}

int textureFlip(std::uint32_t flags)
{
    return static_cast<int>(flags & (flipHorizontal | flipVertical));
}

void fillTextured(Engine& engine, const ScreenQuad& quad, const TextureSlot& texture, int level,
                  std::uint32_t flags)
{
    PixelMode mode = texturePixelMode(engine.settings, flags);
    TextureSlot texels = texture;
    Rgb555 kept = 0xFFFF;
#if FACETOR_VECTOR_FILLS
    if (engine.settings.fillPath == FillPath::vector) {
        if (fillSmallCells(engine, toSurfaceRows(quad, engine.surface.height),
                           {texture, level, nullptr}, mode, flags))
            return;
        if ((mode == PixelMode::lit || mode == PixelMode::half) &&
            litCopyPays(engine, quad, texture)) {
            texels = litCopy(engine, texture, mode, level);
            kept = 0x7FFF;
            mode = PixelMode::replace;
        }
    }
#endif
    const Light& light = engine.settings.light;
    dispatchFillPath(engine.settings.fillPath, [&]<FillPath path>() {
        const TextureSource<path> source
        {
            .limit = {static_cast<float>(texels.width), static_cast<float>(texels.height)},
            .texels = texels.pixels, .width = texels.width,
            .light = texelLight(engine.texelLights, light, level), .kept = kept,
#if FACETOR_VECTOR_FILLS
            .lightLanes = LightLanes(light, level),
#endif
        };
        fillCells(engine, quad, source, mode, flags);
    });
}

void fillTexturedGouraud(Engine& engine, const ScreenQuad& quad, const TextureSlot& texture,
                         const std::array<Rgb555, 4>& gouraud, std::uint32_t flags)
{
    const Light& light = engine.settings.light;
    const GouraudSteps steps = gouraudSteps(light, gouraud, flags);
    // The four colours already carry the light, so the texel is not lit a second time.
    const PixelMode mode = flatPixelMode(engine.settings, flags);
    if (engine.settings.fillPath == FillPath::vector &&
        fillSmallCells(engine, toSurfaceRows(quad, engine.surface.height),
                       {texture, unlitLevel, &steps}, mode, flags))
        return;
    dispatchFillPath(engine.settings.fillPath, [&]<FillPath path>() {
        const GouraudTextureSource<path> source
        {
            .limit = {static_cast<float>(texture.width), static_cast<float>(texture.height),
                      static_cast<float>(gouraudTextureSize),
                      static_cast<float>(gouraudTextureSize)},
            .texels = texture.pixels, .width = texture.width,
            .light = texelLight(engine.texelLights, light, unlitLevel), .steps = steps,
#if FACETOR_VECTOR_FILLS
            .lightLanes = LightLanes(light, unlitLevel),
#endif
        };
        fillCells(engine, quad, source, mode, flags);
    });
}

} // namespace facetor
