#pragma once

#include "base/angle.h"
#include "base/bytes.h"
#include "base/colour.h"
#include "base/geometry.h"
#include "base/message.h"
#include "engine/engine.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <string>

namespace facetor {

// Target images: what a monitor program copies into the console's memory. A file is a sequence of
// blocks, each an address and a size (32 bits, little-endian) and so many bytes in the console's
// order, big-endian. The layout is docs/formats/sal.md.

/// The model: its objects' matrices, the scale, the object table with all polygon data, the Gouraud
/// tables. Positions are multiplied by `scale`. Needs a model that isSafeToDraw().
Bytes formatModelImage(const Model& model, float scale);

/// What of the model its image cannot hold as 16.16 fixed point, at `scale`: a scale that is 0
/// there, or the first position, placement, matrix element or vertex normal beyond -32768 to 32768,
/// with its object and value. Empty when all fit. formatModelImage() writes the nearest value that
/// does.
std::string findBeyondFixed(const Model& model, float scale);

/// The texture list up to its last used slot, empty slots as the blank texture: the table of sizes
/// and addresses, and all texels. texturesEmpty for an empty list; outOfMemory when memory is short
/// and for a texture that is wider than the 256 texels that a row may have, with `reason`, when
/// given, saying which.
Message formatTextureImage(Bytes& image, const TextureList& list, std::string* reason = nullptr);

/// What a scene image holds.
struct SceneSettings {
    Vector3 lightDirection{0.577f, 0.577f, 0.577f};
    Rgb555 lightColour = 0xFFFF;
    Angle viewAngle = defaultViewAngle;
    Rgb555 ambientColour = 0x8000;
    Rgb555 backgroundColour = 0x8010;
};
Bytes formatSceneImage(const SceneSettings& scene);

// The same into files. cannotCreateFile when one cannot be put in its place.

Message writeModelImage(const Model& model, float scale, const std::string& path);
Message writeTextureImage(const TextureList& list, const std::string& path,
                          std::string* reason = nullptr);
Message writeSceneImage(const SceneSettings& scene, const std::string& path);

} // namespace facetor
