#include "png.h"

#include "image/stb_image.h"

namespace facetor {

Bytes encodePng(const FrameSurface& surface)
{
    std::vector<std::uint8_t> rgb;
    rgb.reserve(surface.pixelCount() * 3);
    for (std::int32_t y = 0; y < surface.height; ++y)
        for (std::int32_t x = 0; x < surface.width; ++x) {
            const auto colour = toScreenColour(surface.at(x, y));
            rgb.insert(rgb.end(), colour.begin(), colour.end());
        }
    return stbEncodePng(static_cast<std::uint32_t>(surface.width),
                        static_cast<std::uint32_t>(surface.height), 3, rgb);
}

} // namespace facetor
