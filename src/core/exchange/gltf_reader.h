#pragma once

#include "exchange/scene.h"

#include <span>
#include <string>

namespace facetor {

// glTF 2.0, as JSON text (.gltf) and with its data in one binary file (.glb).

/// Whether a file begins as one of the two does.
bool looksLikeGltf(std::span<const std::byte> file);

/// Reads a glTF into an empty scene: nodes with their tree, triangles, strips and fans, materials
/// with base colour, opacity and pictures. Buffers and pictures may be in the file, in data URIs or
/// in files that `assets` reads. Cameras, lights, animation and skins are left out. Of a file that
/// Facetor has written and nobody has changed since, only the scene's `own` is filled.
/// formatNotSupported, with the element in `reason`, when it is damaged, needs an extension that is
/// not known, or has no face, and once `progress` has said no.
Message readGltf(Scene& scene, std::span<const std::byte> file, const AssetReader& assets,
                 Reason& reason, const ImportProgress& progress = {});

} // namespace facetor
