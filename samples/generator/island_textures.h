#pragma once

#include "base/message.h"
#include "texture/texture_list.h"

#include <cstdint>

namespace facetor::samples {

/// The island's textures by slot.
enum IslandTexture : std::uint16_t {
    stoneHouse, ///< walls with windows, one storey or two high; four kinds
    brickHouse,
    glassTower,
    whiteTower,
    roofTiles,
    towerShaft,
    lighthouseBands,
    fallingWater, ///< with gaps between the strands
    pavement,
    airshipSkin,
    timberPlanks,
};

Message paintIslandTextures(TextureList& textures);

} // namespace facetor::samples
