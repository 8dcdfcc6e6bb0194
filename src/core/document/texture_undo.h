#pragma once

#include "document/undo.h"
#include "model/model.h"
#include "texture/texture_list.h"
#include "texture/texture_transforms.h"

#include <array>
#include <cstdint>

namespace facetor {

// What the undo slot holds of an edit of textures, and how it is brought back. Unlike an edit of
// the model it cannot be redone: the slot is empty afterwards.

inline constexpr std::uint32_t textureReplaced = tag("TXED");
inline constexpr std::uint32_t textureTransformed = tag("TXSZ");
inline constexpr std::uint32_t slotInserted = tag("TXis");
inline constexpr std::uint32_t slotRemoved = tag("TXbs");
inline constexpr std::uint32_t texturesFlipped = tag("TXFL");
inline constexpr std::uint32_t texturesTurned = tag("TXRT");

/// A texture as the undo slot holds it, beside its texels.
struct SavedTexture {
    std::uint32_t slot;
    std::uint16_t width, height;
    bool empty; ///< the slot was empty; there are no texels
};

struct SavedFlip {
    SlotExtent extent;
    TextureFlip flip;
};

struct SavedTurn {
    SlotExtent extent;
    TextureTurn turn;
};

/// The texture numbers of the whole attribute pool.
using TextureNumbers = std::array<std::uint16_t, polygonCapacity>;

/// Keeps a slot as it is.
Message rememberTexture(const TextureList& list, UndoSlot& undo, std::uint32_t kind,
                        std::uint32_t slot);

/// Keeps every polygon's texture number, and of a removed slot its texture. Needs slotInserted or
/// slotRemoved.
Message rememberSlotChange(const TextureList& list, UndoSlot& undo, std::uint32_t kind,
                           const Model& model, std::uint32_t slot);

/// Moves the textures of slots first to last, both included, one slot up; the one above `last`
/// needs to be empty, and `first` is afterwards.
void moveUp(TextureList& list, std::uint32_t first, std::uint32_t last);
/// The same one slot down; the one below `first` needs to be empty, and `last` is afterwards.
void moveDown(TextureList& list, std::uint32_t first, std::uint32_t last);

// Each undoes the edit of its kind and empties the slot. outOfMemory where a transform does not get
// the memory for a texture: those before it are undone.

Message undoTexture(UndoSlot& undo, Model& model, TextureList& list);
Message undoInsert(UndoSlot& undo, Model& model, TextureList& list);
Message undoRemove(UndoSlot& undo, Model& model, TextureList& list);
Message undoFlips(UndoSlot& undo, Model& model, TextureList& list);
Message undoTurns(UndoSlot& undo, Model& model, TextureList& list);

} // namespace facetor
