#include "images/any_codec_win.h"

#include "image/bmp_codec.h"
#include "image/png_codec.h"
#include "image/tga_codec.h"
#include "images/system_codec_win.h"

namespace facetor {

namespace {

/// The first that knows the file; a TGA, which has no signature, is asked about last.
const ImageCodec* codecOf(std::span<const std::byte> file)
{
    for (const ImageCodec* codec :
         {&bmpCodec, &pngCodec, &gifCodec, &jpegCodec, &tiffCodec, &tgaCodec})
        if (codec->info(file)) return codec;
    return nullptr;
}

std::optional<ImageInfo> anyInfo(std::span<const std::byte> file)
{
    const ImageCodec* codec = codecOf(file);
    return codec ? codec->info(file) : std::nullopt;
}

bool decodeAny(std::span<const std::byte> file, std::span<std::byte> buffer)
{
    const ImageCodec* codec = codecOf(file);
    return codec && codec->decode(file, buffer);
}

} // namespace

const ImageCodec anyCodec{anyInfo, decodeAny, nullptr};

} // namespace facetor
