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
    std::vector<Rgb555> texels; ///< of all textures, one after the other
    std::vector<TextureSlot> textures;
    ClientSize client{640, 480};
};

// The polygons face the camera with jittered corners, so that neither edges nor depths repeat, and
// show one of 32 textures of 64 x 64 texels, every second of them with holes in a fifth of it.

/// 4096 polygons of about 60 pixels on a lattice of 64 x 64 vertices, a few of them over two cells.
/// All have the attribute `flags`, and colours and Gouraud colours of their own.
std::unique_ptr<Scene> makeSmallScene(std::uint32_t flags);

/// 64 polygons of about 20,000 pixels each, turned every way.
std::unique_ptr<Scene> makeLargeScene(std::uint32_t flags);

/// 1024 polygons with sides from 6 to 90 pixels: flat, Gouraud, textured, textured and lit, half of
/// each kind translucent.
std::unique_ptr<Scene> makeMixedScene();

/// A sample model with its texture list, fitted to 640 x 480; null when it cannot be read.
std::unique_ptr<Scene> makeSampleScene(const char* modelPath, const char* texturePath);

/// One whole frame: reset, walk with transform and tests, clear, sort, draw.
void drawFrame(Scene& scene);

/// The rows that the flat fills of the scene's listed polygons write, far to near.
struct Span {
    std::uint32_t offset; ///< of the first pixel, from the surface's first
    std::int32_t count;
    std::uint32_t attribute; ///< of its polygon
};
std::vector<Span> collectSpans(Scene& scene);

} // namespace facetor::bench
