#include "images/any_codec_win.h"
#include "images/plug_in_codec.h"

namespace facetor {

const ImageCodec& plugInCodec = anyCodec;

} // namespace facetor
