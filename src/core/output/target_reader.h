#pragma once

#include "base/message.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <span>

namespace facetor {

/// Reads the textures of a target image into a created list, from slot 0 on: transparent texels
/// come back as 0, and slots that were empty as the 8 x 8 texture that was written for them.
/// formatNotSupported, with what is wrong in `reason`, for an image without textures or one whose
/// blocks are cut or contradict each other; outOfMemory.
Message readTextureImage(TextureList& list, std::span<const std::byte> image, Reason& reason);

/// Reads the model of a target image into pools that createModelStore() has made: all that the
/// image holds, positions and translations divided by the scale in it. Objects have their default
/// names; Gouraud tables are there where they are drawn, vertex normals where the light needs them,
/// else they are computed. formatNotSupported, with what is wrong in `reason`, for an image without
/// a model, blocks that are cut, addresses that lead outside, counts beyond the pools and links
/// that form no tree; the model then is as it was. outOfMemory.
Message readModelImage(Model& model, std::span<const std::byte> image, Reason& reason);

} // namespace facetor
