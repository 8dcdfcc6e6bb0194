#pragma once

namespace facetor {

struct Editor;

/// Opens the window that goes through the order in which the view's polygons are drawn, where it
/// was last, or closes it. While it is open the view draws as many of them as its slider says.
void toggleDrawOrderWindow(Editor& editor);

/// Shows what the window asks about the pixel in DrawOrderWindow::pixel. Needs an open window.
void showPixelWriters(Editor& editor);

} // namespace facetor
