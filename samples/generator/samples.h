#pragma once

#include "base/message.h"
#include "exchange/obj_writer.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <string>
#include <vector>

namespace facetor::samples {

// Each function makes one sample: the model, and the textures that its polygons name. Both are
// created stores; what they held is replaced.

/// A long-range courier: a hierarchy of four levels, every way of drawing a polygon.
Message makeShip(Model& model, TextureList& textures);
/// A treasure chest with an open lid, small enough to read in an editor.
Message makeProp(Model& model, TextureList& textures);
/// A floating island that fills the pools: 4096 vertices, 4096 polygons, 128 objects.
Message makeMax(Model& model, TextureList& textures);

/// A road sign, the example of C source in the manual: two objects, three polygons of the kinds
/// that make a difference there. `texture` is the slot of what stands on its board.
Message makeSign(Model& model, std::uint16_t texture);

/// A lighthouse as another program would write it: an OBJ, its material file and its pictures,
/// with quads, triangles, faces of more corners, a picture of several fields and holes in another.
std::vector<ExportedFile> makeLighthouse();

struct Sample {
    std::string name; ///< of both files, without extension
    Message (*make)(Model&, TextureList&);
};

inline const Sample allSamples[] = {
    {"ship", makeShip},
    {"prop", makeProp},
    {"max", makeMax},
};

} // namespace facetor::samples
