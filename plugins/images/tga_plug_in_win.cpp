#include "image/tga_codec.h"
#include "images/plug_in_codec.h"

namespace facetor {

const ImageCodec& plugInCodec = tgaCodec;

} // namespace facetor
