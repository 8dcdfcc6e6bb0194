#pragma once

#include "base/message.h"
#include "base/text_writer.h"
#include "output/source_names.h"
#include "texture/texture_list.h"

#include <string>
#include <string_view>

namespace facetor {

/// The C source of a texture list for the console: an array of texels for each slot up to the last
/// used one, the table of their sizes and offsets, and the table that ties numbers to arrays.
/// `path` is where it will stand; its file name names the tables. Needs a list that is not empty.
TextWriter formatTextureSource(const TextureList& list, std::string_view path,
                               SourceNames names = SourceNames::asTheyAre);

/// Writes it. With nothing created, texturesEmpty for an empty list and outOfMemory when memory is
/// short; cannotCreateFile when the file cannot be put in its place.
Message writeTextureSource(const TextureList& list, const std::string& path);

} // namespace facetor
