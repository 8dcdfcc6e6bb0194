#pragma once

#include <string>

namespace facetor {

struct Editor;

// The recent files in the File menus: models in the main window's, texture lists in that of the
// texture list window, which is there only while it is open.

/// Makes the menu's items those of the list, with the separator after them only while there are
/// any.
void rebuildRecentModelMenu(Editor& editor);
void rebuildRecentTextureMenu(Editor& editor);

/// Puts a file that has been opened or saved into the list and the menu.
void addRecentModel(Editor& editor, const std::string& path);
void addRecentTextures(Editor& editor, const std::string& path);

/// The path of a recent file, by its item's command. Beeps and returns an empty one for an item
/// that the list does not hold.
std::string recentModelOf(const Editor& editor, int command);
std::string recentTexturesOf(const Editor& editor, int command);

} // namespace facetor
