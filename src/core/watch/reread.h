#pragma once

#include "model/model.h"
#include "texture/texture_list.h"

#include <bitset>

namespace facetor {

// What a document keeps when one of its files is read again.

/// Gives the polygons of a model that was read again the selection marks of those that it comes
/// after, and its objects whether they are shown: by the objects' names, of equal ones by their
/// order, and by the order of the polygons in an object.
void carryMarks(Model& next, const Model& before);

/// Slots of a texture list.
using SlotSet = std::bitset<textureSlotCount>;

/// The slots that are not empty.
SlotSet usedSlots(const TextureList& list);
/// The slots that do not show the very texels that they did before.
SlotSet replacedSlots(const TextureList& before, const TextureList& now);

/// What becomes of a list when its file is read again: slots take what the file has now; those that
/// it had before and has no more become empty; the others, which came from elsewhere, stay. Needs a
/// created `list`.
void mergeReread(TextureList& list, const TextureList& reread, const SlotSet& ofFile);

} // namespace facetor
