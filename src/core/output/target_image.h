#pragma once

#include "base/angle.h"
#include "base/bytes.h"
#include "base/colour.h"
#include "base/geometry.h"
#include "base/message.h"
#include "engine/engine.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace facetor {

// Target images: what a monitor program copies into the console's memory. A file is a sequence of
// blocks, each an address and a size (32 bits, little-endian) and so many bytes in the console's
// order, big-endian. The layout is docs/formats/sal.md.

/// The model: its objects' matrices, the scale, the object table with all polygon data, the Gouraud
/// tables. Positions are multiplied by `scale`. Needs a model that isSafeToDraw().
Bytes formatModelImage(const Model& model, float scale);

/// A value that the image cannot hold as 16.16 fixed point.
struct BeyondFixed {
    std::optional<std::uint32_t> object;                ///< none: the scale
    const char* what;                                   ///< which value, in words
    float value;                                        ///< as it would be written
    std::optional<std::uint32_t> vertex = std::nullopt; ///< whose position it is
};

/// What of the model its image cannot hold at `scale`: a scale that is 0 there, or of each object
/// the first position, placement, matrix element or vertex normal beyond -32768 to 32768. Empty
/// when all fit. formatModelImage() writes the nearest value that does.
std::vector<BeyondFixed> findBeyondFixed(const Model& model, float scale);

/// One of them in words, with its object and value.
std::string describe(const Model& model, const BeyondFixed& fault);

/// The bytes of formatModelImage().
std::uint64_t modelImageSize(const Model& model);

/// The bytes of the texels that formatTextureImage() writes.
std::uint64_t texelBytes(const TextureList& list);

/// The bytes of formatTextureImage(), 0 for an empty list.
std::uint64_t textureImageSize(const TextureList& list);

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
