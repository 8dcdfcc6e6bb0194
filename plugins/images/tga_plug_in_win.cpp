#include "images/plug_in_codec.h"
#include "images/tga_codec.h"

namespace facetor {

const ImageCodec& plugInCodec = tgaCodec;

} // namespace facetor
