#pragma once

#include "engine/rasteriser.h"

#include <array>
#include <cstdint>
#include <vector>

namespace facetor::test {

// The fills as slowly and plainly as they can be said, to hold the fast ones against. All work
// pixel by pixel in double precision, but for the span ends, whose single-precision rounding is
// part of the rule.

/// A picture in surface rows, and which pixels lie so near a texel's edge that rounding may decide
/// either way.
struct ReferencePicture {
    std::int32_t width, height;
    std::vector<Rgb555> pixel;
    std::vector<bool> ambiguous;

    ReferencePicture(std::int32_t pictureWidth, std::int32_t pictureHeight, Rgb555 background);
};

void referenceFlat(ReferencePicture& picture, const Light& light, const ScreenQuad& quad,
                   Rgb555 colour, int level, std::uint32_t flags);
void referenceGouraud(ReferencePicture& picture, const Light& light, const ScreenQuad& quad,
                      Rgb555 colour, const std::array<Rgb555, 4>& gouraud, std::uint32_t flags);
void referenceTextured(ReferencePicture& picture, const Light& light, const ScreenQuad& quad,
                       const TextureSlot& texture, int level, std::uint32_t flags);
void referenceTexturedGouraud(ReferencePicture& picture, const Light& light, const ScreenQuad& quad,
                              const TextureSlot& texture, const std::array<Rgb555, 4>& gouraud,
                              std::uint32_t flags);

} // namespace facetor::test
