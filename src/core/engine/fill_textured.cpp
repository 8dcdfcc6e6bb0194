#include "engine/rasteriser.h"

#include "engine/gouraud_steps.h"
#include "engine/triangle_fill.h"

namespace facetor {

namespace {

/// What an unlit polygon's half and translucent texels are lit with.
constexpr int unlitLevel = maxLightLevel;

/// A texel through the blend mode and, but for replace and shadow, the colour-with-light rule.
template <PixelMode mode> void putTexel(const TexelLight& light, Rgb555 texel, Rgb555& d)
{
    if constexpr (mode == PixelMode::replace || mode == PixelMode::shadow)
        d = blended<mode>(d, texel);
    else
        d = light.lit(blended<mode>(d, texel));
}

struct TextureSource {
    static constexpr std::size_t coordinates = 2;
    std::array<float, 2> limit;
    const Rgb555* texels;
    std::int32_t width;
    const TexelLight& light;

    template <PixelMode mode> void pixel(const std::array<std::int32_t, 2>& at, Rgb555& d) const
    {
        const Rgb555 texel = texels[at[1] * width + at[0]];
        if ((texel & opaqueBit) != 0) putTexel<mode>(light, texel, d);
    }
};

struct GouraudTextureSource {
    static constexpr std::size_t coordinates = 4; // texture column and row, Gouraud column and row
    std::array<float, 4> limit;
    const Rgb555* texels;
    std::int32_t width;
    const TexelLight& light;
    GouraudSteps steps;

    template <PixelMode mode> void pixel(const std::array<std::int32_t, 4>& at, Rgb555& d) const
    {
        const Rgb555 texel = texels[at[1] * width + at[0]];
        if ((texel & opaqueBit) == 0) return;
        const auto stepped = static_cast<Rgb555>(steps.applied(texel, at[2], at[3]) | opaqueBit);
        putTexel<mode>(light, stepped, d);
    }
};

constexpr std::size_t gridPoints = 5; // on each side of the 4 x 4 cells
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

/// Coordinates of the grid points over `size` texels. A flipped axis runs backwards from the far
/// side, which truncates to the mirrored texel everywhere.
std::array<float, gridPoints> gridCoordinates(std::int32_t size, bool flipped)
{
    const std::int32_t quarter = size >> 2, half = size >> 1;
    const std::array<std::int32_t, gridPoints> whole{0, quarter, half, quarter + half, size - 1};
    std::array<float, gridPoints> coordinates;
    for (std::size_t i = 0; i < gridPoints; ++i) {
        const float forward = static_cast<float>(whole[i]) + coordinateBias;
        coordinates[i] = flipped ? static_cast<float>(size) - forward : forward;
    }
    return coordinates;
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

    FrameSurface& surface = engine.surface;
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

} // namespace

PixelMode texturePixelMode(std::uint32_t flags)
{
    const PixelMode mode = flatPixelMode(flags);
    return mode == PixelMode::replace && (flags & useLight) != 0 ? PixelMode::lit : mode;
}

int textureFlip(std::uint32_t flags)
{
    return static_cast<int>(flags & (flipHorizontal | flipVertical));
}

void fillTextured(Engine& engine, const ScreenQuad& quad, const TextureSlot& texture, int level,
                  std::uint32_t flags)
{
    const TexelLight& light = texelLight(engine.texelLights, engine.settings.light, level);
    const TextureSource source{
        {static_cast<float>(texture.width), static_cast<float>(texture.height)},
        texture.pixels,
        texture.width,
        light};
    fillCells(engine, quad, source, texturePixelMode(flags), flags);
}

void fillTexturedGouraud(Engine& engine, const ScreenQuad& quad, const TextureSlot& texture,
                         const std::array<Rgb555, 4>& gouraud, std::uint32_t flags)
{
    const TexelLight& light = texelLight(engine.texelLights, engine.settings.light, unlitLevel);
    const GouraudTextureSource source{
        {static_cast<float>(texture.width), static_cast<float>(texture.height),
         static_cast<float>(gouraudTextureSize), static_cast<float>(gouraudTextureSize)},
        texture.pixels,
        texture.width,
        light,
        gouraudSteps(engine.settings.light, gouraud, flags)};
    // The four colours already carry the light, so the texel is not lit a second time.
    fillCells(engine, quad, source, flatPixelMode(flags), flags);
}

} // namespace facetor
