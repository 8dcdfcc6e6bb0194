#include "get_color/dialog_parts.h"

#include <algorithm>
#include <cmath>

namespace facetor {

namespace {

/// The share of `length` at the middle of pixel `at`.
float shareAt(int at, int length)
{
    return (static_cast<float>(std::clamp(at, 0, length - 1)) + 0.5f) / static_cast<float>(length);
}

int pixelAt(float share, int length)
{
    return std::clamp(static_cast<int>(share * static_cast<float>(length)), 0, length - 1);
}

} // namespace

PixelRun cellRun(int index, int count, int length)
{
    return {index * length / count, (index + 1) * length / count};
}

int cellAt(int at, int count, int length)
{
    const int pixel = std::clamp(at, 0, length - 1);
    // The last cell that does not begin behind the pixel: cellRun() rounds its ends down.
    return std::min(((pixel + 1) * count - 1) / length, count - 1);
}

Hsv fieldHsv(PartPoint point, PartSize size, float value)
{
    // The outermost rows are exactly full and no saturation, so that pure colours and grey can be
    // hit.
    const int lastRow = std::max(size.height - 1, 1);
    const auto row = static_cast<float>(std::clamp(point.y, 0, lastRow));
    return {shareAt(point.x, size.width), 1 - row / static_cast<float>(lastRow), value};
}

PartPoint fieldPoint(const Hsv& hsv, PartSize size)
{
    const auto lastRow = static_cast<float>(std::max(size.height - 1, 1));
    return {pixelAt(hsv.hue, size.width),
            static_cast<int>(std::lround((1 - hsv.saturation) * lastRow))};
}

std::vector<std::uint32_t> drawField(PartSize size)
{
    std::vector<std::uint32_t> pixels;
    pixels.reserve(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const auto [red, green, blue] = toScreenColour(toRgb555(fieldHsv({x, y}, size, 1)));
            pixels.push_back(static_cast<std::uint32_t>(red << 16 | green << 8 | blue));
        }
    return pixels;
}

} // namespace facetor
