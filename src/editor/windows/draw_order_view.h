#pragma once

#include <windows.h>

namespace facetor {

struct Editor;

// What the model view does for the drawing order window. Nothing, at the cost of a comparison,
// while that is closed.

/// Tells that the view has drawn a frame.
void noteFrame(Editor& editor);

/// Outlines the polygon that was drawn last and marks the pixel that was asked about.
void paintDrawOrder(const Editor& editor, HDC dc);

/// A press of the left button at a pixel of the view. True when the window has taken it as
/// a question about that pixel.
bool onAskedPixel(Editor& editor, POINT position);

/// Shows a cross for the cursor while a click asks about a pixel. False for the usual one.
bool showAskCursor(const Editor& editor);

} // namespace facetor
