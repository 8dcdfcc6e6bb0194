#pragma once

#include "engine/engine.h"
#include "engine/frame_surface.h"
#include "engine/texture_slot.h"

namespace facetor {

/// A texture that lies in the view as a picture. Unlike elsewhere, right and bottom of its place
/// lie just outside it.
struct PlacedTexture {
    TextureSlot texture;
    InclusiveRectangle place; ///< in view pixels; needs left < right and top < bottom
};

/// Draws the picture into the surface, scaled to its place and cut at the surface's edges. Where a
/// texel is transparent the surface stays as it is.
void drawPlacedTexture(FrameSurface& surface, const PlacedTexture& picture);

} // namespace facetor
