#include "engine/rasteriser.h"

#include <algorithm>
#include <cstdlib>

namespace facetor {

namespace {

/// A line that leaves the surface is followed no further than this beyond it. Corners can lie
/// millions of pixels away; stepping there would take seconds for nothing.
constexpr std::int32_t farBeyond = 8192;

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

/// Moves `from` along the line to within farBeyond of the origin, keeping its slope. False when the
/// line does not come that near.
bool pullNear(ScreenPoint& from, const ScreenPoint& to)
{
    const auto pull = [](std::int32_t& along, std::int32_t& across, std::int32_t alongTo,
                         std::int32_t acrossTo) {
        if (std::abs(along) <= farBeyond) return true;
        const std::int32_t edge = along < 0 ? -farBeyond : farBeyond;
        if (along < 0 ? alongTo < edge : alongTo > edge) return false;
        across += static_cast<std::int32_t>((std::int64_t{acrossTo} - across) *
                                            (std::int64_t{edge} - along) /
                                            (std::int64_t{alongTo} - along));
        along = edge;
        return true;
    };
    return pull(from.x, from.y, to.x, to.y) && pull(from.y, from.x, to.y, to.x);
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
    if (!pullNear(from, to) || !pullNear(to, from)) return;

    // Bresenham with a doubled error term, stepping along the longer axis.
    const std::int32_t dx = std::abs(to.x - from.x), dy = std::abs(to.y - from.y);
    const std::int32_t stepX = to.x < from.x ? -1 : 1, stepY = to.y < from.y ? -1 : 1;
    ScreenPoint at = from;
    if (dx >= dy) {
        std::int32_t error = 2 * dy - dx;
        for (std::int32_t i = 0; i <= dx; ++i, at.x += stepX) {
            plot(surface, at, colour);
            if (error >= 0) {
                at.y += stepY;
                error -= 2 * dx;
            }
            error += 2 * dy;
        }
    } else {
        std::int32_t error = 2 * dx - dy;
        for (std::int32_t i = 0; i <= dy; ++i, at.y += stepY) {
            plot(surface, at, colour);
            if (error >= 0) {
                at.x += stepX;
                error -= 2 * dy;
            }
            error += 2 * dx;
        }
    }
}

void drawOutline(FrameSurface& surface, const ScreenQuad& quad, Rgb555 colour)
{
    drawLine(surface, quad[0], quad[1], colour);
    drawLine(surface, quad[0], quad[3], colour);
    drawLine(surface, quad[2], quad[1], colour);
    drawLine(surface, quad[2], quad[3], colour);
}

} // namespace facetor
