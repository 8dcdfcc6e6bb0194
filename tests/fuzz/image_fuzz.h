#pragma once

#include "images/image_codec.h"

#include <cstdint>
#include <span>

namespace facetor {

/// What a fuzz target of an image codec does with an input: reads it as a plug-in does, and ends
/// the program when an answer contradicts another.
void fuzzImageCodec(const ImageCodec& codec, std::span<const std::uint8_t> data);

} // namespace facetor
