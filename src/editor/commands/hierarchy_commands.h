#pragma once

namespace facetor {

struct Editor;

// The menu of the hierarchy window, about the object that is selected there; nothing when none is.

/// Asks for another name.
void renameSelected(Editor& editor);
/// Tells its placement; with Shift and Ctrl held it can be edited.
void showObjectInformation(Editor& editor);

} // namespace facetor
