#pragma once

#include "engine/engine.h"
#include "engine/span_ends.h"
#include "model/model.h"
#include "view/view.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace facetor::bench {

/// A model, and what draws it: everything that one measurement needs.
struct Scene {
    Model model;
    Engine engine;
    View view;
    std::vector<Rgb555> texels;
    TextureSlot texture{};
    ClientSize client{640, 480};
};

/// 3905 polygons of about 8 x 8 pixels: a sheet that faces the camera, turned by some degrees and
/// jittered so that neither edges nor depths repeat. All have the attribute `flags` (and texture
/// 0).
std::unique_ptr<Scene> makeSmallScene(std::uint32_t flags);

/// 64 polygons of about 141 x 141 pixels, 20,000 each, in the same manner.
std::unique_ptr<Scene> makeLargeScene(std::uint32_t flags);

/// A sample model with its texture list, fitted to 640 x 480; null when it cannot be read.
std::unique_ptr<Scene> makeSampleScene(const char* modelPath, const char* texturePath);

/// One whole frame: reset, walk with transform and tests, clear, sort, draw.
void drawFrame(Scene& scene);

/// The rows that the flat fills of the scene's listed polygons write, far to near.
struct Span {
    std::uint32_t offset; ///< of the first pixel, from the surface's first
    std::int32_t count;
};
std::vector<Span> collectSpans(Scene& scene);

} // namespace facetor::bench
