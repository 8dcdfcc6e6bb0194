#pragma once

namespace facetor {

struct Editor;

// Each asks for what a transform is to do, and keeps that in editor.transforms. False when the user
// cancels.

bool askFlip(Editor& editor);
bool askTurn(Editor& editor);
bool askSize(Editor& editor);

} // namespace facetor
