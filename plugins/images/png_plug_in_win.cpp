#include "images/plug_in_codec.h"
#include "images/png_codec.h"

namespace facetor {

const ImageCodec& plugInCodec = pngCodec;

} // namespace facetor
