#include "engine/rasteriser.h"

#include "engine/colour_lanes.h"
#include "engine/pixel_operation.h"
#include "engine/solid_span.h"
#include "engine/span_ends.h"

#include <algorithm>

namespace facetor {

namespace {

template <PixelMode mode, bool mesh>
void fillSolidRowsPlain(const PixelRows& surface, const SpanEnds& ends, RowRange rows,
                        Rgb555 colour)
{
    Rgb555* line = surface.row(rows.first);
    for (std::int32_t row = rows.first; row <= rows.last; ++row, line += surface.width) {
        const std::int32_t left = std::max<std::int32_t>(ends.left[row], 0);
        const std::int32_t right = std::min<std::int32_t>(ends.right[row], surface.width - 1);
        constexpr std::int32_t step = mesh ? 2 : 1;
        const std::int32_t first = mesh ? left + ((left ^ row) & 1) : left; // the row's own parity
        for (std::int32_t x = first; x <= right; x += step)
            line[x] = blended<mode>(line[x], colour);
    }
}

#if FACETOR_VECTOR_FILLS

/// Every second lane, from the first or from the second on.
__m128i meshLanes(bool fromSecond)
{
    return _mm_set1_epi32(static_cast<std::int32_t>(fromSecond ? 0xFFFF0000u : 0xFFFFu));
}

template <PixelMode mode, bool mesh>
void fillSolidRowsVector(const PixelRows& surface, const SpanEnds& ends, RowRange rows,
                         Rgb555 colour)
{
    const __m128i s = _mm_set1_epi16(static_cast<std::int16_t>(colour));
    Rgb555* line = surface.row(rows.first);
    for (std::int32_t row = rows.first; row <= rows.last; ++row, line += surface.width) {
        const std::int32_t left = std::max<std::int32_t>(ends.left[row], 0);
        const std::int32_t right = std::min<std::int32_t>(ends.right[row], surface.width - 1);
        if (left > right) continue;
        if constexpr (!mesh && (mode == PixelMode::replace || mode == PixelMode::half)) {
            storeSolid(line + left, right - left + 1, blended<mode>(0, colour));
        } else {
            const __m128i drawn = mesh ? meshLanes(((left ^ row) & 1) != 0) : _mm_set1_epi16(-1);
            std::int32_t x = left;
            for (; x + 7 <= right; x += 8) {
                const __m128i d = loadPixels(line + x), over = blendedPixels<mode>(d, s);
                storePixels(line + x, mesh ? select(drawn, over, d) : over);
            }
            if (x > right) continue;
            const __m128i d = loadPixels(line + x), lanes = firstLanes(right - x + 1);
            storePixels(line + x,
                        select(_mm_and_si128(lanes, drawn), blendedPixels<mode>(d, s), d));
        }
    }
}

/// Rows of at most 16 pixels inside the surface: two vectors each, whatever their lengths, which
/// could not be foreseen.
template <PixelMode mode, bool mesh>
void fillNarrowSolidRows(const PixelRows& surface, const SpanEnds& ends, RowRange rows,
                         Rgb555 colour)
{
    alignas(16) static constexpr std::array<std::int16_t, 32> lanes{-1, -1, -1, -1, -1, -1, -1, -1,
                                                                    -1, -1, -1, -1, -1, -1, -1, -1};
    const __m128i s = _mm_set1_epi16(static_cast<std::int16_t>(colour));
    Rgb555* line = surface.row(rows.first);
    for (std::int32_t row = rows.first; row <= rows.last; ++row, line += surface.width) {
        const std::int32_t left = ends.left[row];
        const std::int32_t count = std::max(ends.right[row] - left + 1, 0);
        const std::int16_t* first = lanes.data() + 16 - count;
        __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(first));
        __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(first + 8));
        if constexpr (mesh) {
            const __m128i drawn = meshLanes(((left ^ row) & 1) != 0);
            low = _mm_and_si128(low, drawn);
            high = _mm_and_si128(high, drawn);
        }
        Rgb555* const to = line + left;
        const __m128i d = loadPixels(to), behind = loadPixels(to + 8);
        storePixels(to, select(low, blendedPixels<mode>(d, s), d));
        storePixels(to + 8, select(high, blendedPixels<mode>(behind, s), behind));
    }
}

#endif

} // namespace

PixelMode flatPixelMode(const EngineSettings& settings, std::uint32_t flags)
{
    if (settings.countsWrites) return PixelMode::count;
    if ((flags & shadowMode) != 0) return PixelMode::shadow;
    if ((flags & halfMode) != 0) return PixelMode::half;
    if ((flags & translucentMode) != 0) return PixelMode::translucent;
    return PixelMode::replace;
}

void fillFlat(Engine& engine, const ScreenQuad& quad, Rgb555 colour, int level, std::uint32_t flags)
{
    if ((flags & useLight) != 0)
        colour = litColour(engine.settings.light, colour, level, colourLightIndex);
    const PixelRows surface = engine.surface.rows();
    const SpanEnds ends = spanEndsOf(engine);
    const ScreenQuad points = toSurfaceRows(quad, surface.height);
    const PixelMode blend = flatPixelMode(engine.settings, flags);
    const bool withMesh = (flags & meshMode) != 0;
#if FACETOR_VECTOR_FILLS
    if (engine.settings.fillPath == FillPath::vector) {
        const RowRange rows = findQuadSpans<FillPath::vector>(ends, points, surface.height);
        if (rows.first > rows.last) return;
        const auto [left, right] = std::minmax({quad[0].x, quad[1].x, quad[2].x, quad[3].x});
        const bool narrow = left >= 0 && right < surface.width && right - left < 16;
        dispatchPixelMode(blend, withMesh, [&]<PixelMode mode, bool mesh>() {
            if (narrow)
                fillNarrowSolidRows<mode, mesh>(surface, ends, rows, colour);
            else
                fillSolidRowsVector<mode, mesh>(surface, ends, rows, colour);
        });
        return;
    }
#endif
    const RowRange rows = findQuadSpans<FillPath::plain>(ends, points, surface.height);
    if (rows.first > rows.last) return;
    dispatchPixelMode(blend, withMesh, [&]<PixelMode mode, bool mesh>() {
        fillSolidRowsPlain<mode, mesh>(surface, ends, rows, colour);
    });
}

} // namespace facetor
