// libFuzzer target of the TGA reader and writer.

#include "image_fuzz.h"
#include "images/tga_codec.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    facetor::fuzzImageCodec(facetor::tgaCodec, {data, size});
    return 0;
}
