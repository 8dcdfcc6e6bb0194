#pragma once

#include <windows.h>

namespace facetor {

struct Editor;

/// The main window's class name.
inline constexpr char mainWindowClass[] = "szMainClass";

/// Asks the model view for a new frame. No arguments.
inline constexpr UINT messageRedraw = WM_USER;
/// Opens the model file whose path is the second argument.
inline constexpr UINT messageOpenPath = WM_USER + 1;

/// Registers the main window's class. False when the system refuses.
bool registerMainWindow(const Editor& editor);

/// Creates the main window, with everything that lives in it, as editor.mainWindow. False when the
/// system refuses or a creation step fails; that step has then shown its message.
bool createMainWindow(Editor& editor);

/// Writes the numbers of objects, polygons and vertices into the status bar, and the status line
/// over them when there is one.
void refreshStatus(Editor& editor);

} // namespace facetor
