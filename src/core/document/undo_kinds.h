#pragma once

#include "document/undo.h"
#include "model/model.h"
#include "texture/texture_list.h"

namespace facetor {

/// Does what undoing the slot's edit means. An edit of the model is exchanged with the present
/// state, so that undoing again redoes it; an edit of textures is brought back and the slot empty.
/// Does nothing for an empty slot. outOfUndoMemory, with nothing changed, when the slot does not
/// fit the model; outOfMemory as texture_undo.h says.
Message undoEdit(UndoSlot& slot, Model& model, TextureList& list);

/// Whether the slot holds an edit of textures.
bool isTextureEdit(const UndoSlot& slot);

} // namespace facetor
