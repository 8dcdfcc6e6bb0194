#pragma once

#include "model/model.h"

#include <cstdint>

namespace facetor {

/// How many polygons of a model need a Gouraud table in the console's video memory.
struct GouraudCounts {
    std::uint32_t light; ///< isLightGouraud(): colours computed at run time
    std::uint32_t table; ///< isTableGouraud(): colours of the polygon's own entry
};

/// Counts over all polygons of all meshes, as the C source has them.
GouraudCounts countGouraud(const Model& model);

/// Counts over the polygons of all objects, as the target image has them: those of a mesh that
/// several objects show once for each.
GouraudCounts countImageGouraud(const Model& model);

} // namespace facetor
