#pragma once

#include "base/message.h"
#include "texture/texture_list.h"

#include <span>

namespace facetor {

/// Reads the textures of a target image into a created list, from slot 0 on: transparent texels
/// come back as 0, and slots that were empty as the 8 x 8 texture that was written for them.
/// formatNotSupported, with what is wrong in `reason`, for an image without textures or one whose
/// blocks are cut or contradict each other; outOfMemory.
Message readTextureImage(TextureList& list, std::span<const std::byte> image, Reason& reason);

} // namespace facetor
