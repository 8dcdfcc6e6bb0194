// libFuzzer target of the PNG reader and writer.

#include "image_fuzz.h"
#include "images/png_codec.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    facetor::fuzzImageCodec(facetor::pngCodec, {data, size});
    return 0;
}
