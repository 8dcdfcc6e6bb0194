#pragma once

#include <string>
#include <string_view>

namespace facetor {

/// What a model is saved as: the path with its extension, or all behind its last ".", replaced by
/// ".mx3".
std::string modelSavePath(std::string_view path);

/// The same of a texture list, with ".mxt".
std::string textureSavePath(std::string_view path);

/// The name of a file without its folder.
std::string fileNameOf(std::string_view path);

} // namespace facetor
