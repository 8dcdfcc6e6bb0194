#pragma once

#include "engine/engine.h"
#include "engine/gouraud_steps.h"
#include "engine/rasteriser.h"

#include <cstdint>

namespace facetor {

/// What a polygon is drawn with.
struct CellTexture {
    TextureSlot slot;
    int level;                   ///< of the light
    const GouraudSteps* gouraud; ///< added to the texels; nullptr for none
};

/// fillTextured() and fillTexturedGouraud() for a polygon of small cells: `points` hold surface
/// rows in y. Of `flags` the flips and meshMode count. False, and nothing drawn, when the polygon
/// is not one that CellShapes lists, when it reaches beyond a surface narrower than 32 pixels, and
/// where the vector fills are not compiled.
bool fillSmallCells(Engine& engine, const ScreenQuad& points, const CellTexture& texture,
                    PixelMode mode, std::uint32_t flags);

} // namespace facetor
