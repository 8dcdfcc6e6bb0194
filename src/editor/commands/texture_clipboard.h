#pragma once

#include "engine/texture_slot.h"
#include "state/command.h"

namespace facetor {

struct Editor;

// Textures on the system's clipboard, as bitmaps that other programs take and give (CF_DIB).

/// Puts a texture, or any picture in the form of one, there. False when memory is short or another
/// program holds the clipboard.
bool putOnClipboard(HWND owner, const TextureSlot& texture);

/// Puts the current texture there. `abandoned`, with a message shown, when that fails.
CommandOutcome copyTexture(Editor& editor);

/// Replaces the current texture by the clipboard's bitmap. `abandoned`, with a message shown, when
/// there is none or it cannot be taken.
CommandOutcome pasteTexture(Editor& editor);

/// Takes away whatever is there.
void emptyClipboard(Editor& editor);

} // namespace facetor
