#pragma once

#include "document/document.h"
#include "state/command.h"

namespace facetor {

struct Editor;

// The Edit menu of the texture list window, about the current texture. The window need not be open.

/// Copies the texture to the clipboard and makes its slot empty.
CommandOutcome cutTexture(Editor& editor);
/// Makes the slot empty; `name` is what the history calls it.
CommandOutcome deleteCurrentTexture(Editor& editor, Word name);

enum class SlotMove { insert, remove };
/// Inserts an empty slot before the current one, or removes that; with Shift held, polygons keep
/// their pictures.
CommandOutcome moveSlots(Editor& editor, SlotMove move);

/// Empties the list, after a question.
CommandOutcome deleteAllTextures(Editor& editor);

/// Tells number and size.
void showTextureInformation(Editor& editor);

/// Shows the messages of an edit and the list as it now is. `abandoned` when the edit was not
/// carried out.
CommandOutcome finishTextureEdit(Editor& editor, const EditOutcome& outcome);

} // namespace facetor
