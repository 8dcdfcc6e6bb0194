#pragma once

#include "base/message.h"
#include "engine/engine.h"
#include "model/model.h"
#include "output/target_image.h"
#include "texture/texture_list.h"
#include "view/view.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace facetor {

// What a monitor does with a target image that it is handed: it says what the image holds, or why
// it cannot work, and shows it. The images' layout is docs/formats/sal.md.

/// A block of an image.
struct ReceivedBlock {
    std::uint32_t address, size;
    const char* contents; ///< what lies at such an address, in English; nullptr when nothing does
};

struct ReceivedImage {
    std::string contents; ///< "model", "textures", "scene", joined by commas
    std::string reason;   ///< why it cannot work; empty when it can
    std::vector<ReceivedBlock> blocks;
};

/// What the target's memory holds after the images so far.
struct ReceivedScene {
    Model model;
    TextureList textures;
    SceneSettings scene;
    bool hasModel = false, hasTextures = false;
};

/// Allocates the pools. outOfMemory.
Message createReceivedScene(ReceivedScene& scene);

/// Reads an image into the scene. One with a reason leaves the scene as it was: a block is cut, has
/// an address where nothing lies, or not the size of what does; model or textures cannot be read;
/// there is no block at all.
ReceivedImage receiveImage(ReceivedScene& scene, std::span<const std::byte> image);

/// Draws what was received into the engine's surface: the model with the textures and in the
/// light, fitted to `size`; without a model the textures side by side, reduced where they need to
/// be; without either the background.
void drawReceivedScene(ReceivedScene& scene, Engine& engine, View& view, ClientSize size);

} // namespace facetor
