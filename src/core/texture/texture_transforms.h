#pragma once

#include "base/message.h"
#include "texture/texture_list.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace facetor {

// Edits of whole textures in place. Each needs a slot number below textureSlotCount, returns
// texturesEmpty for an empty slot and outOfMemory, with the slot as it was, when memory is short.

/// Flips a texture about its vertical axis, then about its horizontal one.
struct TextureFlip {
    bool horizontal = false;
    bool vertical = false;
};
Message flipTexture(TextureList& list, std::uint32_t slot, TextureFlip flip);

enum class TextureTurn {
    clockwise,        ///< the top row becomes the right column
    counterClockwise, ///< the top row becomes the left column, read upwards
    halfTurn,
};
/// The turn that undoes another.
TextureTurn opposite(TextureTurn turn);
Message turnTexture(TextureList& list, std::uint32_t slot, TextureTurn turn);

enum class Sampling { nearest, smooth };

/// The largest width and height that the editor gives a texture, in texels.
inline constexpr std::uint16_t largestTextureSide = 256;

/// Scales a texture to width x height, each 1 to 65535. Smooth sampling mixes four texels, and
/// makes a texel transparent where one of them is.
Message scaleTexture(TextureList& list, std::uint32_t slot, std::uint16_t width,
                     std::uint16_t height, Sampling sampling);

/// The slots that a transform is applied to: first to last, both included.
struct SlotExtent {
    std::int32_t first, last;
};

/// Calls `transform(slot)` for each slot of an extent until one fails, and returns what that one
/// returned. Of an extent that reaches beyond the list, the part within it counts.
template <typename Transform> Message forEachSlot(SlotExtent extent, const Transform& transform)
{
    for (std::int32_t i = std::max(extent.first, 0); i <= extent.last && i < int{textureSlotCount};
         ++i)
        if (const Message message = transform(static_cast<std::uint32_t>(i));
            message != Message::none)
            return message;
    return Message::none;
}

} // namespace facetor
