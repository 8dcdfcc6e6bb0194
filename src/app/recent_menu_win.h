#pragma once

#include "app/commands_win.h"

#include <string>

namespace facetor {

struct Editor;

// The recent model files in the File menu.

/// Makes the menu's items those of the list, with the separator after them only while there are
/// any.
void rebuildRecentModelMenu(Editor& editor);

/// Puts a file that has been opened or saved into the list and the menu.
void addRecentModel(Editor& editor, const std::string& path);

/// Opens the file of an item, by its command, through the command that opens a path.
void openRecentModel(Editor& editor, int command);

} // namespace facetor
