#include "engine/frame_surface.h"

#include <algorithm>
#include <new>

namespace facetor {

const BitmapHeader& FrameSurface::header() const
{
    return *std::launder(reinterpret_cast<const BitmapHeader*>(block.data()));
}

Rgb555* FrameSurface::pixels()
{
    return std::launder(reinterpret_cast<Rgb555*>(block.data() + sizeof(BitmapHeader)));
}

const Rgb555* FrameSurface::pixels() const
{
    return std::launder(reinterpret_cast<const Rgb555*>(block.data() + sizeof(BitmapHeader)));
}

Rgb555 FrameSurface::at(std::int32_t x, std::int32_t y) const
{
    return pixels()[static_cast<std::size_t>(height - 1 - y) * static_cast<std::size_t>(width) +
                    static_cast<std::size_t>(x)];
}

bool createFrameSurface(FrameSurface& surface)
{
    constexpr std::size_t size =
        sizeof(BitmapHeader) +
        sizeof(Rgb555) * (std::size_t{surfaceMaxWidth} * surfaceMaxHeight + surfacePadding);
    if (!surface.block.allocate(size)) return false;
    setSurfaceSize(surface, surfaceMaxWidth, surfaceMaxHeight);
    return true;
}

void setSurfaceSize(FrameSurface& surface, std::int32_t width, std::int32_t height)
{
    surface.width = std::clamp(width, 4, surfaceMaxWidth) / 4 * 4;
    surface.height = std::clamp(height, 1, surfaceMaxHeight);
    const auto imageSize = static_cast<std::uint32_t>(surface.pixelCount() * sizeof(Rgb555));
    new (surface.block.data())
        BitmapHeader(bitmapHeader(static_cast<std::uint32_t>(surface.width),
                                  static_cast<std::uint32_t>(surface.height), 16, imageSize));
}

void clearSurface(FrameSurface& surface, Rgb555 colour)
{
    std::fill_n(surface.pixels(), surface.pixelCount(), colour); // stores whole vectors
}

} // namespace facetor
