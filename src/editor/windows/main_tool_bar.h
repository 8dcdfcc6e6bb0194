#pragma once

#include <windows.h>

namespace facetor {

struct Editor;

/// Creates the main window's tool bar, at the top of its client area. nullptr when the system
/// refuses.
HWND createMainToolBar(HWND mainWindow);

/// Handles a notification to the main window; false when it is not for the tool bar.
bool onMainToolBarNotify(const Editor& editor, LPARAM notification);

/// Makes the menu items and the tool bars' buttons, also those of the open texture list window,
/// look as the editor's state and the clipboard ask for.
void refreshMenuState(Editor& editor);

} // namespace facetor
