#pragma once

#include "model/model.h"
#include "model/polygon_attribute.h"

#include <cstdint>

namespace facetor {

/// How a texture is put on polygons; what the keys that are held choose.
struct TextureApplication {
    bool flipHorizontal = false;
    bool flipVertical = false;
    /// Only the flips are set: the polygons keep their texture numbers and are not textured.
    bool flipsOnly = false;
    PickedAfter after = PickedAfter::keep;
};

/// Puts texture `slot` on every polygon that is picked, in place of its texture and its flips.
/// Needs slot < textureSlots.
void applyTextureToPicked(Model& model, std::uint16_t slot, const TextureApplication& application);

} // namespace facetor
