#pragma once

#include "base/bytes.h"
#include "model/model.h"
#include "texture/texture_list.h"

namespace facetor {

/// A model as one binary glTF 2.0 file, up and front as modellers have them: a node with name and
/// placement for each object that is drawn, quads as two triangles, a material a look, and with
/// `textures` every slot that a polygon shows as PNG. What glTF cannot say is in it too
/// (docs/formats/glb.md): readGltf() and buildModel() make the same model and list of it again,
/// but for selection marks. Needs a model that isSafeToDraw(). outOfMemory when memory is short.
Message writeGlb(Bytes& file, const Model& model, const TextureList* textures);

} // namespace facetor
