#pragma once

#include "base/bytes.h"
#include "base/message.h"
#include "texture/texels.h"

#include <cstdint>
#include <span>
#include <vector>

namespace facetor {

/// The program's one undo slot, which edits of models and of textures share. It holds the state
/// before the last edit, one level deep; what undoing does with it is up to its kind.
struct UndoSlot {
    std::uint32_t kind = 0; ///< tag() of what the block is; 0 when the slot is empty
    Bytes block;
    Texels texels; ///< of the texture that the block describes, if it does

    bool isEmpty() const { return kind == 0; }
};

/// The live data that a kind of edit changes, in pieces; the slot's block holds them end to end.
using UndoPieces = std::vector<std::span<std::byte>>;

/// Keeps a copy of the pieces, in place of what the slot held. outOfUndoMemory, with the slot
/// empty, when memory is short: the edit goes ahead without undo.
Message undoRemember(UndoSlot& slot, std::uint32_t kind, const UndoPieces& live);

/// Exchanges the slot's block with the pieces, the present state of what the slot's kind stands
/// for. outOfUndoMemory, with nothing changed, unless the slot holds that kind and as many bytes.
Message undoExchange(UndoSlot& slot, std::uint32_t kind, const UndoPieces& live);

void undoClear(UndoSlot& slot);

} // namespace facetor
