#include "engine/opacity.h"

#include <cstddef>

namespace facetor {

/// The place of a texture: its own, or the first free one of a few; else another gives way.
OpacityCache::Known& OpacityCache::knownOf(const TextureSlot& texture)
{
    constexpr std::uint32_t places = 8;
    // Textures often lie apart by a power of two: only a product spreads them.
    const auto address = static_cast<std::uint32_t>(
        reinterpret_cast<std::uintptr_t>(texture.pixels) / alignof(std::max_align_t));
    const std::uint32_t first = address * 0x9E3779B1u >> 24;
    for (std::uint32_t i = 0;; ++i) {
        Known& known = known_[(first + i) % known_.size()];
        if (known.pixels == texture.pixels && known.width == texture.width &&
            known.height == texture.height)
            return known;
        if (known.pixels != nullptr && i + 1 < places) continue;
        known = {texture.pixels, texture.width, texture.height, State::unknown, 0};
        return known;
    }
}

bool OpacityCache::isOpaque(const TextureSlot& texture, std::uint32_t pixels)
{
    Known& known = knownOf(texture);
    if (known.state == State::unknown) {
        const std::uint32_t count = std::uint32_t{texture.width} * texture.height;
        known.drawn += pixels;
        if (known.drawn < count / 8) return false;
        Rgb555 common = opaqueBit;
        for (std::uint32_t i = 0; i < count; ++i) common &= texture.pixels[i];
        known.state = common != 0 ? State::opaque : State::holes;
    }
    return known.state == State::opaque;
}

} // namespace facetor
