#include "image/png_codec.h"
#include "images/plug_in_codec.h"

namespace facetor {

const ImageCodec& plugInCodec = pngCodec;

} // namespace facetor
