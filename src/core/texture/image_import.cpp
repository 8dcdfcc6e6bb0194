#include "texture/image_import.h"

#include "base/pages.h"
#include "image/bitmap_conversion.h"

#include <utility>

namespace facetor {

static ImportedImage refused(InputFault fault)
{
    ImportedImage image;
    image.fault = fault;
    return image;
}

ImportedImage importImage(const ImageSource& source, Rgb555 transparentColour)
{
    if (!source.check || !source.size || !source.depth || !source.bits)
        return refused({Message::noPlugIn});
    if (!source.check()) return refused({Message::formatNotSupported});
    std::int32_t columns = 0, rows = 0;
    source.size(columns, rows);
    if (const auto fault = textureSizeFault(columns, rows)) return refused(*fault);

    ImportedImage image;
    image.width = static_cast<std::uint16_t>(columns);
    image.height = static_cast<std::uint16_t>(rows);
    const int depth = source.depth();
    const std::size_t size = imageBufferSize(image.width, image.height, depth);
    if (size == 0) return refused({Message::colourModeNotSupported});
    PageArray<std::byte> buffer;
    if (!buffer.allocate(size)) return refused({Message::outOfMemory});
    if (!source.bits({buffer.data(), size})) return refused({Message::cannotOpenFile});

    if (!image.pixels.allocate(std::size_t{image.width} * image.height))
        return refused({Message::outOfMemory});
    convertImageBuffer({buffer.data(), size}, image.width, depth, transparentColour,
                       {image.pixels.data(), image.pixels.size()});
    return image;
}

} // namespace facetor
