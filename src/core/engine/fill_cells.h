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
/// rows in y. False, and nothing drawn, when the polygon is not one: a cell is larger than
/// CellShapes lists, or so is the texture.
bool fillSmallCells(Engine& engine, const ScreenQuad& points, const CellTexture& texture,
                    PixelMode mode, std::uint32_t flags);

} // namespace facetor
