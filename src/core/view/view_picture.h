#pragma once

#include "engine/engine.h"
#include "engine/placed_texture.h"
#include "model/model.h"
#include "view/view.h"

#include <cstdint>
#include <vector>

namespace facetor {

/// What a window of the view shows: width x height texels, top row first, bit 15 set in what is
/// opaque.
struct ViewPicture {
    std::uint32_t width = 0, height = 0;
    std::vector<Rgb555> texels;
};

enum class Background {
    kept,
    transparent, ///< where no polygon is drawn; a picture behind the model is left out, too
};

/// Draws the frame for a client area into a picture, `behind` being the picture behind the model if
/// there is one. The engine's surface holds no frame afterwards; the view's is marked as to be
/// drawn. outOfMemory, with an empty picture, when memory is short.
Message takePicture(ViewPicture& picture, View& view, Engine& engine, const Model& model,
                    ClientSize client, const PlacedTexture* behind, Background background);

} // namespace facetor
