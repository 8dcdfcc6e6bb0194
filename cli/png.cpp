#include "png.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

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
    Bytes png;
    const auto append = [](void* context, void* data, int size) {
        const auto* bytes = static_cast<const std::byte*>(data);
        static_cast<Bytes*>(context)->assign(bytes, bytes + size);
    };
    if (stbi_write_png_to_func(append, &png, surface.width, surface.height, 3, rgb.data(),
                               surface.width * 3) == 0)
        png.clear();
    return png;
}

} // namespace facetor
