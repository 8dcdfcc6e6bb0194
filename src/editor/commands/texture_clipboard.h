#pragma once

#include "state/command.h"

namespace facetor {

struct Editor;

// Textures on the system's clipboard, as bitmaps that other programs take and give (CF_DIB).

/// Puts the current texture there. `abandoned`, with a message shown, when that fails.
CommandOutcome copyTexture(Editor& editor);

/// Replaces the current texture by the clipboard's bitmap. `abandoned`, with a message shown, when
/// there is none or it cannot be taken.
CommandOutcome pasteTexture(Editor& editor);

/// Takes away whatever is there.
void emptyClipboard(Editor& editor);

} // namespace facetor
