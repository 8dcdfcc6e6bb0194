#include "engine/rasteriser.h"

#include "engine/pixel_operation.h"
#include "engine/solid_span.h"
#include "engine/span_ends.h"

#include <algorithm>

namespace facetor {

namespace {

template <PixelMode mode, bool mesh>
void fillRows(FrameSurface& surface, const SpanEnds& ends, RowRange rows, Rgb555 colour)
{
    const std::int32_t width = surface.width;
    Rgb555* line = surface.pixels() + static_cast<std::ptrdiff_t>(rows.first) * width;
    for (std::int32_t row = rows.first; row <= rows.last; ++row, line += width) {
        const std::int32_t left = std::max<std::int32_t>(ends.left[row], 0);
        const std::int32_t right = std::min<std::int32_t>(ends.right[row], width - 1);
        if constexpr (mesh) {
            // Columns of the row's own parity.
            for (std::int32_t x = left + ((left ^ row) & 1); x <= right; x += 2)
                line[x] = blended<mode>(line[x], colour);
        } else if constexpr (mode == PixelMode::shadow || mode == PixelMode::translucent) {
            for (std::int32_t x = left; x <= right; ++x) line[x] = blended<mode>(line[x], colour);
        } else {
            storeSolid(line + left, right - left + 1, blended<mode>(0, colour));
        }
    }
}

} // namespace

PixelMode flatPixelMode(std::uint32_t flags)
{
    if ((flags & shadowMode) != 0) return PixelMode::shadow;
    if ((flags & halfMode) != 0) return PixelMode::half;
    if ((flags & translucentMode) != 0) return PixelMode::translucent;
    return PixelMode::replace;
}

void fillFlat(Engine& engine, const ScreenQuad& quad, Rgb555 colour, int level, std::uint32_t flags)
{
    if ((flags & useLight) != 0)
        colour = litColour(engine.settings.light, colour, level, colourLightIndex);
    FrameSurface& surface = engine.surface;
    const SpanEnds ends = spanEndsOf(engine);
    const RowRange rows = findQuadSpans(ends, toSurfaceRows(quad, surface.height), surface.height);
    if (rows.first > rows.last) return;
    dispatchPixelMode(
        flatPixelMode(flags), (flags & meshMode) != 0,
        [&]<PixelMode mode, bool mesh>() { fillRows<mode, mesh>(surface, ends, rows, colour); });
}

} // namespace facetor
