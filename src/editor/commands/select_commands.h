#pragma once

#include <windows.h>

namespace facetor {

struct Editor;

/// One of the commands of Edit > Select. Ctrl or Shift held makes those that pick by likeness or
/// connection take marks away instead.
void selectMore(Editor& editor, int command);

/// A double click with the selection tool: all that is connected to the polygon under the cursor is
/// picked, with Ctrl or Shift held no longer picked; with Tab to the polygon behind it. `position`
/// is in pixels of the view.
void selectConnectedAt(Editor& editor, POINT position);

} // namespace facetor
