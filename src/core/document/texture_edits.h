#pragma once

#include "document/undo.h"
#include "model/model.h"
#include "texture/texture_list.h"
#include "texture/texture_transforms.h"

#include <cstdint>
#include <span>

namespace facetor {

// Edits of the texture list, each with what undoing it needs (document/texture_undo.h).

/// What an edit met. It has been carried out in any case unless `edit` is not none.
struct EditOutcome {
    Message undo = Message::none; ///< outOfUndoMemory: the undo slot is empty
    Message edit = Message::none;
    bool brokenOff = false; ///< an opening that failed, and has changed something
};

/// Whether polygons follow the textures that an insertion or a removal moves.
enum class PolygonNumbers { keep, follow };

/// Puts a texture into a slot, in place of what it held. The sizes are as TextureList::set() needs
/// them.
EditOutcome replaceTexture(TextureList& list, UndoSlot& undo, std::uint32_t slot,
                           std::uint16_t width, std::uint16_t height, Texels pixels);

/// Puts a packed bitmap into a slot. Nothing is done when its width is no multiple of 8
/// (textureWidthNotMultipleOf8), when convertBitmap() does not take it (clipboardTypeNotSupported)
/// or when memory is short (outOfMemory). Of `transparentColour` the low 15 bits count.
EditOutcome pasteBitmap(TextureList& list, UndoSlot& undo, std::uint32_t slot,
                        std::span<const std::byte> bitmap, Rgb555 transparentColour);

/// Gives every slot what the other list has in it. The current slot stays.
void replaceTextures(TextureList& list, const TextureList& other);

/// Makes a slot empty.
EditOutcome deleteTexture(TextureList& list, UndoSlot& undo, std::uint32_t slot);

/// Moves the textures from `slot` on one slot up and leaves it empty. A texture in the last slot
/// falls off the end. texturesEmpty, with nothing done, for an empty list. With `follow`, texture
/// numbers from `slot` on grow by one, so that polygons keep their textures.
EditOutcome insertSlot(TextureList& list, UndoSlot& undo, Model& model, std::uint32_t slot,
                       PolygonNumbers numbers);

/// Removes a slot: the textures behind it move one slot down. texturesEmpty, with nothing done, for
/// an empty list. With `follow`, texture numbers beyond `slot` shrink by one.
EditOutcome removeSlot(TextureList& list, UndoSlot& undo, Model& model, std::uint32_t slot,
                       PolygonNumbers numbers);

/// The textures that a transform is applied to.
struct TransformTarget {
    std::uint32_t current = 0; ///< the one slot, unless `useExtent`
    bool useExtent = false;
    SlotExtent extent{};
};

// Transforms of one slot or of an extent, which ends at the first slot that fails. An extent's flip
// is undone by the same flip, its turn by the opposite one; its scaling cannot be undone.

EditOutcome flipTextures(TextureList& list, UndoSlot& undo, const TransformTarget& target,
                         TextureFlip flip);
/// textureWidthNotMultipleOf8, with nothing done, for a quarter turn when the height of the current
/// texture, which becomes a width, is no multiple of 8.
EditOutcome turnTextures(TextureList& list, UndoSlot& undo, const TransformTarget& target,
                         TextureTurn turn);
EditOutcome scaleTextures(TextureList& list, UndoSlot& undo, const TransformTarget& target,
                          std::uint16_t width, std::uint16_t height, Sampling sampling);

} // namespace facetor
