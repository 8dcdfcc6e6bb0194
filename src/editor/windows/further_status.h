#pragma once

#include <windows.h>

namespace facetor {

struct Editor;

/// Creates the main window's status bar: the three parts of the counts, their right edges at 100,
/// 200 and 300 pixels, and behind them those of refreshFurtherStatus(). nullptr when the system
/// refuses.
HWND createMainStatusBar(HWND mainWindow);

/// Brings the further parts up to date: how many polygons are picked, how many bytes the target's
/// texels take, whether something is not saved.
void refreshFurtherStatus(Editor& editor);

} // namespace facetor
