#pragma once

#include "view/view_gestures.h"

#include <windows.h>

namespace facetor {

struct Editor;

// What the mouse and the keys do in the model view whatever the tool is.

/// Handles a turn of the wheel by `turn` (120 a notch, positive away from the user) with the cursor
/// at a place of the screen: zooms about it. Nothing while the left button is held, or with the
/// cursor elsewhere.
void onWheel(Editor& editor, int turn, POINT screen);

/// The middle button moves the view, with Ctrl or Alt it turns it; positions in pixels of the view.
void onMiddleButtonDown(Editor& editor, POINT position);
void onMiddleButtonUp(Editor& editor);
/// A move of the mouse by `delta` with the middle button held; `keys` are the MK_ flags of its
/// message.
void onMiddleDrag(Editor& editor, POINT delta, WPARAM keys);

/// A key that stands for a command, like F for framing and the number pad for the six sides. False
/// when the virtual key is none, or with Ctrl held.
bool onCommandKey(Editor& editor, WPARAM key);

/// An arrow key with Alt turns the view, with Shift in larger steps.
void onTurningKey(Editor& editor, WPARAM key);

/// Shows all of the model, or the picked polygons, as large as the window allows.
void frameInView(Editor& editor, Framed framed);

} // namespace facetor
