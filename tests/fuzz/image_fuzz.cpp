#include "image_fuzz.h"

#include "texture/bitmap_conversion.h"

#include <cstdlib>
#include <vector>

namespace facetor {

namespace {

void require(bool holds)
{
    if (!holds) std::abort(); // what the fuzzer reports as a finding
}

} // namespace

void fuzzImageCodec(const ImageCodec& codec, std::span<const std::uint8_t> data)
{
    const auto file = std::as_bytes(data);
    const auto info = codec.info(file);
    if (!info) return;
    require(info->width > 0 && info->height > 0);
    if (!isDecodable(*info)) {
        require(!codec.decode(file, {}));
        return;
    }
    // Others that are large take time and no other way.
    if (info->width * info->height > 64 * 64) return;
    std::vector<std::byte> buffer(imageBufferSize(info->width, info->height, info->depth));
    if (!codec.decode(file, buffer)) return;

    // What was read can be written, and is then of the same size.
    std::vector<Rgb555> texels(std::size_t{info->width} * info->height);
    convertImageBuffer(buffer, info->width, info->depth, 0, texels);
    const Bytes written = codec.encode({info->width, info->height, texels});
    const auto again = codec.info(written);
    require(again && again->width == info->width && again->height == info->height);
    buffer.resize(imageBufferSize(again->width, again->height, again->depth));
    require(codec.decode(written, buffer));
}

} // namespace facetor
