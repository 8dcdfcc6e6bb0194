#pragma once

#include "base/geometry.h"
#include "engine/engine.h"
#include "engine/matrix_stack.h"
#include "engine/placed_texture.h"
#include "model/model.h"
#include "texture/texture_list.h"
#include "texture/texture_rules.h"
#include "texture/texture_transforms.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace facetor {

// Slicing cuts, for every picked polygon, what it covers on the screen out of a picture that lies
// behind the model, and makes that its texture.

/// What a position beside the picture gives.
enum class SliceOffset {
    transparent,
    repeatEdge, ///< the nearest texel of the picture
    wrapAround, ///< the picture once more, on each side; transparent further out
};

/// Which slots the new textures go to.
enum class SliceAppendix {
    next,   ///< from the one behind the current texture
    last,   ///< behind the last one that is used
    chosen, ///< from a given one
};

struct SliceSettings {
    std::int32_t width = 64; ///< of each new texture
    std::int32_t height = 64;
    SliceOffset offset = SliceOffset::transparent;
    SliceAppendix appendix = SliceAppendix::next;
    std::int32_t chosenSlot = 0;
    Sampling sampling = Sampling::nearest;
    bool materialColour = false; ///< the polygon's colour in place of transparent texels
};

/// A size, or a chosen slot that is not behind the current one or not in the list.
std::optional<InputFault> sliceFault(const SliceSettings& settings, std::uint32_t currentSlot);

/// What one polygon covers on the screen.
struct SliceRecord {
    std::array<ScreenPoint, 4> corner; ///< in view pixels, in corner order
    Rgb555 colour;                     ///< the polygon's own
};

/// The slots of the new textures: `count` of them from `first`.
struct SliceSlots {
    std::uint32_t first, count;
};

/// Where so many new textures go: fewer, or none, when the list ends before.
SliceSlots sliceSlots(const TextureList& list, const SliceSettings& settings,
                      std::uint32_t polygons);

/// Warps what a record covers of the picture into `texels` of the settings' width x height, corner
/// 0 at the top left, 1 at the top right, and so on around. The quadrilateral is cut into 10 x 10
/// cells, each of them into two triangles that are filled by affine maps.
void warpSlice(std::span<Rgb555> texels, const SliceSettings& settings, const SliceRecord& record,
               const PlacedTexture& picture, Rgb555 transparentColour);

/// Slices the list's current texture, lying at `place`, onto the picked polygons: in the order of
/// the hierarchy each gets a new texture and is textured without flips. Polygons for which the list
/// has no slot stay as they are. `stack` holds the camera as its current matrix and does so
/// afterwards; objects are placed in it by translation, rotation and scaling, without their
/// matrices. outOfMemory, with nothing changed, when memory is short.
Message sliceTextures(TextureList& list, Model& model, MatrixStack& stack,
                      const EngineSettings& engine, const SliceSettings& settings,
                      const InclusiveRectangle& place, Rgb555 transparentColour);

} // namespace facetor
