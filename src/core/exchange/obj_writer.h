#pragma once

#include "base/bytes.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <string>
#include <vector>

namespace facetor {

/// A file of an export, by its path relative to the first one's folder.
struct ExportedFile {
    std::string name;
    Bytes bytes;
};

/// A model as OBJ: positions as drawn, up and front as modellers have them, quads as quads and
/// repeated corners as triangles, an object each. The files are `title`.obj, `title`.mtl with one
/// material a look and, with `textures`, a picture `title`.textures/NNNN.png of every slot that a
/// polygon shows. Polygons of fewer than three different corners are left out. Needs a model that
/// isSafeToDraw(). outOfMemory when memory is short.
Message writeObj(std::vector<ExportedFile>& files, const Model& model, const TextureList* textures,
                 const std::string& title);

/// The names that an OBJ has for a model's objects, each another: control characters, "#" and "\"
/// become "_", blanks around a name go. Empty for objects without polygons, which it has not.
std::vector<std::string> objNames(const Model& model);

} // namespace facetor
