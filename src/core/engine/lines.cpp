#include "engine/rasteriser.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace facetor {

namespace {

void drawHorizontal(FrameSurface& surface, std::int32_t x0, std::int32_t x1, std::int32_t y,
                    Rgb555 colour)
{
    if (y < 0 || y >= surface.height) return;
    const std::int32_t left = std::max(std::min(x0, x1), 0);
    const std::int32_t right = std::min(std::max(x0, x1), surface.width - 1);
    if (left > right) return;
    Rgb555* line =
        surface.pixels() + static_cast<std::ptrdiff_t>(surface.height - 1 - y) * surface.width;
    std::fill(line + left, line + right + 1, colour);
}

void drawVertical(FrameSurface& surface, std::int32_t x, std::int32_t y0, std::int32_t y1,
                  Rgb555 colour)
{
    if (x < 0 || x >= surface.width) return;
    const std::int32_t top = std::max(std::min(y0, y1), 0);
    const std::int32_t bottom = std::min(std::max(y0, y1), surface.height - 1);
    for (std::int32_t y = top; y <= bottom; ++y) plot(surface, {x, y}, colour);
}

/// A line in one of the two directions of the screen.
struct Axis {
    std::int32_t start, step, length; ///< step is 1 or -1
};

/// Bresenham with a doubled error term, stepping along the longer axis; where the line lies
/// half-way between two pixels it has already moved across. Calls `plot(along, across)` for the
/// steps whose position along lies in 0 to size - 1. The steps before the first of these are not
/// walked, as a corner can lie millions of pixels away, but computed: the pixels are those of the
/// whole line.
template <typename Plot>
void drawSloped(const Axis& along, const Axis& across, std::int32_t size, Plot plot)
{
    const bool forward = along.step > 0;
    const std::int32_t first = std::max(0, forward ? -along.start : along.start - (size - 1));
    const std::int32_t last =
        std::min(along.length, forward ? size - 1 - along.start : along.start);
    if (first > last) return;
    const std::int64_t rise = 2 * std::int64_t{across.length};
    const std::int64_t run = 2 * std::int64_t{along.length};
    const std::int64_t moved = (rise * first + along.length) / run;
    auto error = static_cast<std::int32_t>(rise * (first + 1) - along.length - run * moved);
    std::int32_t a = along.start + along.step * first;
    std::int32_t b = across.start + across.step * static_cast<std::int32_t>(moved);
    for (std::int32_t i = first; i <= last; ++i, a += along.step) {
        plot(a, b);
        if (error >= 0) {
            b += across.step;
            error -= 2 * along.length;
        }
        error += 2 * across.length;
    }
}

} // namespace

void plot(FrameSurface& surface, ScreenPoint at, Rgb555 colour)
{
    if (at.x < 0 || at.x >= surface.width || at.y < 0 || at.y >= surface.height) return;
    surface
        .pixels()[static_cast<std::ptrdiff_t>(surface.height - 1 - at.y) * surface.width + at.x] =
        colour;
}

void drawLine(FrameSurface& surface, ScreenPoint from, ScreenPoint to, Rgb555 colour)
{
    if (from.y == to.y) return drawHorizontal(surface, from.x, to.x, from.y, colour);
    if (from.x == to.x) return drawVertical(surface, from.x, from.y, to.y, colour);
    const Axis x{from.x, to.x < from.x ? -1 : 1, std::abs(to.x - from.x)};
    const Axis y{from.y, to.y < from.y ? -1 : 1, std::abs(to.y - from.y)};
    if (x.length >= y.length)
        drawSloped(x, y, surface.width, [&](std::int32_t along, std::int32_t across) {
            plot(surface, {along, across}, colour);
        });
    else
        drawSloped(y, x, surface.height, [&](std::int32_t along, std::int32_t across) {
            plot(surface, {across, along}, colour);
        });
}

void drawOutline(FrameSurface& surface, const ScreenQuad& quad, Rgb555 colour)
{
    drawLine(surface, quad[0], quad[1], colour);
    drawLine(surface, quad[0], quad[3], colour);
    drawLine(surface, quad[2], quad[1], colour);
    drawLine(surface, quad[2], quad[3], colour);
}

} // namespace facetor
