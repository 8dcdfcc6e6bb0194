// libFuzzer target of the BMP reader and writer.

#include "image_fuzz.h"
#include "images/bmp_codec.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    facetor::fuzzImageCodec(facetor::bmpCodec, {data, size});
    return 0;
}
