#pragma once

#include "base/message.h"

#include <windows.h>

#include <string>

namespace facetor {

struct Editor;

// The main window's title: the program's title, " - " and the path of the model file. The path is
// kept nowhere else, so the title is only ever set through these functions.

/// Shows the model file's path, or "Untitled" for nullptr.
void setTitleFile(Editor& editor, const char* path);

/// Shows a catalogue text in the path's place, for instance the mode that the program is in.
void setTitleText(Editor& editor, Word word);

/// The title of a window beside the main one: the program's title, " - " and a catalogue text.
void setWindowTitle(const Editor& editor, HWND window, Word word);

/// What follows the program's title: the path, or "Untitled" for a model without a file.
std::string titleFile(const Editor& editor);

} // namespace facetor
