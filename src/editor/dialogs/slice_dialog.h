#pragma once

namespace facetor {

struct Editor;

/// Asks how the current texture is to be sliced, and keeps that in editor.slice.settings. False
/// when the user cancels.
bool askSlice(Editor& editor);

} // namespace facetor
