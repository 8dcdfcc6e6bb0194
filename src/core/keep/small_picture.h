#pragma once

#include "base/colour.h"
#include "engine/engine.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <cstdint>
#include <span>
#include <vector>

namespace facetor {

/// A picture to know a kept document by: rows from the top, without padding.
struct SmallPicture {
    std::uint32_t width = 0, height = 0; ///< in pixels
    std::vector<Rgb555> pixels;
};

/// The largest sides of such a picture: a quarter of the frame that it is drawn from.
inline constexpr std::uint32_t largestPictureWidth = 160;
inline constexpr std::uint32_t largestPictureHeight = 122;

/// The model as it appears when it is opened, on the background of `colour`. The engine is used for
/// it alone; startEngine() has been called. Needs a model that isSafeToDraw() and sides of at most
/// those above.
SmallPicture drawModelPicture(Engine& engine, const Model& model,
                              std::span<const TextureSlot> textures, Rgb555 colour,
                              std::uint32_t width, std::uint32_t height);

/// The first textures of a list side by side, as many as one can still tell apart.
SmallPicture drawTexturesPicture(const TextureList& list, Rgb555 colour, std::uint32_t width,
                                 std::uint32_t height);

} // namespace facetor
