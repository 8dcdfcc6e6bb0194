#include "images/plug_in_codec.h"
#include "images/system_codec_win.h"

namespace facetor {

const ImageCodec& plugInCodec = tiffCodec;

} // namespace facetor
