#pragma once

namespace facetor {

struct Editor;

// The hierarchy window: a modeless dialog over the main window that shows the objects as a tree, in
// bold the ones that are drawn. There is one at most, editor.hierarchyWindow; where it was is kept
// in editor.settings.

/// Opens the hierarchy window where it was last, or closes it if it is open.
void toggleHierarchyWindow(Editor& editor);

/// Builds the tree anew from the model, if the window is open.
void refreshHierarchyTree(Editor& editor);

} // namespace facetor
