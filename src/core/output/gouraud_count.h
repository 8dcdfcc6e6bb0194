#pragma once

#include "model/model.h"

#include <cstdint>

namespace facetor {

/// How many polygons of a model need a Gouraud table in the console's video memory.
struct GouraudCounts {
    std::uint32_t light; ///< isLightGouraud(): colours computed at run time
    std::uint32_t table; ///< isTableGouraud(): colours of the polygon's own entry
};

/// Counts over all polygons of all objects.
GouraudCounts countGouraud(const Model& model);

/// Where the Gouraud tables begin in video memory, in units of their 8 bytes: those of light
/// Gouraud polygons first, from here on, then those of table Gouraud polygons.
inline constexpr std::uint16_t firstGouraudTable = 0x1C38;

} // namespace facetor
