#pragma once

#include "base/message.h"
#include "texture/texture_list.h"

#include <cstdint>

namespace facetor::samples {

/// The ship's textures by slot.
enum ShipTexture : std::uint16_t {
    hullPlates,
    hullStripe,
    hullWindows,
    bellyPlates,
    hullVents,
    wingPlates,
    wingTip,
    engineBands,
    engineFan,  ///< a disc; the corners are transparent
    engineGlow, ///< a disc; the corners are transparent
    cockpitInside,
    hazardStripes,
    roundel,    ///< transparent around the emblem
    shipNumber, ///< transparent around the digits
    sternPlates,
    nozzleBands,
};

Message paintShipTextures(TextureList& textures);

} // namespace facetor::samples
