#pragma once

#include "view/view.h"

#include <windows.h>

#include <optional>

namespace facetor {

struct Editor;

// The model view: the main window's client area, in which the engine's frame surface is shown.

/// The size of a window's client area; 0 x 0 while it is minimised.
ClientSize clientSize(HWND window);

// The view has pixels of its own: `zoom` pixels of the main window's client area across and down
// are one. All of the engine, the tools and the picture to be sliced is in those of the view.

/// The client area in pixels of the view, begun ones too.
ClientSize viewSize(const Editor& editor);

/// The pixel of the view that a place of the client area lies in.
POINT viewPosition(const Editor& editor, POINT client);

/// Makes that many pixels of the window one of the view, 1 to 3.
void setViewZoom(Editor& editor, int zoom);

/// Which way an arrow key points, one pixel long; none for another virtual key.
std::optional<POINT> arrowDirection(WPARAM key);

/// Asks for a new frame: lets the current tool do what the mouse's last move asks for, brings the
/// menu up to date and marks the frame, which is drawn when the window paints itself.
void requestRedraw(Editor& editor);

/// Turns the view to one of the directions of the Camera menu.
void showFixedView(Editor& editor, FixedView direction);

/// Handles the paint message: draws the frame if it needs it and copies the surface to the top-left
/// corner.
void paintModelView(Editor& editor);

/// Handles the erase message: fills only what the surface does not cover, so that a repaint never
/// flickers.
void eraseAroundModelView(Editor& editor, HDC dc);

/// Shows the submenu of the main menu that holds a command, with its corner where the cursor,
/// given in screen pixels, is on the first items; returns when it is closed.
void showMenuAt(Editor& editor, UINT command, POINT cursor);

/// Outlines a rectangle in dashes of black and white, which show on every background.
void frameInDashes(HDC dc, const RECT& outline);

// The mouse over the model view, positions in pixels of the view. What a drag does is the view
// tool's business; here it is only followed.

void onLeftButtonDown(Editor& editor, POINT position);
void onLeftButtonUp(Editor& editor);
/// Shows a menu at the cursor, and returns when it is closed: Edit, with Shift among `keys` (MK_
/// flags) the tools, with Ctrl the cameras. `position` is in client pixels.
void onRightButtonDown(Editor& editor, POINT position, WPARAM keys);
void onRightButtonUp(Editor& editor);
/// `keys` are the MK_ flags of the message.
void onMouseMove(Editor& editor, POINT position, WPARAM keys);
void onCursorLeft(Editor& editor);

/// The arrow keys do what the mouse does with the current tool, a step a press: they turn, move and
/// scale the model or move the picture to be sliced (sized with Shift); with the selection tool
/// they mark the next polygon or the one before (with Shift in addition). Ctrl makes steps small.
/// `key` is a virtual key; false when it is none of these.
bool onViewKey(Editor& editor, WPARAM key);

} // namespace facetor
