#include "engine/placed_texture.h"

#include <algorithm>
#include <cassert>

namespace facetor {

void drawPlacedTexture(FrameSurface& surface, const PlacedTexture& picture)
{
    const auto& [texture, place] = picture;
    const std::int64_t width = std::int64_t{place.right} - place.left;
    const std::int64_t height = std::int64_t{place.bottom} - place.top;
    assert(width > 0 && height > 0);
    const int left = std::max(place.left, 0), right = std::min(place.right, surface.width);
    const int bottom = std::min(place.bottom, surface.height);
    for (int y = std::max(place.top, 0); y < bottom; ++y) {
        const std::int64_t row = (std::int64_t{y} - place.top) * texture.height / height;
        const Rgb555* const texels = texture.pixels + row * texture.width;
        Rgb555* const pixels =
            surface.pixels() + std::ptrdiff_t{surface.height - 1 - y} * surface.width;
        for (int x = left; x < right; ++x) {
            const Rgb555 texel = texels[(std::int64_t{x} - place.left) * texture.width / width];
            if ((texel & opaqueBit) != 0) pixels[x] = texel & 0x7FFF;
        }
    }
}

} // namespace facetor
