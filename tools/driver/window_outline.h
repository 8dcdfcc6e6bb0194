#pragma once

#include <windows.h>

#include <string>

namespace facetor {

// Each is a text of a line for each thing, indented by what the thing is in. They are asked on the
// thread of the windows.

/// A window and all in it: class, number, styles, text and state of each control, menus, buttons of
/// tool bars with their tips, parts of status bars, and every page of a tab control, which is
/// turned to; a picture of each is saved. The program's version stands as VERSION.
std::string windowOutline(HWND window);

/// A menu's items with their numbers, texts and states.
std::string menuOutline(HMENU menu);

/// The keys of an accelerator table: what is held (8 Ctrl, 16 Alt, 4 Shift, 1), key and command.
std::string keyOutline(HACCEL accelerators);

} // namespace facetor
