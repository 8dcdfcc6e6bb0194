#pragma once

#include <windows.h>

#include <span>
#include <string>

namespace facetor {

/// Creates a visible status bar at the bottom of `owner`, with parts whose right edges lie at the
/// given pixels. nullptr when the system refuses.
HWND createStatusBar(HWND owner, std::span<const int> partEdges);

/// Needs 0 <= part < the number of edges that the bar was created with.
void setStatusText(HWND statusBar, int part, const std::string& text);

/// Shows a text in place of all parts; an empty one brings them back.
void showStatusMessage(HWND statusBar, const std::string& text);

} // namespace facetor
