#include "image/bmp_codec.h"
#include "images/plug_in_codec.h"

namespace facetor {

const ImageCodec& plugInCodec = bmpCodec;

} // namespace facetor
