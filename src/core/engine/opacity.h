#pragma once

#include "engine/texture_slot.h"

#include <array>
#include <cstdint>

namespace facetor {

/// Which textures of the frame have no transparent texel. Looking through a texture costs an eighth
/// of what drawing as many pixels does, so it is done once enough of it was drawn. Up to 256
/// textures, in 6 KB; of more, one gives way to another.
class OpacityCache {
public:
    /// Forgets all textures: their texels may have changed since.
    void forget() { known_.fill({}); }

    /// Whether every texel is known to be opaque. `pixels`: what is about to be drawn.
    bool isOpaque(const TextureSlot& texture, std::uint32_t pixels);

private:
    enum class State : std::uint8_t { unknown, opaque, holes };
    struct Known {
        const Rgb555* pixels = nullptr;
        std::uint16_t width = 0, height = 0;
        State state = State::unknown;
        std::uint32_t drawn = 0; ///< pixels so far
    };
    Known& knownOf(const TextureSlot& texture);

    std::array<Known, 256> known_{};
};

} // namespace facetor
