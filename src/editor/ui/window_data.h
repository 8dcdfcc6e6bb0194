#pragma once

#include "base/message.h"
#include "session/window_place.h"

#include <windows.h>

#include <string>

namespace facetor {

/// The module that owns a window, whose resources the window uses; the program for no window.
HINSTANCE instanceOf(HWND window);

/// The window's whole text, in the process's code page.
std::string windowText(HWND window);

/// Catalogue text `word`, at most 127 characters, from the module that owns the window. Empty when
/// the module's catalogue does not hold it.
std::string loadCatalogueText(HWND window, Word word);
/// A message's own text, to be shown within another.
std::string loadCatalogueText(HWND window, Message message);

/// The folder of the module that owns a window, without a separator at its end; the program's for
/// no window. Empty when its name is longer than any that the system takes here.
std::string programFolder(HWND window);

/// Whether a key of the keyboard is held at this moment.
bool isKeyDown(int virtualKey);

/// The absolute form of a path, by the current folder; the path as it is when there is none.
std::string fullPath(const std::string& path);

/// The whole screen and its monitors, in pixels.
Screen virtualScreen();

/// Where a window is on the screen.
WindowRectangle windowPlace(HWND window);

} // namespace facetor
