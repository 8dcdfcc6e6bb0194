#include "engine/small_cells.h"

#include "engine/cell_grid.h"
#include "engine/rasteriser.h"
#include "engine/texel_shading.h"
#include "engine/vector_pixels.h"

#include <algorithm>
#include <cstring>

namespace facetor {

#if FACETOR_VECTOR_FILLS

namespace {

/// The cells of a polygon in drawing order: what each is looked up by, where its corner 0 lies on
/// the surface, which may be outside, and its pixels.
struct CellRows {
    alignas(16) std::array<std::uint32_t, gridCells * gridCells> key;
    alignas(16) std::array<std::int32_t, gridCells * gridCells> start;
    alignas(16) std::array<std::uint32_t, gridCells * gridCells> corner; ///< column, row << 16
    std::array<CellPixels, gridCells * gridCells> list;
};

/// On a narrower surface a pixel of a cell, at most 8 columns from its corner 0, could not be told
/// from one in another row.
constexpr std::int32_t leastClippedWidth = 32;

// Points are pairs of 16-bit lanes: column, row. A vector holds four of them.

/// Four points; as an element of std::array, which warns of a bare vector type.
struct PointLanes {
    __m128i lanes;
};

__m128i middleOf(__m128i a, __m128i b)
{
    return _mm_srai_epi16(_mm_add_epi16(a, b), 1);
}

/// From a to b by repeated halving.
std::array<PointLanes, gridPoints> subdivided(__m128i a, __m128i b)
{
    const __m128i half = middleOf(a, b);
    return {{{a}, {middleOf(a, half)}, {half}, {middleOf(half, b)}, {b}}};
}

/// The grid points of one row: columns 0 to 3, and column 4 in the first lane.
struct GridRow {
    __m128i four, last;

    /// Points 1 to 4.
    __m128i shifted() const
    {
        return _mm_or_si128(_mm_srli_si128(four, 4), _mm_slli_si128(last, 12));
    }
};

__m128i pointPair(const ScreenPoint& top, const ScreenPoint& bottom)
{
    const auto packed = [](const ScreenPoint& point) {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(point.y) << 16 |
                                         (static_cast<std::uint32_t>(point.x) & 0xFFFF));
    };
    return _mm_set_epi32(0, 0, packed(bottom), packed(top));
}

/// All ones where the doubled area x1 y2 - x2 y1 of corners 0, 1, 2, relative to 0, is not zero.
__m128i hasArea(__m128i first, __m128i second)
{
    const __m128i turned = _mm_or_si128(_mm_slli_epi32(second, 16), _mm_srli_epi32(second, 16));
    const __m128i signs = _mm_set1_epi32(static_cast<std::int32_t>(0xFFFF0001)); // 1, -1
    const __m128i area = _mm_madd_epi16(_mm_mullo_epi16(first, signs), turned);
    return _mm_xor_si128(_mm_cmpeq_epi32(area, _mm_setzero_si128()), _mm_set1_epi32(-1));
}

enum class CellUse { all, mesh, once, last };

/// The keys and starts of all cells; false when a cell is too large for the table.
bool findCells(CellRows& cells, const ScreenQuad& points, std::int32_t width, CellUse use)
{
    const auto across =
        subdivided(pointPair(points[0], points[3]), pointPair(points[1], points[2]));
    const __m128i low = _mm_unpacklo_epi32(across[0].lanes, across[1].lanes);
    const __m128i high = _mm_unpacklo_epi32(across[2].lanes, across[3].lanes);
    const auto down = subdivided(_mm_unpacklo_epi64(low, high), _mm_unpackhi_epi64(low, high));
    const __m128i lastTop = across[4].lanes;
    const auto lastDown = subdivided(lastTop, _mm_srli_si128(lastTop, 4));

    const __m128i eight = _mm_set1_epi16(8), weights = _mm_set1_epi32(width << 16 | 1);
    const __m128i one = _mm_set1_epi32(0x10001);
    __m128i beyond = _mm_setzero_si128(), below = _mm_setzero_si128();
    const __m128i places = _mm_set_epi32(3 << 28, 2 << 28, 1 << 28, 0);
    for (std::size_t row = gridCells; row-- > 0;) { // from below: a cell needs to know the next one
        const GridRow top{down[row].lanes, lastDown[row].lanes};
        const GridRow bottom{down[row + 1].lanes, lastDown[row + 1].lanes};
        const __m128i c0 = top.four;
        const __m128i d1 = _mm_sub_epi16(top.shifted(), c0);
        const __m128i d2 = _mm_sub_epi16(bottom.shifted(), c0);
        const __m128i d3 = _mm_sub_epi16(bottom.four, c0);
        const __m128i e1 = _mm_add_epi16(d1, eight), e2 = _mm_add_epi16(d2, eight);
        const __m128i e3 = _mm_add_epi16(d3, eight);
        // -7 to 7 are 1 to 15 now, and so is -8 a 0; beyond them a higher bit is set.
        beyond = _mm_or_si128(beyond, _mm_or_si128(_mm_or_si128(e1, e2), e3));
        __m128i key = _mm_or_si128(_mm_or_si128(e1, _mm_slli_epi16(e2, 4)), _mm_slli_epi16(e3, 8));
        key = _mm_or_si128(key, _mm_add_epi32(places, _mm_set1_epi32(static_cast<std::int32_t>(
                                                          static_cast<std::uint32_t>(row) << 30))));
        if (use == CellUse::last) {
            const __m128i drawsRight = _mm_srli_si128(hasArea(d2, d3), 4);
            key = _mm_or_si128(
                key, _mm_set1_epi32(static_cast<std::int32_t>(CellList::last) << cellListShift));
            key = _mm_or_si128(
                key, _mm_and_si128(drawsRight, _mm_set1_epi32(cellOnTheRight << cellListShift)));
            key =
                _mm_or_si128(key, _mm_and_si128(below, _mm_set1_epi32(cellBelow << cellListShift)));
            below = hasArea(d1, d2);
        } else if (use == CellUse::once) {
            key = _mm_or_si128(
                key, _mm_set1_epi32(static_cast<std::int32_t>(CellList::once) << cellListShift));
        } else if (use == CellUse::mesh) {
            const __m128i odd = _mm_and_si128(_mm_madd_epi16(c0, one), _mm_set1_epi32(1));
            key = _mm_or_si128(
                key, _mm_slli_epi32(_mm_add_epi32(odd, _mm_set1_epi32(static_cast<std::int32_t>(
                                                           CellList::evenMesh))),
                                    12));
        }
        _mm_store_si128(reinterpret_cast<__m128i*>(cells.key.data() + 4 * row), key);
        _mm_store_si128(reinterpret_cast<__m128i*>(cells.corner.data() + 4 * row), c0);
        _mm_store_si128(reinterpret_cast<__m128i*>(cells.start.data() + 4 * row),
                        _mm_madd_epi16(c0, weights));
    }
    beyond = _mm_and_si128(beyond, _mm_set1_epi16(static_cast<std::int16_t>(0xFFF0)));
    return _mm_movemask_epi8(_mm_cmpeq_epi8(beyond, _mm_setzero_si128())) == 0xFFFF;
}

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
    if constexpr (mode == PixelMode::shadow || mode == PixelMode::translucent) {
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

    const bool asksUnder = mode == PixelMode::shadow || mode == PixelMode::translucent;
    const auto pixels = static_cast<std::uint32_t>((right - left + 1) * (bottom - top + 1));
    const bool opaque = engine.opacity.isOpaque(slot, pixels);
    const CellUse use = (flags & meshMode) != 0 ? CellUse::mesh
                        : asksUnder             ? CellUse::all
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
