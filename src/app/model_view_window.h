#pragma once

#include "view/view.h"

#include <windows.h>

namespace facetor {

struct Editor;

// The model view: the main window's client area, in which the engine's frame surface is shown.

/// The size of a window's client area; 0 x 0 while it is minimised.
ClientSize clientSize(HWND window);

/// Asks for a new frame. Cheap however often it is called: the frame is only marked, and drawn
/// when the window paints itself.
void requestRedraw(Editor& editor);

/// Turns the view to one of the directions of the Camera menu.
void showFixedView(Editor& editor, FixedView direction);

/// Handles the paint message: draws the frame if it needs it and copies the surface to the top-left
/// corner.
void paintModelView(Editor& editor);

/// Handles the erase message: fills only what the surface does not cover, so that a repaint never
/// flickers.
void eraseAroundModelView(Editor& editor, HDC dc);

// The mouse over the model view, positions in client pixels. What a drag does is the view tool's
// business; here it is only followed.

void onLeftButtonDown(Editor& editor);
void onLeftButtonUp(Editor& editor);
/// Shows the Camera menu at the cursor, and returns when it is closed.
void onRightButtonDown(Editor& editor, POINT position);
void onRightButtonUp(Editor& editor);
void onMouseMove(Editor& editor, POINT position);
void onCursorLeft(Editor& editor);

} // namespace facetor
