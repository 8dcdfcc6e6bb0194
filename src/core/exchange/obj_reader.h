#pragma once

#include "exchange/scene.h"

#include <string>
#include <string_view>

namespace facetor {

// Wavefront OBJ and its material files (MTL), as text of polygons.

/// Whether a text begins as an OBJ does: its first line that is no comment has one of its keywords.
bool looksLikeObj(std::string_view text);

/// Reads an OBJ into an empty scene, and with `assets` the material files and pictures that it
/// names; those that cannot be read are noted. `title` names the object of faces before the first
/// name. formatNotSupported, with the line in `reason`, for a number that is none or not finite,
/// an index out of range and a file without a face, and once `progress` has said no. Curves,
/// surfaces, lines and points are left out.
Message readObj(Scene& scene, std::string_view text, const std::string& title,
                const AssetReader& assets, Reason& reason, const ImportProgress& progress = {});

} // namespace facetor
