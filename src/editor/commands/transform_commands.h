#pragma once

namespace facetor {

struct Editor;

// The commands that flip, turn and scale the current texture or an extent of textures, each with
// its dialog. An empty current slot is refused before the dialog.

void flipByDialog(Editor& editor);
void turnByDialog(Editor& editor);
void scaleByDialog(Editor& editor);

} // namespace facetor
