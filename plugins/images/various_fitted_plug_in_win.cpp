#include "images/fitted_codec_win.h"
#include "images/plug_in_codec.h"

namespace facetor {

static bool decode(std::span<const std::byte> file, std::span<std::byte> buffer)
{
    return decodeFitted(file, buffer, Dither::none);
}

static constexpr ImageCodec codec{fittedInfo, decode, nullptr};
const ImageCodec& plugInCodec = codec;

} // namespace facetor
