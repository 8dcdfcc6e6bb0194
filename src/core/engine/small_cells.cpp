#include "engine/small_cells.h"

#include "engine/cell_grid.h"
#include "engine/cell_rows.h"
#include "engine/colour_lanes.h"
#include "engine/rasteriser.h"
#include "engine/texel_shading.h"

#include <algorithm>
#include <cstring>

namespace facetor {

#if FACETOR_VECTOR_FILLS

namespace {

/// On a narrower surface a pixel of a cell, at most 8 columns from its corner 0, could not be told
/// from one in another row.
constexpr std::int32_t leastClippedWidth = 32;

/// The pixels of several cells are put one after the other before they are drawn, since the ends of
/// a loop for each cell could not be foreseen. Drawn once there are so many.
constexpr std::size_t longRun = 512;
constexpr std::size_t runRoom = longRun + CellShapes::longestList + CellShapes::readBeyond;

struct PixelRun {
    std::array<CellPixel, runRoom> pixel; ///< CellPixel::at counts from the polygon's corner 0
    std::array<CellGouraud, runRoom> gouraud;
};

/// Adds a cell's pixels behind the first `count`; `start`: its corner 0 from that of the polygon,
/// on the surface. Returns the new count.
template <bool withGouraud>
std::size_t addCell(PixelRun& run, std::size_t count, const CellShapes& shapes,
                    const CellPixels& list, std::int32_t start)
{
    const CellPixel* const from = shapes.pixels() + list.first;
    const __m128i moved = _mm_set1_epi32(start & 0xFFFF); // to CellPixel::at
    CellPixel* const to = run.pixel.data() + count;
    CellGouraud* const gouraud = run.gouraud.data() + count;
    const auto copyTwelve = [&](std::size_t first) {
        for (std::size_t i = first; i < first + 12; i += 4) {
            const auto* four = reinterpret_cast<const __m128i*>(from + i);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i),
                             _mm_add_epi16(_mm_loadu_si128(four), moved));
        }
        if constexpr (withGouraud)
            std::memcpy(gouraud + first, shapes.gouraud() + list.first + first, 24);
    };
    copyTwelve(0); // enough for most
    for (std::size_t i = 12; i < list.count; i += 12) copyTwelve(i);
    return count + list.count;
}

/// addCell() without the pixels outside the surface. `corner`: the cell's corner 0.
std::size_t addClippedCell(PixelRun& run, std::size_t count, const CellShapes& shapes,
                           const CellPixels& list, std::int32_t start, std::uint32_t corner,
                           const PixelRows& surface)
{
    const CellPixel* const pixel = shapes.pixels() + list.first;
    const std::int32_t x = static_cast<std::int16_t>(corner);
    const std::int32_t y = static_cast<std::int16_t>(corner >> 16);
    constexpr std::int32_t above = 16; // rows, to divide what is not negative
    for (std::size_t i = 0; i < list.count; ++i) {
        const std::int32_t at = pixel[i].at;
        const std::int32_t row =
            (at + above * surface.width + surface.width / 2) / surface.width - above;
        const std::int32_t column = at - row * surface.width;
        if (x + column < 0 || x + column >= surface.width || y + row < 0 ||
            y + row >= surface.height)
            continue;
        run.pixel[count] = {static_cast<std::int16_t>(at + start), pixel[i].texel};
        run.gouraud[count] = shapes.gouraud()[list.first + i];
        ++count;
    }
    return count;
}

/// Opaque texels and where they go, in drawing order.
struct TexelRun {
    std::array<Rgb555, runRoom> texel;
    std::array<std::int16_t, runRoom> at;
    std::array<CellGouraud, runRoom> gouraud;
};

/// The texels of a run of pixels. Without `opaque` those that are transparent are left out, by
/// writing the next over them: where they are cannot be foreseen by a branch. Returns the count.
template <bool opaque, bool withGouraud>
std::size_t fetchTexels(TexelRun& to, const PixelRun& run, std::size_t pixelCount,
                        const Rgb555* texels)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < pixelCount; ++i) {
        const Rgb555 texel = texels[run.pixel[i].texel];
        to.texel[count] = texel;
        to.at[count] = run.pixel[i].at;
        if constexpr (withGouraud) to.gouraud[count] = run.gouraud[i];
        count += opaque ? 1u : static_cast<unsigned>(texel >> 15);
    }
    return count;
}

/// Adds the Gouraud steps to the texels.
void addGouraud(TexelRun& run, std::size_t count, const GouraudLanes& steps)
{
    const __m128i low = _mm_set1_epi16(0xFF);
    const __m128i opaque = _mm_set1_epi16(static_cast<std::int16_t>(opaqueBit));
    for (std::size_t i = 0; i < count; i += 8) {
        const __m128i grid =
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(run.gouraud.data() + i));
        Rgb555* const eight = run.texel.data() + i;
        const __m128i stepped =
            steps.applied(ColourLanes::of(loadPixels(eight)), {_mm_and_si128(grid, low)},
                          {_mm_srli_epi16(grid, 8)});
        storePixels(eight, _mm_or_si128(stepped, opaque));
    }
}

template <PixelMode mode, bool opaque, bool withGouraud>
void putPixels(Engine& engine, const PixelRun& run, std::size_t pixelCount, std::ptrdiff_t start,
               const CellTexture& texture)
{
    Rgb555* const pixels = engine.surface.pixels();
    const Rgb555* const texels = texture.slot.pixels;
    const Light& light = engine.settings.light;
    if constexpr (mode == PixelMode::replace && opaque && !withGouraud) {
        for (std::size_t i = 0; i < pixelCount; ++i)
            pixels[start + run.pixel[i].at] = texels[run.pixel[i].texel];
        return;
    }
    const LightLanes lanes(light, texture.level);
    TexelRun put;
    const std::size_t count = fetchTexels<opaque, withGouraud>(put, run, pixelCount, texels);
    if constexpr (withGouraud) addGouraud(put, count, GouraudLanes(*texture.gouraud));
    if constexpr (mode == PixelMode::half || mode == PixelMode::lit) {
        for (std::size_t i = 0; i < count; i += 8) {
            Rgb555* const eight = put.texel.data() + i;
            const __m128i texel = loadPixels(eight);
            storePixels(eight, lanes.lit(blendedPixels<mode>(texel, texel)));
        }
    }
    if constexpr (readsSurface(mode)) {
        const TexelLight& table = texelLight(engine.texelLights, light, texture.level);
        for (std::size_t i = 0; i < count; ++i) {
            Rgb555& d = pixels[start + put.at[i]];
            d = shadedTexel<mode>(table, put.texel[i], d);
        }
    } else {
        for (std::size_t i = 0; i < count; ++i) pixels[start + put.at[i]] = put.texel[i];
    }
}

/// All cells of a polygon; `clipped`: some may reach beyond the surface.
template <PixelMode mode, bool opaque, bool withGouraud>
void putCells(Engine& engine, const CellRows& cells, bool clipped, const CellTexture& texture)
{
    const PixelRows surface = engine.surface.rows();
    const CellShapes& shapes = engine.cellShapes;
    PixelRun run;
    std::size_t count = 0;
    for (std::size_t cell = 0; cell < cells.key.size(); ++cell) {
        const CellPixels& list = cells.list[cell];
        const std::int32_t start = cells.start[cell] - cells.start[0];
        count = clipped
                    ? addClippedCell(run, count, shapes, list, start, cells.corner[cell], surface)
                    : addCell<withGouraud>(run, count, shapes, list, start);
        if (count < longRun) continue;
        putPixels<mode, opaque, withGouraud>(engine, run, count, cells.start[0], texture);
        count = 0;
    }
    putPixels<mode, opaque, withGouraud>(engine, run, count, cells.start[0], texture);
}

} // namespace

bool fillSmallCells(Engine& engine, const ScreenQuad& points, const CellTexture& texture,
                    PixelMode mode, std::uint32_t flags)
{
    const TextureSlot& slot = texture.slot;
    const auto [left, right] = std::minmax({points[0].x, points[1].x, points[2].x, points[3].x});
    const auto [top, bottom] = std::minmax({points[0].y, points[1].y, points[2].y, points[3].y});
    const std::int32_t width = engine.surface.width, height = engine.surface.height;
    constexpr std::int32_t largest = static_cast<std::int32_t>(gridCells) * mostCorner;
    if (right - left > largest || bottom - top > largest) return false;
    if (right < 0 || bottom < 0 || left >= width || top >= height) return true;
    const bool clipped = left < 0 || top < 0 || right >= width || bottom >= height;
    if (clipped && width < leastClippedWidth) return false;
    if (!engine.cellShapes.select(width, slot, textureFlip(flags))) return false;

    const auto pixels = static_cast<std::uint32_t>((right - left + 1) * (bottom - top + 1));
    const bool opaque = engine.opacity.isOpaque(slot, pixels);
    const CellUse use = (flags & meshMode) != 0 ? CellUse::mesh
                        : readsSurface(mode)    ? CellUse::all
                        : opaque                ? CellUse::last
                                                : CellUse::once;
    CellRows cells;
    if (!findCells(cells, points, width, use)) return false;
    for (std::size_t cell = 0; cell < cells.key.size(); ++cell)
        if (!engine.cellShapes.find(cells.list[cell], cells.key[cell])) return false;
    dispatchPixelMode(
        mode, texture.gouraud != nullptr, [&]<PixelMode fixedMode, bool withGouraud>() {
            if (opaque)
                putCells<fixedMode, true, withGouraud>(engine, cells, clipped, texture);
            else
                putCells<fixedMode, false, withGouraud>(engine, cells, clipped, texture);
        });
    return true;
}

#else

bool fillSmallCells(Engine&, const ScreenQuad&, const CellTexture&, PixelMode, std::uint32_t)
{
    return false;
}

#endif

} // namespace facetor
