#include "png.h"

#include "image/stb_image.h"

#include <algorithm>
#include <utility>

namespace facetor {

Picture pictureOf(const FrameSurface& surface)
{
    Picture picture;
    picture.width = static_cast<std::uint32_t>(surface.width);
    picture.height = static_cast<std::uint32_t>(surface.height);
    picture.rgba.reserve(surface.pixelCount() * 4);
    for (std::int32_t y = 0; y < surface.height; ++y)
        for (std::int32_t x = 0; x < surface.width; ++x) {
            const auto colour = toScreenColour(surface.at(x, y));
            picture.rgba.insert(picture.rgba.end(), colour.begin(), colour.end());
            picture.rgba.push_back(255);
        }
    return picture;
}

Picture enlarged(Picture picture, std::uint32_t times)
{
    if (times == 1) return picture;
    Picture large;
    large.width = picture.width * times;
    large.height = picture.height * times;
    large.rgba.resize(std::size_t{large.width} * large.height * 4);
    for (std::size_t y = 0; y < large.height; ++y)
        for (std::size_t x = 0; x < large.width; ++x)
            std::copy_n(picture.rgba.data() + (y / times * picture.width + x / times) * 4, 4,
                        large.rgba.data() + (y * large.width + x) * 4);
    return large;
}

Bytes encodePng(const Picture& picture, Alpha alpha)
{
    if (alpha == Alpha::kept) return stbEncodePng(picture.width, picture.height, 4, picture.rgba);
    std::vector<std::uint8_t> rgb;
    rgb.reserve(picture.rgba.size() / 4 * 3);
    for (std::size_t i = 0; i < picture.rgba.size(); i += 4)
        rgb.insert(rgb.end(), picture.rgba.begin() + static_cast<std::ptrdiff_t>(i),
                   picture.rgba.begin() + static_cast<std::ptrdiff_t>(i + 3));
    return stbEncodePng(picture.width, picture.height, 3, rgb);
}

} // namespace facetor
